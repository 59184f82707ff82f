// A folder of its own for what a test writes. It is gone with the object, with everything in it.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace vexa {

class ScratchFolder {
 public:
  ScratchFolder()
      : path_(std::filesystem::temp_directory_path() / ("vexa-test-" + std::to_string(::getpid()))) {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    if (!former_.empty()) std::filesystem::current_path(former_, ignored);
    std::filesystem::remove_all(path_, ignored);
  }

  /// Makes it the current folder for as long as it lives.
  void Enter() {
    former_ = std::filesystem::current_path();
    std::filesystem::current_path(path_);
  }
  const std::filesystem::path& Path() const { return path_; }
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }
  /// The names of the files in it, in order.
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      if (entry.is_regular_file()) names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
  }

 private:
  std::filesystem::path path_, former_;
};

}  // namespace vexa
