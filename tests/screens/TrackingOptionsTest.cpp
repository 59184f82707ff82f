#include <gtest/gtest.h>

#include "dialogs/frmTrackingOptions.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

/// The names of the boxes and options that are ticked.
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
      SettingsData expected = scene.stage.workbench.profile.settings;
      expected.*value = !before;
      InTracking(scene, [&, name = box](frmTrackingOptions& dialog, UserActions& user) {
        EXPECT_EQ(Boxes(dialog), before ? "optDefault " + std::string(name) : "optDefault");
        user.Click(*dialog.FindControl(name));
        user.Click(dialog.cmdOk);
      });
      EXPECT_EQ(Scene::Differences(expected, scene.Working()), "") << "and no other setting changes";
    }
  }
}

TEST(Tracking, ReadOnlyBoxesAreWrittenAsOff) {
  Scene scene;
  Profile& profile = scene.stage.workbench.profile;
  profile.addin.canWrite = false;
  for (const Setting& setting : Settings) profile.settings.*setting.value = true;
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    user.Click(dialog.chkSearchNow);
    user.Click(dialog.cmdOk);
  });
  for (const Setting& setting : Settings) EXPECT_FALSE(scene.Working().*setting.value) << setting.box;
}

TEST(Tracking, ShowsTheLoggingMethodAndWritesNoneThatHasNoOption) {
  const std::map<int32_t, const char*> rows{
      {0, "optDefault"}, {1, ""}, {2, "optPersonal"}, {3, "optCustom"}, {4, "optWindowMode"}, {-7, ""}};
  for (const auto& [method, shown] : rows) {
    Scene scene;
    scene.stage.workbench.profile.settings.LoggingMethod = method;
    InTracking(scene, [&, expected = std::string(shown)](frmTrackingOptions& dialog, UserActions& user) {
      EXPECT_EQ(Boxes(dialog), expected);
      user.Click(dialog.chkAudit);
      user.Click(dialog.cmdOk);
    });
    EXPECT_EQ(scene.TimesCalled("RS.LoggingMethod = " + std::to_string(method)), *shown == '\0' ? 0 : 1);
    EXPECT_EQ(scene.Working().LoggingMethod, method);
  }
}

TEST(Tracking, CategoriesOfAnyAlphabetGoToLowerCase) {
  Scene scene;
  scene.stage.workbench.profile.settings.TrackedCategories = "VIP";
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    EXPECT_EQ(dialog.txtCategories.Text(), "VIP") << "shown as stored";
    user.Focus(dialog.txtCategories);
    EXPECT_FALSE(dialog.cmdOk.Enabled());
    user.Leave();
    EXPECT_EQ(dialog.txtCategories.Text(), "vip");
    EXPECT_TRUE(dialog.cmdOk.Enabled()) << "the text has changed";
    user.Type(dialog.txtCategories, "\u0152uvre ; \u03A3\u038A\u03A3 \u0416\u0401\u041B\xFF");
    user.Enter();
  });
  EXPECT_EQ(scene.Working().TrackedCategories, "\u0153uvre ; \u03C3\u03AF\u03C3 \u0436\u0451\u043B\xFF");
}

TEST(Tracking, OkDuringAScanTakesTheWaitingSearchBack) {
  Scene scene;
  scene.stage.workbench.profile.addin.scanning = true;
  scene.Open().SearchNowPending = true;
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    user.Choose(dialog.optPersonal);
    user.Click(dialog.cmdOk);
  });
  EXPECT_FALSE(scene.Page().SearchNowPending) << "a disabled box counts as not ticked";
}

}  // namespace
}  // namespace vexa::workbench
