// Every call that the library makes on an outside object goes through here: it is written into the trace,
// and it fails where a fault has been planned. Members are named as in the trace: "RS.FolderSetCount" a
// read, "RS.FolderSetCount=" a write, "RS.ContactEntryIDs.Remove", "App.ApplySettings", "Sess.PickFolder".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/Error.h"

namespace vexa::workbench {

class CallLog {
 public:
  enum class Kind { Read, Action };

  /// Enters a call: `makeLine()` is its line in the trace. Throws the planned fault when this is its turn.
  template <typename MakeLine>
  void Enter(std::string_view member, Kind kind, MakeLine&& makeLine) {
    ++calls_;
    const Error* const fault = faults_.empty() ? nullptr : TakeFault(member);
    if (recording_ && (kind == Kind::Action || showReads_)) {
      lines_.push_back(makeLine() + (fault == nullptr ? std::string() : FaultMark(*fault)));
    }
    if (fault != nullptr) throw Error(*fault);
  }
  void Enter(std::string_view member, Kind kind) {
    Enter(member, kind, [&] { return std::string(member); });
  }
  /// A line that is no call: what a message box showed and how it was answered.
  void Note(std::string line) {
    if (recording_) lines_.push_back(std::move(line));
  }

  /// The n-th call of `member` from now on (counted from 1) fails with `fault`, once.
  void PlanFault(std::string_view member, int n, Error fault);
  /// How many planned faults have not come up yet.
  size_t FaultsPlanned() const { return faults_.size(); }

  const std::vector<std::string>& Lines() const { return lines_; }
  void Clear() { lines_.clear(); }
  void ShowReads(bool show) { showReads_ = show; }
  /// Off, the log counts and fails but keeps no lines.
  void SetRecording(bool recording) { recording_ = recording; }
  int64_t CallCount() const { return calls_; }

  /// Every name that a fault can be planned for.
  static const std::vector<std::string>& KnownMembers();

 private:
  struct PlannedFault {
    std::string member;
    int remaining;
    Error error;
  };

  const Error* TakeFault(std::string_view member);
  static std::string FaultMark(const Error& fault);

  std::vector<std::string> lines_;
  std::vector<PlannedFault> faults_;
  Error due_;
  bool showReads_ = true;
  bool recording_ = true;
  int64_t calls_ = 0;
};

/// `text` in double quotes, as the trace and the console write texts; quotes inside are doubled, line breaks
/// read "|n".
std::string QuotedText(std::string_view text);

}  // namespace vexa::workbench
