#include "display/UserActions.h"

#include <algorithm>

#include "display/CheckBox.h"
#include "display/ExtLabel.h"
#include "display/Grid.h"
#include "display/OptionButton.h"
#include "display/Slider.h"
#include "display/TextBox.h"

namespace vexa {

Outcome UserActions::Usability(const Control& control) const {
  if (!form_.Enabled()) return Outcome::Disabled;
  if (!control.IsShown()) return Outcome::Hidden;
  return control.IsUsable() ? Outcome::Done : Outcome::Disabled;
}

Outcome UserActions::Reach(Control& control) {
  const Outcome outcome = Usability(control);
  if (outcome != Outcome::Done || !control.TakesFocus()) return outcome;
  return form_.MoveFocus(control) ? Outcome::Done : Outcome::FocusKept;
}

template <typename Act>
Outcome UserActions::Carry(Control& control, Act&& act) {
  if (form_.IsActing()) return Outcome::Busy;
  const Outcome outcome = Reach(control);
  if (outcome != Outcome::Done) return outcome;
  const Form::Action action(form_);
  act();
  return outcome;
}

Outcome UserActions::Click(Control& control) {
  switch (control.Kind()) {
    case ControlKind::Button: {
      auto& button = static_cast<Button&>(control);
      // Cancel never validates, so it takes no focus before it acts.
      if (&button == form_.CancelButton()) return PressButton(button);
      return Carry(button, [&] { Raise(button.OnClick); });
    }
    case ControlKind::CheckBox: {
      auto& box = static_cast<CheckBox&>(control);
      return SetChecked(box, !box.Checked());
    }
    case ControlKind::OptionButton:
      return Choose(static_cast<OptionButton&>(control));
    default:
      return Reach(control);
  }
}

Outcome UserActions::DoubleClick(Control& control) {
  return Carry(control, [&] {
    if (control.Kind() == ControlKind::Grid) Raise(static_cast<Grid&>(control).OnDoubleClick);
  });
}

Outcome UserActions::SetChecked(CheckBox& box, bool checked) {
  return Carry(box, [&] { box.SetChecked(checked); });
}

Outcome UserActions::Choose(OptionButton& option) {
  const Outcome outcome = Reach(option);
  if (outcome == Outcome::Done) option.Select();
  return outcome;
}

Outcome UserActions::Type(TextBox& box, const std::string& text) {
  if (const Outcome outcome = Reach(box); outcome != Outcome::Done) return outcome;
  if (box.Locked()) return Outcome::ReadOnly;
  box.SetText(text);
  return Outcome::Done;
}

Outcome UserActions::Slide(Slider& slider, int32_t position) {
  const Outcome outcome = Reach(slider);
  if (outcome == Outcome::Done) slider.SetPosition(position);
  return outcome;
}

Outcome UserActions::SelectCell(Grid& grid, int32_t row, int32_t column) {
  const Outcome outcome = Reach(grid);
  if (outcome == Outcome::Done) grid.SetCurrent(row, column);
  return outcome;
}

Outcome UserActions::ClickNode(Tree& tree, Tree::Node node) {
  return Carry(tree, [&] {
    tree.Select(node);
    if (tree.OnNodeClick) tree.OnNodeClick(node);
  });
}

Outcome UserActions::CheckNode(Tree& tree, Tree::Node node, bool checked) {
  return Carry(tree, [&] {
    if (tree.Checked(node) == checked) return;
    tree.SetChecked(node, checked);
    if (tree.OnNodeCheck) tree.OnNodeCheck(node);
  });
}

Outcome UserActions::Expand(Tree& tree, Tree::Node node, bool expanded) {
  if (form_.IsActing()) return Outcome::Busy;
  const Outcome outcome = Reach(tree);
  if (outcome != Outcome::Done || tree.Expanded(node) == expanded || tree.Children(node).empty()) {
    return outcome;
  }
  if (!expanded) {
    tree.SetExpanded(node, false);
    // A closed branch does not hide the selection: it goes up to the branch, as by a click.
    const Tree::Node selected = tree.Selected();
    return selected != Tree::NoNode && tree.IsBelow(selected, node) ? ClickNode(tree, node) : outcome;
  }
  return Carry(tree, [&] {
    if (tree.OnExpand) tree.OnExpand(node);
    if (!tree.Children(node).empty()) tree.SetExpanded(node, true);
  });
}

Outcome UserActions::ExpandAll(Tree& tree, Tree::Node node) {
  const Outcome outcome = Reach(tree);
  if (outcome != Outcome::Done) return outcome;
  for (Tree::Node at = node; at != Tree::NoNode; at = tree.NextBelow(node, at)) Expand(tree, at, true);
  return outcome;
}

Outcome UserActions::ClickWord(ExtLabel& label, size_t word, int button, int shift) {
  return Carry(label, [&] { label.ClickWord(word, button, shift); });
}

Outcome UserActions::ClickHotSpot(ExtLabel& label, int32_t hotSpot) {
  return ClickWord(label, label.Text().FirstWordOf(hotSpot), ButtonLeft, ShiftNone);
}

Outcome UserActions::Focus(Control& control) {
  return control.TakesFocus() ? Reach(control) : Outcome::NotTaken;
}

Outcome UserActions::Leave(bool backwards) {
  Control* const next = form_.NextInTabOrder(form_.Focus(), backwards);
  if (next == nullptr) return Outcome::NotTaken;
  if (next != form_.Focus()) return form_.MoveFocus(*next) ? Outcome::Done : Outcome::FocusKept;
  // The only control that can have the focus: leaving it comes back to it, validated.
  auto* box = dynamic_cast<TextBox*>(next);
  return box == nullptr || box->Validate() ? Outcome::Done : Outcome::FocusKept;
}

Outcome UserActions::Press(int keyCode, bool shift) {
  if (!form_.Enabled()) return Outcome::Disabled;
  Control* const focus = form_.Focus();
  switch (keyCode) {
    case KeyTab:
      return Leave(shift);
    case KeyReturn:
      return Enter();
    case KeyEscape:
      return Escape();
    case KeyMultiply:
    case KeyAdd:
    case KeySubtract:
      if (focus != nullptr && focus->Kind() == ControlKind::Tree) {
        return PressInTree(static_cast<Tree&>(*focus), keyCode);
      }
      break;
    case KeySpace:
      if (focus != nullptr &&
          (focus->Kind() == ControlKind::Button || focus->Kind() == ControlKind::CheckBox ||
           focus->Kind() == ControlKind::OptionButton)) {
        return Click(*focus);
      }
      if (focus != nullptr && focus->Kind() == ControlKind::ExtLabel) {
        auto& label = static_cast<ExtLabel&>(*focus);
        return ClickHotSpot(label, label.CurrentHotSpot());
      }
      if (focus != nullptr && focus->Kind() == ControlKind::Tree) {
        return PressInTree(static_cast<Tree&>(*focus), keyCode);
      }
      break;
    case KeyHome:
    case KeyEnd:
      if (focus != nullptr && focus->Kind() == ControlKind::ExtLabel) {
        auto& label = static_cast<ExtLabel&>(*focus);
        label.SetCurrentHotSpot(keyCode == KeyHome ? 0 : label.Text().HotSpotCount() - 1);
        return Outcome::Done;
      }
      break;
    case KeyLeft:
    case KeyUp:
    case KeyRight:
    case KeyDown:
      if (focus != nullptr) return PressArrow(*focus, keyCode);
      break;
    default:
      break;
  }
  form_.KeyDown(keyCode);
  return Outcome::Done;
}

Outcome UserActions::PressArrow(Control& control, int keyCode) {
  const bool forward = keyCode == KeyRight || keyCode == KeyDown;
  const int32_t step = forward ? 1 : -1;
  switch (control.Kind()) {
    case ControlKind::Slider: {
      auto& slider = static_cast<Slider&>(control);
      slider.SetPosition(slider.Position() + step);
      return Outcome::Done;
    }
    case ControlKind::Grid: {
      auto& grid = static_cast<Grid&>(control);
      const bool sideways = keyCode == KeyLeft || keyCode == KeyRight;
      const int32_t row = grid.CurrentRow() + (sideways ? 0 : step);
      const int32_t column = grid.CurrentColumn() + (sideways ? step : 0);
      grid.SetCurrent(std::clamp(row, 1, grid.RowCount()), std::clamp(column, 0, grid.ColumnCount() - 1));
      return Outcome::Done;
    }
    case ControlKind::ExtLabel: {
      auto& label = static_cast<ExtLabel&>(control);
      label.SetCurrentHotSpot(label.CurrentHotSpot() + step);
      return Outcome::Done;
    }
    case ControlKind::OptionButton: {
      const OptionGroup& group = static_cast<OptionButton&>(control).Group();
      const auto count = static_cast<std::ptrdiff_t>(group.size());
      std::ptrdiff_t at = std::ranges::find(group, &control) - group.begin();
      for (std::ptrdiff_t tried = 0; tried < count; ++tried) {
        at = (at + step + count) % count;
        OptionButton& next = *group[static_cast<size_t>(at)];
        if (next.IsUsable()) return Choose(next);
      }
      return Outcome::NotTaken;
    }
    case ControlKind::Tree:
      return PressInTree(static_cast<Tree&>(control), keyCode);
    default:
      return Outcome::NotTaken;
  }
}

Outcome UserActions::PressInTree(Tree& tree, int keyCode) {
  const Tree::Node node = tree.Selected();
  const auto click = [&](Tree::Node other) {
    return other == Tree::NoNode ? Outcome::Done : ClickNode(tree, other);
  };
  if (node == Tree::NoNode) return click(tree.FirstChild(Tree::NoNode));
  switch (keyCode) {
    case KeySpace:
      return CheckNode(tree, node, !tree.Checked(node));
    case KeyMultiply:
      return ExpandAll(tree, node);
    case KeyAdd:
      return Expand(tree, node, true);
    case KeySubtract:
      return Expand(tree, node, false);
    case KeyDown:
      return click(tree.NextSeenBelow(Tree::NoNode, node));
    case KeyUp:
      return click(tree.PreviousSeen(node));
    case KeyRight:
      return tree.Expanded(node) ? click(tree.FirstChild(node)) : Expand(tree, node, true);
    case KeyLeft:
      return tree.Expanded(node) ? Expand(tree, node, false) : click(tree.Parent(node));
    default:
      return Outcome::NotTaken;
  }
}

Outcome UserActions::Enter() {
  if (auto* label = dynamic_cast<ExtLabel*>(form_.Focus())) {
    return ClickHotSpot(*label, label->CurrentHotSpot());
  }
  Button* const button = form_.EffectiveDefaultButton();
  return button == nullptr ? Outcome::NotTaken : PressButton(*button);  // the focus stays where it is
}

Outcome UserActions::Escape() {
  Button* const button = form_.CancelButton();
  return button == nullptr ? Outcome::NotTaken : PressButton(*button);
}

Outcome UserActions::PressButton(Button& button) {
  if (form_.IsActing() && &button != form_.CancelButton()) return Outcome::Busy;
  const Outcome outcome = Usability(button);
  if (outcome != Outcome::Done) return outcome;
  const Form::Action action(form_);
  Raise(button.OnClick);
  return outcome;
}

std::string ReasonFor(Outcome outcome) {
  switch (outcome) {
    case Outcome::Done:
      return "is done";
    case Outcome::Disabled:
      return "is disabled";
    case Outcome::Hidden:
      return "is hidden";
    case Outcome::ReadOnly:
      return "is read-only";
    case Outcome::FocusKept:
      return "is out of reach";
    case Outcome::Busy:
      return "is busy";
    case Outcome::NotTaken:
      return "takes nothing of the kind";
  }
  return {};
}

}  // namespace vexa
