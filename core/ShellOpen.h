// Opening a document with the application that the operating system has registered for it, and the fixed
// English texts for the shell's numeric failure codes.
#pragma once

#include <cstdint>
#include <string>

namespace vexa {

class DocumentShell {
 public:
  DocumentShell() = default;
  DocumentShell(const DocumentShell&) = delete;
  DocumentShell& operator=(const DocumentShell&) = delete;
  virtual ~DocumentShell() = default;

  /// Asks the shell to perform the verb "Open" on a document, with the desktop as owner, no parameters,
  /// the working folder "C:\" and the normal show state. The shell's return code: 33 and above is success.
  /// What is named without a folder is one of the system's programs.
  virtual int32_t ShellExecuteOpen(const std::string& path) = 0;
};

/// Opens `path`; the shell's return code. Error 75, naming failure and path, when the code is below 33.
int32_t ShellOpen(DocumentShell& shell, const std::string& path);

/// What a shell return code means; empty for success. Not localized.
std::string ShellErrorText(int32_t code);

}  // namespace vexa
