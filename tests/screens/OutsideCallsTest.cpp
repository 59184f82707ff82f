#include <gtest/gtest.h>

#include "tests/screens/OutsideCalls.h"

namespace vexa::workbench {
namespace {

TEST(OutsideCalls, AreTheFewestWhateverTheSize) {
  for (const WorldSize& size :
       {WorldSize{0, 0, 1}, WorldSize{1, 1, 2}, WorldSize{2, 3, 7}, WorldSize{40, 50, 60}}) {
    SCOPED_TRACE(std::to_string(size.folderSets) + " folder sets, " + std::to_string(size.entries) +
                 " entries, " + std::to_string(size.children) + " children");
    for (const ActionCalls& counted : OutsideCalls(size).Count()) {
      EXPECT_EQ(counted.calls, counted.fewest) << counted.action;
    }
  }
}

}  // namespace
}  // namespace vexa::workbench
