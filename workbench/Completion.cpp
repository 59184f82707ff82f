// What the word at the end of a line could become. The usages that "help" prints say what stands where: words
// in capitals stand for names, which the open forms and the settings know; others stand for themselves.
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "workbench/CallLog.h"
#include "workbench/Console.h"
#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const size_t end = std::min(text.find(separator), text.size());
    if (end > 0) parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

/// The alternatives for the n-th argument of a usage. The last one stands for all that follow, if it may.
std::vector<std::string_view> Alternatives(const Command& command, size_t n) {
  const std::vector<std::string_view> places = Split(command.arguments, ' ');
  if (places.empty()) return {};
  if (n >= places.size() && !places.back().ends_with("...") && !places.back().ends_with("...]")) return {};
  std::string_view place = places[std::min(n, places.size() - 1)];
  while (place.starts_with('[')) place.remove_prefix(1);
  while (place.ends_with(']') || place.ends_with('.')) place.remove_suffix(1);
  return Split(place, '|');
}

bool StandsForItself(std::string_view word) {
  return std::ranges::any_of(word, [](char c) { return c >= 'a' && c <= 'z'; });
}

/// The kind of control that a word of a usage stands for; nothing if it stands for none, or for any.
std::optional<ControlKind> KindNamed(std::string_view word) {
  constexpr auto kinds =
      std::to_array<std::pair<std::string_view, ControlKind>>({{"BOX", ControlKind::TextBox},
                                                               {"SLIDER", ControlKind::Slider},
                                                               {"OPTION", ControlKind::OptionButton},
                                                               {"GRID", ControlKind::Grid},
                                                               {"TREE", ControlKind::Tree},
                                                               {"LABEL", ControlKind::ExtLabel}});
  for (const auto& [name, kind] : kinds) {
    if (name == word) return kind;
  }
  return std::nullopt;
}

}  // namespace

bool TakesControl(const Command& command, ControlKind kind) {
  for (const std::string_view word : Alternatives(command, 0)) {
    if (word == "CONTROL") {
      if (command.name == "check" || command.name == "uncheck")
        return kind == ControlKind::CheckBox || kind == ControlKind::Tree;
      // These only show something.
      const bool passive =
          kind == ControlKind::Label || kind == ControlKind::Frame || kind == ControlKind::Section;
      return command.name == "show" || !passive;
    }
    if (KindNamed(word) == kind) return true;
  }
  return false;
}

Console::Completions Console::Complete(std::string_view line) const {
  const size_t begin = line.find_last_of(" \t") + 1;  // 0 when there is none
  const std::string_view typed = line.substr(begin);
  Completions found;
  const auto offer = [&](std::string_view word) {
    if (SameName(word.substr(0, typed.size()), typed)) found.words.emplace_back(word);
  };
  if (!choices_.empty()) {
    for (const std::string_view choice : Split(choices_, '|')) {
      if (StandsForItself(choice)) offer(choice);
    }
    return found;
  }

  std::vector<std::string> words;
  try {
    words = SplitWords(line.substr(0, begin));
  } catch (const ScriptError&) {
    return found;  // within quotes
  }
  if (words.empty()) {
    for (const std::string_view name : CommandNames()) offer(name);
    return found;
  }
  // The command that is to run inside a call is completed like any other.
  while (words.size() > 3 && SameName(words.front(), "during")) words.erase(words.begin(), words.begin() + 3);
  const Command* const command = FindCommand(words.front());
  if (command == nullptr) return found;
  const std::vector<std::unique_ptr<FormDriver>> forms = OpenForms();
  bool controls = false;
  for (const std::string_view word : Alternatives(*command, words.size() - 1)) {
    if (StandsForItself(word)) {
      offer(word);
    } else if (word == "CONTROL" || KindNamed(word)) {
      controls = true;
    } else if (word == "FORM") {
      for (const std::unique_ptr<FormDriver>& form : forms) offer(form->Name());
    } else if (word == "SETTING") {
      for (const std::string_view name : SettingNames()) offer(name);
    } else if (word == "MEMBER") {
      for (const std::string& name : CallLog::KnownMembers()) {
        if (name.find(' ') == std::string::npos) offer(name);  // a word on the line ends at a blank
      }
    } else if (word == "COMMAND") {
      for (const std::string_view name : CommandNames()) offer(name);
    } else if (word == "FILE") {
      found.files = true;
    }
  }
  if (controls && !forms.empty()) {
    const bool anyKind = SameName(command->name, "help");
    for (const FormDriver::ControlName& control : forms.back()->Controls()) {
      if (anyKind || TakesControl(*command, control.kind)) offer(control.name);
    }
  }
  return found;
}

}  // namespace vexa::workbench
