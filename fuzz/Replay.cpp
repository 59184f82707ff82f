// Runs a target without a fuzzer: every file that is named, or lies in a folder that is named, and some
// changes of each. What a fuzzer has once found stays found.
//   TARGET [--changes N] FILE|FOLDER...
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <vector>

#include "fuzz/Fuzz.h"

namespace {

int runs = 0;

void Run(const std::string& bytes) {
  ++runs;
  // A buffer of its own, so that reading past its end is seen.
  const std::vector<uint8_t> exact(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

/// One to four places replaced, doubled, or cut out; always the same for the same input.
std::string Changed(std::string bytes, std::mt19937& random) {
  const auto any = [&](size_t limit) { return limit == 0 ? 0 : random() % limit; };
  for (size_t changes = 1 + any(4); changes > 0; --changes) {
    const size_t at = any(bytes.size() + 1);
    const size_t length = any(std::min<size_t>(bytes.size() - at, 16) + 1);
    switch (any(3)) {
      case 0:
        bytes.insert(at, 1, static_cast<char>(any(256)));
        break;
      case 1:
        bytes.insert(at, bytes.substr(at, length));
        break;
      default:
        bytes.erase(at, length);
        break;
    }
  }
  return bytes;
}

void RunFile(const std::filesystem::path& path, int changes) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  Run(bytes.str());
  std::mt19937 random(static_cast<unsigned>(bytes.str().size()));
  for (int i = 0; i < changes; ++i) Run(Changed(bytes.str(), random));
}

}  // namespace

int main(int argc, char** argv) {
  int changes = 0;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--changes") == 0 && i + 1 < argc) {
      changes = std::atoi(argv[++i]);
    } else if (std::filesystem::is_directory(argv[i])) {
      for (const auto& entry : std::filesystem::directory_iterator(argv[i])) RunFile(entry.path(), changes);
    } else {
      RunFile(argv[i], changes);
    }
  }
  std::printf("%d runs\n", runs);
  return runs > 0 ? 0 : 1;
}
