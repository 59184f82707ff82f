#include "workbench/FormState.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

#include "display/CheckBox.h"
#include "display/Grid.h"
#include "display/OptionButton.h"
#include "display/Slider.h"
#include "display/TextBox.h"
#include "display/Tree.h"
#include "workbench/CallLog.h"

namespace vexa::workbench {
namespace {

void ReadGrid(const Grid& grid, ControlState& state) {
  state.rows.push_back(grid.Headers());
  for (int32_t row = 1; row <= grid.RowCount(); ++row) {
    std::vector<std::string>& texts = state.rows.emplace_back();
    for (int32_t column = 0; column < grid.ColumnCount(); ++column) {
      texts.emplace_back(grid.TextAt(row, column));
    }
  }
  state.currentRow = grid.CurrentRow();
  state.currentColumn = grid.CurrentColumn();
}

void ReadTree(const Tree& tree, ControlState& state) {
  std::vector<int> depths;  // by node: one way through the tree knows its parents before it needs them
  for (Tree::Node node = tree.FirstChild(Tree::NoNode); node != Tree::NoNode;
       node = tree.NextSeenBelow(Tree::NoNode, node)) {
    if (depths.size() <= node) depths.resize(node + 1);
    const Tree::Node parent = tree.Parent(node);
    depths[node] = parent == Tree::NoNode ? 0 : depths[parent] + 1;
    state.nodes.push_back({depths[node], std::string(tree.Text(node)), tree.Image(node), tree.Checked(node),
                           tree.Selected() == node, tree.Expanded(node), !tree.Children(node).empty()});
  }
}

void PrintGrid(std::ostream& out, const ControlState& grid) {
  for (size_t row = 0; row < grid.rows.size(); ++row) {
    const bool current = static_cast<int32_t>(row) == grid.currentRow;
    out << (row == 0 ? "    head" : current ? "  >" : "   ");
    if (row != 0) out << std::setw(5) << row;
    for (size_t column = 0; column < grid.rows[row].size(); ++column) {
      const bool here = current && static_cast<int32_t>(column) == grid.currentColumn;
      out << " | " << (here ? "*" : "") << OneLine(grid.rows[row][column]);
    }
    out << "\n";
  }
}

void PrintTree(std::ostream& out, const ControlState& tree) {
  for (const NodeState& node : tree.nodes) {
    out << (node.selected ? "   >" : "    ") << std::string(static_cast<size_t>(node.depth) * 2, ' ')
        << (!node.hasChildren ? "  "
            : node.expanded   ? "- "
                              : "+ ")
        << (node.checked ? "[x] " : "[ ] ") << OneLine(node.text);
    if (!node.image.empty()) out << "  {" << node.image << "}";
    out << "\n";
  }
}

void PrintHead(std::ostream& out, const FormState& form) {
  out << form.name;
  if (!form.caption.empty()) out << " " << QuotedText(form.caption);
  out << "\n";
}

std::vector<std::string> Lines(const ControlState& control) {
  std::stringstream text;
  Print(text, control);
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

const ControlState* FindIn(const FormState& form, const ControlState& control) {
  const auto found = std::ranges::find(form.controls, control.name, &ControlState::name);
  return found == form.controls.end() ? nullptr : &*found;
}

/// The control's own line, and what differs of its rows or nodes: what lies before the first and behind the
/// last difference stands as it stood, be there more of it now or less.
void PrintChanges(std::ostream& out, const ControlState& control, const ControlState& before) {
  const std::vector<std::string> now = Lines(control), then = Lines(before);
  out << now.front() << "\n";
  const auto first = std::mismatch(now.begin() + 1, now.end(), then.begin() + 1, then.end());
  const auto last = std::mismatch(now.rbegin(), std::make_reverse_iterator(first.first), then.rbegin(),
                                  std::make_reverse_iterator(first.second));
  const auto end = last.first.base();
  const bool asMany = now.size() == then.size();
  for (auto line = first.first; line != end; ++line) {
    if (!asMany || *line != then[static_cast<size_t>(line - now.begin())]) out << *line << "\n";
  }
}

}  // namespace

ControlState StateOf(const Form& form, const Control& control) {
  ControlState state;
  state.name = control.Name();
  state.kind = control.Kind();
  state.text = control.Caption();
  state.visible = control.IsShown();
  state.enabled = control.IsUsable() || (!control.IsShown() && control.Enabled());
  state.focused = form.Focus() == &control;
  state.isDefault = form.DefaultButton() == &control;
  state.pictureId = control.Picture().id;
  switch (control.Kind()) {
    case ControlKind::CheckBox:
      state.checked = static_cast<const CheckBox&>(control).Checked();
      break;
    case ControlKind::OptionButton:
      state.checked = static_cast<const OptionButton&>(control).Selected();
      break;
    case ControlKind::TextBox: {
      const auto& box = static_cast<const TextBox&>(control);
      state.text = box.Text();
      state.readOnly = box.Locked();
      break;
    }
    case ControlKind::Slider: {
      const auto& slider = static_cast<const Slider&>(control);
      state.position = slider.Position();
      state.minimum = slider.Minimum();
      state.maximum = slider.Maximum();
      break;
    }
    case ControlKind::Grid:
      ReadGrid(static_cast<const Grid&>(control), state);
      break;
    case ControlKind::Tree:
      ReadTree(static_cast<const Tree&>(control), state);
      break;
    default:
      break;
  }
  return state;
}

FormState StateOf(const Form& form) {
  FormState state;
  state.name = form.Name();
  state.caption = form.Caption();
  for (const Control* control : form.Controls()) state.controls.push_back(StateOf(form, *control));
  return state;
}

std::string_view KindName(ControlKind kind) {
  switch (kind) {
    case ControlKind::Label:
      return "label";
    case ControlKind::Button:
      return "button";
    case ControlKind::CheckBox:
      return "check box";
    case ControlKind::OptionButton:
      return "option";
    case ControlKind::TextBox:
      return "text box";
    case ControlKind::Slider:
      return "slider";
    case ControlKind::Grid:
      return "grid";
    case ControlKind::Tree:
      return "tree";
    case ControlKind::Frame:
      return "frame";
    case ControlKind::Section:
      return "section";
    case ControlKind::ExtLabel:
      return "rich text";
  }
  return {};
}

void Print(std::ostream& out, const ControlState& control) {
  out << "  " << std::left << std::setw(18) << control.name << " " << std::setw(10) << KindName(control.kind)
      << std::right;
  switch (control.kind) {
    case ControlKind::CheckBox:
      out << (control.checked ? "[x] " : "[ ] ");
      break;
    case ControlKind::OptionButton:
      out << (control.checked ? "(o) " : "( ) ");
      break;
    default:
      break;
  }
  switch (control.kind) {
    case ControlKind::Slider:
      out << control.position << " of " << control.minimum << " to " << control.maximum;
      break;
    case ControlKind::Grid: {
      const size_t rows = control.rows.size() - 1;
      out << rows << (rows == 1 ? " row" : " rows");
      break;
    }
    case ControlKind::Tree:
      out << control.nodes.size() << (control.nodes.size() == 1 ? " node" : " nodes");
      break;
    default:
      out << QuotedText(control.text);
  }
  if (control.pictureId != 0) out << " picture " << control.pictureId;
  if (control.readOnly) out << " read-only";
  if (!control.visible) out << " hidden";
  if (!control.enabled) out << " disabled";
  if (control.isDefault) out << " default";
  if (control.focused) out << " focus";
  out << "\n";
  if (control.kind == ControlKind::Grid) PrintGrid(out, control);
  if (control.kind == ControlKind::Tree) PrintTree(out, control);
}

void Print(std::ostream& out, const FormState& form) {
  PrintHead(out, form);
  for (const ControlState& control : form.controls) Print(out, control);
}

FormState ChangesOf(const FormState& form, const FormState& before) {
  FormState changes{form.name, form.caption, {}};
  for (const ControlState& control : form.controls) {
    const ControlState* const then = FindIn(before, control);
    if (then != nullptr && Lines(control) != Lines(*then)) changes.controls.push_back(control);
  }
  return changes;
}

void PrintChanges(std::ostream& out, const FormState& form, const FormState& before) {
  const FormState changes = ChangesOf(form, before);
  if (form.caption != before.caption) {
    PrintHead(out, form);
  } else if (changes.controls.empty()) {
    out << "  (nothing changed)\n";
  }
  for (const ControlState& control : changes.controls) PrintChanges(out, control, *FindIn(before, control));
}

}  // namespace vexa::workbench
