// What the advanced settings do with the add-in's error log: name it in a folder, and send it to the support
// as an e-mail report. The add-in owns the file; a report carries a copy of it.
#pragma once

#include <optional>
#include <string>

#include "dialogs/Screen.h"

namespace vexa {

/// The log has this name in whatever folder it lies.
inline constexpr const char* ErrorLogName = "VEXAERRORS.MDB";

class ErrorLogTools {
 public:
  /// `form` is disabled under the wait pointer while a report is built.
  ErrorLogTools(const Services& services, Form& form) : services_(services), form_(form) {}

  /// Has the user choose a folder, beginning at that of `logPath`. The log's path in it; nothing when
  /// cancelled. An error when the browser cannot be created.
  std::optional<std::string> ChooseLocation(const std::string& logPath);
  /// Sends a copy of the log when the user agrees, and tells the outcome.
  void Email(const AddinAppRef& addin, const std::string& logPath);

 private:
  class StageTrail;
  void SendCopy(const AddinAppRef& addin, const std::string& logPath, const std::string& copyPath,
                StageTrail& stages);
  bool Send(const AddinAppRef& addin, const std::string& logPath, StageTrail& stages);

  const Services& services_;
  Form& form_;
};

}  // namespace vexa
