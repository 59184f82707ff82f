#include <gtest/gtest.h>

#include "contracts/RegSettings.h"

namespace vexa {
namespace {

TEST(SettingsContract, CountsSlotsByAccessors) {
  EXPECT_EQ(RegSettingsMembers.size(), 67U);
  // Worked out by hand: two slots a property, three a collection, one a method or a read-only property.
  EXPECT_EQ(FirstSlotOf("UsingEnterpriseSettings"), 0);
  EXPECT_EQ(FirstSlotOf("CacheContactFolders"), 28) << "behind two places that are not used";
  EXPECT_EQ(FirstSlotOf("FolderSetFlags"), 76);
  EXPECT_EQ(FirstSlotOf("LoggingMethod"), 79);
  EXPECT_EQ(FirstSlotOf("MaintainAuditTrail"), 92);
  EXPECT_EQ(FirstSlotOf("FindFolderSet"), 139);
  EXPECT_EQ(FirstSlotOf("Nothing"), -1);
}

}  // namespace
}  // namespace vexa
