// Finds every screen that the user can open from a form: it presses all buttons that can be pressed, with
// every option chosen in turn, on the form and on each dialog that comes up. New screens are found without
// being named anywhere. Its dialogs are never shown to anybody.
#pragma once

#include <set>
#include <string>

#include "display/Form.h"

namespace vexa::workbench {

class EveryScreen : public ModalWindows {
 public:
  void Walk(Form& form);

  /// The screens met so far, by name.
  const std::set<std::string>& Names() const { return names_; }

  void ShowModal(Dialog& dialog, Form* owner) final;

 protected:
  /// A screen as it stands when it is opened for the first time.
  virtual void Opened(Form& form, Dialog* dialog) = 0;

 private:
  void PressButtons(Form& form);

  std::set<std::string> names_;
  int depth_ = 0;
};

}  // namespace vexa::workbench
