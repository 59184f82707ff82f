#include "workbench/Console.h"

#include <algorithm>
#include <utility>

#include "core/ScopedFlag.h"
#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

/// Before a command that comes from no terminal, where it is printed.
constexpr std::string_view CommandMark = "> ";

std::vector<MessageAnswer> AnswersOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok:
      return {MessageAnswer::Ok};
    case MessageButtons::OkCancel:
      return {MessageAnswer::Ok, MessageAnswer::Cancel};
    case MessageButtons::YesNo:
      return {MessageAnswer::Yes, MessageAnswer::No};
    case MessageButtons::YesNoCancel:
      return {MessageAnswer::Yes, MessageAnswer::No, MessageAnswer::Cancel};
  }
  return {};
}

template <typename Value>
std::optional<Value> TakeFirst(std::deque<Value>& queue) {
  if (queue.empty()) return std::nullopt;
  Value first = std::move(queue.front());
  queue.pop_front();
  return first;
}

std::string ErrorLine(const Error& error) {
  return "error " + std::to_string(error.Number) + " " + QuotedText(error.Description) + " from " +
         QuotedText(error.Source);
}

/// The command that the first word names; ScriptError when there is none or it takes another number of words.
const Command& RequireCommand(const std::vector<std::string>& words) {
  const Command* const command = FindCommand(words.front());
  if (command == nullptr) {
    throw ScriptError("unknown command \"" + words.front() + "\"" +
                      SuggestName(words.front(), CommandNames()));
  }
  const size_t arguments = words.size() - 1;
  const std::string name(command->name);
  if (arguments < command->least || arguments > command->most) {
    throw ScriptError(name + ": too " + (arguments < command->least ? "few" : "many") +
                      " arguments; right would be: " + name + " " + std::string(command->arguments));
  }
  return *command;
}

}  // namespace

bool IsTranscript(std::istream& script) {
  if (script.tellg() == std::istream::pos_type(-1)) return false;
  bool found = false;
  for (std::string line; !found && std::getline(script, line);) found = line.starts_with(CommandMark);
  script.clear();
  script.seekg(0);
  return found;
}

Console::Console(CommandSource source, std::ostream& out, HostDriverMaker makeDriver)
    : source_(std::move(source)), out_(out), makeDriver_(std::move(makeDriver)) {}

Console::~Console() { ended_ = true; }

int Console::Run() {
  if (source_.interactive) Out() << "VexaControls console; \"help\" lists the commands, \"quit\" ends.\n";
  ReadCommands([] { return true; });
  if (status_ == 0) NoteUnusedAnswers();
  return status_;
}

void Console::ReadCommands(const std::function<bool()>& goOn) {
  std::string line;
  while (!ended_ && goOn()) {
    const auto forms = OpenForms();
    const bool dialog = driver_ != nullptr && driver_->DialogCount() > 0;
    const std::string prompt = dialog ? forms.back()->Name() + "> " : "vexa> ";
    if (!ReadLine(line, prompt)) break;
    Execute(line);
  }
}

bool Console::ReadLine(std::string& line, const std::string& prompt) {
  const bool edited = source_.interactive && source_.readLine;
  std::optional<std::string> typed;
  if (edited) {
    out_ << std::flush;
    typed = source_.readLine(prompt);
  } else {
    if (source_.interactive) out_ << prompt << std::flush;
    typed = NextLine();
  }
  if (!typed) {
    if (source_.interactive) out_ << "\n";
    ended_ = true;
    return false;
  }
  line = std::move(*typed);
  return true;
}

std::optional<std::string> Console::NextLine() {
  for (std::string line; std::getline(source_.in, line);) {
    ++line_;
    if (line.ends_with('\r')) line.pop_back();
    if (!source_.transcript) return line;
    if (line.starts_with(CommandMark)) return line.substr(CommandMark.size());
  }
  return std::nullopt;
}

void Console::Execute(const std::string& line) {
  try {
    const std::vector<std::string> words = SplitWords(line);
    if (words.empty()) return;
    if (consoleOnly_ && source_.realWindows && !SameName(words.front(), "hosts")) return;
    // What "say" prints stands for itself; without the command a transcript could not say it again.
    const bool speaks = SameName(words.front(), "say") && !source_.transcript;
    if (!source_.interactive && !speaks) Out() << CommandMark << line << "\n";
    // Dialogs that were opened inside a call read commands that are not.
    const ScopedFlag inside(insideCall_, false);
    RunCommand(words);
  } catch (const ScriptError& error) {
    Fail(error.what());
  }
  if (!trouble_.empty()) Fail("ended by \"strict\": " + trouble_, 3);
}

void Console::PlanDuring(std::string_view member, int n, const std::vector<std::string>& command) {
  RequireCommand(command);
  Stage().calls.PlanInterruption(member, n, [this, member = std::string(member), command] {
    if (ended_) return;
    driver_->RunInsideCall([&] {
      std::string line = "[during " + member + ":";
      for (const std::string& word : command) {
        const bool plain = !word.empty() && word.find_first_of(" \t\"#") == std::string::npos;
        line += " " + (plain ? word : QuotedText(word));
      }
      Out() << line << "]\n";
      const ScopedFlag inside(insideCall_, true);
      RunCommand(command);
    });
  });
}

void Console::RunCommand(const std::vector<std::string>& words) {
  std::string name;
  try {
    const Command& command = RequireCommand(words);
    name = std::string(command.name) + ": ";
    command.run(*this, {words.begin() + 1, words.end()});
  } catch (const ScriptError& error) {
    Fail(name + error.what());
  } catch (const ProfileError& error) {
    Fail(name + error.what());
  } catch (const OtherHostsOnly& reason) {
    Out() << "skipped: " << reason.what() << "\n";
  } catch (...) {
    PrintError();  // in development mode errors surface from event handlers
  }
}

void Console::PrintError() {
  try {
    throw;
  } catch (const ScriptError&) {
    throw;
  } catch (const HostError&) {
    throw;
  } catch (...) {
    Out() << ErrorLine(CurrentError()) << "\n";
    NoteTrouble("an error came out");
  }
}

void Console::NoteTrouble(const std::string& what) {
  if (strict_ && !source_.interactive && trouble_.empty()) trouble_ = what;
}

void Console::Fail(const std::string& message, int status) {
  if (ended_) return;
  EndLine();
  if (source_.interactive) {
    out_ << message << "\n";
    return;
  }
  out_ << source_.name << ":" << line_ << ": " << message << "\n" << std::flush;
  status_ = status;
  ended_ = true;
}

void Console::NoteUnusedAnswers() {
  const auto note = [&](size_t count, const char* kind) {
    if (count > 0) out_ << "note: " << count << " queued " << kind << " not asked for\n";
  };
  note(picks_.size(), "folder choice(s)");
  note(messageAnswers_.size(), "message answer(s)");
  note(browses_.size(), "folder-browsing answer(s)");
  note(shellCodes_.size(), "shell code(s)");
  const size_t planned = stage_ == nullptr ? 0 : stage_->calls.InterruptionsPlanned();
  if (planned > 0) out_ << "note: " << planned << " command(s) planned with \"during\" did not run\n";
}

std::ostream& Console::Out() {
  EndLine();
  return ended_ ? nowhere_ : out_;
}

void Console::OpenLine(const std::string& text) {
  Out() << text;
  lineIsOpen_ = !ended_;
}

void Console::EndLine() {
  if (lineIsOpen_) out_ << "\n";
  lineIsOpen_ = false;
}

void Console::AsHost(const std::function<void()>& call) {
  try {
    call();
  } catch (...) {
    PrintError();
  }
}

void Console::Load(const std::string& path) {
  RequireNoForm();
  Load(ReadProfile(path), path);
}

void Console::Load(Profile profile, const std::string& path) {
  RequireNoForm();
  driver_.reset();
  stage_ = std::make_unique<vexa::workbench::Stage>(std::move(profile), path, language_, *this, *this);
  driver_ = makeDriver_(*this, *stage_);
}

void Console::SetLanguage(int32_t language) {
  if (language < 1 || language > 0xFFFF) {
    throw ScriptError("a language is a Windows language number, such as 1033, not " +
                      std::to_string(language));
  }
  RequireNoForm();
  language_ = language;
  if (stage_ == nullptr) return;
  Profile profile = std::move(stage_->workbench.profile);
  const std::string path = stage_->files.ProfilePath();
  Load(std::move(profile), path);
}

void Console::RequireNoDialog() const {
  if (insideCall_ || driver_ == nullptr || driver_->DialogCount() == 0) return;
  throw ScriptError(OpenForms().back()->Name() + " is open; close it first");
}

void Console::RequireNoForm() const {
  if (insideCall_) throw ScriptError("an outside call is still running");
  RequireNoDialog();
  if (driver_ != nullptr && driver_->HasPage()) throw ScriptError("release the page first");
}

Stage& Console::Stage() {
  if (stage_ == nullptr) throw ScriptError("no profile is loaded; \"load FILE\" loads one");
  return *stage_;
}

HostDriver& Console::Host() {
  Stage();
  return *driver_;
}

HostDriver& Console::HostWithPage() {
  if (!Host().HasPage()) throw ScriptError("there is no page; \"open\" opens one");
  return *driver_;
}

std::vector<std::unique_ptr<FormDriver>> Console::OpenForms() const {
  return driver_ == nullptr ? std::vector<std::unique_ptr<FormDriver>>() : driver_->OpenForms();
}

std::unique_ptr<FormDriver> Console::TopForm() {
  auto forms = OpenForms();
  if (forms.empty()) HostWithPage();  // says what is missing
  return std::move(forms.back());
}

FormDriver::ControlName Console::FindControl(const std::string& name) {
  const std::unique_ptr<FormDriver> form = TopForm();
  const std::vector<FormDriver::ControlName> controls = form->Controls();
  std::vector<std::string_view> names;
  for (const FormDriver::ControlName& control : controls) {
    if (SameName(control.name, name)) return control;
    names.push_back(control.name);
  }
  throw ScriptError("unknown control \"" + name + "\" on " + form->Name() + SuggestName(name, names));
}

void Console::ShowModal(Dialog& dialog, Form* /*owner*/) {
  Out() << "[" << dialog.Name() << " opens: " << QuotedText(dialog.Caption()) << "]\n";
  dialog.SetView(&Stage().View());
  dialogs_.push_back(&dialog);
  dialog.Show();
  ReadCommands([&] { return dialog.IsShowing(); });
  if (dialog.IsShowing()) {
    // The commands have ended while it is open.
    dialog.CloseWindow();
    dialog.Hide();
  }
  dialogs_.pop_back();
  dialog.SetView(nullptr);
  Out() << "[" << dialog.Name() << " closes]\n";
}

std::optional<std::string> Console::Ask(const std::string& question, const char* kind,
                                        const std::string& choices) {
  if (ended_) return std::nullopt;
  if (!source_.interactive) {
    Fail("a question has no queued answer: " + question + "; right would be \"answer " + kind + " " +
         choices + "\" before");
    return std::nullopt;
  }
  std::string line;
  out_ << question << "\n";
  choices_ = choices;
  const bool answered = ReadLine(line, choices + ": ");
  choices_.clear();
  return answered ? std::optional(line) : std::nullopt;
}

std::optional<FolderIndex> Console::AnswerPick() {
  const World& world = Stage().workbench.profile.world;
  std::optional<std::string> path;
  if (auto queued = TakeFirst(picks_)) {
    path = *queued;
  } else {
    for (;;) {
      const auto answer = Ask("Select Folder", "pick", "PATH|cancel");
      if (!answer || answer->empty() || SameName(*answer, "cancel")) break;
      if (world.FindPath(*answer) != NoFolder) {
        path = *answer;
        break;
      }
      out_ << "there is no folder " << QuotedText(*answer) << "\n";
    }
  }
  if (!path) return std::nullopt;
  const FolderIndex folder = world.FindPath(*path);
  if (folder == NoFolder) {  // deleted since it was queued
    Fail("the folder " + QuotedText(*path) + " that was queued for the picker does not exist");
    return std::nullopt;
  }
  return folder;
}

MessageAnswer Console::AnswerMessage(const std::string& asked, MessageButtons buttons) {
  if (asked.starts_with("MSG[critical")) NoteTrouble("an error was shown");
  const std::vector<MessageAnswer> possible = AnswersOf(buttons);
  std::string choices;
  for (const MessageAnswer answer : possible)
    choices.append(choices.empty() ? "" : "|").append(AnswerWord(answer));
  const auto isPossible = [&](MessageAnswer answer) {
    return std::ranges::find(possible, answer) != possible.end();
  };
  // A box with one button tells, it does not ask: it needs no answer, and takes one only if it fits.
  const bool tells = possible.size() == 1;
  if (!messageAnswers_.empty() && (!tells || isPossible(messageAnswers_.front()))) {
    const MessageAnswer answer = *TakeFirst(messageAnswers_);
    if (isPossible(answer)) return answer;
    Fail("the queued answer \"" + std::string(AnswerWord(answer)) + "\" does not fit " + asked +
         "; right would be \"answer message " + choices + "\"");
    return possible.back();
  }
  if (tells && !source_.interactive) return possible.front();
  for (;;) {
    const auto word = Ask(asked, "message", choices);
    if (!word) return possible.back();
    for (const MessageAnswer answer : possible) {
      if (SameName(*word, AnswerWord(answer)) || (tells && word->empty())) return answer;
    }
  }
}

BrowseAnswer Console::BrowseForFolder(const std::string& prompt, const std::string& startFolder) {
  if (auto queued = TakeFirst(browses_)) return *queued;
  const auto answer =
      Ask(QuotedText(prompt) + " from " + QuotedText(startFolder), "browse", "FOLDER|cancel|fail");
  if (!answer || answer->empty() || SameName(*answer, "cancel")) return {};
  if (SameName(*answer, "fail")) return {BrowseAnswer::Kind::CannotBeCreated, {}};
  return {BrowseAnswer::Kind::Chosen, *answer};
}

int32_t Console::OpenDocument(const std::string& path) {
  constexpr int32_t success = 42;
  Seen("opens the document " + QuotedText(path));
  if (auto queued = TakeFirst(shellCodes_)) return *queued;
  for (;;) {
    const auto answer = Ask("The shell's return code for " + QuotedText(path), "shell", "CODE");
    if (!answer || answer->empty()) return success;
    try {
      return NumberWord(*answer, "the code");
    } catch (const ScriptError& error) {
      Seen(error.what());
    }
  }
}

void Console::Seen(const std::string& line) { Out() << line << "\n"; }

void Console::SeenFailing(const std::string& line) {
  Seen(line);
  NoteTrouble("something failed");
}

const Command* FindCommand(std::string_view name) {
  for (const auto commands : {HostCommands(), UserCommands(), WorldCommands(), LibraryCommands()}) {
    const auto found =
        std::ranges::find_if(commands, [&](const Command& c) { return SameName(c.name, name); });
    if (found != commands.end()) return &*found;
  }
  return nullptr;
}

std::vector<std::string_view> CommandNames() {
  std::vector<std::string_view> names;
  for (const auto commands : {HostCommands(), UserCommands(), WorldCommands(), LibraryCommands()}) {
    for (const Command& command : commands) names.push_back(command.name);
  }
  return names;
}

}  // namespace vexa::workbench
