// A key of the keyboard with those held down meanwhile, as scripts write it: "Tab", "Shift+Tab", "Alt+C",
// "F5", "Num+". The console's command reads it, a host with windows presses it.
#pragma once

#include <string>

namespace vexa::workbench {

struct KeyStroke {
  int code;  // virtual-key code
  bool shift = false;
  bool control = false;
  bool alt = false;
};

/// Error: ScriptError for a word that names no key.
KeyStroke KeyStrokeWord(const std::string& word);

}  // namespace vexa::workbench
