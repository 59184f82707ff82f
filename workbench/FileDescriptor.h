// Owner of an open file of the operating system; every call's result is checked.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace vexa::workbench {

inline std::system_error LastSystemError(const char* what) { return {errno, std::generic_category(), what}; }

class FileDescriptor {
 public:
  /// Throws std::system_error when the file cannot be opened.
  FileDescriptor(const std::string& path, int flags, mode_t mode = 0)
      : file_(::open(path.c_str(), flags | O_CLOEXEC, mode)) {
    if (file_ < 0) throw LastSystemError("open");
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (file_ >= 0) ::close(file_);
  }

  int Get() const { return file_; }

  void WriteAll(std::string_view text) const {
    while (!text.empty()) {
      const ssize_t written = ::write(file_, text.data(), text.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) throw LastSystemError("write");
      text.remove_prefix(static_cast<size_t>(written));
    }
  }
  void Sync() const {
    if (::fsync(file_) != 0) throw LastSystemError("fsync");
  }
  /// Reports what a plain destructor could not.
  void Close() {
    if (::close(std::exchange(file_, -1)) != 0) throw LastSystemError("close");
  }

 private:
  int file_;
};

}  // namespace vexa::workbench
