// The lines of a person at a terminal: edited, completed with Tab, and kept in a file from one run to the
// next. There is one at a time, for the terminal is one.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "workbench/Console.h"

namespace vexa::workbench {

class LineEditor {
 public:
  using Completer = std::function<Console::Completions(std::string_view line)>;

  /// `history` is the file's path; empty for none. One that cannot be read or written is passed over.
  LineEditor(Completer complete, std::string history);
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;
  ~LineEditor();

  /// Nothing at the end of the input.
  std::optional<std::string> Read(const std::string& prompt);

 private:
  std::string history_;
};

}  // namespace vexa::workbench
