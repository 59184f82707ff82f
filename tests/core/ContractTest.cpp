#include <gtest/gtest.h>

#include "contracts/RegSettings.h"

namespace vexa {
namespace {

TEST(SettingsContract, KeepsAllPlacesInOrder) {
  ASSERT_EQ(RegSettingsMembers.size(), 67U);
  for (size_t i = 0; i < RegSettingsMembers.size(); ++i) {
    EXPECT_EQ(RegSettingsMembers[i].place, static_cast<int32_t>(i + 1));
  }
}

TEST(SettingsContract, CountsSlotsByAccessors) {
  // Worked out by hand: two slots a property, three a collection, one a method or a read-only property.
  EXPECT_EQ(FirstSlotOf("UsingEnterpriseSettings"), 0);
  EXPECT_EQ(FirstSlotOf("CacheContactFolders"), 28) << "behind two places that are not used";
  EXPECT_EQ(FirstSlotOf("FolderSetCount"), 38);
  EXPECT_EQ(FirstSlotOf("ContactEntryIDs"), 40);
  EXPECT_EQ(FirstSlotOf("FolderSetFlags"), 76);
  EXPECT_EQ(FirstSlotOf("LoggingMethod"), 79);
  EXPECT_EQ(FirstSlotOf("MonitoredFolderEntryIDs"), 83);
  EXPECT_EQ(FirstSlotOf("MaintainAuditTrail"), 92);
  EXPECT_EQ(FirstSlotOf("RestoreHiddenDialogs"), 130);
  EXPECT_EQ(FirstSlotOf("CanWrite"), 133);
  EXPECT_EQ(FirstSlotOf("FindFolderSet"), 139);
  EXPECT_EQ(FirstSlotOf("Nothing"), -1);
  EXPECT_EQ(FirstSlotOf(""), -1);
}

}  // namespace
}  // namespace vexa
