// Windows as the library needs it: message boxes and system dialogs, texts and pictures from the module's
// resources in the user's language, and the file that the error log is appended to.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "contracts/Desktop.h"
#include "core/JsonErrorLog.h"
#include "core/Resources.h"

namespace vexa::windows {

/// Dialogs belong to the window that is active in the calling thread.
class WindowsDesktop final : public Desktop {
 public:
  MessageAnswer Show(const std::string& text, MessageIcon icon, MessageButtons buttons,
                     const std::string& title) override;
  int32_t ShellExecuteOpen(const std::string& path) override;
  std::optional<std::string> BrowseForFolder(const std::string& prompt,
                                             const std::string& startFolder) override;
  std::string LowerCase(const std::string& text) override;

  bool FileExists(const std::string& path) override;
  void CopyFileTo(const std::string& from, const std::string& to) override;
  void RemoveFile(const std::string& path) override;
  std::string UserName() override;
  std::string ComputerName() override;
  void ProcessPendingMessages() override;
  std::optional<Variant> ReadRegistry(RegistryRoot root, const std::string& key,
                                      const std::string& name) override;
  void WriteRegistry(RegistryRoot root, const std::string& key, const std::string& name,
                     const Variant& value) override;
  bool CanWriteRegistry(RegistryRoot root, const std::string& key) override;
  std::optional<std::string> FileVersion(const std::string& path) override;
};

/// The string tables, icons and cursors of a module. Texts come in the given language when the module has
/// it, else in one of the same primary language, else in English.
class ModuleResources final : public ResourceSource {
 public:
  ModuleResources(HMODULE module, LANGID language);

  const TableText* FindString(int32_t id, MadeText& made) const override;
  bool HasIcon(int32_t id) const override;
  bool HasCursor(int32_t id) const override;

  LANGID Language() const { return language_; }

 private:
  bool Has(WORD type, int32_t id) const;

  HMODULE module_;
  LANGID language_;
};

/// Appends as one writer at a time, through to the disk.
class WindowsFileAppender final : public FileAppender {
 public:
  void Append(const std::string& path, std::string_view text) override;
};

/// The file of a loaded module; of the program for null. Empty when Windows does not tell.
std::wstring FileOf(HMODULE module);

/// The file that COM loads or starts for the class that a program identifier names; empty when none is
/// registered.
std::wstring ServerFileOf(const std::wstring& programId);

/// A path as the file functions take it, also when it is longer than they usually allow.
std::wstring FilePath(const std::string& path);

/// The time now, ISO 8601 in UTC.
std::string UtcNow();

}  // namespace vexa::windows
