// Makes the window of a control of any kind. Each kind has its own small source; nothing outside it knows
// more than ControlView.
#pragma once

#include <memory>

#include "display/Button.h"
#include "display/CheckBox.h"
#include "display/ExtLabel.h"
#include "display/Frame.h"
#include "display/Grid.h"
#include "display/Label.h"
#include "display/OptionButton.h"
#include "display/OptionsSection.h"
#include "display/Slider.h"
#include "display/TextBox.h"
#include "display/Tree.h"
#include "windows/views/ControlView.h"

namespace vexa::windows {

using ControlViewPtr = std::unique_ptr<ControlView>;

ControlViewPtr MakeButtonView(ViewHost& host, Button& button);
ControlViewPtr MakeCheckBoxView(ViewHost& host, CheckBox& box);
ControlViewPtr MakeOptionButtonView(ViewHost& host, OptionButton& option);
ControlViewPtr MakeTextBoxView(ViewHost& host, TextBox& box);
ControlViewPtr MakeLabelView(ViewHost& host, Label& label);
ControlViewPtr MakeExtLabelView(ViewHost& host, ExtLabel& label);
ControlViewPtr MakeFrameView(ViewHost& host, Frame& frame);
ControlViewPtr MakeSectionView(ViewHost& host, OptionsSection& section);
ControlViewPtr MakeSliderView(ViewHost& host, Slider& slider);
ControlViewPtr MakeGridView(ViewHost& host, Grid& grid);
ControlViewPtr MakeTreeView(ViewHost& host, Tree& tree);

/// The view of a control of whatever kind.
ControlViewPtr MakeView(ViewHost& host, Control& control);

}  // namespace vexa::windows
