#include "workbench/WindowsFiles.h"

#include <algorithm>
#include <filesystem>

#include "core/Error.h"
#include "core/Paths.h"
#include "workbench/AtomicFile.h"
#include "workbench/FileDescriptor.h"
#include "workbench/LowerCase.h"
#include "workbench/Utf8Path.h"

namespace vexa::workbench {

namespace fs = std::filesystem;

namespace {

constexpr int32_t FileNotFound = 53;

[[noreturn]] void Fail(const char* what, const std::string& path, const char* why) {
  Error error = MakeError(ErrorNumber::PathFileAccess);
  error.Description = std::string(what) + " " + path + ": " + why;
  throw error;
}

/// What is there under this name in any case, or the name as it is.
fs::path Existing(const fs::path& folder, const std::string& name) {
  std::error_code ignored;
  fs::path asNamed = folder / Utf8Path(name);
  if (!fs::exists(asNamed, ignored)) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
      if (LowerCase(Utf8Text(entry.path().filename())) == LowerCase(name)) return entry.path();
    }
  }
  return asNamed;
}

}  // namespace

std::string WindowsFiles::PlaceOf(const std::string& path) const {
  if (path.starts_with('/')) return path;
  if (profilePath_.empty() || path.empty()) return {};
  fs::path place = Utf8Path(profilePath_ + ".files");
  size_t start = 0;
  while (start <= path.size()) {
    const size_t end = std::min(path.find_first_of("\\/", start), path.size());
    std::string part = path.substr(start, end - start);
    if (part.ends_with(':')) part.pop_back();
    if (part == "..") return {};  // stays inside the folder
    if (!part.empty() && part != ".") place = Existing(place, part);
    start = end + 1;
  }
  return Utf8Text(place);
}

void WindowsFiles::Append(const std::string& path, std::string_view text) {
  const std::string place = PlaceOf(path);
  try {
    fs::create_directories(Utf8Path(place).parent_path());
    const FileDescriptor file(place, FileDescriptor::Use::Append);
    file.Lock();  // one writer at a time: a record that needs several writes stays whole
    const bool starts = file.EndsWithLine();
    file.WriteAll((starts ? "" : "\n") + std::string(text));
  } catch (const std::exception& failure) {
    Fail("Cannot write", path, failure.what());
  }
}

bool WindowsFiles::Exists(const std::string& path) const {
  if (FileNamePart(path).empty() || path.find_first_of("*?") != std::string::npos) return false;
  const std::string place = PlaceOf(path);
  std::error_code ignored;
  return !place.empty() && fs::is_regular_file(Utf8Path(place), ignored);
}

std::string WindowsFiles::Read(const std::string& path) const {
  if (!Exists(path)) throw Error(FileNotFound, "File not found", "VexaControls");
  try {
    return ReadWholeFile(PlaceOf(path));
  } catch (const std::exception& failure) {
    Fail("Cannot read", path, failure.what());
  }
}

void WindowsFiles::Write(const std::string& path, std::string_view text) const {
  const std::string place = PlaceOf(path);
  if (place.empty()) Fail("Cannot write", path, "there is no such place");
  try {
    fs::create_directories(Utf8Path(place).parent_path());
    WriteFileAtomically(place, [&](const TextSink& put) { put(text); });
  } catch (const std::exception& failure) {
    Fail("Cannot write", path, failure.what());
  }
}

void WindowsFiles::Remove(const std::string& path) const {
  if (!Exists(path)) throw Error(FileNotFound, "File not found", "VexaControls");
  std::error_code failure;
  fs::remove(Utf8Path(PlaceOf(path)), failure);
  if (failure) Fail("Cannot remove", path, failure.message().c_str());
}

std::vector<std::string> WindowsFiles::List() const {
  std::vector<std::string> paths;
  const fs::path root = Utf8Path(profilePath_ + ".files");
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root, ignored)) {
    if (!entry.is_regular_file(ignored)) continue;
    std::string path = Utf8Text(entry.path().lexically_relative(root));
    std::ranges::replace(path, '/', '\\');
    if (const size_t end = path.find('\\'); end == 1) {
      path.insert(1, ":");
    } else if (end != std::string::npos) {
      path.insert(0, "\\\\");  // a share
    }
    paths.push_back(std::move(path));
  }
  std::ranges::sort(paths);
  return paths;
}

}  // namespace vexa::workbench
