#include "workbench/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <system_error>

#include "workbench/FileDescriptor.h"

namespace vexa::workbench {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view AsideMark = ".saving-";  // followed by the writer's process id

/// Removes what writers of this file left that no longer run.
void RemoveLeftovers(const fs::path& target) {
  const std::string prefix = target.filename().string() + std::string(AsideMark);
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::directory_iterator(target.parent_path(), ignored)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(prefix)) continue;
    pid_t writer = 0;
    std::from_chars(name.data() + prefix.size(), name.data() + name.size(), writer);
    if (writer > 0 && ::kill(writer, 0) != 0 && errno == ESRCH) fs::remove(entry.path(), ignored);
  }
}

class Buffered {
 public:
  explicit Buffered(const FileDescriptor& file) : file_(file) {}
  void Write(std::string_view piece) {
    buffer_ += piece;
    if (buffer_.size() >= 1 << 20) Flush();
  }
  void Flush() {
    file_.WriteAll(buffer_);
    buffer_.clear();
  }

 private:
  const FileDescriptor& file_;
  std::string buffer_;
};

}  // namespace

void WriteFileAtomically(const std::string& path, const std::function<void(const TextSink&)>& write) {
  const fs::path target = fs::weakly_canonical(fs::absolute(path));
  RemoveLeftovers(target);
  const std::string aside = target.string() + std::string(AsideMark) + std::to_string(::getpid());
  try {
    struct stat old {};
    const mode_t mode = ::stat(target.c_str(), &old) == 0 ? old.st_mode & 0777U : 0666U;
    FileDescriptor file(aside, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW, mode);
    Buffered buffered(file);
    write([&](std::string_view piece) { buffered.Write(piece); });
    buffered.Flush();
    file.Sync();
    file.Close();
    if (::rename(aside.c_str(), target.c_str()) != 0) throw LastSystemError("rename");
  } catch (...) {
    ::unlink(aside.c_str());
    throw;
  }
  // The new name is on the disk only when its folder is.
  FileDescriptor(target.parent_path().string(), O_RDONLY | O_DIRECTORY).Sync();
}

std::string ReadWholeFile(const std::string& path) {
  const FileDescriptor file(path, O_RDONLY);
  std::string content;
  std::string block(1 << 20, '\0');
  for (;;) {
    const ssize_t size = ::read(file.Get(), block.data(), block.size());
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) throw LastSystemError("read");
    if (size == 0) return content;
    content.append(block, 0, static_cast<size_t>(size));
  }
}

}  // namespace vexa::workbench
