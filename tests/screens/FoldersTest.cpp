#include <gtest/gtest.h>

#include <map>

#include "tests/screens/PickerScene.h"

namespace vexa::workbench {
namespace {

/// Texts of the nodes directly below one, those that stand in as "...".
std::string Below(const PickerScene& scene, Tree::Node node) {
  const Tree& tree = scene.picker->tvFolders;
  std::string text;
  for (const Tree::Node child : tree.Children(node)) {
    text.append(text.empty() ? "" : " ");
    text.append(tree.Text(child) == ChildPlaceholder ? "..." : tree.Text(child)).append(tree.Image(child));
  }
  return text;
}

TEST(Folders, ShowThePictureOfWhatTheyAre) {
  PickerScene scene;
  World& world = scene.scene.stage.workbench.profile.world;
  const auto add = [&](const char* parent, const char* name, int itemType) {
    const FolderIndex above = world.FindPath(parent);
    world.AddFolder(world.At(above).store, above, name, std::string("N") + name,
                    static_cast<ItemType>(itemType));
  };
  for (const int itemType : {0, 1, 2, 3, 4, 5, 6, 7, 8, -1}) {
    add("Archive", std::to_string(itemType).c_str(), itemType);
  }
  scene.Open();
  scene.Expand("Archive");
  EXPECT_EQ(Below(scene, scene.At("Archive")),
            "Old@129 0@129 1@126 2@127 3@132 4@128 5@130 6@131 7@127 8@134 -1@134");
}

TEST(Folders, ThatAreGoneShowNothingOfTheFolderBefore) {
  PickerScene scene;
  scene.Open();
  scene.Expand("Mailbox - Ann");
  scene.Check("Mailbox - Ann/Calendar");
  World& world = scene.scene.stage.workbench.profile.world;
  world.Delete(world.FindPath("Mailbox - Ann/Inbox"));
  scene.Expand("Mailbox - Ann/Inbox");
  EXPECT_NE(scene.scene.TakeSeen().find("frmFolders.tvFolders_Expand"), std::string::npos);
  EXPECT_EQ(Below(scene, scene.At("Mailbox - Ann/Inbox")), "");
  EXPECT_EQ(scene.Shown(), "Calendar tip 2207 @135");
  scene.Select("Mailbox - Ann/Inbox");
  EXPECT_EQ(scene.Shown(), "Inbox") << "neither a tip nor item types";
}

TEST(Folders, HaveTipsByTheNamesOfTheStoresAboveThem) {
  PickerScene scene;
  World& world = scene.scene.stage.workbench.profile.world;
  const auto add = [&](const char* parent, const char* name) {
    const FolderIndex above = world.FindPath(parent);
    world.AddFolder(world.At(above).store, above, name, std::string("N") + name, ItemType::Mail);
  };
  add("Public Folders/Sales", "Mailbox - like");
  add("Archive/Old", "Mailbox - Ben's copy");
  add("Archive/Old/Mailbox - Ben's copy", "below");
  add("Archive/Old", "mailbox - small");
  scene.Open();
  for (const char* path : {"Public Folders", "Archive", "Public Folders/Sales", "Archive/Old",
                           "Archive/Old/Mailbox - Ben's copy"}) {
    scene.Expand(path);
  }
  const std::map<std::string, std::string> tips{
      {"Public Folders/Sales/Mailbox - like", "Mailbox - like tip 2206"},
      {"Archive/Old/Mailbox - Ben's copy/below", "below tip 2207"},
      {"Archive/Old/mailbox - small", "mailbox - small"},
      {"Archive/Old", "Old"}};
  for (const auto& [path, shown] : tips) {
    scene.Select(path);
    EXPECT_EQ(scene.Shown(), shown);
  }
  scene.Select("Public Folders/Sales");
  scene.picker->lblHotTip.ClickWord(0);
  EXPECT_EQ(scene.scene.TakeSeen(), "") << "a word beside the hot spot";
}

TEST(FolderChecks, GiveTheDefaultsForMailToInboxAndSentItemsAlone) {
  PickerScene scene;
  scene.Open();
  scene.Expand("(Default Folders)");
  for (const char* folder :
       {"Inbox", "Sent Items", "Calendar", "Drafts", "Outbox", "Deleted Items", "Tasks"}) {
    scene.Check(std::string("(Default Folders)/") + folder);
  }
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(),
            "7: 6/:1073741920 5/:1073741920 9/:1073741825 16/:1073741856 4/:1073741856 3/:1073741856 "
            "13/:1073743872");
}

TEST(FolderChecks, ScrollToWhatIsCheckedWithThem) {
  PickerScene scene;
  scene.Open();
  scene.Expand("Public Folders");
  scene.Expand("Archive");
  scene.picker->tvItems.KeepChanges(true);
  scene.Check("Public Folders/Sales");
  EXPECT_EQ(scene.picker->tvItems.TakeChanges().shown, scene.picker->tvItems.Find("@136"));
  scene.Select("Archive/Old");
  scene.picker->tvFolders.KeepChanges(true);
  scene.CheckItem(135);
  EXPECT_EQ(scene.picker->tvFolders.TakeChanges().shown, scene.At("Archive/Old"));
  scene.scene.stage.calls.ShowReads(false);
  scene.TakeCalls();
  scene.CheckItem(135, false);
  EXPECT_EQ(scene.TakeCalls(), "") << "a record that goes is not written to";
  EXPECT_EQ(scene.Checked(), "Sales") << "without an item type there is nothing to monitor";
}

TEST(FolderHierarchies, BearAnyDepth) {
  GeneratedFolders chain;
  chain.name = "Chain";
  chain.count = 300;
  chain.breadth = 1;
  Profile profile = PickerScene::MakeProfile();
  profile.world.AddGeneratedStore("D1", StoreKind::PersonalFolders, chain);
  PickerScene scene(std::move(profile));
  Tree& tree = scene.Open().tvFolders;
  tree.Remove(tree.LastChild(Tree::NoNode));
  scene.picker->AddFolder(scene.scene.stage.workbench.Addin()->Session()->Folders()->Item(4), Tree::NoNode,
                          true);
  Tree::Node deepest = tree.LastChild(Tree::NoNode);
  uint32_t levels = 1;
  for (; tree.FirstChild(deepest) != Tree::NoNode; deepest = tree.FirstChild(deepest)) ++levels;
  EXPECT_EQ(levels, chain.count);
  EXPECT_NE(tree.Text(deepest), ChildPlaceholder);
  scene.User().CheckNode(tree, deepest, true);
  EXPECT_EQ(scene.scene.TakeSeen(), "");
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.scene.Working().MonitoredFolderCount, 1);
}

}  // namespace
}  // namespace vexa::workbench
