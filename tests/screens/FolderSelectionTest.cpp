#include <gtest/gtest.h>

#include "contracts/List.h"
#include "tests/screens/PickerScene.h"

namespace vexa::workbench {
namespace {

TEST(SelectionKeys, AreMadeOfTheirMarkers) {
  EXPECT_EQ(FolderKey("E1", "S1"), "E1///--{VEXA_UNIQUE_SPLITTER}--///S1");
  EXPECT_EQ(DefaultFolderKey(120), "@///--{VEXA_DEFAULT_FOLDER_PREFIX}--///120");
  EXPECT_EQ(ChildPlaceholder, "///--{VEXA_CHILD_PLACEHOLDER}--///");
  EXPECT_EQ(DefaultFoldersRoot, "///--{VEXA_DEFAULT_FOLDERS--///") << "without a closing brace";
  EXPECT_EQ(NumberKey(140), "@140");
}

TEST(SelectionKeys, AreTakenApart) {
  struct Row {
    std::string key;
    bool isDefault;
    int32_t defaultFolder;
    std::string entryID, storeID;  // "!" for a key without both
  };
  const std::string splitter(KeySplitter);
  const std::string prefix(DefaultFolderPrefix);
  const std::vector<Row> rows{
      {"E1" + splitter + "S1", false, 0, "E1", "S1"},
      {splitter, false, 0, "", ""},
      {"E1" + splitter + "S1" + splitter + "more", false, 0, "E1", "S1"},
      {prefix + "120", true, 120, "!", ""},
      {prefix + "-1", true, -1, "!", ""},
      {prefix, true, -1, "!", ""},
      {prefix + "12x", true, -1, "!", ""},
      {std::string(DefaultFoldersRoot), false, 0, "!", ""},
      {prefix.substr(1) + "120", false, 0, "!", ""},
      {"", false, 0, "!", ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.key);
    EXPECT_EQ(IsDefaultFolderKey(row.key), row.isDefault);
    if (row.isDefault) {
      EXPECT_EQ(DefaultFolderOfKey(row.key), row.defaultFolder);
    }
    if (row.entryID == "!") {
      EXPECT_THROW(IdsOfKey(row.key), Error);
    } else {
      EXPECT_EQ(IdsOfKey(row.key).entryID, row.entryID);
      EXPECT_EQ(IdsOfKey(row.key).storeID, row.storeID);
    }
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
  list.AddBefore(1, 1);
  list.AddAfter(4, 2);
  list.AddBefore(3, 3);
  list.Remove(2);
  EXPECT_EQ(list.Count(), 3);
  EXPECT_EQ(list.Item(1) * 100 + list.Item(2) * 10 + list.Item(3), 134);
  for (const int32_t position : {-1, 0, 4}) {
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
  scene.Open();
  EXPECT_EQ(scene.Checked(), "Inbox");
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(), stored);
  EXPECT_EQ(scene.timesDirty, 1);
}

TEST(Selection, EndsWithTheShortestOfCountAndLists) {
  struct Row {
    int32_t count;
    size_t entryIDs, storeIDs, itemTypes;
    const char* expected;
  };
  for (const Row& row : {Row{2, 3, 3, 3, "2: e1/s:1 e2/s:2"},
                         {9, 3, 3, 3, "3: e1/s:1 e2/s:2 e3/s:3"},
                         {3, 1, 3, 3, "1: e1/s:1"},
                         {3, 3, 0, 3, "0:"},
                         {3, 3, 3, 2, "2: e1/s:1 e2/s:2"},
                         {-1, 3, 3, 3, "0:"}}) {
    PickerScene scene;
    for (int32_t i = 1; i <= 3; ++i) scene.Store("e" + std::to_string(i), "s", i);
    SettingsData& data = scene.scene.Working();
    data.MonitoredFolderCount = row.count;
    data.MonitoredFolderEntryIDs.resize(row.entryIDs);
    data.MonitoredFolderStoreIDs.resize(row.storeIDs);
    data.MonitoredFolderItemTypes.resize(row.itemTypes);
    scene.Click(scene.Open().cmdOk);
    EXPECT_EQ(scene.Stored(), row.expected) << row.count;
  }
}

TEST(Selection, DoesNotOpenWithTwoDefaultNumbersOfNoFolder) {
  PickerScene scene;
  scene.Store("7", "", DefaultFolderFlag);
  scene.Store("eight", "", DefaultFolderFlag);  // the same key
  try {
    scene.Open();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, 457);
    EXPECT_TRUE(error.Source.ends_with("-->frmFolders.Initialize")) << error.Source;
  }
}

}  // namespace
}  // namespace vexa::workbench
