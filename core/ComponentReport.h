// The versions of the components at work, for the error log: every record names them in short, and once a
// session they are logged in full, with the files that the versions were read from. Reading versions takes
// time, so it happens once, when the first record of the session is written.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vexa {

class FileVersions {
 public:
  FileVersions() = default;
  FileVersions(const FileVersions&) = delete;
  FileVersions& operator=(const FileVersions&) = delete;
  virtual ~FileVersions() = default;
  /// The version in the file's own resources, such as "16.0.5134.1000"; nothing when the file has none or
  /// cannot be read.
  virtual std::optional<std::string> FileVersion(const std::string& path) = 0;
};

struct Component {
  std::string name;
  std::string path;     // empty: the version does not come from a file
  std::string version;  // empty: not known
};

/// One session's report; the platform says what is at work.
class ComponentReport {
 public:
  using Source = std::function<std::vector<Component>()>;
  explicit ComponentReport(Source source) : source_(std::move(source)) {}

  const std::vector<Component>& Components();
  /// "name version", separated by commas; a component without a version is named all the same.
  std::string Text();
  /// Whether the full report has been written in this session.
  bool IsLogged() const { return logged_; }
  void SetLogged() { logged_ = true; }

 private:
  Source source_;
  std::optional<std::vector<Component>> components_;
  bool logged_ = false;
};

/// `components` with the versions of their files; one that brings its version along keeps it.
std::vector<Component> WithFileVersions(std::vector<Component> components, FileVersions& versions);

}  // namespace vexa
