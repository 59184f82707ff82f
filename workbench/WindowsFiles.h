// The drives of the Windows machine that a profile stands for: paths such as "C:\ProgramData\x.log" are
// kept in a folder beside the profile, "profile.json.files/C/ProgramData/x.log". Paths that begin with "/"
// are the real machine's own.
#pragma once

#include <string>
#include <string_view>

#include "core/JsonErrorLog.h"

namespace vexa::workbench {

class WindowsFiles final : public FileAppender {
 public:
  /// `profilePath` may be empty: then Windows paths lead nowhere and appending to them fails.
  explicit WindowsFiles(std::string profilePath) : profilePath_(std::move(profilePath)) {}

  void Append(const std::string& path, std::string_view text) override;

  const std::string& ProfilePath() const { return profilePath_; }

  /// Where a path is kept on this machine; empty when it is nowhere.
  std::string PlaceOf(const std::string& path) const;

 private:
  std::string profilePath_;
};

}  // namespace vexa::workbench
