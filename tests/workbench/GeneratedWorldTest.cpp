#include <gtest/gtest.h>

#include <set>

#include "workbench/Profile.h"

namespace vexa::workbench {
namespace {

GeneratedFolders Rule(uint32_t count, uint32_t breadth) {
  GeneratedFolders rule;
  rule.name = "Big";
  rule.count = count;
  rule.breadth = breadth;
  return rule;
}

TEST(GeneratedWorld, IsOneTreeOfJustThatManyFolders) {
  for (const uint32_t count : {1U, 2U, 50U, 100U}) {
    for (const uint32_t breadth : {1U, 3U, 7U, 100U}) {
      World world;
      world.AddGeneratedStore("S", StoreKind::PersonalFolders, Rule(count, breadth));
      std::set<std::string> ids;
      size_t deepest = 0;
      std::vector<std::pair<FolderIndex, size_t>> pending{{world.Stores()[0].root, 1}};
      while (!pending.empty()) {
        const auto [folder, depth] = pending.back();
        pending.pop_back();
        ids.insert(world.At(folder).entryID);
        deepest = std::max(deepest, depth);
        EXPECT_LE(world.ChildCount(folder), breadth);
        for (const FolderIndex child : world.ChildrenOf(folder)) {
          EXPECT_EQ(world.At(child).parent, folder);
          pending.emplace_back(child, depth + 1);
        }
      }
      EXPECT_EQ(ids.size(), count) << "breadth " << breadth;
      EXPECT_EQ(world.FolderNodes().size(), count);
      EXPECT_EQ(deepest, world.Stores()[0].generated->Depth()) << count << " folders, breadth " << breadth;
    }
  }
}

TEST(GeneratedWorld, MakesOnlyWhatIsAskedFor) {
  World world;
  constexpr uint32_t million = 1'000'000;
  world.AddGeneratedStore("W", StoreKind::PersonalFolders, Rule(million, 10'000));
  world.AddGeneratedStore("D", StoreKind::PersonalFolders, Rule(301, 1));
  EXPECT_EQ(world.FolderCount(), million + 301);
  const FolderIndex wide = world.Stores()[0].root;
  EXPECT_EQ(world.ChildCount(wide), 10'000U);
  EXPECT_EQ(world.FolderNodes().size(), 2U) << "counting makes none";
  const FolderIndex last = world.ChildAt(wide, 9'999);
  EXPECT_EQ(world.FolderNodes().size(), 3U);
  EXPECT_EQ(world.ChildAt(wide, 9'999), last);
  const GeneratedFolders& rule = *world.Stores()[0].generated;
  const FolderIndex found = world.Find(rule.EntryIdOf(million - 1), "w");
  ASSERT_NE(found, NoFolder);
  EXPECT_EQ(world.FolderNodes().size(), 5U) << "a folder and those above it";
  EXPECT_EQ(world.At(found).name, rule.NameOf(million - 1));
  EXPECT_EQ(world.Find(rule.EntryIdOf(million), "W"), NoFolder);
  EXPECT_EQ(world.Find("0000000000000G01", "W"), NoFolder);
  FolderIndex deep = world.Stores()[1].root;
  size_t levels = 1;
  for (; world.ChildCount(deep) > 0; ++levels) deep = world.ChildAt(deep, 0);
  EXPECT_EQ(levels, 301U);
  EXPECT_EQ(world.FindPath(world.PathOf(found)), found);
}

TEST(GeneratedWorld, LosesDeletedFoldersWithEverythingBelow) {
  World world;
  world.AddGeneratedStore("S", StoreKind::PersonalFolders, Rule(40, 3));
  const GeneratedFolders& rule = *world.Stores()[0].generated;
  const FolderIndex root = world.Stores()[0].root;
  world.Delete(world.ChildAt(root, 1));  // number 2, above 7, 8 and 9
  EXPECT_EQ(world.At(world.ChildAt(root, 1)).number, 3U);
  EXPECT_EQ(world.Find(rule.EntryIdOf(8), "S"), NoFolder) << "never made before";
  EXPECT_EQ(world.At(world.Find(rule.EntryIdOf(10), "S")).parent, world.Find(rule.EntryIdOf(3), "S"));
  world.Delete(root);
  EXPECT_EQ(world.ChildCount(NoFolder), 0U);
}

TEST(GeneratedWorld, StandsInAProfileAsItsRule) {
  Profile profile = ParseProfile(
      "{\"format\":\"vexa-profile\",\"version\":1,\"stores\":[{\"storeID\":\"S\",\"kind\":\"mailbox\","
      "\"defaultFolders\":{\"6\":\"0000000700000003\"},\"generated\":{\"name\":\"Mailbox - Big\","
      "\"count\":500,\"breadth\":4,\"seed\":7,\"itemTypes\":[0]}}]}",
      "p");
  EXPECT_EQ(profile.world.At(profile.world.defaultFolders.at(6)).name, "Mail 3");
  Profile merged;
  merged.world.AddGeneratedStore("T", StoreKind::PersonalFolders, Rule(5, 2));
  MergeWorld(merged, profile);
  EXPECT_EQ(merged.world.FolderCount(), 505U);
  EXPECT_EQ(merged.world.PathOf(merged.world.defaultFolders.at(6)), "\\\\Mailbox - Big\\Mail 3");
}

}  // namespace
}  // namespace vexa::workbench
