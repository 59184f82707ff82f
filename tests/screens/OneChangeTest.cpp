#include <gtest/gtest.h>

#include "dialogs/frmAdvanced.h"
#include "tests/screens/Scene.h"
#include "workbench/FormState.h"

namespace vexa::workbench {
namespace {

void Change(UserActions& user, Control& control, const char* value) {
  if (auto* const text = dynamic_cast<TextBox*>(&control)) {
    user.Type(*text, value);
  } else if (auto* const slider = dynamic_cast<Slider*>(&control)) {
    user.Slide(*slider, std::stoi(value));
  } else {
    user.Click(control);
  }
}

TEST(OneChange, ChangesItsSettingAloneAndComesBack) {
  const auto tracking = &OutlookPropertiesPage::cmdTracking;
  const auto advanced = &OutlookPropertiesPage::cmdAdvanced;
  const auto cache = &frmAdvanced::cmdAdjCache;
  const auto background = &frmAdvanced::cmdAdjBackground;
  struct Row {
    Button OutlookPropertiesPage::*opener;
    const char *settings, *control, *value = "";
    Button frmAdvanced::*tuning = nullptr;  // that opens the dialog with the control
  };
  for (const Row& row : {Row{tracking, "LoggingMethod", "optPersonal"},
                         {tracking, "LoggingMethod", "optWindowMode"},
                         {tracking, "MaintainAuditTrail", "chkAudit"},
                         {tracking, "UpdateLoggedItems", "chkUpdateLogged"},
                         {tracking, "UpdateSharedItems", "chkUpdateShared"},
                         {tracking, "ScanInboxAtStartup", "chkScanInbox"},
                         {tracking, "StripAttachments", "chkStripAttachments"},
                         {tracking, "IgnoreInternalSenders", "chkIgnoreInternal"},
                         {tracking, "EnableBlanketDomain", "chkEnableBlanketDomain"},
                         {tracking, "IgnorePrivateContacts", "chkIgnorePrivate"},
                         {advanced, "ShowVexa2Buttons", "chkShow"},
                         {advanced, "OnlySearchIfNoLinks", "chkOnlySearch"},
                         {advanced, "BypassObjectModel", "chkBypass"},
                         {advanced, "EditFolderFields", "chkDontEdit"},
                         {advanced, "MakeWorkingCopy", "chkMakeWorking"},
                         {advanced, "QuickscanHours", "chkQuickscanHours"},
                         {advanced, "QuickscanHours", "txtQuickscanHours", "24"},
                         {advanced, "CacheContactFolders", "chkCache"},
                         {advanced, "CacheContactFolders AssumeUniqueEmailAddresses", "chkAssume"},
                         {advanced, "SearchEmailAddresses CacheContactFolders", "chkSearchEmail"},
                         {advanced, "WorkInBackground", "chkWork"},
                         {advanced, "LogLevel", "sldLogLevel", "0"},
                         {advanced, "MaxLogSize", "sldMaxSize", "31"},
                         {advanced, "AutomaticErrorReporting", "chkErrReporting"},
                         {advanced, "IgnoreEnterpriseSettings", "chkUseEnterprise"},
                         {advanced, "AllUsersMode", "chkAllUsers"},
                         {advanced, "RecordsPerDownload", "txtNumRecords", "9", cache},
                         {advanced, "KeepCacheSynchronized", "chkSync", "", cache},
                         {advanced, "StopCacheFillOnExit", "chkFillOnExit", "", cache},
                         {advanced, "BackgroundInterval", "txtInterval", "9", background},
                         {advanced, "BackgroundWorkTime", "txtTime", "9", background},
                         {advanced, "DelayNewItems", "chkDelay", "", background}}) {
    SCOPED_TRACE(row.control);
    Scene scene;
    SettingsData& stored = scene.stage.workbench.profile.settings;
    stored.EnterpriseSettingsPresent = true;
    stored.QuickscanHours = 7;
    scene.Open();
    const SettingsData before = scene.Working();
    std::vector<FormState> shown;
    const auto look = [&](Dialog& dialog) {
      UserActions user(dialog);
      const Control& ok = *dialog.FindControl("cmdOk");
      EXPECT_EQ(scene.TakeSeen(), "") << "loading asks nothing";
      EXPECT_FALSE(ok.Enabled());
      if (!shown.empty()) return shown.push_back(StateOf(dialog));
      EXPECT_EQ(user.Enter(), Outcome::Disabled);
      Change(user, *dialog.FindControl(row.control), row.value);
      EXPECT_TRUE(ok.Enabled());
      shown.push_back(StateOf(dialog));
      user.Enter();
      EXPECT_FALSE(dialog.IsShowing() || dialog.Cancelled());
      scene.TakeSeen();
    };
    for (int opening = 0; opening < 2; ++opening) {
      scene.In<Dialog>(row.opener, [&](Dialog& dialog, UserActions& user) {
        if (row.tuning == nullptr) return look(dialog);
        auto& above = static_cast<frmAdvanced&>(dialog);
        scene.InNextDialog(look);
        user.Click(above.*row.tuning);
        EXPECT_FALSE(above.cmdOk.Enabled()) << "tuning is none of its changes";
      });
    }
    EXPECT_EQ(scene.Page().PropertyPage_Dirty(), row.tuning == nullptr);
    EXPECT_EQ(Scene::Differences(before, scene.Working()), row.settings);
    ASSERT_EQ(shown.size(), 2U);
    for (size_t i = 0; i < shown.front().controls.size(); ++i) {
      const ControlState& then = shown.front().controls[i];
      const ControlState& now = shown.back().controls[i];
      if (then.name == "txtQuickscanHours") continue;  // an unticked box leaves its number as it was
      EXPECT_EQ(now.checked, then.checked) << then.name;
      EXPECT_EQ(now.text, then.text) << then.name;
      EXPECT_EQ(now.position, then.position) << then.name;
      EXPECT_EQ(now.enabled, then.enabled && then.name != "cmdOk") << then.name;
    }
  }
}

}  // namespace
}  // namespace vexa::workbench
