#include <gtest/gtest.h>

#include "dialogs/frmSharedFolders.h"
#include "tests/screens/Scene.h"
#include "workbench/FormState.h"

namespace vexa::workbench {
namespace {

/// A scene with folders to route to: a calendar, a journal and tasks; the first folder set routes to all
/// three.
class RoutedScene {
 public:
  RoutedScene() {
    World& world = scene.stage.workbench.profile.world;
    const FolderIndex root = world.FindPath("P");
    world.AddFolder(0, root, "Cal", "cal", ItemType::Appointment);
    world.AddFolder(0, root, "Cal2", "cal2", ItemType::Appointment);
    world.AddFolder(0, root, "T", "t", ItemType::Task);
    SettingsData& stored = scene.stage.workbench.profile.settings;
    stored.SharedCalEntryIDs = {"cal", ""};
    stored.SharedJournEntryIDs = {"j", ""};
    stored.SharedTaskEntryIDs = {"t", ""};
    stored.SharedCalStoreIDs = stored.SharedJournStoreIDs = stored.SharedTaskStoreIDs = {"S", ""};
    stored.FolderSetFlags = {1, 2};
  }

  using Body = std::function<void(frmSharedFolders&, UserActions&)>;
  /// Opens the folder set's editor, in it the shared folders, and then does the rest in the editor.
  void In(int32_t folderSet, const Body& body,
          const std::function<void(frmEditFolderset&, UserActions&)>& after) {
    if (scene.stage.Page() == nullptr) scene.Open();
    bool shown = false;
    scene.InNextDialog([&](Dialog& dialog) {
      auto& editor = dynamic_cast<frmEditFolderset&>(dialog);
      UserActions user(editor);
      EXPECT_FALSE(editor.cmdOk.Enabled());
      scene.InNextDialog([&](Dialog& inner) {
        shown = true;
        UserActions inside(inner);
        body(dynamic_cast<frmSharedFolders&>(inner), inside);
      });
      user.Click(editor.cmdShared);
      after(editor, user);
    });
    scene.Page().gd.SetCurrent(folderSet, 0);
    scene.Click(scene.Page(), scene.Page().cmdChange);
    EXPECT_TRUE(shown) << scene.seen;
  }
  /// The routing fields and flags of a folder set in the working copy.
  std::string Routing(size_t folderSet) {
    const SettingsData& data = scene.Working();
    const size_t i = folderSet - 1;
    return data.SharedCalEntryIDs[i] + "/" + data.SharedCalStoreIDs[i] + " " + data.SharedJournEntryIDs[i] +
           "/" + data.SharedJournStoreIDs[i] + " " + data.SharedTaskEntryIDs[i] + "/" +
           data.SharedTaskStoreIDs[i] + " " + std::to_string(data.FolderSetFlags[i]);
  }

  Scene scene;
};

void PressOk(frmEditFolderset& editor, UserActions& user) { user.Click(editor.cmdOk); }
void Nothing(frmEditFolderset&, UserActions&) {}

/// Boxes and paths: "Cal x P/Cal" for each route, then the two options.
std::string Shown(const frmSharedFolders& dialog) {
  std::string text;
  const auto add = [&](const char* name, const CheckBox& box, const TextBox* path) {
    text += std::string(text.empty() ? "" : ", ") + name + (box.Checked() ? " x" : " -") +
            (box.Enabled() ? "" : "!");
    if (path != nullptr && !path->Text().empty()) text += " " + path->Text() + (path->Enabled() ? "" : "!");
  };
  add("cal", dialog.chkSCal, &dialog.txtSCal);
  add("journ", dialog.chkSJourn, &dialog.txtSJourn);
  add("task", dialog.chkSTask, &dialog.txtSTask);
  add("log", dialog.chkLog, nullptr);
  add("copy", dialog.chkLeaveCopy, nullptr);
  return text;
}

TEST(SharedFolders, ShowsTheRecordAndHandsItBackThroughBothOks) {
  RoutedScene routed;
  routed.In(
      1,
      [&](frmSharedFolders& dialog, UserActions& user) {
        EXPECT_EQ(dialog.Caption(), "C1");
        EXPECT_EQ(Shown(dialog), "cal x \\\\P\\Cal, journ x \\\\P\\J, task x \\\\P\\T, log x, copy -");
        EXPECT_EQ(routed.scene.TakeSeen(), "");
        EXPECT_FALSE(dialog.cmdOk.Enabled());
        routed.scene.Pick({"P/Cal2"});
        user.Click(dialog.cmdSelSCal);
        user.Click(dialog.chkSJourn);
        user.Click(dialog.chkLog);
        user.Click(dialog.chkLeaveCopy);
        EXPECT_EQ(Shown(dialog), "cal x \\\\P\\Cal2, journ - \\\\P\\J!, task x \\\\P\\T, log -, copy x");
        user.Click(dialog.cmdOk);
        EXPECT_FALSE(dialog.Cancelled());
      },
      [&](frmEditFolderset& editor, UserActions& user) {
        EXPECT_EQ(routed.Routing(1), "cal/S j/S t/S 1") << "not before the editor's own OK";
        EXPECT_TRUE(editor.cmdOk.Enabled()) << "the folders are complete";
        user.Click(editor.cmdOk);
      });
  EXPECT_EQ(routed.Routing(1), "cal2/S / t/S 2");
  EXPECT_EQ(routed.Routing(2), "/ / / 2") << "the other folder set is as it was";
}

TEST(SharedFolders, CancellingEitherDialogDropsTheChanges) {
  for (const int ending : {0, 1, 2, 3}) {
    RoutedScene routed;
    routed.In(
        1,
        [&](frmSharedFolders& dialog, UserActions& user) {
          user.Click(dialog.chkSCal);
          user.Click(dialog.chkLog);
          if (ending == 0) user.Click(dialog.cmdCancel);
          if (ending == 1) user.Escape();
          if (ending == 2) dialog.CloseWindow();
          if (ending == 3) user.Click(dialog.cmdOk);
          EXPECT_FALSE(dialog.IsShowing());
          EXPECT_EQ(dialog.Cancelled(), ending != 3);
        },
        [&](frmEditFolderset& editor, UserActions& user) {
          EXPECT_EQ(editor.cmdOk.Enabled(), ending == 3) << "Cancel leaves the editor's OK alone";
          EXPECT_EQ(editor.SharedCalEntryID, ending == 3 ? "" : "cal");
          user.Click(editor.cmdCancel);
        });
    EXPECT_EQ(routed.Routing(1), "cal/S j/S t/S 1");
    EXPECT_EQ(routed.scene.Writes(), "");
  }
}

TEST(SharedFolders, ATickWithoutAFolderAsksForOneAtOnce) {
  RoutedScene routed;
  Scene& scene = routed.scene;
  routed.In(
      2,
      [&](frmSharedFolders& dialog, UserActions& user) {
        EXPECT_EQ(Shown(dialog), "cal -, journ -, task -, log -, copy x");
        user.Click(dialog.chkSCal);
        EXPECT_EQ(Shown(dialog), "cal -, journ -, task -, log -, copy x");
        EXPECT_FALSE(dialog.cmdOk.Enabled()) << "a tick that came to nothing is no change";
        EXPECT_FALSE(dialog.txtSCal.Enabled());
        scene.Pick({"P/J", "P/T", "P/Cal"});
        user.Click(dialog.chkSCal);
        const std::string refused =
            "MSG[critical | OK | \"Invalid Folder\"] \"Please select a public folder that stores "
            "appointments\" -> "
            "ok\n";
        EXPECT_EQ(scene.TakeSeen(), refused + refused);
        EXPECT_EQ(Shown(dialog), "cal x \\\\P\\Cal, journ -, task -, log -, copy x");
        EXPECT_TRUE(dialog.cmdOk.Enabled());
        user.Click(dialog.chkSCal);
        user.Click(dialog.chkSCal);
        EXPECT_TRUE(scene.picks.empty()) << "a folder that is known is not asked for again";
        scene.Pick({"P/Cal", "P/J", "P/C1", "P/T"});
        user.Click(dialog.cmdSelSJourn);
        user.Click(dialog.chkSTask);
        EXPECT_EQ(
            scene.TakeSeen(),
            "MSG[critical | OK | \"Invalid Folder\"] \"Please select a public folder that stores journal "
            "items\" -> ok\nMSG[critical | OK | \"Invalid Folder\"] \"Please select a public folder that "
            "stores tasks\" -> ok\n");
        EXPECT_EQ(Shown(dialog), "cal x \\\\P\\Cal, journ x \\\\P\\J, task x \\\\P\\T, log -, copy x");
        user.Enter();
      },
      PressOk);
  EXPECT_EQ(routed.Routing(2), "cal/S j/S t/S 2");
}

TEST(SharedFolders, EachOptionChangesOneBitAndNothingElse) {
  for (const bool log : {true, false}) {
    RoutedScene routed;
    routed.In(
        1,
        [&](frmSharedFolders& dialog, UserActions& user) {
          user.Click(log ? dialog.chkLog : dialog.chkLeaveCopy);
          EXPECT_TRUE(dialog.cmdOk.Enabled());
          user.Click(dialog.cmdOk);
        },
        PressOk);
    EXPECT_EQ(routed.Routing(1), std::string("cal/S j/S t/S ") + (log ? "0" : "3"));
  }
}

TEST(SharedFolders, FlagsOutOfRangeAreRepairedButNegativeOnesAreNot) {
  const struct {
    int32_t stored;
    bool changeLog;  // else the copy is changed, and back again
    int32_t after;
  } rows[] = {{7, false, 3}, {7, true, 2}, {4, true, 1},   {4, false, 0}, {INT32_MAX, false, 3},
              {3, true, 2},  {0, true, 1}, {-1, true, -2}, {-4, true, -3}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.stored);
    RoutedScene routed;
    routed.scene.stage.workbench.profile.settings.FolderSetFlags = {row.stored, 2};
    routed.In(
        1,
        [&](frmSharedFolders& dialog, UserActions& user) {
          EXPECT_EQ(dialog.chkLog.Checked(), (row.stored & 1) != 0);
          EXPECT_EQ(dialog.chkLeaveCopy.Checked(), (row.stored & 2) != 0);
          CheckBox& box = row.changeLog ? dialog.chkLog : dialog.chkLeaveCopy;
          user.Click(box);
          if (!row.changeLog) user.Click(box);
          user.Click(dialog.cmdOk);
        },
        PressOk);
    EXPECT_EQ(routed.scene.Working().FolderSetFlags.front(), row.after);
  }
}

TEST(SharedFolders, AFolderThatIsGoneIsForgottenByOk) {
  RoutedScene routed;
  World& world = routed.scene.stage.workbench.profile.world;
  routed.scene.Open();
  world.Delete(world.FindPath("P/Cal"));
  routed.In(
      1,
      [&](frmSharedFolders& dialog, UserActions& user) {
        EXPECT_EQ(Shown(dialog), "cal -, journ x \\\\P\\J, task x \\\\P\\T, log x, copy -");
        EXPECT_EQ(routed.scene.TakeSeen(), "");
        user.Click(dialog.chkLeaveCopy);
        user.Click(dialog.cmdOk);
      },
      PressOk);
  EXPECT_EQ(routed.Routing(1), "/ j/S t/S 3");
}

TEST(SharedFolders, WithoutWriteAccessFoldersCanOnlyBeTried) {
  RoutedScene routed;
  routed.scene.stage.workbench.profile.settings.SharedCalEntryIDs = {"", ""};
  routed.scene.Open();
  routed.scene.stage.workbench.profile.addin.canWrite = false;
  routed.In(
      1,
      [&](frmSharedFolders& dialog, UserActions& user) {
        EXPECT_EQ(Scene::Disabled(dialog), "chkSCal txtSCal chkSJourn chkSTask chkLog chkLeaveCopy cmdOk");
        routed.scene.Pick({"P/Cal2"});
        user.Click(dialog.cmdSelSCal);
        EXPECT_EQ(Shown(dialog), "cal x! \\\\P\\Cal2, journ x! \\\\P\\J, task x! \\\\P\\T, log x!, copy -!");
        EXPECT_EQ(user.Click(dialog.cmdOk), Outcome::Disabled);
      },
      Nothing);
  EXPECT_EQ(routed.scene.Writes(), "");
}

TEST(SharedFolders, TheEditorsButtonNeedsAContactFolderThatIsThere) {
  Scene scene;
  scene.Open();
  scene.InNextDialog([&](Dialog& dialog) {
    auto& editor = dynamic_cast<frmEditFolderset&>(dialog);
    EXPECT_FALSE(editor.cmdShared.Enabled()) << "a new folder set has none";
    scene.Pick({"P/C3"});
    scene.Click(editor, editor.cmdSelContact);
    EXPECT_TRUE(editor.cmdShared.Enabled());
    scene.stage.workbench.profile.world.Delete(scene.stage.workbench.profile.world.FindPath("P/C3"));
    scene.Click(editor, editor.cmdShared);
    EXPECT_NE(scene.TakeSeen().find("frmEditFolderset.cmdShared_Click"), std::string::npos);
    EXPECT_TRUE(editor.IsShowing());
  });
  scene.Click(scene.Page(), scene.Page().cmdAdd);
}

}  // namespace
}  // namespace vexa::workbench
