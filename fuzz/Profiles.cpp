// Profiles that somebody has written or damaged: refused with one line, or read; and what was read is written
// and read again as the same.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "fuzz/Fuzz.h"
#include "workbench/Profile.h"

using vexa::fuzz::Promise;

namespace {

std::string Written(const std::string& path, const vexa::workbench::Profile& profile) {
  vexa::workbench::WriteProfile(path, profile);
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string path =
      (std::filesystem::temp_directory_path() / ("vexa-fuzz-" + std::to_string(getpid()) + ".json")).string();
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    const vexa::workbench::Profile profile = vexa::workbench::ParseProfile(text, "profile");
    const std::string once = Written(path, profile);
    const std::string twice = Written(path, vexa::workbench::ParseProfile(once, "written"));
    Promise(once == twice, "what is written is read again as it was");
    std::filesystem::remove(path);
  } catch (const vexa::workbench::ProfileError& error) {
    const std::string message = error.what();
    Promise(message.starts_with("profile") && message.find('\n') == std::string::npos,
            "what cannot be read is refused in one line");
  }
  return 0;
}
