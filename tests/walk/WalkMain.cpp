// vexa-walk: random walks over all screens, as many as wanted. One that breaks an invariant is cut down and
// printed as a script that repeats it.
#include <chrono>
#include <cstring>
#include <iostream>

#include "tests/walk/Walk.h"

int main(int count, char** values) {
  using namespace vexa::workbench;
  uint64_t actions = 20000;
  uint64_t seed = 1;
  for (int i = 1; i < count; i += 2) {
    uint64_t* const option = std::strcmp(values[i], "--actions") == 0 ? &actions
                             : std::strcmp(values[i], "--seed") == 0  ? &seed
                                                                      : nullptr;
    if (option == nullptr || i + 1 == count) {
      std::cerr << "usage: vexa-walk [--actions NUMBER] [--seed NUMBER]\n";
      return 1;
    }
    *option = std::stoull(values[i + 1]);
  }
  constexpr uint64_t longest = 1000;
  vexa::ScratchFolder folder;
  folder.Enter();
  const auto start = std::chrono::steady_clock::now();
  uint64_t walks = 0;
  uint64_t taken = 0;
  int64_t faults = 0;
  std::map<std::string, size_t> screens;
  int failed = 0;
  for (uint64_t left = actions; left > 0 && failed < 5; ++walks, ++seed) {
    const uint64_t length = std::min(left, longest);
    left -= length;
    WalkResult result = Walk(seed, length, {});
    taken += result.steps.size();
    faults += result.faults;
    for (const auto& [name, steps] : result.screens) screens[name] += steps;
    if (result.flaw.empty()) continue;
    ++failed;
    std::cout << "# seed " << seed << ", step " << result.steps.size() << ": " << result.flaw << std::endl;
    result = Shrink(std::move(result), {});
    std::cout << ScriptOf(result.steps) << "# " << result.flaw << std::endl;
  }
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  for (const auto& [name, steps] : screens) {
    std::cout << "  " << (name.empty() ? "Outlook, the add-in and the world" : name) << ": " << steps << "\n";
  }
  std::cout << taken << " actions in " << walks << " walks, " << faults << " calls failed, " << failed
            << " walks broke an invariant, " << time.count() << " s\n";
  return failed == 0 ? 0 : 1;
}
