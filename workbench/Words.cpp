#include "workbench/Words.h"

#include <charconv>

#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

/// Takes the rest of a quoted stretch from `line`, whose opening quote is gone already.
std::string TakeQuoted(std::string_view& line) {
  std::string text;
  for (;;) {
    const size_t quote = line.find('"');
    if (quote == std::string_view::npos) throw ScriptError("a double quote is opened and never closed");
    text += line.substr(0, quote);
    line.remove_prefix(quote + 1);
    if (!line.starts_with('"')) return text;
    text += '"';
    line.remove_prefix(1);
  }
}

}  // namespace

std::vector<std::string> SplitWords(std::string_view line) {
  std::vector<std::string> words;
  for (;;) {
    while (!line.empty() && IsBlank(line.front())) line.remove_prefix(1);
    if (line.empty() || line.front() == '#') return words;
    std::string word;
    while (!line.empty() && !IsBlank(line.front())) {
      const char c = line.front();
      line.remove_prefix(1);
      if (c == '"') {
        word += TakeQuoted(line);
      } else {
        word += c;
      }
    }
    words.push_back(std::move(word));
  }
}

int32_t NumberWord(const std::string& word, std::string_view what) {
  int32_t number = 0;
  const auto [end, failure] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (failure != std::errc() || end != word.data() + word.size()) {
    throw ScriptError(std::string(what) + " must be a whole number of 32 bits, not \"" + word + "\"");
  }
  return number;
}

bool SwitchWord(const std::string& word, std::string_view what) {
  for (const char* on : {"on", "true", "yes"}) {
    if (SameName(word, on)) return true;
  }
  for (const char* off : {"off", "false", "no"}) {
    if (SameName(word, off)) return false;
  }
  throw ScriptError(std::string(what) + " must be on or off, not \"" + word + "\"");
}

}  // namespace vexa::workbench
