#include "dialogs/frmNotice.h"

#include <array>

namespace vexa {

frmNotice::frmNotice() : Dialog("frmNotice") {
  SetTopMost(true);
  cmdFirst.OnClick = [this] { Press(1); };
  cmdSecond.OnClick = [this] { Press(2); };
  cmdThird.OnClick = [this] { Press(3); };
}

void frmNotice::Initialize(const std::string& title, const std::string& text,
                           const std::vector<std::string>& buttons) {
  PassOn(Name(), "Initialize", [&] {
    const std::array<Button*, 3> places{&cmdFirst, &cmdSecond, &cmdThird};
    if (buttons.empty() || buttons.size() > places.size()) {
      throw MakeError(ErrorNumber::InvalidProcedureCall);
    }
    SetCaption(title);
    lblText.SetCaption(text);
    for (size_t i = 0; i < places.size(); ++i) {
      places[i]->SetVisible(i < buttons.size());
      if (i < buttons.size()) places[i]->SetCaption(buttons[i]);
    }
    buttonCount_ = static_cast<int32_t>(buttons.size());
    SetDefaultButton(cmdFirst);
    SetCancelButton(*places[buttons.size() - 1]);
  });
}

void frmNotice::Press(int32_t button) {
  answer_ = button;
  End(false);
}

}  // namespace vexa
