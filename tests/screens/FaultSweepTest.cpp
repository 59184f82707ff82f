// Every outside call of everything that a user and the add-in can do, failing once in every way, and
// succeeding after something else has happened inside it. The screens are found by walking: from the page on,
// each verb on each control that can be used, once for each form as it looks when it opens. Whatever fails:
// nothing crashes or leaks, the error ends at the user's action, with its trail, or comes out where the
// add-in called; nothing is stored but what had been stored before the failure; and the same action works
// afterwards, or the dialog can be cancelled. Whatever happens inside a call: what was dropped stays dropped,
// everything can be closed, and the page works once it is initialised again.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <sstream>

#include "tests/ScratchFolder.h"
#include "tests/screens/Scene.h"
#include "tests/walk/Invariants.h"
#include "workbench/FormState.h"
#include "workbench/JsonOutput.h"

namespace vexa::workbench {
namespace {

using Path = std::vector<Step>;

constexpr const char* ProfileFile = "sweep.json";

struct Way {
  const char* name;
  Fault fault;
  int32_t number;  // of the error that it becomes
  const char* description;
};
const std::vector<Way>& Ways() {
  static const std::vector<Way> ways{
      {"error", Error(4711, "planned", "Outside"), 4711, "planned"},
      {"error without a text", Error(4712, "", ""), 4712, ""},
      {"wrong type", Fault(Fault::Kind::WrongType), 13, "Type mismatch"},
      {"no object", Fault(Fault::Kind::Nothing), 91, "Object variable not set"},
      {"out of memory", Fault(Fault::Kind::OutOfMemory), 7, "Out of memory"},
      {"exception", Fault(Fault::Kind::Exception), 51, "Internal error: "},
      {"foreign exception", Fault(Fault::Kind::Foreign), 51, "Internal error"},
  };
  return ways;
}

/// Two folder sets with their routing, two monitored folders, an error log, and a folder of each kind.
Profile MakeProfile() {
  Profile profile = Scene::MakeProfile();
  World& world = profile.world;
  const FolderIndex root = world.FindPath("P");
  world.AddFolder(0, root, "A", "a", ItemType::Appointment);
  world.AddFolder(0, root, "T", "t", ItemType::Task);
  world.defaultFolders[6] = world.AddFolder(0, root, "Inbox", "i", ItemType::Mail);
  SettingsData& settings = profile.settings;
  settings.SharedCalEntryIDs = {"a", ""};
  settings.SharedCalStoreIDs = {"S", ""};
  settings.LoggingMethod = 3;
  settings.MonitoredFolderCount = 2;
  settings.MonitoredFolderEntryIDs = {"c1", "6"};
  settings.MonitoredFolderStoreIDs = {"S", ""};
  settings.MonitoredFolderItemTypes = {2, 0x40000020};
  settings.EnterpriseSettingsPresent = true;
  settings.RecordsPerDownload = 7;
  settings.ErrorLogPath = "C:\\Bin\\VEXAERRORS.MDB";
  settings.DelayNewItems = 2000;
  return profile;
}

/// Runs steps, answering what is asked in the friendliest way that leads on.
class Rehearsal : public FedConsole {
 public:
  explicit Rehearsal(Path path) : path_(std::move(path)) {
    static const Profile profile = MakeProfile();
    TheConsole().Load(profile, ProfileFile);
    std::ofstream(LogFile()) << "a log\n";
  }

  /// What is to be seen and what is stored.
  std::string State() {
    std::ostringstream text;
    for (const auto& form : TheConsole().OpenForms()) Print(text, form->State());
    Stage& stage = TheConsole().Stage();
    if (const SettingsData* const working = stage.workbench.WorkingCopy()) {
      text << JsonLine(*working, "working", [](std::string_view /*name*/) { return true; });
    }
    if (const OutlookPropertiesPage* const page = stage.Page()) {
      text << page->PropertyPage_Dirty() << page->PageActive() << page->SearchNowPending;
    }
    return text.str();
  }
  CallLog& Calls() { return TheConsole().Stage().calls; }
  /// Runs to the end; what does not hold, empty when all does.
  std::string Flaw() {
    try {
      Run();
      if (flaw_.empty()) flaw_ = Invariants::AtTheEnd(*this);
    } catch (...) {
      flaw_ = "an exception came out of a command: " + CurrentError().Description;
    }
    return flaw_;
  }
  static std::string LogFile() { return std::string(ProfileFile) + ".files/C/Bin/VEXAERRORS.MDB"; }

 protected:
  std::optional<Step> NextOfPath() {
    return next_ == path_.size() ? std::nullopt : std::optional(path_[next_++]);
  }
  std::string Answer(const std::string& choices) override {
    if (choices == "FOLDER|cancel|fail") return "D:\\logs";
    if (choices == "CODE") return "42";
    if (choices != "PATH|cancel") return choices.substr(0, choices.find('|'));
    constexpr size_t most = 4;  // one that no longer fits is asked for again and again
    if (current_.answers.size() > most) return "cancel";
    // A folder that fits, by the name of the control that asks for it.
    static const std::map<std::string, std::string> fitting{
        {"Contact", "P/C3"}, {"Journ", "P/J"}, {"Email", "P/E"}, {"Cal", "P/A"}, {"Task", "P/T"}};
    for (const auto& [control, folder] : fitting) {
      if (current_.line.find(control) != std::string::npos) return folder;
    }
    return "cancel";
  }

  std::vector<const Form*> Forms() {
    std::vector<const Form*> forms(TheConsole().OpenDialogs().begin(), TheConsole().OpenDialogs().end());
    if (const Form* const page = TheConsole().Stage().Page()) forms.push_back(page);
    return forms;
  }

  Path path_;
  size_t next_ = 0;
  std::string flaw_;
};

/// The changes of the settings in the trace.
std::vector<std::string> WritesIn(const std::vector<std::string>& lines) {
  std::vector<std::string> writes;
  for (const std::string& line : lines) {
    if (line.find(" !! ") == std::string::npos) writes.push_back(WriteIn(line));
  }
  std::erase(writes, "");
  return writes;
}

/// An action, where it was taken, and what comes of it when nothing fails.
struct Deed {
  Path path;          // the last step is the action
  std::string form;   // the top one before
  std::string after;  // the top one then
  std::string pressed;
  std::vector<std::string> members;  // called by it, in order
  std::vector<std::string> writes;
  std::string state;
};

/// Takes a path once, without failures, and looks around at its end.
class Look final : public Rehearsal {
 public:
  using Rehearsal::Rehearsal;
  Deed deed;
  std::string identity;  // how the top form looked when it opened
  std::vector<Action> beyond;

 private:
  std::optional<Step> Next(const std::string&) override {
    if (next_ > 0) Note();
    const bool last = next_ + 1 == path_.size();
    if (last) {
      Calls().Clear();
      Calls().SetObserver([this](std::string_view member) { deed.members.emplace_back(member); });
      if (const Form* const top = Top()) {
        deed.form = top->Name();
        deed.pressed = path_.back().form.empty() ? "" : ButtonPressedBy(*top, path_.back());
      }
    }
    std::optional<Step> step = NextOfPath();
    if (!step) {
      Calls().SetObserver({});
      deed.path = path_;
      deed.writes = WritesIn(Calls().Lines());
      deed.state = State();
      if (Top() == nullptr) return step;
      deed.after = Top()->Name();
      beyond = ActionsOn(*Top());
      std::erase_if(beyond, [](const Action& action) {
        return action.control != nullptr && !action.control->IsUsable();
      });
      identity = Top() == TheConsole().Stage().Page() ? Top()->Name() : identities_[Top()];
    }
    return step;
  }
  void Note() {
    std::map<const Form*, std::string> now;
    for (const Dialog* const dialog : TheConsole().OpenDialogs()) {
      const auto known = identities_.find(dialog);
      now[dialog] = known == identities_.end() ? Printed(*dialog) : known->second;
    }
    identities_ = std::move(now);
  }
  std::map<const Form*, std::string> identities_;
};

/// Whether the n-th call of an action may fail without a word: as each of these is meant to.
bool IsPassedOver(const Deed& deed, size_t n, const Way& way) {
  const std::string& member = deed.members[n - 1];
  const std::string& line = deed.path.back().line;
  const bool page = deed.form.empty() || deed.form == "OutlookPropertiesPage";
  // The page on its way out, Apply, the help, and drawing.
  if (line == "hide" || line == "release" || line == "apply" || deed.pressed == "cmdHelp" ||
      member == "View.Refresh")
    return true;
  // What remains to be done once a report is sent is logged, not shown.
  if (deed.pressed == "cmdEmail" && (member == "Files.Remove" || member == "Sys.ProcessMessages"))
    return true;
  // Nothing is an answer like any other: cancelled, at the top, no context.
  if (way.fault.kind == Fault::Kind::Nothing &&
      (member == "Sess.PickFolder" || member == "Folder.Parent" || member == "App.FolderSetContext"))
    return true;
  // Tidying up after a report that was sent.
  if (member == "Files.Remove" || member == "Sys.ProcessMessages") return true;
  // The editor opens and stores statement by statement.
  if ((page && deed.after == "frmEditFolderset") ||
      (deed.form == "frmEditFolderset" && deed.pressed == "cmdOk"))
    return true;
  // What cannot be found is not there. The session is asked for at first by what the user wants; later to
  // look.
  if (member == "Sess.GetFolderFromID" || member == "Sess.GetDefaultFolder" || member == "Folder.EntryID")
    return true;
  const bool looks = n > 1 || (deed.form == "frmSharedFolders" && deed.pressed == "cmdOk");
  if (member == "App.Session" && looks) return true;
  if (deed.after == "frmSharedFolders" && deed.form != deed.after)
    return member == "App.Utilities" || member == "Util.GetFolderPath";
  // Buttons stay as they are when the access cannot be told.
  return page && member == "RS.CanWrite";
}

/// An action of the page or the editor that works on the lists of folder sets one by one.
bool IsPiecemeal(const Deed& deed) {
  return deed.pressed == "cmdRemove" || (deed.pressed == "cmdOk" && deed.form == "frmEditFolderset");
}

/// Takes the path with the n-th call of its last step failing, and then the last step once more, or cancels.
class Trial final : public Rehearsal {
 public:
  Trial(const Deed& deed, int n, const Way& way, bool again)
      : Rehearsal(deed.path), deed_(deed), n_(n), way_(way), again_(again) {}

 private:
  std::optional<Step> Next(const std::string& output) override {
    if (phase_ == 0 && next_ == path_.size()) flaw_ = AfterFailure(output);
    if (phase_ == 1) flaw_ = AfterAll(output);
    if (!flaw_.empty()) return std::nullopt;
    if (next_ == path_.size()) return phase_++ == 0 ? Aftermath() : std::nullopt;
    std::optional<Step> step = NextOfPath();
    if (next_ == path_.size()) {
      Calls().Clear();
      Calls().PlanFault(CallLog::AnyMember, n_, way_.fault);
      const OutlookPropertiesPage* const page = TheConsole().Stage().Page();
      dirty_ = page != nullptr && page->PropertyPage_Dirty();
      stored_ = TheConsole().Stage().workbench.profile.settings;
      if (const SettingsData* const working = TheConsole().Stage().workbench.WorkingCopy())
        working_ = *working;
      dialogs_ = TheConsole().OpenDialogs().size();
      for (const auto& form : TheConsole().OpenForms()) {
        for (const auto& control : form->Controls()) controls_.insert(form->Name() + "." + control.name);
      }
    }
    return step;
  }

  /// The report of an error in a message box, taken apart; nothing wrong with it: empty.
  std::string FlawOfReport(const std::string& line) {
    const auto part = [&](const std::string& from, const std::string& to) {
      const size_t start = line.find(from);
      if (start == std::string::npos) return std::string("(missing)");
      return line.substr(start + from.size(), line.find(to, start) - start - from.size());
    };
    const std::string number = part("Error Number: ", "|n");
    const std::string description = part("|nDescription: ", "|n|nSource: ");
    const std::string trail = part("|nPropogation Trail (for tech support): ", "\" -> ");
    // What goes on without an object, or statement by statement, may stumble later; an error of the action's
    // own asks where the log is.
    const bool ours = number == std::to_string(way_.number);
    const bool other = way_.fault.kind == Fault::Kind::Nothing || IsPiecemeal(deed_);
    if (!ours && !other && !Called("RS.ErrorLogPath")) return "the error is another one: " + line;
    const bool named =
        description.starts_with(way_.description) || Called("Shell.BrowseForFolder");  // says it itself
    if (ours && !named) return "the description is another one: " + line;
    const std::string last = trail.substr(trail.rfind('>') + 1);
    const bool isAction = controls_.contains(last.substr(0, last.rfind('_')));
    return isAction ? "" : "the trail does not end at the action: " + line;
  }

  std::string AfterFailure(const std::string& output) {
    if (Calls().FaultsMet() != 1) return "the call is not made this time";
    size_t told = 0;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("error ")) {
        ++told;
        if (!deed_.path.back().form.empty()) return "an error came out: " + line;
        if (line.find("OutlookPropertiesPage.Initialize\"") == std::string::npos) return "no trail: " + line;
      } else if (line.find("Error Number: ") != std::string::npos) {
        ++told;
        if (std::string flaw = FlawOfReport(line); !flaw.empty()) return flaw;
      } else if (line.starts_with("MSG[critical")) {  // in its own words
        ++told;
      }
    }
    if (told == 0 && !IsPassedOver(deed_, static_cast<size_t>(n_), way_)) return "nobody was told";
    if (told > 2) return "told more than once: " + output;
    for (const Form* const form : Forms()) {
      if (std::string flaw = FlawOf(*form); !flaw.empty()) return flaw;
    }
    const std::vector<std::string> writes = WritesIn(Calls().Lines());
    const auto rest = IsPiecemeal(deed_) ? Missing(writes)
                                         : std::ranges::mismatch(writes, deed_.writes).in1 != writes.end();
    if (rest) return "wrote what it does not write otherwise, or in another order";
    const Stage& stage = TheConsole().Stage();
    const SettingsData& stored = stage.workbench.profile.settings;
    if (stored != stored_ && !(deed_.path.back().line == "apply" && stored == working_))
      return "the stored settings are neither the old nor the new";
    const OutlookPropertiesPage* const page = stage.Page();
    const bool stays = told > 0 && TheConsole().OpenDialogs().size() == dialogs_ && dialogs_ > 0;
    if (stays && page->PropertyPage_Dirty() != dirty_ && !Called("Site.OnStatusChange"))
      return "the page is dirty before all is written";
    return {};
  }

  bool Called(const std::string& member) { return deed_.members[static_cast<size_t>(n_ - 1)] == member; }

  /// Whether `writes` are no part of those without a failure, in their order.
  bool Missing(const std::vector<std::string>& writes) const {
    auto at = deed_.writes.begin();
    for (const std::string& write : writes) {
      at = std::find(at, deed_.writes.end(), write);
      if (at == deed_.writes.end()) return true;
      ++at;
    }
    return false;
  }

  std::optional<Step> Aftermath() {
    Calls().Clear();
    dialogs_ = TheConsole().OpenDialogs().size();
    const Step& action = deed_.path.back();
    const Form* const top = Top();
    const std::vector<std::string> words = WordsOf(action);
    const Control* const control = top != nullptr && words.size() > 1 ? top->FindControl(words[1]) : nullptr;
    const bool possible =
        Fits(action) && (control == nullptr || control->IsUsable()) && TheConsole().Stage().Page() != nullptr;
    repeats_ = again_ && possible;
    if (repeats_) return action;
    if (dialogs_ == 0) return std::nullopt;
    return Step{top->Name(), "esc", {}};
  }

  std::string AfterAll(const std::string& output) {
    ++phase_;
    if (output.find("Error Number: ") != std::string::npos || output.starts_with("error "))
      return "it fails again: " + output;
    if (!repeats_) {
      if (TheConsole().OpenDialogs().size() >= dialogs_) return "the dialog cannot be cancelled";
      return WritesIn(Calls().Lines()).empty() ? "" : "cancelling wrote something";
    }
    const bool button = !deed_.pressed.empty() && !IsPiecemeal(deed_);
    if (!button || State() == deed_.state) return "";
    return "the same again has another outcome: " + State() + "and not " + deed_.state;
  }

  const Deed& deed_;
  int n_;
  const Way& way_;
  bool again_;
  bool repeats_ = false;
  int phase_ = 0;
  bool dirty_ = false;
  size_t dialogs_ = 0;
  SettingsData stored_, working_;
  std::set<std::string> controls_;  // "form.control", of the forms that are open
};

/// Takes the path with something else happening inside the n-th call of its last step, which then succeeds.
/// Closes what is open after it, initialises the page again, and uses it.
class Interruption final : public Rehearsal {
 public:
  Interruption(const Deed& deed, int n, const std::string& event)
      : Rehearsal(deed.path), n_(n), event_(event) {}

 private:
  std::optional<Step> Next(const std::string& output) override {
    if (next_ == path_.size()) return Aftermath(output);
    if (next_ + 1 == path_.size()) {
      TheConsole().PlanDuring(CallLog::AnyMember, n_, SplitWords(event_));
      stored_ = TheConsole().Stage().workbench.profile.settings;
    }
    return NextOfPath();
  }

  std::optional<Step> Aftermath(const std::string& output) {
    const OutlookPropertiesPage* const page = TheConsole().Stage().Page();
    const std::vector<Dialog*>& dialogs = TheConsole().OpenDialogs();
    if (use_ == 0) {
      if (closed_ == 0) flaw_ = AfterCall();
      constexpr int most = 8;  // dialogs, open at once
      if (closed_ == most) flaw_ = dialogs.back()->Name() + " cannot be closed";
      if (!flaw_.empty()) return std::nullopt;
      ++closed_;
      if (!dialogs.empty()) return Step{dialogs.back()->Name(), "close", {}};
      if (event_ == "hide") flaw_ = AfterHiding();
      if (!flaw_.empty()) return std::nullopt;
    }
    switch (use_++) {
      case 0:
        return Step{"", page == nullptr ? "open" : "initialize", {}};
      case 1:
        if (page->PageActive()) return Step{page->Name(), "click cmdAdd", {}};
        [[fallthrough]];
      default:
        if (dialogs.empty()) flaw_ = "the page does not work once it is initialised again: " + output;
        return std::nullopt;
    }
  }

  std::string AfterCall() {
    if (Calls().InterruptionsPlanned() != 0) return "the call is not made this time";
    for (const Form* const form : Forms()) {
      if (std::string flaw = FlawOf(*form); !flaw.empty()) return flaw;
    }
    const bool applies = event_ == "apply" || path_.back().line == "apply";
    const bool same = TheConsole().Stage().workbench.profile.settings == stored_;
    return same || applies ? "" : "settings were stored that nobody has applied";
  }
  std::string AfterHiding() {
    const Stage& stage = TheConsole().Stage();
    if (stage.Page() != nullptr && stage.Page()->PageActive())
      return "the page is active after it was hidden";
    return stage.workbench.WorkingCopy() == nullptr ? "" : "the working copy outlives the hidden page";
  }

  int n_;
  const std::string& event_;
  SettingsData stored_;
  int closed_ = 0;
  int use_ = 0;
};

/// Everything that can be done, each in the first place where it can.
std::vector<Deed> EveryDeed() {
  const auto with = [](Path path, std::initializer_list<Step> more) {
    path.insert(path.end(), more);
    return path;
  };
  const Path open{{"", "open", {}}};
  const std::string page = "OutlookPropertiesPage";
  const Path searching = with(open, {{page, "click cmdTracking", {}},
                                     {"frmTrackingOptions", "check chkSearchNow", {}},
                                     {"frmTrackingOptions", "click cmdOk", {}}});
  // What takes more than one step to become possible.
  std::deque<Path> ahead{open,
                         with(open, {{"", "hide", {}}}),
                         with(open, {{"", "release", {}}}),
                         with(open, {{"", "reinitialize", {}}}),
                         with(searching, {{"", "apply", {}}}),
                         with(open, {{page, "click cmdAdd", {}},
                                     {"frmEditFolderset", "click cmdSelContact", {}},
                                     {"frmEditFolderset", "click cmdSelJourn", {}}})};
  std::vector<Deed> deeds;
  std::set<std::string> known;
  std::set<std::string> outcomes;
  std::map<std::string, int> ofOneKind;
  for (; !ahead.empty(); ahead.pop_front()) {
    Look look(ahead.front());
    look.Run();
    std::string outcome = look.deed.form + look.deed.state;
    for (const std::string& member : look.deed.members) outcome += member + "\n";
    const bool isNew = outcomes.insert(outcome).second;
    if (isNew && !look.deed.members.empty()) deeds.push_back(look.deed);
    for (const Action& action : look.beyond) {
      const std::vector<std::string> words = WordsOf(action.step);
      if (!known.insert(look.identity + "\n" + action.step.line).second) continue;
      // Of the texts for one box, and of the nodes in one branch, two say it all.
      std::string kind = look.identity + "\n" + words[0] + " " + (words.size() > 1 ? words[1] : "");
      if (words.size() > 2) kind += words[2].substr(0, words[2].rfind('\\') + 1);
      if (words.size() > 2 && ++ofOneKind[kind] > 2) continue;
      ahead.push_back(with(look.deed.path, {action.step}));
    }
  }
  return deeds;
}

class FaultSweep : public testing::Test {
 protected:
  void SetUp() override {
    folder_.Enter();
    std::filesystem::create_directories(std::filesystem::path(Rehearsal::LogFile()).parent_path());
    deeds_ = EveryDeed();
    for (const Deed& deed : deeds_) forms_.insert(deed.form);
    EXPECT_GT(forms_.size(), 9U);  // one is none
  }
  /// Counts a trial of the n-th call of a deed and notes its flaw, each kind once.
  void Note(const Deed& deed, size_t n, const std::string& what, const std::string& flaw) {
    ++trials_;
    const std::string& member = deed.members[n - 1];
    if (flaw.empty() || !flaws_.insert(flaw + member + deed.path.back().line).second || flaws_.size() > 30)
      return;
    ADD_FAILURE() << flaw << "\n  when call " << n << ", " << member << ", " << what << " in\n"
                  << ScriptOf(deed.path);
  }
  void TearDown() override {
    size_t calls = 0;
    for (const Deed& deed : deeds_) calls += deed.members.size();
    std::cout << deeds_.size() << " actions on " << forms_.size() - 1 << " screens, " << calls << " calls, "
              << trials_ << " trials\n";
    EXPECT_GE(trials_, 5000U) << "the walk no longer finds what there is to do";
  }

  ScratchFolder folder_;
  std::vector<Deed> deeds_;
  std::set<std::string> forms_;

 private:
  size_t trials_ = 0;
  std::set<std::string> flaws_;
};

TEST_F(FaultSweep, EveryCallOfEveryActionFailsInEveryWay) {
  for (const Deed& deed : deeds_) {
    for (size_t n = 1; n <= deed.members.size(); ++n) {
      for (size_t way = 0; way < Ways().size(); ++way) {
        const Way& each = Ways()[way];
        if (each.fault.kind == Fault::Kind::Nothing && !CallLog::AnswersWithObject(deed.members[n - 1]))
          continue;
        Note(deed, n, std::string("fails with ") + each.name,
             Trial(deed, static_cast<int>(n), each, way % 2 == 0).Flaw());
      }
    }
  }
}

TEST_F(FaultSweep, EveryCallOfEveryActionSucceedsAfterSomethingElse) {
  for (const Deed& deed : deeds_) {
    std::vector<std::string> events{"hide", "initialize", "apply", "delete P"};
    if (deed.form.starts_with("frm")) events.emplace_back("close");
    if (!deed.form.empty()) events.push_back(deed.path.back().line);
    for (size_t n = 1; n <= deed.members.size(); ++n) {
      for (const std::string& event : events)
        Note(deed, n, "succeeds after \"" + event + "\"",
             Interruption(deed, static_cast<int>(n), event).Flaw());
    }
  }
}

}  // namespace
}  // namespace vexa::workbench
