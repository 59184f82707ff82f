// Commands that do what a user does to the open form, and show what the user sees.
#include <array>

#include "display/FormattedText.h"
#include "workbench/Console.h"
#include "workbench/FormState.h"
#include "workbench/JsonOutput.h"
#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

using Words = std::vector<std::string>;

/// The control that has the focus, or the form when none has it.
std::string FocusName(const FormDriver& form) {
  const std::string focus = form.Focus();
  return focus.empty() ? form.Name() : focus;
}

/// Says why the user could not do it; says nothing when it was done.
void Report(Console& console, const std::string& name, Outcome outcome) {
  if (outcome == Outcome::Done) return;
  console.NoteTrouble("an action was refused");
  console.Out() << "refused: ";
  if (outcome == Outcome::FocusKept) {
    const std::string keeper = FocusName(*console.TopForm());
    if (keeper != name) console.Out() << name << " is out of reach: ";
    console.Out() << keeper << " keeps the focus\n";
  } else {
    console.Out() << name << " " << ReasonFor(outcome) << "\n";
  }
}

/// The name of a control of a kind on the top form.
std::string FindControl(Console& console, const std::string& name, ControlKind kind, const char* rightKind) {
  const FormDriver::ControlName control = console.FindControl(name);
  if (control.kind != kind) {
    throw ScriptError(control.name + " is a " + std::string(KindName(control.kind)) + "; right would be a " +
                      rightKind);
  }
  return control.name;
}

FormDriver::Node FindNode(const FormDriver& form, const std::string& tree, const std::string& path) {
  FormDriver::Node here = FormDriver::NoNode;
  for (const std::string_view part : SplitPath(path)) {
    here = form.FindNode(tree, here, part);
    if (here == FormDriver::NoNode) {
      std::string message = tree;
      message.append(" has no node \"").append(part).append("\" in the path \"").append(path);
      throw ScriptError(message + "\"; nodes below one that was never expanded are not there yet");
    }
  }
  if (here == FormDriver::NoNode) throw ScriptError("a node's path must not be empty");
  return here;
}

/// Keeps what is printed of a form, all or one control of it, for "show changes".
void KeepShown(Console& console, const FormState& form) {
  FormState& shown = console.shownForms[form.name];
  shown.caption = form.caption;
  for (const ControlState& control : form.controls) {
    std::erase_if(shown.controls, [&](const ControlState& old) { return old.name == control.name; });
    shown.controls.push_back(control);
  }
}

void ShowForm(Console& console, const FormState& form) {
  KeepShown(console, form);
  if (std::ostream* const json = console.Json()) {
    *json << JsonLine(form) << std::endl;
  } else {
    Print(console.Out(), form);
  }
}

void ShowChanges(Console& console, const FormState& form) {
  const auto shown = console.shownForms.find(form.name);
  if (shown == console.shownForms.end()) {
    ShowForm(console, form);
  } else if (console.Json() != nullptr) {
    ShowForm(console, ChangesOf(form, shown->second));
  } else {
    PrintChanges(console.Out(), form, shown->second);
    KeepShown(console, ChangesOf(form, shown->second));
  }
}

void Show(Console& console, const Words& words) {
  const std::unique_ptr<FormDriver> top = console.TopForm();
  if (words.empty()) {
    ShowForm(console, top->State());
    return;
  }
  if (SameName(words[0], "changes")) {
    ShowChanges(console, top->State());
    return;
  }
  for (const std::unique_ptr<FormDriver>& form : console.OpenForms()) {
    if (SameName(form->Name(), words[0])) {
      ShowForm(console, form->State());
      return;
    }
  }
  const FormState control{top->Name(), top->Caption(), {top->StateOf(console.FindControl(words[0]).name)}};
  if (console.Json() != nullptr) {
    ShowForm(console, control);
  } else {
    KeepShown(console, control);
    Print(console.Out(), control.controls.front());
  }
}

void Forms(Console& console, const Words&) {
  if (std::ostream* const json = console.Json()) {
    std::vector<FormState> forms;
    for (const std::unique_ptr<FormDriver>& form : console.OpenForms())
      forms.push_back({form->Name(), form->Caption(), {}});
    *json << JsonLine(forms) << std::endl;
    return;
  }
  for (const std::unique_ptr<FormDriver>& form : console.OpenForms()) {
    const std::string caption = form->Caption();
    console.Out() << form->Name() << (caption.empty() ? "" : " " + QuotedText(caption)) << "\n";
  }
}

void Click(Console& console, const Words& words) {
  const std::string control = console.FindControl(words[0]).name;
  Report(console, control, console.TopForm()->Click(control));
}

void DoubleClick(Console& console, const Words& words) {
  const std::string control = console.FindControl(words[0]).name;
  Report(console, control, console.TopForm()->DoubleClick(control));
}

/// Checks or unchecks a box, or a node of a tree.
void SetChecked(Console& console, const Words& words, bool checked) {
  const std::unique_ptr<FormDriver> form = console.TopForm();
  if (words.size() == 1) {
    const std::string box =
        FindControl(console, words[0], ControlKind::CheckBox, "check box (a tree needs a node's path, too)");
    Report(console, box, form->SetChecked(box, checked));
  } else {
    const std::string tree = FindControl(console, words[0], ControlKind::Tree, "tree");
    Report(console, tree, form->CheckNode(tree, FindNode(*form, tree, words[1]), checked));
  }
}
void Check(Console& console, const Words& words) { SetChecked(console, words, true); }
void Uncheck(Console& console, const Words& words) { SetChecked(console, words, false); }

void Choose(Console& console, const Words& words) {
  const std::string option = FindControl(console, words[0], ControlKind::OptionButton, "option");
  Report(console, option, console.TopForm()->Choose(option));
}

void Type(Console& console, const Words& words) {
  const std::string box = FindControl(console, words[0], ControlKind::TextBox, "text box");
  Report(console, box, console.TopForm()->Type(box, words[1]));
}

void Slide(Console& console, const Words& words) {
  const std::string slider = FindControl(console, words[0], ControlKind::Slider, "slider");
  const std::unique_ptr<FormDriver> form = console.TopForm();
  const int32_t position = NumberWord(words[1], "the position");
  const ControlState state = form->StateOf(slider);
  if (position < state.minimum || position > state.maximum) {
    throw ScriptError(slider + " goes from " + std::to_string(state.minimum) + " to " +
                      std::to_string(state.maximum));
  }
  Report(console, slider, form->Slide(slider, position));
}

void Cell(Console& console, const Words& words) {
  const std::string grid = FindControl(console, words[0], ControlKind::Grid, "grid");
  const std::unique_ptr<FormDriver> form = console.TopForm();
  const int32_t row = NumberWord(words[1], "the row");
  const int32_t column = NumberWord(words[2], "the column");
  const ControlState state = form->StateOf(grid);
  const auto rows = static_cast<int32_t>(state.rows.size()) - 1;  // the header is none
  const auto columns = static_cast<int32_t>(state.rows.front().size());
  if (row < 1 || row > rows || column < 0 || column >= columns) {
    throw ScriptError(grid + " has rows 1 to " + std::to_string(rows) + " and columns 0 to " +
                      std::to_string(columns - 1));
  }
  Report(console, grid, form->SelectCell(grid, row, column));
}

void Select(Console& console, const Words& words) {
  const std::string tree = FindControl(console, words[0], ControlKind::Tree, "tree");
  const std::unique_ptr<FormDriver> form = console.TopForm();
  Report(console, tree, form->ClickNode(tree, FindNode(*form, tree, words[1])));
}

void SetExpanded(Console& console, const Words& words, bool expanded) {
  const std::string tree = FindControl(console, words[0], ControlKind::Tree, "tree");
  const std::unique_ptr<FormDriver> form = console.TopForm();
  Report(console, tree, form->Expand(tree, FindNode(*form, tree, words[1]), expanded));
}
void Expand(Console& console, const Words& words) { SetExpanded(console, words, true); }
void Collapse(Console& console, const Words& words) { SetExpanded(console, words, false); }

void HotSpot(Console& console, const Words& words) {
  const std::string label = FindControl(console, words[0], ControlKind::ExtLabel, "rich text");
  const std::unique_ptr<FormDriver> form = console.TopForm();
  const int32_t number = words.size() > 1 ? NumberWord(words[1], "the hot spot") : 1;
  const int32_t count = FormattedText(form->StateOf(label).text).HotSpotCount();
  if (count == 0) throw ScriptError(label + " has no hot spot");
  if (number < 1 || number > count) throw ScriptError(label + " has hot spots 1 to " + std::to_string(count));
  Report(console, label, form->ClickHotSpot(label, number - 1));
}

void Focus(Console& console, const Words& words) {
  const std::string control = console.FindControl(words[0]).name;
  Report(console, control, console.TopForm()->Focus(control));
}

void Leave(Console& console, const Words& words) {
  const std::unique_ptr<FormDriver> form = console.TopForm();
  const std::string focused = FocusName(*form);
  if (!words.empty() && !SameName(words[0], focused)) {
    throw ScriptError(console.FindControl(words[0]).name + " does not have the focus; " + focused +
                      " has it");
  }
  Report(console, focused, form->Leave());
}

void Enter(Console& console, const Words&) {
  const std::unique_ptr<FormDriver> form = console.TopForm();
  const std::string button = form->EnterButton();
  const std::string name = button.empty() ? form->Name() : button;
  Report(console, name, form->Enter());
}

void Esc(Console& console, const Words&) {
  const std::unique_ptr<FormDriver> form = console.TopForm();
  const std::string button = form->EscapeButton();
  const std::string name = button.empty() ? form->Name() : button;
  Report(console, name, form->Escape());
}

void PressKey(Console& console, const Words& words) {
  const int32_t code = NumberWord(words[0], "the key code");
  if (code < 1 || code > 254) throw ScriptError("key codes go from 1 to 254");
  if (words.size() > 1 && !SameName(words[1], "shift")) {
    throw ScriptError("a key is pressed alone or with shift, not with \"" + words[1] + "\"");
  }
  // These press a button, wherever the focus is.
  if (code == KeyReturn) return Enter(console, {});
  if (code == KeyEscape) return Esc(console, {});
  const std::unique_ptr<FormDriver> form = console.TopForm();
  const std::string name = FocusName(*form);
  Report(console, name, form->Press(code, words.size() > 1));
}

void Press(Console& console, const Words& words) {
  std::vector<KeyStroke> keys;
  for (const std::string& word : words) keys.push_back(KeyStrokeWord(word));
  for (size_t i = 0; i < words.size(); ++i) {
    console.Host().PressKey(keys[i]);
    std::string focus = console.Host().KeyboardFocus();
    if (focus.empty()) focus = "no focus";
    if (console.LineIsOpen() && words[i] == words[i - 1]) {
      console.AddToLine(", " + focus);
    } else {
      console.OpenLine("  " + words[i] + ": " + focus);
    }
  }
  console.Out();  // ends the line
}

void Write(Console& console, const Words& words) { console.Host().TypeLetters(words[0]); }

void Close(Console& console, const Words&) {
  if (!console.TopForm()->CloseWindow())
    throw ScriptError("no dialog is open; \"hide\" and \"release\" end the page");
}

constexpr auto Commands = std::to_array<Command>({
    {"show", "[FORM|CONTROL|changes]", "print the open form, another, one control, or what changed", 0, 1,
     Show},
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
    {"hotspot", "LABEL [NUMBER]", "click a hot spot of a formatted label; the first is 1", 1, 2, HotSpot},
    {"focus", "CONTROL", "give a control the focus", 1, 1, Focus},
    {"leave", "[CONTROL]", "Tab out of the control that has the focus", 0, 1, Leave},
    {"enter", "", "press Enter", 0, 0, Enter},
    {"esc", "", "press Esc", 0, 0, Esc},
    {"key", "CODE [shift]", "press a key by its virtual-key code, such as 116 for F5", 1, 2, PressKey},
    {"press", "KEY...", "press keys where the focus is; after each, print where it is", 1, AnyNumber, Press},
    {"write", "TEXT", "type letters where the focus is", 1, 1, Write},
    {"close", "", "close the open dialog by its window", 0, 0, Close},
});

}  // namespace

std::span<const Command> UserCommands() { return Commands; }

}  // namespace vexa::workbench
