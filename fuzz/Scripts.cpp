// Console scripts: whatever a line says, the console carries it out or says in one line what is wrong with
// it. Ends 0 or 2, as it promises.
#include <sstream>

#include "fuzz/Fuzz.h"
#include "workbench/Console.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  // Files are the business of other targets, and nothing is to be written here.
  for (const char* verb : {"load", "apply", "generate"}) {
    if (text.find(verb) != std::string::npos) return -1;
  }
  std::istringstream script("load small.json\nopen\n" + text);
  std::ostringstream transcript;
  vexa::workbench::Console console({script, "script"}, transcript);
  const int status = console.Run();
  vexa::fuzz::Promise(status == 0 || status == 2, "a script ends with 0 or 2");
  return 0;
}
