#include <gtest/gtest.h>

#include <algorithm>

#include "dialogs/frmFolders.h"
#include "dialogs/frmTrackingOptions.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

/// A name for each box that can be ticked: ticked, and usable or not.
std::string Boxes(const frmTrackingOptions& dialog) {
  std::string text;
  for (const Control* control : dialog.Controls()) {
    bool on = false;
    if (control->Kind() == ControlKind::CheckBox) on = static_cast<const CheckBox*>(control)->Checked();
    if (control->Kind() == ControlKind::OptionButton)
      on = static_cast<const OptionButton*>(control)->Selected();
    if (on) text += (text.empty() ? "" : " ") + control->Name();
  }
  return text;
}

void InTracking(Scene& scene, const std::function<void(frmTrackingOptions&, UserActions&)>& body) {
  scene.In<frmTrackingOptions>(&OutlookPropertiesPage::cmdTracking, body);
}

struct Setting {
  const char* box;
  bool SettingsData::*value;
};
const std::vector<Setting> Settings{{"chkAudit", &SettingsData::MaintainAuditTrail},
                                    {"chkUpdateLogged", &SettingsData::UpdateLoggedItems},
                                    {"chkUpdateShared", &SettingsData::UpdateSharedItems},
                                    {"chkScanInbox", &SettingsData::ScanInboxAtStartup},
                                    {"chkStripAttachments", &SettingsData::StripAttachments},
                                    {"chkIgnoreInternal", &SettingsData::IgnoreInternalSenders},
                                    {"chkEnableBlanketDomain", &SettingsData::EnableBlanketDomain},
                                    {"chkIgnorePrivate", &SettingsData::IgnorePrivateContacts}};

TEST(Tracking, EachBoxStandsForItsSettingBothWays) {
  for (const auto& [box, value] : Settings) {
    SCOPED_TRACE(box);
    for (const bool before : {false, true}) {
      Scene scene;
      scene.stage.workbench.profile.settings.*value = before;
      const SettingsData stored = scene.stage.workbench.profile.settings;
      InTracking(scene, [&, name = box](frmTrackingOptions& dialog, UserActions& user) {
        EXPECT_EQ(Boxes(dialog), before ? "optDefault " + std::string(name) : "optDefault");
        EXPECT_EQ(Scene::Disabled(dialog), "cmdFolders cmdOk");
        user.Click(*dialog.FindControl(name));
        EXPECT_EQ(Scene::Disabled(dialog), "cmdFolders");
        user.Click(dialog.cmdOk);
      });
      SettingsData expected = stored;
      expected.*value = !before;
      std::string differing;
      VisitSettings(expected, [&](std::string_view name, const auto& wanted) {
        VisitSettings(scene.Working(), [&](std::string_view otherName, const auto& found) {
          if constexpr (std::is_same_v<decltype(wanted), decltype(found)>) {
            if (name == otherName && wanted != found) differing += std::string(name) + " ";
          }
        });
      });
      EXPECT_EQ(differing, "") << "and no other setting changes";
    }
  }
}

TEST(Tracking, ShowsAndWritesTheLoggingMethod) {
  const struct {
    int32_t stored;
    const char* shown;
  } rows[] = {{0, "optDefault"},    {1, ""}, {2, "optPersonal"}, {3, "optCustom"},
              {4, "optWindowMode"}, {-7, ""}};
  for (const auto& row : rows) {
    Scene scene;
    scene.stage.workbench.profile.settings.LoggingMethod = row.stored;
    InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
      EXPECT_EQ(Boxes(dialog), row.shown);
      EXPECT_EQ(dialog.cmdFolders.Enabled(), row.stored == 3);
      user.Click(dialog.chkAudit);
      user.Click(dialog.cmdOk);
    });
    EXPECT_EQ(scene.Working().LoggingMethod, row.stored);
    const std::string written = "RS.LoggingMethod = " + std::to_string(row.stored);
    EXPECT_EQ(scene.Writes().find(written) != std::string::npos, row.shown[0] != '\0')
        << "nothing is written while no option is chosen";
    InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
      user.Choose(dialog.optCustom);
      EXPECT_TRUE(dialog.cmdFolders.Enabled());
      EXPECT_EQ(dialog.cmdOk.Enabled(), row.stored != 3) << "choosing the chosen one is no change";
      user.Choose(dialog.optPersonal);
      EXPECT_FALSE(dialog.cmdFolders.Enabled());
      user.Click(dialog.cmdOk);
    });
    EXPECT_EQ(scene.Working().LoggingMethod, 2);
  }
}

TEST(Tracking, ReadsAndWritesInOrder) {
  Scene scene;
  scene.Open().SearchNowPending = true;
  scene.stage.calls.Clear();
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    EXPECT_EQ(scene.stage.calls.Lines(),
              (std::vector<std::string>{"RS.LoggingMethod", "RS.MaintainAuditTrail", "RS.UpdateLoggedItems",
                                        "RS.UpdateSharedItems", "RS.ScanInboxAtStartup",
                                        "RS.StripAttachments", "RS.IgnoreInternalSenders",
                                        "RS.EnableBlanketDomain", "RS.IgnorePrivateContacts", "App.Scanner",
                                        "Scan.IsScanning", "RS.TrackedCategories", "RS.CanWrite(0)"}));
    EXPECT_TRUE(dialog.chkSearchNow.Checked()) << "the request still waits";
    EXPECT_EQ(scene.TakeSeen(), "") << "loading asks nothing";
    user.Type(dialog.txtCategories, "Kunden, ÄRZTE; Œuvre  ΣΊΣΥΦΟΣ ЖЁЛТЫЙ");
    scene.stage.calls.Clear();
    user.Enter();  // the box keeps the focus, so nothing has put it into lower case before
  });
  EXPECT_EQ(scene.stage.calls.Lines(),
            (std::vector<std::string>{"RS.LoggingMethod = 0", "RS.MaintainAuditTrail = False",
                                      "RS.UpdateLoggedItems = False", "RS.UpdateSharedItems = False",
                                      "RS.ScanInboxAtStartup = False", "RS.StripAttachments = False",
                                      "RS.IgnoreInternalSenders = False", "RS.EnableBlanketDomain = False",
                                      "RS.TrackedCategories = \"kunden, ärzte; œuvre  σίσυφοσ жёлтый\"",
                                      "RS.IgnorePrivateContacts = False", "Site.OnStatusChange()"}));
  EXPECT_TRUE(scene.Page().SearchNowPending);
}

TEST(Tracking, CategoriesGoToLowerCaseWhenTheBoxIsLeft) {
  Scene scene;
  scene.stage.workbench.profile.settings.TrackedCategories = "VIP";
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    EXPECT_EQ(dialog.txtCategories.Text(), "VIP") << "shown as stored";
    user.Focus(dialog.txtCategories);
    EXPECT_FALSE(dialog.cmdOk.Enabled());
    user.Leave();
    EXPECT_EQ(dialog.txtCategories.Text(), "vip");
    EXPECT_TRUE(dialog.cmdOk.Enabled()) << "the text has changed";
    user.Type(dialog.txtCategories, "ÉTÉ ; Ça\xFF");
    user.Focus(dialog.chkAudit);
    EXPECT_EQ(dialog.txtCategories.Text(), "été ; ça\xFF");
  });
}

TEST(Tracking, AsksHowFarToSearch) {
  const struct {
    MessageAnswer answer;
    bool checked, stops;
  } rows[] = {{MessageAnswer::Yes, true, true},
              {MessageAnswer::No, true, false},
              {MessageAnswer::Cancel, false, false}};
  for (const auto& row : rows) {
    Scene scene;
    scene.searchAnswer = row.answer;
    InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
      user.Click(dialog.chkSearchNow);
      const std::string seen = scene.TakeSeen();
      EXPECT_TRUE(
          seen.starts_with("MSG[question | Yes, No, Cancel | \"Complete Folder Search\"] \"This option "
                           "will cause Vexa to immediately"))
          << seen;
      EXPECT_EQ(std::ranges::count(seen, '\n'), 1) << "asked once";
      EXPECT_EQ(dialog.chkSearchNow.Checked(), row.checked);
      EXPECT_TRUE(dialog.cmdOk.Enabled()) << "after Cancel, too";
      user.Click(dialog.cmdOk);
    });
    EXPECT_EQ(scene.Page().SearchNowPending, row.checked);
    EXPECT_EQ(scene.Page().SearchStopAtScanned, row.stops);
    EXPECT_FALSE(scene.stage.workbench.profile.addin.scanning) << "not before Apply";
    scene.Page().PropertyPage_Apply();
    EXPECT_EQ(scene.stage.workbench.profile.addin.scanning, row.checked);
    const std::string search = row.stops ? "Scan.StartSearch(True)" : "Scan.StartSearch(False)";
    EXPECT_EQ(std::ranges::count(scene.stage.calls.Lines(), search), row.checked ? 1 : 0);
    EXPECT_FALSE(scene.Page().SearchNowPending);
  }
}

TEST(Tracking, TakingTheSearchBackAsksNothingAndAnAnswerLastsForOneOpening) {
  Scene scene;
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    user.Click(dialog.chkSearchNow);
    user.Click(dialog.cmdOk);
  });
  EXPECT_TRUE(scene.Page().SearchStopAtScanned);
  scene.TakeSeen();
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    user.Click(dialog.chkAudit);
    user.Click(dialog.cmdOk);
  });
  EXPECT_TRUE(scene.Page().SearchNowPending) << "ticked as the page has it, and written back";
  EXPECT_FALSE(scene.Page().SearchStopAtScanned) << "the answer of before is gone";
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    user.Click(dialog.chkSearchNow);
    EXPECT_TRUE(dialog.cmdOk.Enabled());
    user.Click(dialog.cmdOk);
  });
  EXPECT_FALSE(scene.Page().SearchNowPending);
  EXPECT_EQ(scene.TakeSeen(), "");
}

TEST(Tracking, ARunningScanTicksAndDisablesTheSearch) {
  Scene scene;
  scene.stage.workbench.profile.addin.scanning = true;
  scene.Open().SearchNowPending = true;
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    EXPECT_EQ(Boxes(dialog), "optDefault chkSearchNow");
    EXPECT_EQ(Scene::Disabled(dialog), "cmdFolders chkSearchNow cmdOk");
    EXPECT_EQ(user.Click(dialog.chkSearchNow), Outcome::Disabled);
    user.Choose(dialog.optPersonal);
    user.Click(dialog.cmdOk);
  });
  EXPECT_FALSE(scene.Page().SearchNowPending) << "a disabled box counts as not ticked";
  EXPECT_EQ(scene.TakeSeen(), "");
}

TEST(Tracking, ReadOnlySettingsCanBeLookedAtAndSearchedWith) {
  for (const int32_t method : {3, 2}) {
    Scene scene;
    Profile& profile = scene.stage.workbench.profile;
    profile.addin.canWrite = false;
    profile.settings.LoggingMethod = method;
    profile.settings.TrackedCategories = "VIP";
    for (const Setting& setting : Settings) profile.settings.*setting.value = true;
    InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
      EXPECT_EQ(dialog.cmdFolders.Caption(), "View...");
      EXPECT_EQ(Scene::Disabled(dialog),
                "optDefault optPersonal optCustom " + std::string(method == 3 ? "" : "cmdFolders ") +
                    "optWindowMode chkScanInbox chkIgnoreInternal chkEnableBlanketDomain chkStripAttachments "
                    "chkAudit chkUpdateLogged chkUpdateShared txtCategories chkIgnorePrivate cmdOk");
      EXPECT_EQ(user.Click(dialog.cmdOk), Outcome::Disabled);
      user.Click(dialog.chkSearchNow);
      EXPECT_TRUE(dialog.cmdOk.Enabled());
      user.Click(dialog.cmdOk);
    });
    EXPECT_TRUE(scene.Page().SearchNowPending);
    EXPECT_EQ(scene.Working().LoggingMethod, method);
    EXPECT_EQ(scene.Working().TrackedCategories, "VIP") << "a disabled text is not written";
    for (const Setting& setting : Settings)
      EXPECT_FALSE(scene.Working().*setting.value) << setting.box << ": disabled boxes are written as off";
  }
}

TEST(Tracking, EnterOpensTheFoldersWhileCustomHasTheFocus) {
  Scene scene;
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    EXPECT_EQ(dialog.DefaultButton(), &dialog.cmdOk);
    user.Choose(dialog.optCustom);
    EXPECT_EQ(dialog.DefaultButton(), &dialog.cmdFolders);
    user.Press(KeyDown);
    EXPECT_EQ(dialog.Focus(), &dialog.optWindowMode);
    EXPECT_EQ(dialog.DefaultButton(), &dialog.cmdOk);
    user.Press(KeyUp);
    EXPECT_EQ(dialog.EffectiveDefaultButton(), &dialog.cmdFolders);
    user.Leave();
    EXPECT_EQ(dialog.Focus(), &dialog.cmdFolders);
    EXPECT_EQ(dialog.DefaultButton(), &dialog.cmdOk);
  });
}

TEST(Tracking, ThePickersOkIsAChangeThatCancelDoesNotTakeBack) {
  Scene scene;
  scene.stage.workbench.profile.settings.LoggingMethod = 3;
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    scene.InNextDialog([](Dialog& picker) { UserActions(picker).Escape(); });
    user.Click(dialog.cmdFolders);
    EXPECT_FALSE(dialog.cmdOk.Enabled());
    scene.InNextDialog([](Dialog& opened) {
      auto& picker = dynamic_cast<frmFolders&>(opened);
      UserActions inPicker(picker);
      inPicker.CheckNode(picker.tvFolders, picker.tvFolders.Find(DefaultFolderKey(116)), true);
      inPicker.Click(picker.cmdOk);
    });
    user.Focus(dialog.optCustom);
    user.Press(KeyReturn);
    EXPECT_TRUE(dialog.cmdOk.Enabled());
    EXPECT_EQ(dialog.DefaultButton(), &dialog.cmdFolders) << "the option still has the focus";
    user.Escape();
  });
  EXPECT_EQ(scene.Working().MonitoredFolderCount, 1);
  EXPECT_EQ(scene.Working().MonitoredFolderEntryIDs, (std::vector<std::string>{"9"}));
}

TEST(Tracking, CancelEscAndClosingWriteNothing) {
  for (const int ending : {0, 1, 2}) {
    Scene scene;
    scene.Open().SearchStopAtScanned = true;
    scene.stage.calls.Clear();
    InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
      user.Choose(dialog.optWindowMode);
      user.Click(dialog.chkSearchNow);
      for (const Setting& setting : Settings) user.Click(*dialog.FindControl(setting.box));
      user.Type(dialog.txtCategories, "X");
      if (ending == 0) user.Click(dialog.cmdCancel);
      if (ending == 1) user.Escape();
      if (ending == 2) dialog.CloseWindow();
      EXPECT_FALSE(dialog.IsShowing());
    });
    EXPECT_EQ(scene.Writes(), "");
    EXPECT_FALSE(scene.Page().SearchNowPending);
    EXPECT_TRUE(scene.Page().SearchStopAtScanned);
    EXPECT_TRUE(scene.Page().PropertyPage_Dirty()) << "the page counts every look as a change";
  }
}

}  // namespace
}  // namespace vexa::workbench
