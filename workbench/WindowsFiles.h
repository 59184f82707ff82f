// The drives of the Windows machine that a profile stands for: paths such as "C:\ProgramData\x.log" are
// kept in a folder beside the profile, "profile.json.files/C/ProgramData/x.log". The case of names makes no
// difference there. Paths that begin with "/" are the real machine's own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/JsonErrorLog.h"

namespace vexa::workbench {

class WindowsFiles final : public FileAppender {
 public:
  /// `profilePath` may be empty: then Windows paths lead nowhere and appending to them fails.
  explicit WindowsFiles(std::string profilePath) : profilePath_(std::move(profilePath)) {}

  void Append(const std::string& path, std::string_view text) override;

  /// False for folders, patterns and an empty path.
  bool Exists(const std::string& path) const;
  /// Error 53 when there is no such file, 75 when something else fails, here and below.
  std::string Read(const std::string& path) const;
  /// Replaces the file whole.
  void Write(const std::string& path, std::string_view text) const;
  void Remove(const std::string& path) const;
  /// The files of all drives, by their Windows paths.
  std::vector<std::string> List() const;

  const std::string& ProfilePath() const { return profilePath_; }

  /// Where a path is kept on this machine; empty when it is nowhere.
  std::string PlaceOf(const std::string& path) const;

 private:
  std::string profilePath_;
};

}  // namespace vexa::workbench
