// vexa-walk: walks over all screens, each drawn from a seed: a user who tries everything, an add-in and an
// Outlook that do as they like, folders that vanish, access that comes and goes, calls that fail. After every
// step the invariants are looked at; a walk that breaks one is printed as a script that repeats it.
#include <array>
#include <chrono>
#include <cstring>
#include <deque>
#include <filesystem>
#include <iostream>
#include <random>

#include "tests/ScratchFolder.h"
#include "tests/walk/Invariants.h"

namespace vexa::workbench {
namespace {

namespace fs = std::filesystem;

struct WalkResult {
  std::vector<Step> steps;                // that were carried out
  std::string flaw;                       // empty for none; of the last step
  std::map<std::string, size_t> screens;  // how many of the steps were taken on which
  int64_t faults = 0;                     // calls that failed
};

constexpr const char* ProfileName = "small.json";
constexpr const char* LogPath = "C:\\Program Files\\Tolvane\\Vexa\\Bin\\VEXAERRORS.MDB";

/// The profile as it was at the start, and nothing beside it.
void ResetFolder() {
  for (const fs::directory_entry& entry : fs::directory_iterator(".")) fs::remove_all(entry.path());
  fs::copy_file(fs::path(VEXA_PROFILES_DIR) / ProfileName, ProfileName);
}

/// Where errors may come out of a command: what the add-in calls, and the commands for files.
bool MayFail(const std::string& verb) {
  return verb == "open" || verb == "initialize" || verb == "reinitialize" || verb == "file";
}

bool HasLine(const std::string& output, const std::string& start) {
  return output.starts_with(start) || output.find("\n" + start) != std::string::npos;
}

class Walker final : public FedConsole {
 public:
  Walker(uint64_t seed, size_t count) : random_(seed), left_(count) {}

  WalkResult Take() {
    ResetFolder();
    try {
      Run();
      if (result_.flaw.empty() && loaded_) result_.flaw = Invariants::AtTheEnd(*this);
    } catch (...) {
      result_.flaw = "an exception came out of a command: " + CurrentError().Description;
      if (taken_) result_.steps.push_back(current_);
    }
    if (loaded_) TheConsole().Stage().calls.SetObserver({});  // the console outlives what listens
    return std::move(result_);
  }

 private:
  std::optional<Step> Next(const std::string& output) override {
    const std::string verb = taken_ ? WordsOf(current_).front() : "";
    // A command that could not be carried out has changed nothing, and would end a script.
    if (taken_ && !HasLine(output, verb + ": ")) {
      result_.steps.push_back(current_);
      loaded_ |= verb == "load";
      ++result_.screens[current_.form];
      if (loaded_) result_.faults = TheConsole().Stage().calls.FaultsMet();
      result_.flaw = invariants_.After(*this, output);
      if (result_.flaw.empty() && HasLine(output, "error ") && !MayFail(verb))
        result_.flaw = "an error came out of a command: " + output;
      if (!result_.flaw.empty()) return std::nullopt;
    }
    std::optional<Step> step = Choose();
    taken_ = step.has_value();
    if (step) invariants_.Before(*this, *step);
    return step;
  }

  size_t Below(size_t bound) { return static_cast<size_t>(random_() % bound); }
  bool Chance(size_t percent) { return Below(100) < percent; }
  template <typename Range>
  const auto& OneOf(const Range& range) {
    return *std::next(std::begin(range), static_cast<std::ptrdiff_t>(Below(std::size(range))));
  }

  std::optional<Step> Choose() {
    if (left_ == 0) return std::nullopt;
    --left_;
    if (!loaded_) return Step{{}, std::string("load ") + ProfileName, {}};
    Stage& stage = TheConsole().Stage();
    stage.calls.SetObserver([this](std::string_view member) {
      called_.emplace_back(member);
      if (called_.size() > 40) called_.pop_front();
    });
    const Form* const top = Top();
    if (top == nullptr) return Step{{}, Chance(60) ? (Chance(95) ? "open" : "create") : World(stage), {}};
    const bool dialog = top != stage.Page();
    const size_t dice = Below(100);
    if (dice < 8) return Step{{}, Failure(stage), {}};
    if (dice < 14) return Step{{}, World(stage), {}};
    if (dice < (dialog ? 15 : 24)) return Step{{}, Host(dialog), {}};
    return Act(*top);
  }

  /// A control is drawn first, so that a tree with its many nodes is one of many.
  Step Act(const Form& form) {
    const std::vector<Action> actions = ActionsOn(form);
    std::vector<const Control*> controls;  // the actions of one stand together
    for (const Action& action : actions) {
      if (controls.empty() || controls.back() != action.control) controls.push_back(action.control);
    }
    const bool opens = Chance(20);
    for (int tries = 0;; ++tries) {
      std::vector<const Action*> ofOne;
      const Control* const control = OneOf(controls);
      for (const Action& action : actions) {
        if (action.control == control) ofOne.push_back(&action);
      }
      const Step& step = OneOf(ofOne)->step;
      if (tries > 50) return step;
      const std::string pressed = ButtonPressedBy(form, step);
      const bool ends = pressed == "cmdOk" || pressed == "close" ||
                        (form.CancelButton() != nullptr && pressed == form.CancelButton()->Name());
      if (ends && Chance(70)) continue;
      if (opens && (pressed.empty() || ends)) continue;
      if (control != nullptr && !control->IsUsable() && !Chance(5)) continue;
      return step;
    }
  }

  std::string Host(bool dialog) {
    static constexpr std::array always{"hide", "apply", "ask dirty", "ask page-info"};
    static constexpr std::array page{
        "open",    "create",  "initialize", "reinitialize",
        "apply",   "apply",   "apply",      "apply",
        "hide",    "release", "release",    "ask name",
        "gallery", "site on", "site off",   "notice \"Title\" \"Text\" \"Yes\" \"No\""};
    return dialog ? OneOf(always) : OneOf(page);
  }

  std::string Failure(const Stage& stage) {
    if (stage.calls.FaultsPlanned() > 12 || called_.empty()) return "canwrite on";
    const std::string& member = OneOf(called_);
    const std::string start = "fail " + Word(member) + " " + std::to_string(1 + Below(2)) + " ";
    if (CallLog::AnswersWithObject(member) && Chance(30)) return start + "nothing";
    static constexpr std::array ways{
        "1003 \"cannot be done\"", "-2147467259 \"\" \"\"", "type", "memory", "exception", "foreign"};
    return start + OneOf(ways);
  }

  std::string World(const Stage& stage) {
    const char* const onOff = Chance(50) ? " on" : " off";
    switch (Below(12)) {
      case 0:
        return Chance(30) ? "canwrite off" : "canwrite on";
      case 1:
        return std::string("flag BypassBlocked") + onOff;
      case 2:
        return std::string("flag DelayAvailable") + onOff;
      case 3:
        return std::string("scan") + onOff;
      case 4:
        return Chance(15) ? "delete " + Word(AFolder(stage)) : "canwrite on";
      case 5:
        return "unreadable " + Word(AFolder(stage)) + (Chance(25) ? " on" : " off");
      case 6:
        return "excluded " + Word(AFolder(stage)) + (Chance(25) ? " on" : " off");
      case 7:
        return std::string("machine canWriteMachine") + onOff;
      case 8:
        return Chance(70) ? "file write \"" + std::string(LogPath) + "\" text"
                          : "file remove \"" + std::string(LogPath) + "\"";
      case 9:
      case 10:
        return Setting(stage);
      default:
        return "ask active";
    }
  }

  /// One that is there; "cancel" when none is.
  std::string AFolder(const Stage& stage) {
    const auto& world = stage.workbench.profile.world;
    std::vector<FolderIndex> folders;
    for (FolderIndex folder = 0; folder < world.FolderNodes().size(); ++folder) {
      if (!world.At(folder).deleted) folders.push_back(folder);
    }
    return folders.empty() ? "cancel" : world.PathOf(OneOf(folders));
  }

  std::string Setting(const Stage& stage) {
    static constexpr std::array numbers{-1, 0, 1, 2, 3, 4, 5, 100, 2048, 32767};
    std::vector<std::string> lines;
    VisitSettings(stage.workbench.profile.settings, [&]<typename Value>(std::string_view name, const Value&) {
      const std::string start = "set stored " + std::string(name) + " ";
      if constexpr (std::is_same_v<Value, bool>) {
        lines.push_back(start + (Chance(50) ? "on" : "off"));
      } else if constexpr (std::is_integral_v<Value>) {
        if (!name.ends_with("Count")) lines.push_back(start + std::to_string(OneOf(numbers)));
      }
    });
    return OneOf(lines);
  }

  std::string Answer(const std::string& choices) override {
    if (choices == "PATH|cancel") return Chance(30) ? "cancel" : AFolder(TheConsole().Stage());
    if (choices == "CODE") return Chance(50) ? "42" : "2";
    if (choices == "FOLDER|cancel|fail") {
      static constexpr std::array folders{"D:\\logs", "C:\\", "cancel", "fail"};
      return OneOf(folders);
    }
    std::string spaced = choices;
    std::ranges::replace(spaced, '|', ' ');
    const std::vector<std::string> words = SplitWords(spaced);
    return OneOf(words);
  }

  std::mt19937_64 random_;
  size_t left_;
  std::deque<std::string> called_;  // lately: what there is to fail
  Invariants invariants_;
  WalkResult result_;
  bool taken_ = false;
  bool loaded_ = false;
};

}  // namespace
}  // namespace vexa::workbench

int main(int count, char** values) {
  using namespace vexa::workbench;
  uint64_t actions = 20000;
  uint64_t seed = 1;
  for (int i = 1; i < count; i += 2) {
    uint64_t* const option = std::strcmp(values[i], "--actions") == 0 ? &actions
                             : std::strcmp(values[i], "--seed") == 0  ? &seed
                                                                      : nullptr;
    if (option == nullptr || i + 1 == count) {
      std::cerr << "usage: vexa-walk [--actions NUMBER] [--seed NUMBER]\n";
      return 1;
    }
    *option = std::stoull(values[i + 1]);
  }
  constexpr uint64_t longest = 1000;
  vexa::ScratchFolder folder;
  folder.Enter();
  const auto start = std::chrono::steady_clock::now();
  uint64_t walks = 0;
  uint64_t taken = 0;
  int64_t faults = 0;
  std::map<std::string, size_t> screens;
  int failed = 0;
  for (uint64_t left = actions; left > 0 && failed < 5; ++walks, ++seed) {
    const uint64_t length = std::min(left, longest);
    left -= length;
    const WalkResult result = Walker(seed, length).Take();
    taken += result.steps.size();
    faults += result.faults;
    for (const auto& [name, steps] : result.screens) screens[name] += steps;
    if (result.flaw.empty()) continue;
    ++failed;
    std::cout << "# seed " << seed << ", step " << result.steps.size() << ": " << result.flaw << std::endl;
    std::cout << ScriptOf(result.steps);
  }
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  for (const auto& [name, steps] : screens) {
    std::cout << "  " << (name.empty() ? "Outlook, the add-in and the world" : name) << ": " << steps << "\n";
  }
  std::cout << taken << " actions in " << walks << " walks, " << faults << " calls failed, " << failed
            << " walks broke an invariant, " << time.count() << " s\n";
  return failed == 0 ? 0 : 1;
}
