#include "workbench/WindowsFiles.h"

#include <algorithm>
#include <filesystem>

#include "core/Error.h"
#include "workbench/FileDescriptor.h"

namespace vexa::workbench {

namespace fs = std::filesystem;

std::string WindowsFiles::PlaceOf(const std::string& path) const {
  if (path.starts_with('/')) return path;
  if (profilePath_.empty() || path.empty()) return {};
  fs::path place = profilePath_ + ".files";
  size_t start = 0;
  while (start <= path.size()) {
    const size_t end = std::min(path.find_first_of("\\/", start), path.size());
    std::string part = path.substr(start, end - start);
    if (part.ends_with(':')) part.pop_back();
    if (part == "..") return {};  // stays inside the folder
    if (!part.empty() && part != ".") place /= part;
    start = end + 1;
  }
  return place.string();
}

void WindowsFiles::Append(const std::string& path, std::string_view text) {
  const std::string place = PlaceOf(path);
  try {
    fs::create_directories(fs::path(place).parent_path());
    const FileDescriptor file(place, FileDescriptor::Use::Append);
    file.Lock();  // one writer at a time: a record that needs several writes stays whole
    file.WriteAll(text);
  } catch (const std::exception& failure) {
    Error error = MakeError(ErrorNumber::PathFileAccess);
    error.Description = "Cannot write " + path + ": " + failure.what();
    throw error;
  }
}

}  // namespace vexa::workbench
