// A console in this process that is fed line by line, each only when it is asked for: whoever feeds it has
// seen what came of the one before. A step is a command with the answers to what it asked. Steps that were
// carried out make up a script that any console repeats.
#pragma once

#include <optional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/Console.h"

namespace vexa::workbench {

struct Step {
  std::string form;  // the form on which it was taken; empty for what is no user's action
  std::string line;
  std::vector<std::string> answers;  // as "answer" commands
};

/// A text as one word of a command.
std::string Word(std::string_view text);

/// The command's own words.
std::vector<std::string> WordsOf(const Step& step);

/// The steps as a script.
std::string ScriptOf(const std::vector<Step>& steps);

class FedConsole : private std::streambuf {
 public:
  FedConsole();
  ~FedConsole() override = default;

  /// Runs until there is no step left. Closes what is open then.
  void Run() { console_.Run(); }
  /// Whether `step` can be taken as things stand: its form is the top one and has what it names.
  bool Fits(const Step& step);
  Console& TheConsole() { return console_; }
  /// The dialog opened last, the page, or null.
  Form* Top();

 protected:
  /// The next step, or nothing when the run is to end. `output` is what was printed since the last one.
  virtual std::optional<Step> Next(const std::string& output) = 0;
  /// The answer to a question of the step that is being taken; `choices` are as the console shows them.
  virtual std::string Answer(const std::string& choices) = 0;

  /// The step that is being taken, with the answers so far.
  Step current_;

 private:
  int_type underflow() override;
  void Feed(std::string line);

  class Output final : public std::streambuf {
   public:
    std::string text;

   private:
    int_type overflow(int_type letter) override;
    std::streamsize xsputn(const char* letters, std::streamsize count) override;
  };

  std::string line_;
  std::istream in_;
  Output output_;
  std::ostream out_;
  Console console_;
};

}  // namespace vexa::workbench
