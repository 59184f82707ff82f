// The console host: Outlook's place, in a terminal. It reads commands from a script, a pipe or a terminal,
// acts on the open forms as a user would, and prints what a user would see. What the page and its dialogs
// are, models or real windows, its driver knows. Over models a modal dialog runs its own command loop, nested
// in the command that opened it. The commands themselves stand in *Commands.cpp.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <istream>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/HostDriver.h"
#include "workbench/Words.h"

namespace vexa::workbench {

/// Where commands come from.
struct CommandSource {
  std::istream& in;
  std::string name;          // for messages: the script's path
  bool interactive = false;  // a person at a terminal: a prompt, no echo, questions are asked
  bool realWindows = false;  // passes over what a script says is for consoles without windows
  bool transcript = false;   // the script is one, and is played again
  /// How a person's line is read; from `in`, if there is no better way. Nothing at the end of the input.
  std::function<std::optional<std::string>(const std::string& prompt)> readLine = {};
};

/// Whether a script is the transcript of a run, in which "> " stands before each command. Reads it from its
/// start on, and goes back there; what cannot be gone back over, such as a pipe, is none.
bool IsTranscript(std::istream& script);

/// What the library's own commands work on, from one command to the next.
struct LibraryBench {
  CachedError record;
  Form form{"bench"};
  OptionsSection section{form, "section"};
};

class Console final : public ModalWindows, public UserAnswers {
 public:
  Console(CommandSource source, std::ostream& out, HostDriverMaker makeDriver = MakeModelDriver);
  ~Console() override;

  /// Runs commands until they end. 0; 2 when something that cannot be carried out ended a script; 3 when a
  /// strict one was ended by what a user could live through.
  int Run();
  /// What the word at the end of a line could become.
  struct Completions {
    std::vector<std::string> words;
    bool files = false;  // or the name of a file
  };
  Completions Complete(std::string_view line) const;

  // --- for the commands

  LibraryBench bench;
  /// What has been shown of each form, by its name, as it was when it was last shown.
  std::map<std::string, FormState> shownForms;

  /// Opens a profile in place of the one before. Error: ScriptError while a form is open.
  void Load(const std::string& path);
  /// The same with a profile that is there already; `path` is where Apply saves it.
  void Load(Profile profile, const std::string& path);
  /// The language of the pages made from now on, whatever the profiles say.
  void SetLanguage(int32_t language);
  /// The stage; ScriptError when no profile is loaded.
  vexa::workbench::Stage& Stage();
  /// The page's container; ScriptError when no profile is loaded.
  HostDriver& Host();
  /// The same; ScriptError when there is no page.
  HostDriver& HostWithPage();
  /// The form that takes the user's input: the dialog opened last, or the page.
  std::unique_ptr<FormDriver> TopForm();
  std::vector<std::unique_ptr<FormDriver>> OpenForms() const;
  /// ScriptError while a dialog is open: the page that it belongs to cannot go. Inside an outside call the
  /// container may do as it likes.
  void RequireNoDialog() const;
  /// A control of the top form by its name; ScriptError when there is none.
  FormDriver::ControlName FindControl(const std::string& name);

  void QueuePick(std::optional<std::string> path) { picks_.push_back(std::move(path)); }
  void QueueMessageAnswer(MessageAnswer answer) { messageAnswers_.push_back(answer); }
  void QueueBrowse(BrowseAnswer answer) { browses_.push_back(std::move(answer)); }
  void QueueShellCode(int32_t code) { shellCodes_.push_back(code); }

  /// Where commands print.
  std::ostream& Out();
  /// Prints a line that AddToLine may go on with until something else is printed, which then begins a line.
  void OpenLine(const std::string& text);
  bool LineIsOpen() const { return lineIsOpen_; }
  void AddToLine(const std::string& text) { (ended_ ? nowhere_ : out_) << text; }
  /// Runs `call` as the page's host does: an error that comes out is printed.
  void AsHost(const std::function<void()>& call);
  /// Forms and settings are printed as JSON from now on, a line a command, or as text again (null).
  void PrintJsonTo(std::ostream* json) { json_ = json; }
  /// Where they are; null while they are printed as text.
  std::ostream* Json() { return ended_ ? nullptr : json_; }
  /// In a strict script what a user could live through, a refusal or an error, ends the run.
  void SetStrict(bool strict) { strict_ = strict; }
  void NoteTrouble(const std::string& what);
  /// Plans a command, given by its words, to run inside the n-th call of `member` from now on (counted from
  /// 1). Error: ScriptError if there is no such command or the number of its arguments is wrong.
  void PlanDuring(std::string_view member, int n, const std::vector<std::string>& command);
  /// Stops reading commands.
  void Quit() { ended_ = true; }
  /// The commands from here on are for consoles without windows only, or for all hosts again.
  void SetConsoleOnly(bool only) { consoleOnly_ = only; }

  // --- for the driver

  /// The dialogs over models that are open, innermost last.
  const std::vector<Dialog*>& OpenDialogs() const { return dialogs_; }
  /// What the script, or the person at the terminal, answers to the folder picker.
  std::optional<FolderIndex> AnswerPick();
  bool HasEnded() const { return ended_; }

  // --- what the library and the workbench ask for

  void ShowModal(Dialog& dialog, Form* owner) override;
  std::optional<FolderIndex> PickFolder() override { return Host().PickFolder(); }
  MessageAnswer AnswerMessage(const std::string& asked, MessageButtons buttons) override;
  BrowseAnswer BrowseForFolder(const std::string& prompt, const std::string& startFolder) override;
  int32_t OpenDocument(const std::string& path) override;
  void Seen(const std::string& line) override;
  void SeenFailing(const std::string& line) override;

 private:
  void ReadCommands(const std::function<bool()>& goOn);
  void Execute(const std::string& line);
  void RunCommand(const std::vector<std::string>& words);
  /// Inside a catch block: prints what the library has thrown. What a host or a script did wrong goes on.
  void PrintError();
  void Fail(const std::string& message, int status = 2);
  void EndLine();
  bool ReadLine(std::string& line, const std::string& prompt);
  /// The next line of the input; of a transcript, the next command.
  std::optional<std::string> NextLine();
  /// Asks the person at the terminal for an answer of a kind; nothing at the end of the input. In a script it
  /// ends the run.
  std::optional<std::string> Ask(const std::string& question, const char* kind, const std::string& choices);
  void NoteUnusedAnswers();
  /// ScriptError while the stage is in use.
  void RequireNoForm() const;

  CommandSource source_;
  std::ostream& out_;
  std::ostream nowhere_{nullptr};
  bool lineIsOpen_ = false;
  int line_ = 0;
  bool ended_ = false;
  int status_ = 0;
  bool strict_ = false;
  std::string trouble_;  // what ends a strict script when the command is done
  std::string choices_;  // of the question that a person is asked
  std::ostream* json_ = nullptr;
  bool consoleOnly_ = false;
  bool insideCall_ = false;  // the running command runs inside an outside call
  std::optional<int32_t> language_;

  std::deque<std::optional<std::string>> picks_;  // a path, or nothing to cancel
  std::deque<MessageAnswer> messageAnswers_;
  std::deque<BrowseAnswer> browses_;
  std::deque<int32_t> shellCodes_;

  HostDriverMaker makeDriver_;
  std::unique_ptr<vexa::workbench::Stage> stage_;
  std::unique_ptr<HostDriver> driver_;  // exists while there is a stage
  std::vector<Dialog*> dialogs_;
};

/// One command of the console's language.
struct Command {
  std::string_view name;
  std::string_view arguments;  // as in "help"
  std::string_view purpose;
  size_t least, most;  // number of arguments
  void (*run)(Console&, const std::vector<std::string>& arguments);
};

constexpr size_t AnyNumber = SIZE_MAX;

/// The commands by what they act on.
std::span<const Command> HostCommands();
std::span<const Command> UserCommands();
std::span<const Command> WorldCommands();
std::span<const Command> LibraryCommands();

/// Whether a control of this kind can be named as the command's first argument.
bool TakesControl(const Command& command, ControlKind kind);

/// Null when there is none of this name.
const Command* FindCommand(std::string_view name);
std::vector<std::string_view> CommandNames();
std::vector<std::string_view> SettingNames();

}  // namespace vexa::workbench
