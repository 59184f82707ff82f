#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <utility>

#include "workbench/FileDescriptor.h"

namespace vexa::workbench {
namespace {

int FlagsFor(FileDescriptor::Use use) {
  switch (use) {
    case FileDescriptor::Use::Read:
      return O_RDONLY;
    case FileDescriptor::Use::Append:
      return O_RDWR | O_CREAT | O_APPEND;
    case FileDescriptor::Use::Replace:
      return O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW;
  }
  return O_RDONLY;
}

}  // namespace

FileDescriptor::FileDescriptor(const std::string& path, Use use)
    : file_(::open(path.c_str(), FlagsFor(use) | O_CLOEXEC, 0666)) {
  if (file_ < 0) throw LastSystemError("open");
}

FileDescriptor::~FileDescriptor() {
  if (file_ >= 0) ::close(file_);
}

std::string FileDescriptor::Read(size_t size) const {
  std::string block(size, '\0');
  for (;;) {
    const ssize_t got = ::read(file_, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw LastSystemError("read");
    block.resize(static_cast<size_t>(got));
    return block;
  }
}

void FileDescriptor::WriteAll(std::string_view text) const {
  while (!text.empty()) {
    const ssize_t written = ::write(file_, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw LastSystemError("write");
    text.remove_prefix(static_cast<size_t>(written));
  }
}

bool FileDescriptor::EndsWithLine() const {
  struct stat state {};
  if (::fstat(file_, &state) != 0) throw LastSystemError("fstat");
  char last = '\n';
  if (state.st_size > 0 && ::pread(file_, &last, 1, state.st_size - 1) != 1) throw LastSystemError("read");
  return last == '\n';
}

void FileDescriptor::Sync() const {
  if (::fsync(file_) != 0) throw LastSystemError("fsync");
}

void FileDescriptor::Lock() const {
  if (::flock(file_, LOCK_EX) != 0) throw LastSystemError("flock");
}

void FileDescriptor::Close() {
  if (::close(std::exchange(file_, -1)) != 0) throw LastSystemError("close");
}

void MoveInPlace(const std::string& from, const std::string& to) {
  struct stat old {};
  if (::stat(to.c_str(), &old) == 0 && ::chmod(from.c_str(), old.st_mode & 0777U) != 0)
    throw LastSystemError("chmod");
  if (::rename(from.c_str(), to.c_str()) != 0) throw LastSystemError("rename");
  // The new name is on the disk only when its folder is.
  FileDescriptor(std::filesystem::path(to).parent_path().string(), FileDescriptor::Use::Read).Sync();
}

void RemoveFile(const std::string& path) noexcept { ::unlink(path.c_str()); }

int ProcessId() { return ::getpid(); }

bool IsRunning(int processId) { return ::kill(processId, 0) == 0 || errno != ESRCH; }

}  // namespace vexa::workbench
