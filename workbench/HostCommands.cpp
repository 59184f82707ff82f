// Commands that do what Outlook and the add-in do: load a profile, make and initialise the page, apply,
// hide, release; and the queued answers of the system's own dialogs.
#include <array>
#include <iomanip>

#include "workbench/Console.h"
#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

using Words = std::vector<std::string>;

void Load(Console& console, const Words& words) {
  console.Load(words[0]);
  const World& world = console.Stage().workbench.profile.world;
  const auto counted = [](size_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
  };
  console.Out() << "loaded " << words[0] << ": " << counted(world.Stores().size(), "store") << ", "
                << counted(world.FolderCount(), "folder") << "\n";
}

void Language(Console& console, const Words& words) {
  const int32_t language = NumberWord(words[0], "the language");
  console.SetLanguage(language);
  console.Out() << "texts are in language " << CompiledResources(language).Language() << "\n";
}

void Create(Console& console, const Words&) {
  console.RequireNoDialog();
  console.Host().Create();
}

void Initialize(Console& console, const Words&) {
  HostDriver& host = console.HostWithPage();
  console.AsHost([&] { host.Initialize(); });
}

void Open(Console& console, const Words& words) {
  Create(console, words);
  Initialize(console, words);
}

void Reinitialize(Console& console, const Words&) {
  HostDriver& host = console.HostWithPage();
  console.AsHost([&] { host.Reinitialize(); });
}

void Apply(Console& console, const Words&) {
  HostDriver& host = console.HostWithPage();
  console.AsHost([&] { host.Apply(); });
}

void Hide(Console& console, const Words&) { console.HostWithPage().Hide(); }

void Release(Console& console, const Words&) {
  HostDriver& host = console.HostWithPage();
  console.RequireNoDialog();
  host.Release();
}

void Site(Console& console, const Words& words) {
  console.Stage().hasSite = SwitchWord(words[0], "the page site");
}

void Development(Console& console, const Words& words) {
  const bool on = SwitchWord(words[0], "development mode");
  console.Host().SetDevelopmentMode(on);
}

void AskPage(Console& console, const Words& words) {
  HostDriver& host = console.HostWithPage();
  std::ostream& out = console.Out();
  const std::string& what = words[0];
  if (SameName(what, "dirty")) {
    out << "Dirty: " << ValueText(host.Dirty()) << "\n";
  } else if (SameName(what, "name")) {
    out << "Name: " << QuotedText(host.Title()) << "\n";
  } else if (SameName(what, "active")) {
    const bool active = host.PageActive();
    out << "PageActive: " << ValueText(active) << "\n";
  } else if (SameName(what, "page-info")) {
    const HostDriver::PageInfo info = host.GetPageInfo({"as the host passed it", 4711});
    out << "HelpFile: " << QuotedText(info.helpFile) << ", HelpContext: " << info.helpContext << "\n";
  } else {
    throw ScriptError("unknown question \"" + what + "\"" +
                      SuggestName(what, {"dirty", "name", "active", "page-info"}));
  }
}

MessageAnswer MessageAnswerWord(const std::string& word) {
  for (const MessageAnswer answer :
       {MessageAnswer::Ok, MessageAnswer::Cancel, MessageAnswer::Yes, MessageAnswer::No}) {
    if (SameName(word, AnswerWord(answer))) return answer;
  }
  throw ScriptError("a message box is answered ok, cancel, yes or no, not \"" + word + "\"");
}

void Answer(Console& console, const Words& words) {
  const std::string& what = words[0];
  const std::string& answer = words[1];
  if (SameName(what, "pick")) {
    const bool cancel = SameName(answer, "cancel");
    if (!cancel && console.Stage().workbench.profile.world.FindPath(answer) == NoFolder) {
      throw ScriptError("there is no folder " + QuotedText(answer) + "; \"folders\" lists them");
    }
    console.QueuePick(cancel ? std::nullopt : std::optional(answer));
  } else if (SameName(what, "message")) {
    console.QueueMessageAnswer(MessageAnswerWord(answer));
  } else if (SameName(what, "browse")) {
    if (SameName(answer, "cancel")) {
      console.QueueBrowse({BrowseAnswer::Kind::Cancelled, {}});
    } else if (SameName(answer, "fail")) {
      console.QueueBrowse({BrowseAnswer::Kind::CannotBeCreated, {}});
    } else {
      console.QueueBrowse({BrowseAnswer::Kind::Chosen, answer});
    }
  } else if (SameName(what, "shell")) {
    console.QueueShellCode(NumberWord(answer, "the shell's return code"));
  } else {
    throw ScriptError("unknown question \"" + what + "\"" +
                      SuggestName(what, {"pick", "message", "browse", "shell"}));
  }
}

void OpenGallery(Console& console, const Words&) { console.Host().OpenGallery(); }

void Screenshot(Console& console, const Words& words) { console.Host().TakePicture(words[0]); }

void Hosts(Console& console, const Words& words) {
  const bool consoleOnly = SameName(words[0], "console");
  if (!consoleOnly && !SameName(words[0], "all")) {
    throw ScriptError("commands are for hosts \"console\" or \"all\", not \"" + words[0] + "\"");
  }
  console.SetConsoleOnly(consoleOnly);
}

void Say(Console& console, const Words& words) {
  for (size_t i = 0; i < words.size(); ++i) console.Out() << (i == 0 ? "" : " ") << words[i];
  console.Out() << "\n";
}

void Json(Console& console, const Words& words) {
  console.PrintJsonTo(SwitchWord(words[0], "JSON") ? &console.Out() : nullptr);
}

void Strict(Console& console, const Words& words) { console.SetStrict(SwitchWord(words[0], "strictness")); }

void Help(Console& console, const Words& words) {
  std::ostream& out = console.Out();
  const auto print = [&](const Command& command) {
    out << "  " << std::left << std::setw(44)
        << std::string(command.name) + " " + std::string(command.arguments) << std::right << command.purpose
        << "\n";
  };
  if (!words.empty()) {
    if (const Command* const command = FindCommand(words[0])) {
      print(*command);
      return;
    }
    if (console.OpenForms().empty())
      throw ScriptError("unknown command \"" + words[0] + "\"" + SuggestName(words[0], CommandNames()));
    // Of a control: what it is now, and what can be done with it.
    const FormDriver::ControlName control = console.FindControl(words[0]);
    Print(out, console.TopForm()->StateOf(control.name));
    for (const Command& command : UserCommands()) {
      if (TakesControl(command, control.kind)) print(command);
    }
    return;
  }
  struct Group {
    const char* title;
    std::span<const Command> commands;
  };
  for (const auto& [title, commands] :
       {Group{"Outlook and the add-in", HostCommands()}, Group{"The user", UserCommands()},
        Group{"The world around", WorldCommands()}, Group{"The library by itself", LibraryCommands()}}) {
    out << title << ":\n";
    for (const Command& command : commands) print(command);
  }
  out << "Words are separated by blanks; double quotes hold words together; \"#\" begins a comment.\n";
}

void Quit(Console& console, const Words&) { console.Quit(); }

constexpr auto Commands = std::to_array<Command>({
    {"load", "FILE", "open a profile", 1, 1, Load},
    {"language", "NUMBER", "texts in 1033 English, 1036 or 3084 French", 1, 1, Language},
    {"open", "", "make the page and initialise it", 0, 0, Open},
    {"create", "", "make the page, without initialising it", 0, 0, Create},
    {"initialize", "", "the add-in initialises the page", 0, 0, Initialize},
    {"reinitialize", "", "initialise the page once more", 0, 0, Reinitialize},
    {"apply", "", "Outlook applies the page", 0, 0, Apply},
    {"hide", "", "Outlook hides the page", 0, 0, Hide},
    {"release", "", "Outlook releases the page", 0, 0, Release},
    {"site", "on|off", "the page's container is a page site or not", 1, 1, Site},
    {"development", "on|off", "development mode", 1, 1, Development},
    {"ask", "dirty|name|active|page-info", "ask the page", 1, 1, AskPage},
    {"answer", "pick|message|browse|shell ANSWER",
     "queue an answer: PATH|cancel, ok|cancel|yes|no, FOLDER|cancel|fail, CODE", 2, 2, Answer},
    {"gallery", "", "open a form that has every kind of control", 0, 0, OpenGallery},
    {"screenshot", "FILE", "write a bitmap of the top form's window", 1, 1, Screenshot},
    {"hosts", "console|all", "what follows is for consoles without windows only, or for all", 1, 1, Hosts},
    {"say", "WORD...", "print the words", 0, AnyNumber, Say},
    {"json", "on|off", "print forms and settings as JSON, or as text again", 1, 1, Json},
    {"strict", "on|off", "a refusal or an error ends the script", 1, 1, Strict},
    {"help", "[COMMAND|CONTROL]", "list the commands, or those for a control", 0, 1, Help},
    {"quit", "", "end the run", 0, 0, Quit},
});

}  // namespace

std::span<const Command> HostCommands() { return Commands; }

}  // namespace vexa::workbench
