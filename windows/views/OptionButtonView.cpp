#include <algorithm>

#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

constexpr int GlyphAndGap = 22;  // at 96 dpi, generous: themes differ
constexpr int HeightUnits = 10;

class OptionButtonView final : public ControlView {
 public:
  OptionButtonView(ViewHost& host, OptionButton& option) : ControlView(host, option), option_(option) {
    const bool first = option.Group().front() == &option;
    Create(WC_BUTTONW, BS_RADIOBUTTON | WS_TABSTOP | (first ? WS_GROUP : 0U));
    // Else the button takes the mere arrival of the focus for a click.
    Send(Window(), BM_SETDONTCLICK, TRUE);
    OptionButtonView::Sync();
  }

  void Sync() override {
    ControlView::Sync();
    const LRESULT wanted = option_.Selected() ? BST_CHECKED : BST_UNCHECKED;
    if (Send(Window(), BM_GETCHECK) != wanted) Send(Window(), BM_SETCHECK, wanted);
  }

  int MinWidth() const override {
    return host_.Face().WidthOf(ToUtf16(option_.Caption())) + host_.Face().Scale(GlyphAndGap);
  }
  int HeightFor(int /*width*/) const override {
    return std::max(host_.Face().UnitsY(HeightUnits), host_.Face().LineHeight() + host_.Face().Scale(2));
  }

  LRESULT Notified(UINT message, WPARAM wParam, LPARAM /*lParam*/) override {
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED) host_.Actions().Choose(option_);
    return 0;
  }

 private:
  OptionButton& option_;
};

}  // namespace

ControlViewPtr MakeOptionButtonView(ViewHost& host, OptionButton& option) {
  return std::make_unique<OptionButtonView>(host, option);
}

}  // namespace vexa::windows
