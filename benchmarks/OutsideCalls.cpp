// The table of outside calls; what is in it is counted, and held, by the tests.
#include "tests/screens/OutsideCalls.h"

#include <cstdio>

#include "benchmarks/Contest.h"

namespace vexa::bench {

std::vector<Verdict> CountOutsideCalls() {
  using namespace vexa::workbench;
  const WorldSize size{100, 100, 100};
  std::printf(
      "\noutside calls: N = %d folder sets, E = %d of them with a folder for mail, M = %d entries, S = 3 "
      "stores, "
      "C = %d children, D default folders\n",
      size.folderSets, size.folderSets / 2, size.entries, size.children);
  Verdict all{"outside calls: the fewest everywhere", true};
  for (const ActionCalls& counted : OutsideCalls(size).Count()) {
    std::printf("  %-36s %6lld  fewest %6lld\n", counted.action.c_str(),
                static_cast<long long>(counted.calls), static_cast<long long>(counted.fewest));
    if (counted.calls != counted.fewest) all = {all.text + "; not: " + counted.action, false};
  }
  std::printf("  goal  %-70s %s\n", "the fewest everywhere", all.met ? "met" : "NOT MET");
  return {all};
}

}  // namespace vexa::bench
