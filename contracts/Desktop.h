// What the library asks of the desktop and the machine it runs on: message boxes, the shell, system dialogs,
// files, the registry, who is logged on where. Any call may fail.
#pragma once

#include <optional>
#include <string>

#include "contracts/Registry.h"
#include "core/ComponentReport.h"
#include "core/MessageBox.h"
#include "core/ShellOpen.h"

namespace vexa {

class Desktop : public MessageBoxes, public DocumentShell, public Registry, public FileVersions {
 public:
  /// The system's browse-for-folder dialog, opened at `startFolder`. The chosen folder, or nothing when
  /// the user cancels. An error when the dialog cannot be created.
  virtual std::optional<std::string> BrowseForFolder(const std::string& prompt,
                                                     const std::string& startFolder) = 0;

  /// `text` in lower case, all letters, not only those of ASCII.
  virtual std::string LowerCase(const std::string& text) = 0;

  /// Whether the path names a file that exists: a folder, a pattern with "*" or "?" and an empty path do not.
  /// Names compare without regard to case.
  virtual bool FileExists(const std::string& path) = 0;
  /// Replaces what `to` was. Error 75 when that fails.
  virtual void CopyFileTo(const std::string& from, const std::string& to) = 0;
  /// Error 75 when that fails.
  virtual void RemoveFile(const std::string& path) = 0;

  /// The name under which the user is logged on to the operating system, and the machine's name.
  virtual std::string UserName() = 0;
  virtual std::string ComputerName() = 0;

  /// Lets the windows work off what has come in for them.
  virtual void ProcessPendingMessages() = 0;
};

}  // namespace vexa
