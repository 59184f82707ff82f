// What the advanced settings do with the add-in's error log beside their controls: name it in a folder, and
// send it to the support as an e-mail report. The add-in owns the file; a report carries a copy of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dialogs/Screen.h"

namespace vexa {

/// The log has this name in whatever folder it lies.
inline constexpr const char* ErrorLogName = "VEXAERRORS.MDB";

/// The stages that an action has come through. An error that leaves Run carries them in its trail, in front
/// of the action's own entry, so that a report from the field tells how far it came.
class StageTrail {
 public:
  explicit StageTrail(std::string_view module) : module_(module) {}
  void Reach(std::string_view stage) { stages_.push_back(stage); }

  template <typename Body>
  void Run(Body&& body) {
    try {
      body();
    } catch (...) {
      Error error = CurrentError();
      for (const std::string_view stage : stages_) error.AppendTrail(module_, stage);
      throw error;
    }
  }

 private:
  std::string_view module_;
  std::vector<std::string_view> stages_;
};

/// The place of a copy that is to be gone in the end, whatever happens.
class TemporaryFile {
 public:
  TemporaryFile(Desktop& desktop, std::string path) : desktop_(desktop), path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  const std::string& Path() const { return path_; }
  /// An error when it cannot be removed; the destructor then tries once more.
  void Remove();

 private:
  Desktop& desktop_;
  std::string path_;
  bool removed_ = false;
};

/// Copies the log and sends the copy.
void SendErrorLog(const AddinAppRef& addin, const Services& services, const std::string& logPath,
                  const TemporaryFile& copy, StageTrail& stages);

}  // namespace vexa
