// Commands that do what a user does to the open form, and show what the user sees.
#include <array>

#include "display/CheckBox.h"
#include "display/Grid.h"
#include "display/OptionButton.h"
#include "display/Slider.h"
#include "display/TextBox.h"
#include "display/Tree.h"
#include "workbench/Console.h"
#include "workbench/FormState.h"
#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

using Words = std::vector<std::string>;

UserActions User(Console& console) { return UserActions(console.TopForm()); }

std::string FocusName(const Form& form) {
  return form.Focus() == nullptr ? form.Name() : form.Focus()->Name();
}

/// Says why the user could not do it; says nothing when it was done.
void Report(Console& console, const std::string& name, Outcome outcome) {
  if (outcome == Outcome::Done) return;
  console.Out() << "refused: ";
  if (outcome == Outcome::FocusKept) {
    const std::string keeper = FocusName(console.TopForm());
    if (keeper != name) console.Out() << name << " is out of reach: ";
    console.Out() << keeper << " keeps the focus\n";
  } else {
    console.Out() << name << " " << ReasonFor(outcome) << "\n";
  }
}

template <typename Kind>
Kind& FindControl(Console& console, const std::string& name, const char* rightKind) {
  Control& control = console.FindControl(name);
  auto* wanted = dynamic_cast<Kind*>(&control);
  if (wanted == nullptr) {
    throw ScriptError(control.Name() + " is a " + std::string(KindName(control.Kind())) +
                      "; right would be a " + rightKind);
  }
  return *wanted;
}

Tree::Node FindNode(const Tree& tree, const std::string& path) {
  Tree::Node here = Tree::NoNode;
  for (const std::string_view part : SplitPath(path)) {
    Tree::Node next = Tree::NoNode;
    for (const Tree::Node child : tree.Children(here)) {
      if (next == Tree::NoNode && EncodedName(tree.Text(child)) == part) next = child;
    }
    if (next == Tree::NoNode) {
      throw ScriptError(tree.Name() + " has no node \"" + std::string(part) + "\" in the path \"" + path +
                        "\"; nodes below one that was never expanded are not there yet");
    }
    here = next;
  }
  if (here == Tree::NoNode) throw ScriptError("a node's path must not be empty");
  return here;
}

/// Acts on a control of the top form by its name.
void Act(Console& console, const std::string& name,
         const std::function<Outcome(UserActions&, Control&)>& act) {
  Control& control = console.FindControl(name);
  const std::string controlName = control.Name();  // the form may be gone when the action ends
  UserActions user = User(console);
  const Outcome outcome = act(user, control);
  Report(console, controlName, outcome);
}

void Show(Console& console, const Words& words) {
  if (words.empty()) {
    Print(console.Out(), StateOf(console.TopForm()));
    return;
  }
  for (Form* form : console.OpenForms()) {
    if (SameName(form->Name(), words[0])) {
      Print(console.Out(), StateOf(*form));
      return;
    }
  }
  Print(console.Out(), StateOf(console.TopForm(), console.FindControl(words[0])));
}

void Forms(Console& console, const Words&) {
  for (const Form* form : console.OpenForms()) {
    console.Out() << form->Name() << (form->Caption().empty() ? "" : " " + QuotedText(form->Caption()))
                  << "\n";
  }
}

void Click(Console& console, const Words& words) {
  Act(console, words[0], [](UserActions& user, Control& control) { return user.Click(control); });
}

void DoubleClick(Console& console, const Words& words) {
  Act(console, words[0], [](UserActions& user, Control& control) { return user.DoubleClick(control); });
}

/// Checks or unchecks a box, or a node of a tree.
void SetChecked(Console& console, const Words& words, bool checked) {
  if (words.size() == 1) {
    auto& box = FindControl<CheckBox>(console, words[0], "check box (a tree needs a node's path, too)");
    Report(console, box.Name(), User(console).SetChecked(box, checked));
  } else {
    auto& tree = FindControl<Tree>(console, words[0], "tree");
    Report(console, tree.Name(), User(console).CheckNode(tree, FindNode(tree, words[1]), checked));
  }
}
void Check(Console& console, const Words& words) { SetChecked(console, words, true); }
void Uncheck(Console& console, const Words& words) { SetChecked(console, words, false); }

void Choose(Console& console, const Words& words) {
  auto& option = FindControl<OptionButton>(console, words[0], "option");
  Report(console, option.Name(), User(console).Choose(option));
}

void Type(Console& console, const Words& words) {
  auto& box = FindControl<TextBox>(console, words[0], "text box");
  Report(console, box.Name(), User(console).Type(box, words[1]));
}

void Slide(Console& console, const Words& words) {
  auto& slider = FindControl<Slider>(console, words[0], "slider");
  const int32_t position = NumberWord(words[1], "the position");
  if (position < slider.Minimum() || position > slider.Maximum()) {
    throw ScriptError(slider.Name() + " goes from " + std::to_string(slider.Minimum()) + " to " +
                      std::to_string(slider.Maximum()));
  }
  Report(console, slider.Name(), User(console).Slide(slider, position));
}

void Cell(Console& console, const Words& words) {
  auto& grid = FindControl<Grid>(console, words[0], "grid");
  const int32_t row = NumberWord(words[1], "the row");
  const int32_t column = NumberWord(words[2], "the column");
  if (row < 1 || row > grid.RowCount() || column < 0 || column >= grid.ColumnCount()) {
    throw ScriptError(grid.Name() + " has rows 1 to " + std::to_string(grid.RowCount()) +
                      " and columns 0 to " + std::to_string(grid.ColumnCount() - 1));
  }
  Report(console, grid.Name(), User(console).SelectCell(grid, row, column));
}

void Select(Console& console, const Words& words) {
  auto& tree = FindControl<Tree>(console, words[0], "tree");
  Report(console, tree.Name(), User(console).ClickNode(tree, FindNode(tree, words[1])));
}

void SetExpanded(Console& console, const Words& words, bool expanded) {
  auto& tree = FindControl<Tree>(console, words[0], "tree");
  Report(console, tree.Name(), User(console).Expand(tree, FindNode(tree, words[1]), expanded));
}
void Expand(Console& console, const Words& words) { SetExpanded(console, words, true); }
void Collapse(Console& console, const Words& words) { SetExpanded(console, words, false); }

void Focus(Console& console, const Words& words) {
  Act(console, words[0], [](UserActions& user, Control& control) { return user.Focus(control); });
}

void Leave(Console& console, const Words& words) {
  const std::string focused = FocusName(console.TopForm());
  if (!words.empty() && !SameName(words[0], focused)) {
    throw ScriptError(console.FindControl(words[0]).Name() + " does not have the focus; " + focused +
                      " has it");
  }
  Report(console, focused, User(console).Leave());
}

void Enter(Console& console, const Words&) {
  const Button* const button = console.TopForm().EffectiveDefaultButton();
  const std::string name = button == nullptr ? console.TopForm().Name() : button->Name();
  Report(console, name, User(console).Enter());
}

void Esc(Console& console, const Words&) {
  const Button* const button = console.TopForm().CancelButton();
  const std::string name = button == nullptr ? console.TopForm().Name() : button->Name();
  Report(console, name, User(console).Escape());
}

void PressKey(Console& console, const Words& words) {
  const int32_t code = NumberWord(words[0], "the key code");
  if (code < 1 || code > 254) throw ScriptError("key codes go from 1 to 254");
  if (words.size() > 1 && !SameName(words[1], "shift")) {
    throw ScriptError("a key is pressed alone or with shift, not with \"" + words[1] + "\"");
  }
  const std::string name = FocusName(console.TopForm());
  Report(console, name, User(console).Press(code, words.size() > 1));
}

void Close(Console& console, const Words&) {
  auto* dialog = dynamic_cast<Dialog*>(&console.TopForm());
  if (dialog == nullptr) throw ScriptError("no dialog is open; \"hide\" and \"release\" end the page");
  dialog->CloseWindow();
}

constexpr auto Commands = std::to_array<Command>({
    {"show", "[FORM|CONTROL]", "print the open form, another form, or one control", 0, 1, Show},
    {"forms", "", "list the open forms", 0, 0, Forms},
    {"click", "CONTROL", "click a control", 1, 1, Click},
    {"doubleclick", "CONTROL", "double-click a control", 1, 1, DoubleClick},
    {"check", "CONTROL [NODE]", "tick a check box or a tree's node", 1, 2, Check},
    {"uncheck", "CONTROL [NODE]", "clear a check box or a tree's node", 1, 2, Uncheck},
    {"choose", "OPTION", "choose an option", 1, 1, Choose},
    {"type", "BOX TEXT", "replace what stands in a text box", 2, 2, Type},
    {"slide", "SLIDER POSITION", "set a slider", 2, 2, Slide},
    {"cell", "GRID ROW COLUMN", "go to a cell; rows from 1, columns from 0", 3, 3, Cell},
    {"select", "TREE NODE", "click a node, by its path", 2, 2, Select},
    {"expand", "TREE NODE", "expand a node", 2, 2, Expand},
    {"collapse", "TREE NODE", "collapse a node", 2, 2, Collapse},
    {"focus", "CONTROL", "give a control the focus", 1, 1, Focus},
    {"leave", "[CONTROL]", "Tab out of the control that has the focus", 0, 1, Leave},
    {"enter", "", "press Enter", 0, 0, Enter},
    {"esc", "", "press Esc", 0, 0, Esc},
    {"key", "CODE [shift]", "press a key by its virtual-key code, such as 116 for F5", 1, 2, PressKey},
    {"close", "", "close the open dialog by its window", 0, 0, Close},
});

}  // namespace

std::span<const Command> UserCommands() { return Commands; }

}  // namespace vexa::workbench
