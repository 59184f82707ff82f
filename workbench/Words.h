// Command lines taken apart into words: blanks separate them, double quotes hold them together, a doubled
// quote inside quotes is one quote, "#" at the start of a word begins a comment.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::workbench {

/// Input that cannot be carried out; what() says what is wrong and what would be right.
class ScriptError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A command that this host cannot carry out, while another can: it is skipped.
class OtherHostsOnly : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Error: ScriptError for a quote that is never closed.
std::vector<std::string> SplitWords(std::string_view line);

/// Words as values; `what` names the word in the message. Error: ScriptError.
int32_t NumberWord(const std::string& word, std::string_view what);
bool SwitchWord(const std::string& word, std::string_view what);

}  // namespace vexa::workbench
