// What a user can do to a form with mouse and keyboard, as verbs. Every verb first asks whether a user
// could do it: an action on a disabled or hidden control is refused, and a text box with an invalid entry
// keeps the focus, so that a click elsewhere never arrives. While an action runs, the form refuses a second
// one: an outside call may let the user click again before it returns. Cancel, Esc and closing always work.
// Scripts and views both come in through here.
#pragma once

#include <cstdint>
#include <string>

#include "display/Form.h"
#include "display/Tree.h"

namespace vexa {

class CheckBox;
class ExtLabel;
class Grid;
class OptionButton;
class Slider;
class TextBox;

enum class Outcome {
  Done,
  Disabled,  // the control, or the frame around it
  Hidden,
  ReadOnly,   // a text box that only code fills
  FocusKept,  // another control keeps the focus, so nothing arrived
  Busy,       // the form still carries out another action
  NotTaken,   // nothing here takes this key
};

/// The virtual-key codes that forms know; Windows' numbers.
enum Key : int {
  KeyTab = 9,
  KeyReturn = 13,
  KeyEscape = 27,
  KeySpace = 32,
  KeyEnd = 35,
  KeyHome = 36,
  KeyLeft = 37,
  KeyUp = 38,
  KeyRight = 39,
  KeyDown = 40,
  KeyMultiply = 106,
  KeyAdd = 107,
  KeySubtract = 109,
  KeyF5 = 116,
};

class UserActions {
 public:
  explicit UserActions(Form& form) : form_(form) {}

  /// A click into the control: presses a button, toggles a check box, selects an option, focuses the rest.
  Outcome Click(Control& control);
  Outcome DoubleClick(Control& control);
  Outcome SetChecked(CheckBox& box, bool checked);
  Outcome Choose(OptionButton& option);
  /// Replaces what stands in the box.
  Outcome Type(TextBox& box, const std::string& text);
  Outcome Slide(Slider& slider, int32_t position);
  Outcome SelectCell(Grid& grid, int32_t row, int32_t column);

  Outcome ClickNode(Tree& tree, Tree::Node node);
  Outcome CheckNode(Tree& tree, Tree::Node node, bool checked);
  /// Nothing happens to a node without others below it. Collapsing a branch clicks its top when the selected
  /// node is in it, which is not to be seen then.
  Outcome Expand(Tree& tree, Tree::Node node, bool expanded);
  /// Expands the node and everything below it, also what comes there by expanding.
  Outcome ExpandAll(Tree& tree, Tree::Node node);

  /// A click on a word of a formatted label, and on one of its hot spots.
  Outcome ClickWord(ExtLabel& label, size_t word, int button, int shift);
  Outcome ClickHotSpot(ExtLabel& label, int32_t hotSpot);

  Outcome Focus(Control& control);
  /// Tab out of the control that has the focus, or back.
  Outcome Leave(bool backwards = false);
  /// Any key by its virtual-key code.
  Outcome Press(int keyCode, bool shift = false);
  Outcome Enter();
  Outcome Escape();

 private:
  Outcome Usability(const Control& control) const;
  Outcome Reach(Control& control);
  /// Reaches the control and runs `act`, which may call the outside, unless the form is busy.
  template <typename Act>
  Outcome Carry(Control& control, Act&& act);
  Outcome PressButton(Button& button);
  Outcome PressArrow(Control& control, int keyCode);
  Outcome PressInTree(Tree& tree, int keyCode);

  Form& form_;
};

/// Why an action was not carried out, as the end of a sentence that begins with a control's name.
std::string ReasonFor(Outcome outcome);

}  // namespace vexa
