// A slider over a range of whole numbers. OnChange is raised whenever the position really changes, by the
// user or by code.
#pragma once

#include <algorithm>
#include <cstdint>

#include "display/Control.h"

namespace vexa {

class Slider final : public Control {
 public:
  Slider(Form& form, std::string name, int32_t minimum, int32_t maximum)
      : Control(form, std::move(name), ControlKind::Slider),
        minimum_(minimum),
        maximum_(maximum),
        position_(minimum) {}

  int32_t Minimum() const { return minimum_; }
  int32_t Maximum() const { return maximum_; }
  int32_t Position() const { return position_; }
  /// A position outside the range becomes the nearest one inside.
  void SetPosition(int32_t position) {
    position = std::clamp(position, minimum_, maximum_);
    if (position_ == position) return;
    position_ = position;
    Changed();
    Raise(OnChange);
  }

  Event OnChange;

 private:
  int32_t minimum_;
  int32_t maximum_;
  int32_t position_;
};

}  // namespace vexa
