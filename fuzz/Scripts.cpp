// Console scripts: whatever a line says, the console carries it out or says in one line what is wrong with
// it. Ends 0, 2 or, when strict, 3, as it promises.
#include <cctype>
#include <sstream>

#include "fuzz/Fuzz.h"
#include "workbench/Console.h"

namespace {

/// A fuzzer has no patience with worlds of any size.
bool IsLeftOut(std::string line) {
  for (char& letter : line) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  for (const char* verb : {"load", "generate"}) {
    if (line.find(verb) != std::string::npos) return true;
  }
  return false;
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const vexa::workbench::Profile profile = vexa::workbench::ReadProfile("small.json");
  std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
  const bool transcript = vexa::workbench::IsTranscript(lines);
  std::string text = transcript ? "> open\n" : "open\n";
  for (std::string line; std::getline(lines, line);) {
    if (!IsLeftOut(line)) text += line + '\n';
  }
  std::istringstream script(text);
  std::ostringstream printed;
  vexa::workbench::Console console({script, "script", false, false, transcript}, printed);
  // Nothing can be stored beside it: the same script finds the same files each time.
  console.Load(profile, "/dev/null/small.json");
  const int status = console.Run();
  vexa::fuzz::Promise(status == 0 || status == 2 || status == 3, "a script ends with 0, 2 or 3");
  return 0;
}
