// A check box. OnClick is raised whenever the value really changes, by the user or by code.
#pragma once

#include "display/Control.h"

namespace vexa {

class CheckBox final : public Control {
 public:
  CheckBox(Form& form, std::string name, StringId caption = StringId::None)
      : Control(form, std::move(name), ControlKind::CheckBox, caption) {}

  bool Checked() const { return checked_; }
  /// What is stored of a box that counts only while it can be used.
  bool CheckedAndEnabled() const { return checked_ && Enabled(); }
  void SetChecked(bool checked) {
    if (checked_ == checked) return;
    checked_ = checked;
    Changed();
    Raise(OnClick);
  }

  Event OnClick;

 private:
  bool checked_ = false;
};

}  // namespace vexa
