#include "tests/walk/FedConsole.h"

#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

/// The kind of question that the console asks with these choices.
std::string KindOf(const std::string& choices) {
  if (choices == "PATH|cancel") return "pick";
  if (choices == "FOLDER|cancel|fail") return "browse";
  return choices == "CODE" ? "shell" : "message";
}

bool HasNode(const FormDriver& form, const std::string& tree, const std::string& path) {
  FormDriver::Node here = FormDriver::NoNode;
  for (const std::string_view part : SplitPath(path)) {
    here = form.FindNode(tree, here, part);
    if (here == FormDriver::NoNode) return false;
  }
  return true;
}

}  // namespace

std::string Word(std::string_view text) {
  std::string word = "\"";
  for (const char letter : text) word.append(letter == '"' ? 2 : 1, letter);
  return word += '"';
}

std::vector<std::string> WordsOf(const Step& step) { return SplitWords(step.line); }

std::string ScriptOf(const std::vector<Step>& steps) {
  std::string script;
  for (const Step& step : steps) {
    for (const std::string& answer : step.answers) script += answer + "\n";
    script += step.line + "\n";
  }
  return script;
}

FedConsole::FedConsole() : in_(this), out_(&output_), console_(CommandSource{in_, "walk", true}, out_) {
  in_.exceptions(std::istream::badbit);  // what goes wrong here does not pass for the end of the input
}

Form* FedConsole::Top() {
  if (!console_.OpenDialogs().empty()) return console_.OpenDialogs().back();
  return console_.OpenForms().empty() ? nullptr : console_.Stage().Page();
}

bool FedConsole::Fits(const Step& step) {
  if (step.form.empty()) return true;
  const std::unique_ptr<FormDriver> form = Top() == nullptr ? nullptr : console_.TopForm();
  if (form == nullptr || form->Name() != step.form) return false;
  const std::vector<std::string> words = WordsOf(step);
  if (words.size() != 3 || Top()->FindControl(words[1]) == nullptr) return true;
  return Top()->FindControl(words[1])->Kind() != ControlKind::Tree || HasNode(*form, words[1], words[2]);
}

FedConsole::int_type FedConsole::underflow() {
  const std::string output = std::exchange(output_.text, {});
  constexpr std::string_view asks = ": ";
  if (output.ends_with(asks)) {
    const size_t start = output.rfind('\n') + 1;
    const std::string choices = output.substr(start, output.size() - start - asks.size());
    const std::string answer = Answer(choices);
    current_.answers.push_back("answer " + KindOf(choices) + " " + Word(answer));
    Feed(answer);
  } else {
    std::optional<Step> next = Next(output);
    if (!next) return traits_type::eof();
    current_ = std::move(*next);
    current_.answers.clear();
    Feed(current_.line);
  }
  return traits_type::to_int_type(*gptr());
}

void FedConsole::Feed(std::string line) {
  line_ = std::move(line) + "\n";
  setg(line_.data(), line_.data(), line_.data() + line_.size());
}

FedConsole::int_type FedConsole::Output::overflow(int_type letter) {
  text += traits_type::to_char_type(letter);
  return letter;
}

std::streamsize FedConsole::Output::xsputn(const char* letters, std::streamsize count) {
  text.append(letters, static_cast<size_t>(count));
  return count;
}

}  // namespace vexa::workbench
