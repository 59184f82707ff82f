#include "display/Control.h"

#include <utility>

#include "display/Form.h"
#include "display/Frame.h"

namespace vexa {

Control::Control(Form& form, std::string name, ControlKind kind, StringId captionId, int32_t pictureId)
    : form_(form), name_(std::move(name)), kind_(kind), captionId_(captionId), pictureId_(pictureId) {
  form_.Add(*this);
}

void Control::SetEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  Changed();
  FocusabilityChanged();
}

void Control::SetVisible(bool visible) {
  if (visible_ == visible) return;
  visible_ = visible;
  Changed();
  FocusabilityChanged();
}

void Control::SetCaption(std::string caption) {
  caption_ = std::move(caption);
  Changed();
}

void Control::SetPicture(const vexa::Picture& picture) {
  picture_ = picture;
  Changed();
}

bool Control::IsShown() const { return visible_ && (frame_ == nullptr || frame_->IsShown()); }

bool Control::IsUsable() const { return enabled_ && visible_ && (frame_ == nullptr || frame_->IsUsable()); }

bool Control::TakesFocus() const {
  return kind_ != ControlKind::Label && kind_ != ControlKind::Frame && kind_ != ControlKind::Section;
}

void Control::Refresh() {
  if (FormView* view = form_.View()) view->Refresh(*this);
}

void Control::FocusabilityChanged() { form_.MoveFocusOffUnusable(); }

void Control::Changed() {
  if (FormView* view = form_.View()) view->Changed(*this);
}

}  // namespace vexa
