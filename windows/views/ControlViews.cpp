#include "windows/views/ControlViews.h"

#include "core/Error.h"

namespace vexa::windows {

ControlViewPtr MakeView(ViewHost& host, Control& control) {
  switch (control.Kind()) {
    case ControlKind::Label:
      return MakeLabelView(host, static_cast<Label&>(control));
    case ControlKind::Button:
      return MakeButtonView(host, static_cast<Button&>(control));
    case ControlKind::CheckBox:
      return MakeCheckBoxView(host, static_cast<CheckBox&>(control));
    case ControlKind::OptionButton:
      return MakeOptionButtonView(host, static_cast<OptionButton&>(control));
    case ControlKind::TextBox:
      return MakeTextBoxView(host, static_cast<TextBox&>(control));
    case ControlKind::Slider:
      return MakeSliderView(host, static_cast<Slider&>(control));
    case ControlKind::Grid:
      return MakeGridView(host, static_cast<Grid&>(control));
    case ControlKind::Tree:
      return MakeTreeView(host, static_cast<Tree&>(control));
    case ControlKind::Frame:
      return MakeFrameView(host, static_cast<Frame&>(control));
    case ControlKind::Section:
      return MakeSectionView(host, static_cast<OptionsSection&>(control));
    case ControlKind::ExtLabel:
      return MakeExtLabelView(host, static_cast<ExtLabel&>(control));
  }
  throw MakeError(ErrorNumber::InternalError);
}

}  // namespace vexa::windows
