// Commands that change the world between two steps of a user, make outside calls fail, and print what was
// stored and called.
#include <algorithm>
#include <array>
#include <concepts>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

#include "workbench/Console.h"
#include "workbench/JsonOutput.h"
#include "workbench/Names.h"
#include "workbench/Settings.h"
#include "workbench/Utf8Path.h"

namespace vexa::workbench {
namespace {

using Words = std::vector<std::string>;

SettingsData& FindSettings(Console& console, const std::string& whose) {
  if (SameName(whose, "stored")) return console.Stage().workbench.profile.settings;
  if (!SameName(whose, "working")) {
    throw ScriptError("unknown settings \"" + whose +
                      "\"; right would be \"stored\" (the add-in's) or \"working\" (the page's copy)");
  }
  SettingsData* const working = console.Stage().workbench.WorkingCopy();
  if (working == nullptr) throw ScriptError("there is no working copy; \"open\" makes one");
  return *working;
}

// --- words to values

void Assign(bool& value, const std::string& word, std::string_view name) { value = SwitchWord(word, name); }
void Assign(std::string& value, const std::string& word, std::string_view) { value = word; }
template <std::integral Integer>
void Assign(Integer& value, const std::string& word, std::string_view name) {
  const int32_t number = NumberWord(word, name);
  if (number < std::numeric_limits<Integer>::min() || number > std::numeric_limits<Integer>::max()) {
    throw ScriptError(std::string(name) + " must be a whole number of 16 bits, not " + word);
  }
  value = static_cast<Integer>(number);
}

template <typename Value>
void AssignWords(Value& value, std::span<const std::string> words, std::string_view name) {
  if (words.size() != 1) throw ScriptError(std::string(name) + " takes one value");
  Assign(value, words.front(), name);
}
template <typename Value>
void AssignWords(std::vector<Value>& values, std::span<const std::string> words, std::string_view name) {
  std::vector<Value> items(words.size());
  for (size_t i = 0; i < words.size(); ++i) Assign(items[i], words[i], name);
  values = std::move(items);
}

void Set(Console& console, const Words& words) {
  SettingsData& settings = FindSettings(console, words[0]);
  bool found = false;
  VisitSettings(settings, [&](std::string_view name, auto& value) {
    if (!SameName(name, words[1])) return;
    found = true;
    AssignWords(value, std::span(words).subspan(2), name);
  });
  if (!found)
    throw ScriptError("unknown setting \"" + words[1] + "\"" + SuggestName(words[1], SettingNames()));
}

// --- values to text

using workbench::ValueText;  // else the one below hides the others
template <typename Value>
std::string ValueText(const std::vector<Value>& values) {
  std::string text = std::to_string(values.size()) + " item" + (values.size() == 1 ? "" : "s");
  for (size_t i = 0; i < values.size(); ++i) text += (i == 0 ? ": " : ", ") + ValueText(values[i]);
  return text;
}

void Dump(Console& console, const Words& words) {
  const SettingsData& settings = FindSettings(console, words[0]);
  const std::vector<std::string_view> names = SettingNames();
  for (size_t i = 1; i < words.size(); ++i) {
    if (std::ranges::none_of(names, [&](std::string_view name) { return SameName(name, words[i]); })) {
      throw ScriptError("unknown setting \"" + words[i] + "\"" + SuggestName(words[i], names));
    }
  }
  const auto isWanted = [&](std::string_view name) {
    return words.size() == 1 || std::any_of(words.begin() + 1, words.end(),
                                            [&](const std::string& word) { return SameName(word, name); });
  };
  if (std::ostream* const json = console.Json()) {
    *json << JsonLine(settings, SameName(words[0], "stored") ? "stored" : "working", isWanted) << std::endl;
    return;
  }
  VisitSettings(settings, [&](std::string_view name, const auto& value) {
    if (isWanted(name)) console.Out() << "  " << name << " = " << ValueText(value) << "\n";
  });
}

void CanWriteSwitch(Console& console, const Words& words) {
  console.Stage().workbench.profile.addin.canWrite = SwitchWord(words[0], "the write access");
}

void Flag(Console& console, const Words& words) {
  AddinState& addin = console.Stage().workbench.profile.addin;
  const bool value = SwitchWord(words[1], "the flag");
  if (SameName(words[0], "BypassBlocked")) {
    addin.bypassBlocked = value;
  } else if (SameName(words[0], "DelayAvailable")) {
    addin.delayAvailable = value;
  } else {
    throw ScriptError("unknown flag \"" + words[0] + "\"" +
                      SuggestName(words[0], {"BypassBlocked", "DelayAvailable"}));
  }
}

void Scan(Console& console, const Words& words) {
  console.Stage().workbench.profile.addin.scanning = SwitchWord(words[0], "the scan");
}

FolderIndex FindFolder(Console& console, const std::string& path) {
  const FolderIndex folder = console.Stage().workbench.profile.world.FindPath(path);
  if (folder == NoFolder)
    throw ScriptError("there is no folder " + QuotedText(path) + "; \"folders\" lists them");
  return folder;
}

void Delete(Console& console, const Words& words) {
  console.Stage().workbench.profile.world.Delete(FindFolder(console, words[0]));
}

void Unreadable(Console& console, const Words& words) {
  console.Stage().workbench.profile.world.At(FindFolder(console, words[0])).unreadable =
      SwitchWord(words[1], "unreadable");
}

void Excluded(Console& console, const Words& words) {
  console.Stage().workbench.profile.world.At(FindFolder(console, words[0])).excluded =
      SwitchWord(words[1], "excluded");
}

void ListFolders(Console& console, const Words& words) {
  const World& world = console.Stage().workbench.profile.world;
  const auto print = [&](FolderIndex folder) {
    const FolderNode& node = world.At(folder);
    console.Out() << "  " << QuotedText(world.PathOf(folder)) << " item type "
                  << static_cast<int32_t>(node.itemType);
    const size_t below = world.ChildCount(folder);
    if (below > 0) console.Out() << ", " << below << (below == 1 ? " subfolder" : " subfolders");
    if (node.unreadable) console.Out() << ", unreadable";
    if (node.excluded) console.Out() << ", excluded";
    console.Out() << "\n";
  };
  const FolderIndex parent = words.empty() ? NoFolder : FindFolder(console, words[0]);
  for (const FolderIndex child : world.ChildrenOf(parent)) print(child);
}

void Generate(Console& console, const Words& words) {
  World& world = console.Stage().workbench.profile.world;
  for (const Store& store : world.Stores()) {
    if (SameName(store.storeID, words[0]))
      throw ScriptError("there is a store " + store.storeID + " already");
  }
  if (words[0].empty()) throw ScriptError("a store's id must not be empty");
  const std::optional<StoreKind> kind = StoreKindNamed(words[1]);
  if (!kind)
    throw ScriptError("unknown kind of store \"" + words[1] +
                      "\"; right would be mailbox, public or personal");
  GeneratedFolders rule;
  rule.name = words[2];
  const auto number = [&](size_t word, const char* what, int32_t least) {
    const int32_t value = NumberWord(words[word], what);
    if (value < least) throw ScriptError(std::string(what) + " must be at least " + std::to_string(least));
    return static_cast<uint32_t>(value);
  };
  rule.count = number(3, "the number of folders", 1);
  rule.breadth = number(4, "the number of subfolders", 1);
  if (words.size() > 5) rule.seed = number(5, "the seed", 0);
  if (words.size() > 6) rule.itemTypes.clear();
  for (size_t word = 6; word < words.size(); ++word)
    rule.itemTypes.push_back(NumberWord(words[word], "the item type"));
  const uint32_t store = world.AddGeneratedStore(words[0], *kind, std::move(rule));
  const Store& made = world.Stores()[store];
  console.Out() << "generated " << QuotedText(world.PathOf(made.root)) << ": " << made.folderCount
                << (made.folderCount == 1 ? " folder" : " folders") << ", " << made.generated->Depth()
                << " deep\n";
}

/// NUMBER TEXT [SOURCE], or a word for what else may come of a call.
Fault FaultOf(const std::string& member, std::span<const std::string> words) {
  struct Way {
    std::string_view word;
    Fault::Kind kind;
  };
  static constexpr std::array<Way, 5> ways{{{"nothing", Fault::Kind::Nothing},
                                            {"type", Fault::Kind::WrongType},
                                            {"memory", Fault::Kind::OutOfMemory},
                                            {"exception", Fault::Kind::Exception},
                                            {"foreign", Fault::Kind::Foreign}}};
  for (const Way& way : ways) {
    if (!SameName(words[0], way.word)) continue;
    if (words.size() > 1) throw ScriptError("nothing follows \"" + words[0] + "\"");
    if (way.kind == Fault::Kind::Nothing && !CallLog::AnswersWithObject(member))
      throw ScriptError(member + " does not answer with an object");
    return Fault(way.kind);
  }
  const int32_t number = NumberWord(words[0], "the error number");
  if (words.size() == 1) throw ScriptError("the text of error " + words[0] + " is missing");
  return Error(number, words[1], words.size() > 2 ? words[2] : "VexaAddin");
}

const std::string& FindMember(const std::string& word) {
  const std::vector<std::string>& known = CallLog::KnownMembers();
  const auto member =
      std::ranges::find_if(known, [&](const std::string& name) { return SameName(name, word); });
  if (member == known.end()) {
    throw ScriptError("unknown member \"" + word + "\"" +
                      SuggestName(word, std::vector<std::string_view>(known.begin(), known.end())));
  }
  return *member;
}

int32_t CallNumber(const std::string& word, const char* what) {
  const int32_t n = NumberWord(word, what);
  if (n < 1) throw ScriptError("the next call is number 1, not " + word);
  return n;
}

void FailMember(Console& console, const Words& words) {
  const std::string& member = FindMember(words[0]);
  const int32_t n = CallNumber(words[1], "which call fails");
  console.Stage().calls.PlanFault(member, n, FaultOf(member, std::span(words).subspan(2)));
}

void During(Console& console, const Words& words) {
  const std::string& member = FindMember(words[0]);
  const int32_t n = CallNumber(words[1], "during which call");
  console.PlanDuring(member, n, {words.begin() + 2, words.end()});
}

void Trace(Console& console, const Words& words) {
  CallLog& calls = console.Stage().calls;
  if (words.empty()) {
    for (const std::string& line : calls.Lines()) console.Out() << "  " << line << "\n";
    if (calls.Lines().empty()) console.Out() << "  (nothing was called)\n";
  } else if (SameName(words[0], "clear") && words.size() == 1) {
    calls.Clear();
  } else if (SameName(words[0], "reads") && words.size() == 2) {
    calls.ShowReads(SwitchWord(words[1], "reads"));
  } else {
    throw ScriptError("right would be: trace, trace clear, trace reads on|off");
  }
}

/// One line of the error log as the console shows it; nothing for the components when they are not wanted.
std::optional<std::string> LogLine(const std::string& line, bool withComponents) {
  try {
    const auto entry = nlohmann::json::parse(line);
    if (entry.contains("number")) {
      return std::to_string(entry.at("number").get<int32_t>()) + " " +
             QuotedText(entry.at("description").get<std::string>()) + " trail " + entry.at("trail").dump();
    }
    if (!withComponents) return std::nullopt;
    std::string text = "components";
    for (const auto& component : entry.at("components")) {
      const auto version = component.at("version").get<std::string>();
      text += (text.ends_with("components") ? " " : ", ") + component.at("name").get<std::string>();
      if (!version.empty()) text += " " + version;
    }
    return text;
  } catch (const nlohmann::json::exception&) {
    return "a line that is no record";
  }
}

void ShowLog(Console& console, const Words& words) {
  const bool withComponents = !words.empty();
  if (withComponents && !SameName(words[0], "components"))
    throw ScriptError("right would be: log, log components");
  const Stage& stage = console.Stage();
  const std::string place = stage.files.PlaceOf(stage.workbench.profile.settings.ErrorLogPath);
  std::ifstream log(Utf8Path(place));
  bool empty = true;
  for (std::string line; std::getline(log, line);) {
    const std::optional<std::string> text = LogLine(line, withComponents);
    if (!text) continue;
    console.Out() << "  " << *text << "\n";
    empty = false;
  }
  if (empty) console.Out() << "  (no record)\n";
}

void SetMachine(Console& console, const Words& words) {
  MachineState& machine = console.Stage().workbench.profile.machine;
  const std::string& name = words[0];
  if (SameName(name, "userName")) {
    machine.userName = words[1];
  } else if (SameName(name, "computerName")) {
    machine.computerName = words[1];
  } else if (SameName(name, "profileName")) {
    machine.profileName = words[1];
  } else if (SameName(name, "outlookUser")) {
    machine.outlookUser = words[1];
  } else if (SameName(name, "canWriteMachine")) {
    machine.canWriteMachine = SwitchWord(words[1], "the access");
  } else {
    throw ScriptError(
        "unknown fact \"" + name + "\"" +
        SuggestName(name, {"userName", "computerName", "profileName", "outlookUser", "canWriteMachine"}));
  }
}

void WorkOnFiles(Console& console, const Words& words) {
  const WindowsFiles& files = console.Stage().files;
  const std::string& verb = words[0];
  if (SameName(verb, "list") && words.size() == 1) {
    const std::vector<std::string> paths = files.List();
    for (const std::string& path : paths) console.Out() << "  " << QuotedText(path) << "\n";
    if (paths.empty()) console.Out() << "  (no file)\n";
  } else if (SameName(verb, "write") && words.size() == 3) {
    console.AsHost([&] { files.Write(words[1], words[2] + "\n"); });
  } else if (SameName(verb, "read") && words.size() == 2) {
    console.AsHost([&] { console.Out() << "  " << QuotedText(files.Read(words[1])) << "\n"; });
  } else if (SameName(verb, "remove") && words.size() == 2) {
    console.AsHost([&] { files.Remove(words[1]); });
  } else {
    throw ScriptError("right would be: file list, file write PATH TEXT, file read PATH, file remove PATH");
  }
}

void ShowOutbox(Console& console, const Words&) {
  std::ostream& out = console.Out();
  const std::vector<SentMail>& sent = console.Stage().workbench.sent;
  for (const SentMail& mail : sent) {
    out << "  mail " << QuotedText(mail.subject) << "\n";
    for (const std::string& recipient : mail.recipients) out << "    to " << QuotedText(recipient) << "\n";
    for (const auto& [name, value] : mail.properties) {
      out << "    property " << QuotedText(name) << " = " << QuotedText(value) << "\n";
    }
    for (const SentMail::Attachment& attachment : mail.attachments) {
      out << "    attachment " << QuotedText(attachment.name) << ", " << attachment.content.size()
          << " bytes\n";
    }
    out << "    body " << QuotedText(mail.body) << "\n";
  }
  if (sent.empty()) out << "  (nothing was sent)\n";
}

constexpr auto Commands = std::to_array<Command>({
    {"set", "stored|working SETTING VALUE...", "change a setting behind the page's back", 2, AnyNumber, Set},
    {"dump", "stored|working [SETTING...]", "print settings: the add-in's, or the page's working copy", 1,
     AnyNumber, Dump},
    {"canwrite", "on|off", "give or take the right to change settings", 1, 1, CanWriteSwitch},
    {"flag", "BypassBlocked|DelayAvailable on|off", "set a flag of the add-in", 2, 2, Flag},
    {"scan", "on|off", "a search of the monitored folders runs or not", 1, 1, Scan},
    {"folders", "[PATH]", "list the stores, or the folders in a folder", 0, 1, ListFolders},
    {"generate", "STOREID mailbox|public|personal NAME COUNT BREADTH [SEED [ITEMTYPE...]]",
     "add a store with a folder hierarchy of any size", 5, AnyNumber, Generate},
    {"delete", "PATH", "delete a folder and everything in it", 1, 1, Delete},
    {"unreadable", "PATH on|off", "make a folder's EntryID unreadable", 2, 2, Unreadable},
    {"excluded", "PATH on|off", "let the add-in exclude a folder's record when it is monitored", 2, 2,
     Excluded},
    {"fail", "MEMBER N NUMBER|WAY [TEXT [SOURCE]]", "let the n-th call of a member from now fail", 3, 5,
     FailMember},
    {"during", "MEMBER N COMMAND...", "run a command inside the n-th call of a member from now", 3, AnyNumber,
     During},
    {"trace", "[clear | reads on|off]", "print the outside calls since the last clear", 0, 2, Trace},
    {"log", "[components]", "print the error log", 0, 1, ShowLog},
    {"machine", "FACT VALUE", "change who works where: userName, computerName, ...", 2, 2, SetMachine},
    {"file", "list|write|read|remove ...", "work on the machine's files", 1, 3, WorkOnFiles},
    {"outbox", "", "print the mails that were sent", 0, 0, ShowOutbox},
});

}  // namespace

std::span<const Command> WorldCommands() { return Commands; }

std::vector<std::string_view> SettingNames() {
  std::vector<std::string_view> names;
  const SettingsData data;
  VisitSettings(data, [&](std::string_view name, const auto&) { names.push_back(name); });
  return names;
}

}  // namespace vexa::workbench
