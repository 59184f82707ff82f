// Every call that the library makes on an outside object goes through here: it is written into the trace,
// and it fails where a fault has been planned. Members are named as in the trace: "RS.FolderSetCount" a
// read, "RS.FolderSetCount=" a write, "RS.ContactEntryIDs.Remove", "App.ApplySettings", "Sess.PickFolder".
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/Error.h"

namespace vexa::workbench {

/// How a call fails.
struct Fault {
  enum class Kind {
    Raised,     // an error with number, description and source
    Nothing,    // there is no object; for members that answer with one
    WrongType,  // the answer is of no type that could be used
    OutOfMemory,
    Exception,  // of the C++ library, with the description
    Foreign,    // an exception of a type that nobody knows
  };
  Fault(Error theError) : error(std::move(theError)) {}  // NOLINT(bugprone-throw-keyword-missing)
  explicit Fault(Kind theKind) : kind(theKind) {}

  Kind kind = Kind::Raised;
  Error error;
};

class CallLog {
 public:
  enum class Kind { Read, Action };

  /// Enters a call: `makeLine()` is its line in the trace. Throws the planned fault when this is its turn.
  /// True when the call must answer with no object.
  template <typename MakeLine>
  bool Enter(std::string_view member, Kind kind, MakeLine&& makeLine) {
    ++calls_;
    if (onCall_) onCall_(member);
    if (!interruptions_.empty()) Interrupt(member);
    const Fault* const fault = faults_.empty() ? nullptr : TakeFault(member);
    if (recording_ && (kind == Kind::Action || showReads_)) {
      lines_.push_back(makeLine() + (fault == nullptr ? std::string() : FaultMark(*fault)));
    }
    if (fault == nullptr) return false;
    ++faultsMet_;
    Throw(*fault);
    return true;
  }
  bool Enter(std::string_view member, Kind kind) {
    return Enter(member, kind, [&] { return std::string(member); });
  }
  /// A line that is no call: what a message box showed and how it was answered.
  void Note(std::string line) {
    if (recording_) lines_.push_back(std::move(line));
  }

  /// The n-th call of `member` from now on (counted from 1) fails with `fault`, once. AnyMember counts all.
  void PlanFault(std::string_view member, int n, Fault fault);
  static constexpr std::string_view AnyMember{};
  /// How many planned faults have not come up yet, and how many have ever.
  size_t FaultsPlanned() const { return faults_.size(); }
  int64_t FaultsMet() const { return faultsMet_; }
  void ForgetFaults() { faults_.clear(); }
  /// Before the n-th call of `member` from now on (counted from 1) goes on, `interruption` runs, once: what a
  /// call that pumps messages lets happen. Its own calls count like any others. AnyMember counts all.
  void PlanInterruption(std::string_view member, int n, std::function<void()> interruption);
  size_t InterruptionsPlanned() const { return interruptions_.size(); }
  void ForgetInterruptions() { interruptions_.clear(); }
  /// Hears the member of every call.
  void SetObserver(std::function<void(std::string_view member)> onCall) { onCall_ = std::move(onCall); }

  const std::vector<std::string>& Lines() const { return lines_; }
  void Clear() { lines_.clear(); }
  void ShowReads(bool show) { showReads_ = show; }
  /// Off, the log counts and fails but keeps no lines.
  void SetRecording(bool recording) { recording_ = recording; }
  int64_t CallCount() const { return calls_; }

  /// Every name that a fault can be planned for.
  static const std::vector<std::string>& KnownMembers();
  /// Whether a member can answer with no object.
  static bool AnswersWithObject(std::string_view member);

 private:
  struct PlannedFault {
    std::string member;
    int remaining;
    Fault fault;
  };

  struct PlannedInterruption {
    std::string member;
    int remaining;
    std::function<void()> run;
  };

  const Fault* TakeFault(std::string_view member);
  void Interrupt(std::string_view member);
  /// Returns for Nothing only.
  static void Throw(const Fault& fault);
  static std::string FaultMark(const Fault& fault);

  std::vector<std::string> lines_;
  std::vector<PlannedFault> faults_;
  std::vector<PlannedInterruption> interruptions_;
  Fault due_{Error()};
  std::function<void(std::string_view)> onCall_;
  int64_t faultsMet_ = 0;
  bool showReads_ = true;
  bool recording_ = true;
  int64_t calls_ = 0;
};

/// `text` with its line breaks as "|n".
std::string OneLine(std::string_view text);
/// `text` in double quotes, as the trace and the console write texts; quotes inside are doubled, line breaks
/// read "|n".
std::string QuotedText(std::string_view text);
/// A value as the trace and the console write it.
std::string ValueText(bool value);
std::string ValueText(int32_t value);
std::string ValueText(const std::string& value);

}  // namespace vexa::workbench
