#include "tests/walk/Walk.h"

#include <algorithm>
#include <array>
#include <deque>
#include <filesystem>
#include <random>

namespace vexa::workbench {
namespace {

namespace fs = std::filesystem;

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

/// A console under watch: what is common to walking and to repeating a walk.
class Watched : public FedConsole {
 public:
  explicit Watched(const ExtraInvariant& extra) : extra_(extra) {}

  WalkResult Take() {
    ResetFolder();
    try {
      Run();
      if (result_.flaw.empty() && Loaded()) result_.flaw = Invariants::AtTheEnd(*this);
    } catch (const std::exception& failure) {
      result_.flaw = std::string("an exception came out of a command: ") + failure.what();
      if (taken_) result_.steps.push_back(current_);
    } catch (...) {
      result_.flaw = "an exception of a foreign type came out of a command";
      if (taken_) result_.steps.push_back(current_);
    }
    if (Loaded()) TheConsole().Stage().calls.SetObserver({});  // the console outlives what listens
    return std::move(result_);
  }

 protected:
  virtual std::optional<Step> Choose() = 0;

  std::optional<Step> Next(const std::string& output) final {
    if (taken_) {
      taken_ = false;
      const std::string verb = WordsOf(current_).front();
      // A command that could not be carried out has changed nothing, and would end a script.
      if (HasLine(output, verb + ": ")) return Begin();
      result_.steps.push_back(current_);
      loaded_ |= verb == "load";
      ++result_.screens[current_.form];
      if (Loaded()) result_.faults = TheConsole().Stage().calls.FaultsMet();
      result_.flaw = invariants_.After(*this, output);
      if (result_.flaw.empty() && HasLine(output, "error ") && !MayFail(verb))
        result_.flaw = "an error came out of a command: " + output;
      if (result_.flaw.empty() && extra_ && Loaded()) result_.flaw = extra_(*this);
      if (!result_.flaw.empty()) return std::nullopt;
    }
    return Begin();
  }

  bool Loaded() const { return loaded_; }

 private:
  std::optional<Step> Begin() {
    std::optional<Step> step = Choose();
    if (!step) return step;
    taken_ = true;
    invariants_.Before(*this, *step);
    return step;
  }

  const ExtraInvariant& extra_;
  Invariants invariants_;
  WalkResult result_;
  bool taken_ = false;
  bool loaded_ = false;
};

class Walker final : public Watched {
 public:
  Walker(uint64_t seed, size_t count, const ExtraInvariant& extra)
      : Watched(extra), random_(seed), left_(count) {}

 private:
  size_t Below(size_t bound) { return static_cast<size_t>(random_() % bound); }
  bool Chance(size_t percent) { return Below(100) < percent; }
  template <typename Range>
  const auto& OneOf(const Range& range) {
    return *std::next(std::begin(range), static_cast<std::ptrdiff_t>(Below(std::size(range))));
  }

  std::optional<Step> Choose() override {
    if (left_ == 0) return std::nullopt;
    --left_;
    if (!Loaded()) return Step{{}, std::string("load ") + ProfileName, {}};
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
    std::vector<std::string> words;
    for (size_t start = 0; start <= choices.size();) {
      const size_t end = std::min(choices.find('|', start), choices.size());
      words.push_back(choices.substr(start, end - start));
      start = end + 1;
    }
    return OneOf(words);
  }

  std::mt19937_64 random_;
  size_t left_;
  std::deque<std::string> called_;  // lately: what there is to fail
};

class Repeater final : public Watched {
 public:
  Repeater(const std::vector<Step>& steps, const ExtraInvariant& extra) : Watched(extra), steps_(steps) {}

 private:
  std::optional<Step> Choose() override {
    while (next_ < steps_.size() && !Fits(steps_[next_])) ++next_;
    if (next_ == steps_.size()) return std::nullopt;
    answered_ = 0;
    return steps_[next_++];
  }
  std::string Answer(const std::string& choices) override {
    const std::vector<std::string>& answers = steps_[next_ - 1].answers;
    if (answered_ < answers.size()) {
      std::string answer = SplitWords(answers[answered_++]).back();
      const bool fits = choices.find("cancel") == std::string::npos || !choices.starts_with("PATH") ||
                        answer == "cancel" ||
                        TheConsole().Stage().workbench.profile.world.FindPath(answer) != NoFolder;
      const bool isWord = ("|" + choices + "|").find("|" + answer + "|") != std::string::npos;
      const bool isFree = choices == "CODE" || choices.starts_with("PATH") || choices.starts_with("FOLDER");
      if (fits && (isWord || isFree)) return answer;
    }
    return choices == "CODE"                             ? "42"
           : choices.find("cancel") != std::string::npos ? "cancel"
                                                         : choices.substr(choices.rfind('|') + 1);
  }

  const std::vector<Step>& steps_;
  size_t next_ = 0;
  size_t answered_ = 0;
};

}  // namespace

WalkResult Walk(uint64_t seed, size_t count, const ExtraInvariant& extra) {
  return Walker(seed, count, extra).Take();
}

WalkResult Replay(const std::vector<Step>& steps, const ExtraInvariant& extra) {
  return Repeater(steps, extra).Take();
}

WalkResult Shrink(WalkResult failed, const ExtraInvariant& extra) {
  for (size_t chunk = failed.steps.size() / 2; chunk > 0;) {
    bool shorter = false;
    // From the back: what a step has led to goes before the step itself.
    for (size_t end = failed.steps.size(); end > 0; end = end > chunk ? end - chunk : 0) {
      end = std::min(end, failed.steps.size());
      const size_t start = end > chunk ? end - chunk : 0;
      std::vector<Step> rest = failed.steps;
      rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(start),
                 rest.begin() + static_cast<std::ptrdiff_t>(end));
      WalkResult tried = Replay(rest, extra);
      if (tried.flaw != failed.flaw || tried.steps.size() >= failed.steps.size()) continue;
      failed = std::move(tried);
      shorter = true;
    }
    if (!shorter || chunk > 1) chunk /= 2;
  }
  return failed;
}

}  // namespace vexa::workbench
