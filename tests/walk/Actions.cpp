#include "tests/walk/Actions.h"

#include <array>

#include "display/ExtLabel.h"
#include "display/Grid.h"
#include "display/Slider.h"
#include "display/Tree.h"
#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

/// Numbers within and beyond every bound, and what is none.
constexpr std::array<const char*, 7> Texts{"11", "", "70000", "0", "2001", "-3,5", "Key Accounts; VIP"};
constexpr std::array<int, 12> Keys{KeyTab,   KeySpace, KeyHome,     KeyEnd, KeyLeft,     KeyUp,
                                   KeyRight, KeyDown,  KeyMultiply, KeyAdd, KeySubtract, KeyF5};

void AddNodes(const Tree& tree, Tree::Node parent, const std::string& path,
              const std::function<void(const std::string&)>& add) {
  for (const Tree::Node node : tree.Children(parent)) {
    const std::string here = path + "\\" + EncodedName(tree.Text(node));
    add(here);
    if (tree.Expanded(node)) AddNodes(tree, node, here, add);
  }
}

}  // namespace

std::vector<Action> ActionsOn(const Form& form) {
  std::vector<Action> actions;
  const Control* control = nullptr;
  const auto add = [&](const std::string& line) { actions.push_back({{form.Name(), line, {}}, control}); };
  for (const Control* const each : form.Controls()) {
    control = each;
    const std::string& name = control->Name();
    switch (control->Kind()) {
      case ControlKind::Button:
        add("click " + name);
        break;
      case ControlKind::CheckBox:
        for (const char* verb : {"check ", "uncheck ", "click "}) add(verb + name);
        break;
      case ControlKind::OptionButton:
        add("choose " + name);
        break;
      case ControlKind::TextBox:
        for (const char* text : Texts) add("type " + name + " " + Word(text));
        break;
      case ControlKind::Slider: {
        const auto& slider = static_cast<const Slider&>(*control);
        const int32_t middle = slider.Minimum() + (slider.Maximum() - slider.Minimum()) / 2;
        for (const int32_t position : {slider.Minimum(), middle, slider.Maximum()})
          add("slide " + name + " " + std::to_string(position));
        break;
      }
      case ControlKind::Grid: {
        const auto& grid = static_cast<const Grid&>(*control);
        for (int32_t row = 1; row <= grid.RowCount(); ++row)
          add("cell " + name + " " + std::to_string(row) + " " + std::to_string(row % grid.ColumnCount()));
        add("doubleclick " + name);
        break;
      }
      case ControlKind::Tree:
        AddNodes(static_cast<const Tree&>(*control), Tree::NoNode, "", [&](const std::string& path) {
          for (const char* verb : {"select ", "check ", "uncheck ", "expand ", "collapse "})
            add(verb + name + " " + Word(path));
        });
        break;
      case ControlKind::ExtLabel:
        if (static_cast<const ExtLabel&>(*control).Text().HotSpotCount() > 0) add("hotspot " + name);
        break;
      default:
        break;
    }
    if (control->TakesFocus()) add("focus " + name);
  }
  control = nullptr;
  for (const int key : Keys) add("key " + std::to_string(key));
  for (const char* verb : {"key 9 shift", "leave", "enter", "esc"}) add(verb);
  if (dynamic_cast<const Dialog*>(&form) != nullptr) add("close");
  return actions;
}

std::string ButtonPressedBy(const Form& form, const Step& step) {
  const std::vector<std::string> words = WordsOf(step);
  const std::string& verb = words.front();
  const auto nameOf = [](const Control* control) {
    return control == nullptr ? std::string() : control->Name();
  };
  if (verb == "close") return verb;
  if (verb == "esc") return nameOf(form.CancelButton());
  if (verb == "enter") return nameOf(form.EffectiveDefaultButton());
  const bool space = verb == "key" && words[1] == std::to_string(KeySpace);
  const Control* const control = space              ? form.Focus()
                                 : words.size() > 1 ? form.FindControl(words[1])
                                                    : nullptr;
  const bool clicks = space || verb == "click" || verb == "doubleclick";
  return clicks && control != nullptr && control->Kind() == ControlKind::Button ? control->Name()
                                                                                : std::string();
}

}  // namespace vexa::workbench
