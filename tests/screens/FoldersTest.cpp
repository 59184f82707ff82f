#include <gtest/gtest.h>

#include <map>

#include "contracts/List.h"
#include "tests/screens/PickerScene.h"

namespace vexa::workbench {
namespace {

TEST(SelectionKeys, AreMadeOfTheirMarkersAndTakenApart) {
  EXPECT_EQ(FolderKey("E1", "S1"), "E1///--{VEXA_UNIQUE_SPLITTER}--///S1");
  EXPECT_EQ(DefaultFolderKey(120), "@///--{VEXA_DEFAULT_FOLDER_PREFIX}--///120");
  EXPECT_EQ(ChildPlaceholder, "///--{VEXA_CHILD_PLACEHOLDER}--///");
  EXPECT_EQ(DefaultFoldersRoot, "///--{VEXA_DEFAULT_FOLDERS--///") << "without a closing brace";
  EXPECT_EQ(NumberKey(140), "@140");

  const FolderIds ids = IdsOfKey(FolderKey("E1", "S1") + std::string(KeySplitter) + "more");
  EXPECT_EQ(ids.entryID + ids.storeID, "E1S1");
  const std::string prefix(DefaultFolderPrefix);
  const std::map<std::string, int32_t> defaults{
      {prefix + "120", 120}, {prefix + "-1", -1}, {prefix, -1}, {prefix + "12x", -1}};
  for (const auto& [key, folder] : defaults) {
    EXPECT_TRUE(IsDefaultFolderKey(key)) << key;
    EXPECT_EQ(DefaultFolderOfKey(key), folder) << key;
  }
  for (const std::string& neither :
       {std::string(DefaultFoldersRoot), prefix.substr(1) + "120", std::string()}) {
    EXPECT_FALSE(IsDefaultFolderKey(neither)) << neither;
    EXPECT_THROW(IdsOfKey(neither), Error) << neither;
  }
}

TEST(SelectionKeys, LeadFromTextsToDefaultFoldersAndBack) {
  const std::map<int32_t, int32_t> folders{{116, 9},  {117, 10}, {118, 3}, {119, 16}, {120, 6},
                                           {121, 11}, {122, 12}, {123, 4}, {124, 5},  {125, 13}};
  for (int32_t id = -1000; id <= 1000; ++id) {
    const auto found = folders.find(id);
    EXPECT_EQ(RSIndexToDefFolderIndex(id), id == 115 ? 0 : found == folders.end() ? -1 : found->second) << id;
    const auto back = std::ranges::find_if(folders, [&](const auto& entry) { return entry.second == id; });
    EXPECT_EQ(DefFolderIndexToRSIndex(id), back == folders.end() ? -1 : back->first) << id << ", 0 included";
  }
}

TEST(OwnCollection, CountsFromOne) {
  List<int32_t> list;
  list.Add(2);
  for (const int32_t position : {-1, 0, 2}) {
    EXPECT_THROW(list.Item(position), Error);
    EXPECT_THROW(list.Remove(position), Error);
    EXPECT_THROW(list.AddAfter(9, position), Error);
  }
}

TEST(Selection, ComesBackAsItWasStored) {
  PickerScene scene;
  scene.Store("B1", "BB", 2);
  scene.Store("6", "", DefaultFolderFlag | 32);
  scene.Store("7", "", DefaultFolderFlag | 1);  // none of the ten
  scene.Store("gone", "XX", 0);                 // there is no such folder
  scene.Store("B2", "BB", ~DefaultFolderFlag);  // every bit but the mark of a default folder
  scene.Store("6", "BB", 1);                    // a folder whose id looks like a number
  const std::string stored = scene.Stored();
  scene.Click(scene.Open().cmdOk);
  EXPECT_EQ(scene.Stored(), stored);
  EXPECT_EQ(scene.timesDirty, 1);
}

TEST(Selection, EndsWithTheShortestOfCountAndLists) {
  struct Row {
    int32_t count;
    size_t entryIDs, storeIDs;
    const char* expected;
  };
  for (const Row& row :
       {Row{2, 3, 3, "2: e1/s:1 e2/s:2"}, {3, 1, 3, "1: e1/s:1"}, {3, 3, 0, "0:"}, {-1, 3, 3, "0:"}}) {
    PickerScene scene;
    for (int32_t i = 1; i <= 3; ++i) scene.Store("e" + std::to_string(i), "s", i);
    SettingsData& data = scene.scene.Working();
    data.MonitoredFolderCount = row.count;
    data.MonitoredFolderEntryIDs.resize(row.entryIDs);
    data.MonitoredFolderStoreIDs.resize(row.storeIDs);
    scene.Click(scene.Open().cmdOk);
    EXPECT_EQ(scene.Stored(), row.expected) << row.count;
  }
}

TEST(FolderChecks, OfAStoredRootCanBeTakenAway) {
  PickerScene scene;
  scene.Store("C0", "CC", 1);
  const Tree& tree = scene.Open().tvFolders;
  EXPECT_TRUE(tree.Checked(scene.At("Archive")));
  scene.Check("Archive", false);
  scene.Check("Archive");
  EXPECT_FALSE(tree.Checked(scene.At("Archive"))) << "it cannot be checked again";
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(), "0:");
}

TEST(Folders, ShowThePictureOfWhatTheyAre) {
  PickerScene scene;
  for (const int itemType : {0, 1, 2, 3, 4, 5, 6, 7, 8, -1}) {
    scene.AddFolder("Archive", std::to_string(itemType), static_cast<ItemType>(itemType));
  }
  const Tree& tree = scene.Open().tvFolders;
  scene.Expand("Archive");
  std::string shown;
  for (const Tree::Node child : tree.Children(scene.At("Archive")))
    shown.append(tree.Text(child)).append(tree.Image(child)).append(" ");
  EXPECT_EQ(shown, "Old@129 0@129 1@126 2@127 3@132 4@128 5@130 6@131 7@127 8@134 -1@134 ");
}

TEST(Folders, HaveTipsByTheNamesOfTheStoresAboveThem) {
  PickerScene scene;
  scene.AddFolder("Public Folders/Sales", "Mailbox - like");
  scene.AddFolder("Archive/Old", "Mailbox - Ben's copy");
  scene.AddFolder("Archive/Old/Mailbox - Ben's copy", "below");
  scene.AddFolder("Archive/Old", "mailbox - small");
  scene.Open();
  for (const char* path : {"Public Folders", "Archive", "Public Folders/Sales", "Archive/Old",
                           "Archive/Old/Mailbox - Ben's copy"}) {
    scene.Expand(path);
  }
  const std::map<std::string, int32_t> tips{{"Public Folders/Sales/Mailbox - like", 2206},
                                            {"Archive/Old/Mailbox - Ben's copy/below", 2207},
                                            {"Archive/Old/mailbox - small", 0},
                                            {"Archive/Old", 0}};
  for (const auto& [path, tip] : tips) {
    scene.Select(path);
    EXPECT_EQ(scene.picker->lblHotTip.Caption(), tip == 0 ? "" : scene.scene.stage.resources.LoadString(tip))
        << path;
  }
  scene.Select("Public Folders/Sales");
  scene.picker->lblHotTip.ClickWord(0);
  EXPECT_EQ(scene.scene.TakeSeen(), "") << "a word beside the hot spot";
}

TEST(FolderChecks, GiveTheDefaultsForMailToInboxAndSentItemsAlone) {
  PickerScene scene;
  scene.Open();
  scene.Expand("(Default Folders)");
  for (const char* folder : {"Inbox", "Sent Items", "Drafts", "Outbox", "Deleted Items"}) {
    scene.Check(std::string("(Default Folders)/") + folder);
  }
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(), "5: 6/:1073741920 5/:1073741920 16/:1073741856 4/:1073741856 3/:1073741856");
}

TEST(FolderChecks, ScrollToWhatIsCheckedWithThem) {
  PickerScene scene;
  frmFolders& picker = scene.Open();
  scene.Expand("Public Folders");
  scene.Expand("Archive");
  picker.tvItems.KeepChanges(true);
  scene.Check("Public Folders/Sales");
  EXPECT_EQ(picker.tvItems.TakeChanges().shown, picker.tvItems.Find("@136"));
  scene.Select("Archive/Old");
  picker.tvFolders.KeepChanges(true);
  scene.CheckItem(135);
  EXPECT_EQ(picker.tvFolders.TakeChanges().shown, scene.At("Archive/Old"));
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
  const size_t others = tree.NodeCount();
  scene.picker->AddFolder(scene.scene.stage.workbench.Addin()->Session()->Folders()->Item(4), Tree::NoNode,
                          true);
  EXPECT_EQ(tree.NodeCount() - others, chain.count);
}

}  // namespace
}  // namespace vexa::workbench
