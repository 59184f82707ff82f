#include "workbench/AtomicFile.h"

#include <charconv>
#include <filesystem>
#include <system_error>

#include "workbench/FileDescriptor.h"
#include "workbench/Utf8Path.h"

namespace vexa::workbench {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view AsideMark = ".saving-";  // followed by the writer's process id

/// Removes what writers of this file left that no longer run.
void RemoveLeftovers(const fs::path& target) {
  const std::string prefix = Utf8Text(target.filename()) + std::string(AsideMark);
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::directory_iterator(target.parent_path(), ignored)) {
    const std::string name = Utf8Text(entry.path().filename());
    if (!name.starts_with(prefix)) continue;
    int writer = 0;
    std::from_chars(name.data() + prefix.size(), name.data() + name.size(), writer);
    if (writer > 0 && !IsRunning(writer)) fs::remove(entry.path(), ignored);
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
  const fs::path target = fs::weakly_canonical(fs::absolute(Utf8Path(path)));
  RemoveLeftovers(target);
  const std::string aside = Utf8Text(target) + std::string(AsideMark) + std::to_string(ProcessId());
  try {
    FileDescriptor file(aside, FileDescriptor::Use::Replace);
    Buffered buffered(file);
    write([&](std::string_view piece) { buffered.Write(piece); });
    buffered.Flush();
    file.Sync();
    file.Close();
    MoveInPlace(aside, Utf8Text(target));
  } catch (...) {
    RemoveFile(aside);
    throw;
  }
}

std::string ReadWholeFile(const std::string& path) {
  const FileDescriptor file(path, FileDescriptor::Use::Read);
  std::string content;
  for (;;) {
    const std::string block = file.Read(1 << 16);
    if (block.empty()) return content;
    content += block;
  }
}

}  // namespace vexa::workbench
