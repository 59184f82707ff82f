// One of a group of choices of which at most one is selected. OnClick is raised when a button becomes the
// selected one, by the user or by code; the one that it replaces raises nothing.
#pragma once

#include <vector>

#include "display/Control.h"

namespace vexa {

class OptionButton;

/// The buttons that exclude each other, in the order of their making.
using OptionGroup = std::vector<OptionButton*>;

class OptionButton final : public Control {
 public:
  OptionButton(Form& form, std::string name, OptionGroup& group, StringId caption = StringId::None)
      : Control(form, std::move(name), ControlKind::OptionButton, caption), group_(group) {
    group_.push_back(this);
  }

  bool Selected() const { return selected_; }
  void Select() {
    if (selected_) return;
    for (OptionButton* other : group_) other->Deselect();
    selected_ = true;
    Changed();
    Raise(OnClick);
  }
  void Deselect() {
    if (!selected_) return;
    selected_ = false;
    Changed();
  }
  const OptionGroup& Group() const { return group_; }

  Event OnClick;

 private:
  OptionGroup& group_;
  bool selected_ = false;
};

}  // namespace vexa
