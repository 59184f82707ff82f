#include "workbench/KeyStroke.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "workbench/Names.h"
#include "workbench/Words.h"

namespace vexa::workbench {
namespace {

struct NamedKey {
  std::string_view name;
  int code;
};

constexpr auto NamedKeys = std::to_array<NamedKey>({
    {"Backspace", 8},
    {"Tab", 9},
    {"Enter", 13},
    {"Esc", 27},
    {"Space", 32},
    {"PageUp", 33},
    {"PageDown", 34},
    {"End", 35},
    {"Home", 36},
    {"Left", 37},
    {"Up", 38},
    {"Right", 39},
    {"Down", 40},
    {"Insert", 45},
    {"Delete", 46},
    {"Num*", 106},
    {"Num+", 107},
    {"Num-", 109},
});

/// 0 when there is no such key.
int CodeOf(const std::string& name) {
  const auto named =
      std::ranges::find_if(NamedKeys, [&](const NamedKey& key) { return SameName(key.name, name); });
  if (named != NamedKeys.end()) return named->code;
  const char first = name.empty() ? '\0' : name.front();
  const char capital = first >= 'a' && first <= 'z' ? static_cast<char>(first - 'a' + 'A') : first;
  const bool stands = (capital >= 'A' && capital <= 'Z') || (capital >= '0' && capital <= '9');
  if (name.size() == 1) return stands ? capital : 0;
  constexpr int f1 = 112;
  for (int number = 1; number <= 24; ++number) {
    if (SameName(name, "F" + std::to_string(number))) return f1 + number - 1;
  }
  return 0;
}

/// Takes "Alt+" and the like from the start of `word`.
bool TakeHeld(std::string& word, const std::string& name) {
  if (word.size() <= name.size() || !SameName(word.substr(0, name.size()), name)) return false;
  word.erase(0, name.size());
  return true;
}

}  // namespace

KeyStroke KeyStrokeWord(const std::string& word) {
  KeyStroke key{};
  std::string rest = word;
  for (bool held = true; held;) {
    const bool shift = TakeHeld(rest, "Shift+");
    const bool control = !shift && TakeHeld(rest, "Ctrl+");
    const bool alt = !shift && !control && TakeHeld(rest, "Alt+");
    key.shift = key.shift || shift;
    key.control = key.control || control;
    key.alt = key.alt || alt;
    held = shift || control || alt;
  }
  key.code = CodeOf(rest);
  if (key.code != 0) return key;
  std::vector<std::string_view> names;
  names.reserve(NamedKeys.size());
  for (const NamedKey& named : NamedKeys) names.push_back(named.name);
  throw ScriptError("there is no key \"" + word + "\"" + SuggestName(rest, names));
}

}  // namespace vexa::workbench
