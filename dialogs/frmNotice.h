// A message that stays above all other windows, Outlook's own included: a title, a formatted text and one to
// three buttons. Its maker shows it modally and reads the answer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/ExtLabel.h"

namespace vexa {

class frmNotice final : public Dialog {
 public:
  frmNotice();

  /// `buttons` are the captions of one to three buttons, error 5 for any other number. Enter presses the
  /// first, Esc and closing the window the last.
  void Initialize(const std::string& title, const std::string& text, const std::vector<std::string>& buttons);

  /// The button that was pressed, counted from 1; 0 as long as none was.
  int32_t Answer() const { return answer_; }

  void CloseWindow() override {
    answer_ = buttonCount_;
    Dialog::CloseWindow();
  }

  ExtLabel lblText{*this, "lblText"};
  Button cmdFirst{*this, "cmdFirst"};
  Button cmdSecond{*this, "cmdSecond"};
  Button cmdThird{*this, "cmdThird"};

 private:
  void Press(int32_t button);

  int32_t buttonCount_ = 0;
  int32_t answer_ = 0;
};

}  // namespace vexa
