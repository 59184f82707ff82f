// A captioned frame around controls that belong together; see Control::SetFrame.
#pragma once

#include "display/Control.h"

namespace vexa {

class Frame final : public Control {
 public:
  Frame(Form& form, std::string name, StringId caption = StringId::None)
      : Control(form, std::move(name), ControlKind::Frame, caption) {}
};

}  // namespace vexa
