// A push button. OnClick is raised when the user presses it; setting anything by code raises nothing.
#pragma once

#include "display/Control.h"

namespace vexa {

class Button final : public Control {
 public:
  Button(Form& form, std::string name, StringId caption = StringId::None, int32_t pictureId = 0)
      : Control(form, std::move(name), ControlKind::Button, caption, pictureId) {}

  Event OnClick;
};

}  // namespace vexa
