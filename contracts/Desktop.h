// What the library asks of the desktop it runs on: message boxes, the shell, system dialogs.
#pragma once

#include <optional>
#include <string>

#include "core/MessageBox.h"
#include "core/ShellOpen.h"

namespace vexa {

class Desktop : public MessageBoxes, public DocumentShell {
 public:
  /// The system's browse-for-folder dialog, opened at `startFolder`. The chosen folder, or nothing when
  /// the user cancels. An error when the dialog cannot be created.
  virtual std::optional<std::string> BrowseForFolder(const std::string& prompt,
                                                     const std::string& startFolder) = 0;

  /// `text` in lower case, all letters, not only those of ASCII.
  virtual std::string LowerCase(const std::string& text) = 0;
};

}  // namespace vexa
