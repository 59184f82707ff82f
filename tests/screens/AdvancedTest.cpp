#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "dialogs/frmAdvanced.h"
#include "dialogs/frmCacheAdjust.h"
#include "tests/screens/Scene.h"
#include "workbench/FormState.h"

namespace vexa::workbench {
namespace {

void InAdvanced(Scene& scene, const std::function<void(frmAdvanced&, UserActions&)>& body) {
  scene.In<frmAdvanced>(&OutlookPropertiesPage::cmdAdvanced, body);
}

std::string State(const CheckBox& box) {
  return std::string(box.Checked() ? "x" : "-") + (box.Enabled() ? "" : "!");
}

void Change(UserActions& user, Control& control, const char* value) {
  if (auto* const text = dynamic_cast<TextBox*>(&control)) {
    user.Type(*text, value);
  } else if (auto* const slider = dynamic_cast<Slider*>(&control)) {
    user.Slide(*slider, std::stoi(value));
  } else {
    user.Click(control);
  }
}

TEST(Advanced, OneChangeChangesOneSettingAndComesBack) {
  const auto cache = &frmAdvanced::cmdAdjCache;
  const auto background = &frmAdvanced::cmdAdjBackground;
  struct Row {
    const char *settings, *control, *value = "";
    Button frmAdvanced::*tuning = nullptr;  // that opens the dialog with the control
  };
  for (const Row& row : {Row{"ShowVexa2Buttons", "chkShow"},
                         {"OnlySearchIfNoLinks", "chkOnlySearch"},
                         {"BypassObjectModel", "chkBypass"},
                         {"EditFolderFields", "chkDontEdit"},
                         {"MakeWorkingCopy", "chkMakeWorking"},
                         {"QuickscanHours", "chkQuickscanHours"},
                         {"QuickscanHours", "txtQuickscanHours", "24"},
                         {"CacheContactFolders", "chkCache"},
                         {"CacheContactFolders AssumeUniqueEmailAddresses", "chkAssume"},
                         {"SearchEmailAddresses CacheContactFolders", "chkSearchEmail"},
                         {"WorkInBackground", "chkWork"},
                         {"LogLevel", "sldLogLevel", "0"},
                         {"MaxLogSize", "sldMaxSize", "31"},
                         {"AutomaticErrorReporting", "chkErrReporting"},
                         {"IgnoreEnterpriseSettings", "chkUseEnterprise"},
                         {"AllUsersMode", "chkAllUsers"},
                         {"RecordsPerDownload", "txtNumRecords", "9", cache},
                         {"KeepCacheSynchronized", "chkSync", "", cache},
                         {"StopCacheFillOnExit", "chkFillOnExit", "", cache},
                         {"BackgroundInterval", "txtInterval", "9", background},
                         {"BackgroundWorkTime", "txtTime", "9", background},
                         {"DelayNewItems", "chkDelay", "", background}}) {
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
      EXPECT_FALSE(dialog.IsShowing());
      scene.TakeSeen();
    };
    for (int opening = 0; opening < 2; ++opening) {
      InAdvanced(scene, [&](frmAdvanced& advanced, UserActions& user) {
        if (row.tuning == nullptr) return look(advanced);
        scene.InNextDialog(look);
        user.Click(advanced.*row.tuning);
        EXPECT_FALSE(advanced.cmdOk.Enabled()) << "tuning is none of its changes";
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

TEST(Advanced, ShowsLevelsAndSizesAsSlidersAndWritesTheFolderOfThePath) {
  const struct {
    int32_t level, position;
    int16_t kilobytes;
    const char *size, *path, *folder;
  } rows[] = {{1, 2, 511, "0 MB", "C:\\VEXAERRORS.MDB", "C:"},
              {4, 3, 1536, "2 MB", "\\\\server\\share\\VEXAERRORS.MDB", "\\\\server\\share"},
              {-1, 3, 32767, "32 MB", "C:/logs/vexa/VEXAERRORS.MDB", "C:/logs/vexa"},
              {INT32_MIN, 3, -5000, "0 MB", "D:\\\u00c9t\u00e9\\\u0416\\x", "D:\\\u00c9t\u00e9\\\u0416"}};
  for (const auto& row : rows) {
    Scene scene;
    SettingsData& stored = scene.stage.workbench.profile.settings;
    stored.LogLevel = row.level;
    stored.MaxLogSize = row.kilobytes;
    stored.ErrorLogPath = row.path;
    scene.Open();
    scene.stage.calls.Clear();
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      EXPECT_EQ(dialog.sldLogLevel.Position(), row.position) << row.level;
      EXPECT_EQ(dialog.lblSize.Caption(), row.size) << row.kilobytes;
      user.Slide(dialog.sldMaxSize, 4);
      user.Click(dialog.cmdOk);
    });
    EXPECT_EQ(scene.Working().LogLevel, 3 - row.position);
    EXPECT_EQ(scene.TimesCalled("RS.ErrorLogPath = " + QuotedText(row.folder)), 1) << row.path;
  }
}

TEST(Advanced, EnterpriseBoxIsClearOnlyForSettingsThatAreThereAndIgnored) {
  for (const bool ignore : {false, true}) {
    for (const bool present : {false, true}) {
      Scene scene;
      SettingsData& stored = scene.stage.workbench.profile.settings;
      stored.IgnoreEnterpriseSettings = ignore;
      stored.EnterpriseSettingsPresent = present;
      InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
        EXPECT_EQ(State(dialog.chkUseEnterprise),
                  std::string(ignore && present ? "-" : "x") + (present ? "" : "!"));
        user.Click(dialog.chkShow);
        user.Click(dialog.cmdOk);
      });
      EXPECT_EQ(scene.Working().IgnoreEnterpriseSettings, ignore && present);
    }
  }
}

TEST(Advanced, HoursBecomeAWholeNumberWhenTheBoxIsLeftAndOnlyThen) {
  const struct {
    const char* typed;
    const char* left;
    int32_t stored;  // by Enter, while the box still has the focus
  } rows[] = {{"3.5", "4", 4}, {"-7", "0", -7}, {"-0.4", "0", 0}, {"", "0", 0}, {"-40000", "0", -40000}};
  for (const auto& row : rows) {
    Scene scene;
    scene.stage.workbench.profile.settings.QuickscanHours = 12;
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      EXPECT_EQ(dialog.txtQuickscanHours.Text(), "12");
      user.Type(dialog.txtQuickscanHours, row.typed);
      user.Leave();
      EXPECT_EQ(dialog.txtQuickscanHours.Text(), row.left) << row.typed;
      user.Type(dialog.txtQuickscanHours, row.typed);
      user.Enter();
      EXPECT_FALSE(dialog.IsShowing());
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
  stored.MaxLogSize = 1024;
  stored.ErrorLogPath = "E:\\x\\VEXAERRORS.MDB";
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    user.Click(dialog.cmdDefault);
    EXPECT_EQ(std::ranges::count(scene.TakeSeen(), '\n'), 1) << "the question, and no other box";
    EXPECT_EQ(dialog.txtQuickscanHours.Text(), "0");
    EXPECT_EQ(dialog.lblSize.Caption(), "2048 MB");
    user.Slide(dialog.sldMaxSize, 2);
    user.Click(dialog.cmdOk);
    EXPECT_FALSE(dialog.IsShowing());
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
    EXPECT_FALSE(dialog.cmdOk.Enabled());
  });
}

TEST(Advanced, HoldsNothingAfterItsEnd) {
  Scene scene;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    for (Button* adjust : {&dialog.cmdAdjCache, &dialog.cmdAdjBackground}) {
      scene.InNextDialog([&](Dialog& tuning) {
        tuning.CloseWindow();
        Raise(static_cast<Button*>(tuning.FindControl("cmdOk"))->OnClick);
        EXPECT_NE(scene.TakeSeen().find("Error Number: 91"), std::string::npos) << tuning.Name();
      });
      user.Click(*adjust);
    }
    user.Click(dialog.cmdCancel);
    for (Button* button : {&dialog.cmdOk, &dialog.cmdDefault, &dialog.cmdAdjCache}) {
      Raise(button->OnClick);
      EXPECT_NE(scene.TakeSeen().find("Error Number: 91"), std::string::npos) << button->Name();
    }
    EXPECT_TRUE(dialog.Cancelled());
  });
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    user.Click(dialog.chkShow);
    user.Click(dialog.cmdOk);
    dialog.CloseWindow();
    EXPECT_FALSE(dialog.Cancelled()) << "closing what has ended changes no outcome";
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
        EXPECT_FALSE(dialog.IsShowing()) << row.typed;
      });
      user.Click(advanced.cmdAdjCache);
    });
    EXPECT_EQ(scene.TakeSeen().starts_with("MSG[exclamation | OK | \"Vexa\"] \"It is recommended"),
              row.warned)
        << row.typed;
    EXPECT_EQ(scene.Working().RecordsPerDownload, row.stored) << row.typed;
  }
}

}  // namespace
}  // namespace vexa::workbench
