#include <gtest/gtest.h>

#include <algorithm>

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

TEST(Folders, OpenOnTheStoresWithTheFirstNodeSelected) {
  PickerScene scene;
  scene.Open();
  EXPECT_EQ(Below(scene, Tree::NoNode),
            "(Default Folders)@115 Mailbox - Ann@133 Public Folders@133 Archive@133");
  EXPECT_EQ(Below(scene, scene.At("(Default Folders)")),
            "Calendar@116 Contacts@117 Deleted Items@118 Drafts@119 Inbox@120 Journal@121 Notes@122 "
            "Outbox@123 Sent Items@124 Tasks@125");
  EXPECT_EQ(Below(scene, scene.At("Archive")), "...");
  EXPECT_EQ(scene.Shown(), "(Default Folders) tip 2201 disabled");
  EXPECT_TRUE(scene.picker->cmdOk.Enabled());
  // Three stores of six calls each, and nothing of what is in them.
  EXPECT_EQ(scene.TakeCalls(),
            "RS.AllUsersMode\nApp.Session\nSess.Folders\nFolders.Count\n"
            "Folders.Item(1)\nFolder(\"\\\\Mailbox - Ann\").EntryID\nFolder(\"\\\\Mailbox - Ann\").StoreID\n"
            "Folder(\"\\\\Mailbox - Ann\").Name\nFolder(\"\\\\Mailbox - Ann\").Folders\nFolders.Count\n"
            "Folders.Item(2)\nFolder(\"\\\\Public Folders\").EntryID\n"
            "Folder(\"\\\\Public Folders\").StoreID\nFolder(\"\\\\Public Folders\").Name\n"
            "Folder(\"\\\\Public Folders\").Folders\nFolders.Count\n"
            "Folders.Item(3)\nFolder(\"\\\\Archive\").EntryID\nFolder(\"\\\\Archive\").StoreID\n"
            "Folder(\"\\\\Archive\").Name\nFolder(\"\\\\Archive\").Folders\nFolders.Count\n"
            "RS.MonitoredFolderCount\nRS.CanWrite(0)\n");
}

TEST(Folders, SayForWhomTheyAreChosenAndWhoMayChoose) {
  PickerScene scene;
  scene.Open();
  EXPECT_EQ(scene.picker->lblInstructions.Caption(), scene.scene.stage.resources.LoadString(2151));
  scene.scene.Working().AllUsersMode = true;
  scene.scene.stage.workbench.profile.addin.canWrite = false;
  scene.Open();
  EXPECT_EQ(scene.picker->lblInstructions.Caption(), scene.scene.stage.resources.LoadString(2152));
  std::string disabled;
  for (const Control* control : scene.picker->Controls()) {
    if (!control->Enabled()) disabled += control->Name() + " ";
  }
  EXPECT_EQ(disabled, "fraItems cmdAll cmdNone cmdClear cmdOk ") << "the frame belongs to the root";
  scene.Expand("(Default Folders)");
  scene.Check("(Default Folders)/Inbox");
  EXPECT_EQ(scene.Checked(), "Inbox") << "the trees stay usable";
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
  scene.Expand("Mailbox - Ann");
  EXPECT_EQ(Below(scene, scene.At("Mailbox - Ann")),
            "Inbox@120 Sent@124 Drafts@119 Deleted@118 Outbox@123 Calendar@116 Contacts@117 Tasks@125 "
            "Journal@121 Notes@122");
  scene.Expand("Archive");
  EXPECT_EQ(Below(scene, scene.At("Archive")),
            "Old@129 0@129 1@126 2@127 3@132 4@128 5@130 6@131 7@127 8@134 -1@134");
}

TEST(Folders, AskForDefaultFoldersUntilOneIsEqualAndOnceForAllThatAreAdded) {
  PickerScene scene;
  scene.Open();
  scene.TakeCalls();
  scene.scene.stage.workbench.profile.world.defaultFolders.erase(5);  // its look-up fails: not equal
  scene.Expand("Mailbox - Ann");
  const std::string calls = scene.TakeCalls();
  const auto callsOf = [&](const std::string& folder) {
    const size_t start = calls.find("Folder(\"\\\\Mailbox - Ann\\" + folder + "\").DefaultItemType\n");
    const size_t end = calls.find("Folder(\"\\\\Mailbox - Ann\\" + folder + "\").Folders\n");
    const std::string between = calls.substr(start, end - start);
    std::string asked;
    for (size_t at = between.find("GetDefaultFolder("); at != std::string::npos;
         at = between.find("GetDefaultFolder(", at + 1)) {
      asked += between.substr(at + 17, between.find(')', at) - at - 17) + " ";
    }
    return asked;
  };
  EXPECT_EQ(callsOf("Inbox"), "6 ");
  EXPECT_EQ(callsOf("Sent"), "5 16 3 4 ");
  EXPECT_EQ(callsOf("Deleted"), "");
  EXPECT_EQ(callsOf("Notes"), "12 ");
}

TEST(Folders, FetchWhatIsBelowANodeOnce) {
  PickerScene scene;
  scene.Store("A22", "AA", 1);
  scene.Store("a21", "AA", 1);  // keys compare exactly: another entry
  World& world = scene.scene.stage.workbench.profile.world;
  scene.Open();
  scene.Expand("Mailbox - Ann");
  scene.TakeCalls();
  scene.Expand("Mailbox - Ann/Inbox");
  EXPECT_EQ(scene.TakeCalls(),
            "App.Session\nSess.GetFolderFromID(\"A6\", \"AA\")\n"
            "Folder(\"\\\\Mailbox - Ann\\Inbox\").Folders\nFolders.Count\nFolders.Item(1)\n"
            "Folder(\"\\\\Mailbox - Ann\\Inbox\\Projects\").EntryID\n"
            "Folder(\"\\\\Mailbox - Ann\\Inbox\\Projects\").StoreID\n"
            "Folder(\"\\\\Mailbox - Ann\\Inbox\\Projects\").Name\n"
            "Folder(\"\\\\Mailbox - Ann\\Inbox\\Projects\").DefaultItemType\n"
            "Sess.GetDefaultFolder(13)\nFolder(\"\\\\Mailbox - Ann\\Tasks\").EntryID\n"
            "Folder(\"\\\\Mailbox - Ann\\Inbox\\Projects\").Folders\nFolders.Count\n");
  scene.User().Expand(scene.picker->tvFolders, scene.At("Mailbox - Ann/Inbox"), false);
  scene.Expand("Mailbox - Ann/Inbox");
  EXPECT_EQ(scene.TakeCalls(), "") << "they are there already";
  EXPECT_EQ(scene.Checked(), "") << "what is stored is deeper";
  scene.Expand("Mailbox - Ann/Inbox/Projects");
  scene.Expand("Mailbox - Ann/Inbox/Projects/2026");
  EXPECT_EQ(scene.Checked(), "May");

  world.At(world.FindPath("Public Folders/Sales")).unreadable = true;
  world.At(world.FindPath("Public Folders/News")).entryID = "";
  scene.Expand("Public Folders");
  EXPECT_EQ(Below(scene, scene.At("Public Folders")), "") << "without an entry id there is no node";
  EXPECT_EQ(scene.scene.TakeSeen(), "");
}

TEST(Folders, ThatAreGoneAreAnErrorOfTheirBranchAlone) {
  PickerScene scene;
  scene.Open();
  scene.Expand("Mailbox - Ann");
  scene.Select("Mailbox - Ann/Calendar");
  World& world = scene.scene.stage.workbench.profile.world;
  world.Delete(world.FindPath("Mailbox - Ann/Inbox"));
  scene.Expand("Mailbox - Ann/Inbox");
  EXPECT_NE(scene.scene.TakeSeen().find("frmFolders.tvFolders_Expand"), std::string::npos);
  EXPECT_EQ(Below(scene, scene.At("Mailbox - Ann/Inbox")), "");
  scene.Check("Mailbox - Ann/Calendar");
  EXPECT_EQ(scene.Shown(), "Calendar tip 2207 @135");
  scene.Select("Mailbox - Ann/Inbox");
  EXPECT_NE(scene.scene.TakeSeen().find("frmFolders.tvFolders_NodeClick"), std::string::npos);
  EXPECT_EQ(scene.Shown(), "Inbox") << "neither the tip nor the item types of the folder before";
  scene.Select("Public Folders");
  scene.Expand("Public Folders");
  EXPECT_EQ(scene.scene.TakeSeen(), "");
}

TEST(Folders, OfARecordThatIsLeftShowItsItemTypesWhenTheyAreGone) {
  PickerScene scene;
  scene.Store("C1", "CC", 3);
  scene.Open();
  scene.Expand("Archive");
  World& world = scene.scene.stage.workbench.profile.world;
  world.Delete(world.FindPath("Archive/Old"));
  scene.Select("Archive/Old");
  EXPECT_NE(scene.scene.TakeSeen(), "");
  EXPECT_EQ(scene.Shown(), "Old @135 @136");
}

TEST(Folders, MayBeNamedLikeMarkUp) {
  const std::string name = "[b]A|1 [link]B[link]&C|n";
  Profile profile = PickerScene::MakeProfile();
  profile.world.AddFolder(2, profile.world.FindPath("\\\\Archive"), name, "C2", ItemType::Mail);
  PickerScene scene(std::move(profile));
  scene.Open();
  scene.Expand("Archive");
  EXPECT_EQ(Below(scene, scene.At("Archive")), "Old@129 " + name + "@129");
  scene.Select("Archive/" + name);
  EXPECT_EQ(scene.picker->lblHotTip.Caption().find("[link]B"), std::string::npos)
      << "the tip names no folder";
}

TEST(Folders, HaveTips) {
  PickerScene scene;
  World& world = scene.scene.stage.workbench.profile.world;
  const FolderIndex sales = world.FindPath("Public Folders/Sales");
  world.AddFolder(world.At(sales).store, sales, "Mailbox - like", "B3", ItemType::Mail);
  const FolderIndex old = world.FindPath("Archive/Old");
  const FolderIndex like =
      world.AddFolder(world.At(old).store, old, "Mailbox - Ben's copy", "C3", ItemType::Mail);
  world.AddFolder(world.At(old).store, like, "below", "C4", ItemType::Mail);
  world.AddFolder(world.At(old).store, old, "mailbox - small", "C5", ItemType::Mail);
  scene.Open();
  for (const char* path : {"(Default Folders)", "Mailbox - Ann", "Public Folders", "Archive",
                           "Public Folders/Sales", "Archive/Old", "Archive/Old/Mailbox - Ben's copy"}) {
    scene.Expand(path);
  }
  const std::vector<std::pair<const char*, const char*>> tips{
      {"(Default Folders)", "tip 2201 disabled"},
      {"Mailbox - Ann", "tip 2201 disabled"},
      {"(Default Folders)/Deleted Items", "tip 2202"},
      {"(Default Folders)/Drafts", "tip 2203"},
      {"(Default Folders)/Outbox", "tip 2204"},
      {"(Default Folders)/Notes", "tip 2208"},
      {"(Default Folders)/Inbox", "tip 2205"},
      {"(Default Folders)/Calendar", "tip 2205"},
      {"Public Folders/Sales", "tip 2206"},
      {"Public Folders/Sales/Mailbox - like", "tip 2206"},
      {"Mailbox - Ann/Inbox", "tip 2207"},
      {"Archive/Old/Mailbox - Ben's copy/below", "tip 2207"},
      {"Archive/Old/mailbox - small", ""},
      {"Archive/Old", ""},
  };
  for (const auto& [path, tip] : tips) {
    scene.Select(path);
    std::string text(scene.picker->tvFolders.Text(scene.At(path)));
    if (*tip != '\0') text.append(" ").append(tip);
    EXPECT_EQ(scene.Shown(), text);
  }
}

TEST(Folders, TellTheContactAddressAtTheHotSpotOfPublicFolders) {
  PickerScene scene;
  scene.Open();
  scene.Expand("Public Folders");
  scene.Select("Public Folders/Sales");
  scene.picker->lblHotTip.ClickWord(0);
  EXPECT_EQ(scene.scene.TakeSeen(), "") << "a word beside it";
  scene.User().ClickHotSpot(scene.picker->lblHotTip, 0);
  EXPECT_EQ(scene.scene.TakeSeen(),
            "MSG[information | OK | \"Vexa\"] \"For more information about monitoring public folders, please "
            "contact Tolvane Solutions at support@tolvane.example.\" -> ok\n");
  scene.Select("(Default Folders)");
  EXPECT_FALSE(scene.picker->lblHotTip.TakesFocus()) << "no other tip has one";
}

// --- checks

constexpr const char* CallsOfDefaultInbox =
    "New MonitoredFolder\nMF(\"\").EntryID = \"6\"\nMF(\"6\").StoreID = \"\"\n"
    "MF(\"6\").Flag(1073741824) = True\nSess.GetDefaultFolder(6)\nMF(\"6\").SetMailDefaults(True)\n"
    "MF(\"6\").Flag(32) = True\n";

TEST(FolderChecks, MakeRecordsOfDefaultFolders) {
  PickerScene scene;
  scene.Open();
  scene.scene.stage.calls.ShowReads(false);
  scene.Expand("(Default Folders)");
  scene.TakeCalls();
  scene.Check("(Default Folders)/Inbox");
  EXPECT_EQ(scene.TakeCalls(), CallsOfDefaultInbox);
  EXPECT_EQ(scene.Shown(), "Inbox tip 2205 @140 @141");
  scene.Check("(Default Folders)/Sent Items");
  EXPECT_NE(scene.TakeCalls().find("SetMailDefaults(True)"), std::string::npos);
  for (const char* other : {"Calendar", "Drafts", "Outbox", "Deleted Items", "Tasks"}) {
    scene.Check(std::string("(Default Folders)/") + other);
    EXPECT_EQ(scene.TakeCalls().find("SetMailDefaults"), std::string::npos) << other;
  }
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(),
            "7: 6/:1073741920 5/:1073741920 9/:1073741825 16/:1073741856 4/:1073741856 3/:1073741856 "
            "13/:1073743872");
}

TEST(FolderChecks, MakeRecordsOfFoldersOfStores) {
  PickerScene scene;
  scene.Open();
  scene.Expand("Public Folders");
  scene.Expand("Archive");
  scene.scene.stage.calls.ShowReads(false);
  scene.picker->tvItems.KeepChanges(true);
  scene.TakeCalls();
  scene.Check("Public Folders/Sales");
  EXPECT_EQ(scene.TakeCalls(),
            "Sess.GetFolderFromID(\"B1\", \"BB\")\nUtil.IsPublicFolder(\"\\\\Public Folders\\Sales\")\n"
            "New MonitoredFolder\nMF(\"\").EntryID = \"B1\"\nMF(\"B1\").StoreID = \"BB\"\n"
            "Sess.GetFolderFromID(\"B1\", \"BB\")\nMF(\"B1\").Flag(2) = True\n");
  EXPECT_EQ(scene.Shown(), "Sales tip 2206 @136");
  EXPECT_EQ(scene.picker->tvItems.TakeChanges().shown, scene.picker->tvItems.Find("@136")) << "scrolled to";
  scene.Check("Archive/Old");
  EXPECT_EQ(scene.Shown(), "Old @140") << "item type 0 is one, too";
  scene.Select("Public Folders/Sales");
  EXPECT_EQ(scene.Shown(), "Sales tip 2206 @136");
}

TEST(FolderChecks, AreTakenBackWithTheirRecords) {
  PickerScene scene;
  scene.Store("B1", "BB", 1 + 4);
  scene.Store("C1", "CC", 8);
  scene.Open();
  scene.Expand("Public Folders");
  scene.Expand("Archive");
  EXPECT_EQ(scene.Checked(), "Sales Old");
  scene.Select("Public Folders/Sales");
  EXPECT_EQ(scene.Shown(), "Sales tip 2206 @135 @137");
  scene.Check("Public Folders/Sales", false);
  EXPECT_EQ(scene.Shown(), "Sales tip 2206");
  scene.Check("Public Folders/Sales");
  EXPECT_EQ(scene.Shown(), "Sales tip 2206 @136") << "a fresh record";
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(), "2: C1/CC:8 B1/BB:2") << "at the end";
}

TEST(FolderChecks, DoNotHoldOnRoots) {
  PickerScene scene;
  scene.Open();
  scene.Expand("(Default Folders)");
  scene.Check("(Default Folders)/Inbox");
  for (const char* root : {"Public Folders", "(Default Folders)", "(Default Folders)"}) {
    scene.Check(root);
    EXPECT_EQ(scene.Checked(), "Inbox");
    EXPECT_EQ(scene.Shown(), std::string(root) + " tip 2201 disabled");
  }
  EXPECT_EQ(scene.CheckItem(140), Outcome::Disabled);
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(), "1: 6/:1073741920");
}

TEST(ItemChecks, CheckTheirFolderWithoutItsOwnItemTypes) {
  PickerScene scene;
  scene.Open();
  scene.Expand("(Default Folders)");
  scene.Expand("Archive");
  scene.Select("(Default Folders)/Inbox");
  scene.scene.stage.calls.ShowReads(false);
  scene.TakeCalls();
  scene.CheckItem(150);
  EXPECT_EQ(scene.TakeCalls(),
            "New MonitoredFolder\nMF(\"\").EntryID = \"6\"\nMF(\"6\").StoreID = \"\"\n"
            "MF(\"6\").Flag(1073741824) = True\nMF(\"6\").Flag(32768) = True\n");
  EXPECT_EQ(scene.Shown(), "Inbox tip 2205 @150");
  scene.Select("Archive/Old");
  scene.TakeCalls();
  scene.CheckItem(135);
  scene.CheckItem(136);
  EXPECT_EQ(scene.Checked(), "Inbox Old");
  EXPECT_EQ(scene.TakeCalls(),
            "New MonitoredFolder\nMF(\"\").EntryID = \"C1\"\nMF(\"C1\").StoreID = \"CC\"\n"
            "MF(\"C1\").Flag(1) = True\nMF(\"C1\").Flag(2) = True\n");
  scene.CheckItem(135, false);
  EXPECT_EQ(scene.Shown(), "Old @136");
  scene.TakeCalls();
  scene.CheckItem(136, false);
  EXPECT_EQ(scene.TakeCalls(), "") << "a record that goes is not written to";
  EXPECT_EQ(scene.Checked(), "Inbox") << "without an item type there is nothing to monitor";
  scene.CheckItem(137);
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(), "2: 6/:1073774592 C1/CC:4");
}

TEST(ItemChecks, ScrollToTheirFolder) {
  PickerScene scene;
  scene.Open();
  scene.Expand("Archive");
  scene.Select("Archive/Old");
  scene.picker->tvFolders.KeepChanges(true);
  scene.CheckItem(135);
  EXPECT_EQ(scene.picker->tvFolders.TakeChanges().shown, scene.At("Archive/Old"));
}

// --- buttons

TEST(FolderButtons, CheckAllItemTypesAndNone) {
  PickerScene scene;
  scene.Open();
  scene.Expand("Archive");
  scene.TakeCalls();
  scene.Click(scene.picker->cmdAll);
  scene.Click(scene.picker->cmdNone);
  EXPECT_EQ(scene.TakeCalls(), "") << "nothing happens to a root";
  EXPECT_EQ(scene.Shown(), "(Default Folders) tip 2201 disabled");

  scene.Select("Archive/Old");
  scene.Click(scene.picker->cmdAll);
  EXPECT_EQ(scene.Shown(),
            "Old @135 @136 @137 @138 @139 @140 @141 @142 @143 @144 @145 @146 @147 @148 @149 @150");
  scene.Click(scene.picker->cmdNone);
  EXPECT_EQ(scene.Shown() + scene.Checked(), "Old");
  scene.Click(scene.picker->cmdAll);
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(), "1: C1/CC:65535");
  EXPECT_EQ(scene.scene.TakeSeen(), "");
}

TEST(FolderButtons, ClearEverythingAtOnce) {
  struct CountingView final : FormView {
    void Changed(Control& control) override { ++changes[control.Name()]; }
    void FocusMoved(Form& /*form*/) override {}
    void Refresh(Form& /*form*/) override {}
    void Refresh(Control& /*control*/) override {}
    std::map<std::string, int> changes;
  } view;
  PickerScene scene;
  scene.Store("C1", "CC", 1);
  scene.Store("nowhere", "to be seen", 1);
  scene.Open();
  scene.Expand("Archive");
  scene.Expand("(Default Folders)");
  for (const char* folder : {"Inbox", "Calendar", "Tasks"})
    scene.Check(std::string("(Default Folders)/") + folder);
  scene.TakeCalls();
  scene.picker->SetView(&view);
  scene.Click(scene.picker->cmdClear);
  EXPECT_EQ(view.changes["tvFolders"], 1);
  EXPECT_EQ(scene.Shown() + scene.Checked(), "Tasks tip 2205");
  EXPECT_EQ(scene.TakeCalls(), "") << "it costs no outside call";
  scene.picker->SetView(nullptr);
  scene.Click(scene.picker->cmdOk);
  EXPECT_EQ(scene.Stored(), "0:") << "what was never to be seen is gone, too";
}

TEST(FolderButtons, CancelAndClosingWriteNothing) {
  for (const int way : {0, 1, 2}) {
    PickerScene scene;
    scene.Store("C1", "CC", 1);
    scene.Open();
    scene.Click(scene.picker->cmdClear);
    scene.TakeCalls();
    if (way == 0) scene.Click(scene.picker->cmdCancel);
    if (way == 1) scene.User().Escape();
    if (way == 2) scene.picker->CloseWindow();
    EXPECT_FALSE(scene.picker->IsShowing());
    EXPECT_EQ(scene.TakeCalls() + scene.Stored(), "1: C1/CC:1");
    EXPECT_EQ(scene.timesDirty, 0);
  }
}

// --- size

Profile Generated(uint32_t count, uint32_t breadth) {
  Profile profile = PickerScene::MakeProfile();
  GeneratedFolders rule;
  rule.name = "Archive";
  rule.count = count;
  rule.breadth = breadth;
  profile.world.AddGeneratedStore("D1", StoreKind::PersonalFolders, rule);
  return profile;
}

TEST(FolderHierarchies, CostWhatIsOpenedAlone) {
  PickerScene scene(Generated(1'000'000, 1'000));
  CallLog& calls = scene.scene.stage.calls;
  int64_t before = calls.CallCount();
  scene.Open();
  EXPECT_EQ(calls.CallCount() - before, 6 + 4 * 6) << "four stores, however large they are";
  const Tree::Node store = scene.picker->tvFolders.LastChild(Tree::NoNode);
  before = calls.CallCount();
  scene.User().Expand(scene.picker->tvFolders, store, true);
  // Item, entry id, store id, name, item type, folders, their count; two for each default folder.
  EXPECT_EQ(calls.CallCount() - before, 4 + 7 * 1000 + 2 * 10);
}

TEST(FolderHierarchies, BearAnyDepth) {
  constexpr uint32_t depth = 300;
  for (const bool allLevels : {false, true}) {
    PickerScene scene(Generated(depth, 1));
    Tree& tree = scene.Open().tvFolders;
    const Tree::Node store = tree.LastChild(Tree::NoNode);
    scene.User().ClickNode(tree, store);
    if (allLevels) {
      tree.Remove(store);
      scene.picker->AddFolder(scene.scene.stage.workbench.Addin()->Session()->Folders()->Item(4),
                              Tree::NoNode, true);
    } else {
      scene.User().Press(KeyMultiply);
    }
    Tree::Node deepest = tree.LastChild(Tree::NoNode);
    uint32_t levels = 1;
    for (; tree.FirstChild(deepest) != Tree::NoNode; deepest = tree.FirstChild(deepest)) ++levels;
    EXPECT_EQ(levels, depth);
    EXPECT_NE(tree.Text(deepest), ChildPlaceholder);
    EXPECT_EQ(tree.Expanded(tree.Parent(deepest)), !allLevels);
    scene.User().CheckNode(tree, deepest, true);
    EXPECT_EQ(scene.scene.TakeSeen(), "");
    scene.Click(scene.picker->cmdOk);
    EXPECT_EQ(scene.scene.Working().MonitoredFolderCount, 1);
  }
}

}  // namespace
}  // namespace vexa::workbench
