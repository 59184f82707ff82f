#include <gtest/gtest.h>

#include <sstream>

#include "dialogs/frmAdvanced.h"
#include "dialogs/frmCacheAdjust.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

void InAdvanced(Scene& scene, const std::function<void(frmAdvanced&, UserActions&)>& body) {
  scene.In<frmAdvanced>(&OutlookPropertiesPage::cmdAdvanced, body);
}

TEST(Advanced, BearsWhateverIsStored) {
  struct Row {
    int32_t level, position;
    int16_t kilobytes;
    const char* size;
  };
  for (const Row& row : {Row{INT32_MIN, 3, -5000, "0 MB"}, {1, 2, 32767, "32 MB"}}) {
    Scene scene;
    SettingsData& stored = scene.stage.workbench.profile.settings;
    stored.LogLevel = row.level;
    stored.MaxLogSize = row.kilobytes;
    stored.IgnoreEnterpriseSettings = true;  // there are none
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      EXPECT_EQ(dialog.sldLogLevel.Position(), row.position);
      EXPECT_EQ(dialog.lblSize.Caption(), row.size);
      EXPECT_TRUE(dialog.chkUseEnterprise.Checked());
      user.Slide(dialog.sldMaxSize, 4);
      user.Click(dialog.cmdOk);
    });
    EXPECT_EQ(scene.Working().LogLevel, 3 - row.position);
    EXPECT_FALSE(scene.Working().IgnoreEnterpriseSettings);
  }
}

TEST(Advanced, HoursBecomeAWholeNumberWhenTheBoxIsLeftAndOnlyThen) {
  const struct {
    const char* typed;
    const char* left;
    int32_t stored;  // by Enter, while the box still has the focus
  } rows[] = {{"3.5", "4", 4}, {"-7", "0", -7}, {"-0.4", "0", 0}, {"-40000", "0", -40000}};
  for (const auto& row : rows) {
    Scene scene;
    scene.stage.workbench.profile.settings.QuickscanHours = 12;
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      user.Type(dialog.txtQuickscanHours, row.typed);
      user.Leave();
      EXPECT_EQ(dialog.txtQuickscanHours.Text(), row.left) << row.typed;
      user.Type(dialog.txtQuickscanHours, row.typed);
      user.Enter();
    });
    EXPECT_EQ(scene.TakeSeen(), "");
    EXPECT_EQ(scene.Working().QuickscanHours, row.stored) << row.typed;
  }
}

TEST(Advanced, RestoringChangesWhateverIsNoDefault) {
  Scene scene;
  SettingsData& stored = scene.stage.workbench.profile.settings;
  stored.ShowVexa2Buttons = stored.OnlySearchIfNoLinks = stored.MakeWorkingCopy = true;
  stored.AssumeUniqueEmailAddresses = stored.SearchEmailAddresses = stored.EditFolderFields = false;
  stored.CacheContactFolders = stored.WorkInBackground = stored.KeepCacheSynchronized = false;
  stored.StopCacheFillOnExit = stored.AutomaticErrorReporting = true;
  stored.EnterpriseSettingsPresent = stored.IgnoreEnterpriseSettings = true;
  stored.QuickscanHours = 5;
  stored.RecordsPerDownload = 7;
  stored.BackgroundInterval = stored.BackgroundWorkTime = stored.DelayNewItems = 8;
  stored.LogLevel = 3;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    user.Click(dialog.cmdDefault);
    EXPECT_EQ(std::ranges::count(scene.TakeSeen(), '\n'), 1) << "the question, and no other box";
    user.Slide(dialog.sldMaxSize, 2);
    user.Click(dialog.cmdOk);
  });
  SettingsData expected = SettingsData::Defaults();
  expected.BypassObjectModel = true;
  expected.DelayNewItems = 8;  // not restored
  expected.EnterpriseSettingsPresent = true;
  expected.ErrorLogPath = "C:\\Program Files\\Tolvane\\Vexa\\Bin\\VEXAERRORS.MDB";
  std::istringstream differences(Scene::Differences(expected, scene.Working()));
  for (std::string name; differences >> name;)
    EXPECT_TRUE(name.ends_with("IDs") || name.starts_with("FolderSet")) << name;
}

TEST(Advanced, ShowsAnErrorWithoutANumberToo) {
  Scene scene;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    scene.stage.calls.PlanFault("Shell.BrowseForFolder", 1, Error(0, "", ""));
    user.Click(dialog.cmdLocation);
    EXPECT_NE(scene.TakeSeen().find("Could not create browse dialog"), std::string::npos);
  });
}

TEST(CacheTuning, WarnsAboutMoreThanAHundredAndGoesOn) {
  const struct {
    const char* typed;
    bool warned;
    int stored;
  } rows[] = {{"100.5", true, 100}, {"20000", true, 20000}, {"abc", false, 0}};
  for (const auto& row : rows) {
    Scene scene;
    InAdvanced(scene, [&](frmAdvanced& advanced, UserActions& user) {
      scene.InNextDialog([&](Dialog& dialog) {
        UserActions inside(dialog);
        inside.Type(dynamic_cast<frmCacheAdjust&>(dialog).txtNumRecords, row.typed);
        inside.Enter();  // without leaving the box
      });
      user.Click(advanced.cmdAdjCache);
    });
    EXPECT_EQ(!scene.TakeSeen().empty(), row.warned) << row.typed;
    EXPECT_EQ(scene.Working().RecordsPerDownload, row.stored) << row.typed;
  }
}

}  // namespace
}  // namespace vexa::workbench
