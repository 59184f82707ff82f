// Owner of an open file of the operating system, and what else of the file system a program that keeps its
// files whole needs. Every call's result is checked: failures are std::system_error with an errno code. One
// source file a system.
#pragma once

#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>

namespace vexa::workbench {

inline std::system_error LastSystemError(const char* what) { return {errno, std::generic_category(), what}; }

class FileDescriptor {
 public:
  enum class Use {
    Read,
    Append,   // read, and written at its end; made when it is missing
    Replace,  // written from its start, emptied first; made when it is missing; never through a link
  };

  FileDescriptor(const std::string& path, Use use);
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();

  /// The next piece of at most `size` bytes; empty at the end.
  std::string Read(size_t size) const;
  void WriteAll(std::string_view text) const;
  /// Whether it is empty or its last line is whole.
  bool EndsWithLine() const;
  /// Through to the disk.
  void Sync() const;
  /// Waits until no other process has the file locked, and locks it until it is closed.
  void Lock() const;
  /// Reports what a plain destructor could not.
  void Close();

 private:
  int file_;
};

/// `from` becomes `to`, in one step and through to the disk; what `to` was is gone. It keeps the permissions
/// of a former `to`.
void MoveInPlace(const std::string& from, const std::string& to);
/// Whatever the outcome.
void RemoveFile(const std::string& path) noexcept;

int ProcessId();
/// False only when there is certainly no such process.
bool IsRunning(int processId);

}  // namespace vexa::workbench
