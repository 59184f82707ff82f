#include <windows.h>
// windows.h first
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "workbench/FileDescriptor.h"
#include "workbench/Utf8Path.h"

namespace vexa::workbench {
namespace {

constexpr size_t LargestTransfer = 1 << 24;  // the runtime counts bytes in an int

std::wstring WidePath(const std::string& path) { return Utf8Path(path).wstring(); }

int FlagsFor(FileDescriptor::Use use) {
  switch (use) {
    case FileDescriptor::Use::Read:
      return _O_RDONLY;
    case FileDescriptor::Use::Append:
      return _O_RDWR | _O_CREAT | _O_APPEND;
    case FileDescriptor::Use::Replace:
      return _O_WRONLY | _O_CREAT | _O_TRUNC;
  }
  return _O_RDONLY;
}

/// The failure of a call to Windows itself, with the code that the runtime would give it.
std::system_error WindowsError(const char* what) {
  const DWORD code = GetLastError();
  const bool missing = code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
  return {missing ? ENOENT : code == ERROR_DISK_FULL ? ENOSPC : EACCES, std::generic_category(), what};
}

}  // namespace

FileDescriptor::FileDescriptor(const std::string& path, Use use)
    : file_(
          ::_wopen(WidePath(path).c_str(), FlagsFor(use) | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE)) {
  if (file_ < 0) throw LastSystemError("open");
}

FileDescriptor::~FileDescriptor() {
  if (file_ >= 0) ::_close(file_);
}

std::string FileDescriptor::Read(size_t size) const {
  std::string block(std::min(size, LargestTransfer), '\0');
  const int got = ::_read(file_, block.data(), static_cast<unsigned>(block.size()));
  if (got < 0) throw LastSystemError("read");
  block.resize(static_cast<size_t>(got));
  return block;
}

void FileDescriptor::WriteAll(std::string_view text) const {
  while (!text.empty()) {
    const auto size = static_cast<unsigned>(std::min(text.size(), LargestTransfer));
    const int written = ::_write(file_, text.data(), size);
    if (written < 0) throw LastSystemError("write");
    text.remove_prefix(static_cast<size_t>(written));
  }
}

bool FileDescriptor::EndsWithLine() const {
  if (::_lseeki64(file_, 0, SEEK_END) == 0) return true;
  char last = '\n';
  if (::_lseeki64(file_, -1, SEEK_END) < 0 || ::_read(file_, &last, 1) != 1) throw LastSystemError("read");
  return last == '\n';  // what is written next goes to the end all the same
}

void FileDescriptor::Sync() const {
  if (::_commit(file_) != 0) throw LastSystemError("commit");
}

void FileDescriptor::Lock() const {
  OVERLAPPED everything{};
  const auto handle = reinterpret_cast<HANDLE>(::_get_osfhandle(file_));
  if (LockFileEx(handle, LOCKFILE_EXCLUSIVE_LOCK, 0, MAXDWORD, MAXDWORD, &everything) == FALSE)
    throw WindowsError("LockFileEx");
}

void FileDescriptor::Close() {
  if (::_close(std::exchange(file_, -1)) != 0) throw LastSystemError("close");
}

void MoveInPlace(const std::string& from, const std::string& to) {
  if (MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(),
                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == FALSE) {
    throw WindowsError("MoveFileExW");
  }
}

void RemoveFile(const std::string& path) noexcept {
  std::error_code ignored;
  std::filesystem::remove(Utf8Path(path), ignored);
}

int ProcessId() { return static_cast<int>(GetCurrentProcessId()); }

bool IsRunning(int processId) {
  const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(processId));
  if (process == nullptr) return GetLastError() != ERROR_INVALID_PARAMETER;
  const bool running = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
  CloseHandle(process);
  return running;
}

}  // namespace vexa::workbench
