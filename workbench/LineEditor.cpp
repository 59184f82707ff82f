#include "workbench/LineEditor.h"

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
// cstdio first
#include <editline/readline.h>

namespace vexa::workbench {
namespace {

constexpr int MostLines = 500;

// The library calls functions without context.
LineEditor::Completer completer;
Console::Completions offered;

/// The next of the words offered, from the first when `notFirst` is 0; the library frees it.
char* NextWord(const char* /*typed*/, int notFirst) {
  static size_t next = 0;
  if (notFirst == 0) next = 0;
  return next < offered.words.size() ? ::strdup(offered.words[next++].c_str()) : nullptr;
}

char** CompleteWord(const char* typed, int /*begin*/, int end) {
  offered = completer(std::string_view(rl_line_buffer, static_cast<size_t>(end)));
  rl_attempted_completion_over = offered.files ? 0 : 1;
  return offered.words.empty() ? nullptr : rl_completion_matches(typed, NextWord);
}

}  // namespace

LineEditor::LineEditor(Completer complete, std::string history) : history_(std::move(history)) {
  std::setlocale(LC_CTYPE, "");  // the width of what is typed
  completer = std::move(complete);
  rl_initialize();
  rl_readline_name = "vexa-console";
  static std::array blanks{' ', '\t', '\0'};
  rl_completer_word_break_characters = blanks.data();
  rl_attempted_completion_function = CompleteWord;
  using_history();
  stifle_history(MostLines);
  if (!history_.empty()) read_history(history_.c_str());
}

LineEditor::~LineEditor() {
  if (!history_.empty()) write_history(history_.c_str());
  completer = nullptr;
}

std::optional<std::string> LineEditor::Read(const std::string& prompt) {
  const std::unique_ptr<char, decltype(&std::free)> line(readline(prompt.c_str()), std::free);
  if (!line) return std::nullopt;
  if (*line != '\0') add_history(line.get());
  return line.get();
}

}  // namespace vexa::workbench
