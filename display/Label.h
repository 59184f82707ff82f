// A line or paragraph of text.
#pragma once

#include "display/Control.h"

namespace vexa {

class Label final : public Control {
 public:
  Label(Form& form, std::string name, StringId caption = StringId::None)
      : Control(form, std::move(name), ControlKind::Label, caption) {}
};

}  // namespace vexa
