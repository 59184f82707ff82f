#include <gtest/gtest.h>

#include "dialogs/frmTrackingOptions.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

void InTracking(Scene& scene, const std::function<void(frmTrackingOptions&, UserActions&)>& body) {
  scene.In<frmTrackingOptions>(&OutlookPropertiesPage::cmdTracking, body);
}

TEST(Tracking, CategoriesOfAnyAlphabetGoToLowerCase) {
  Scene scene;
  scene.stage.workbench.profile.settings.TrackedCategories = "VIP";
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    user.Focus(dialog.txtCategories);
    EXPECT_FALSE(dialog.cmdOk.Enabled());
    user.Leave();
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

TEST(Tracking, ASearchTakenBackDoesNotSayWhereToStop) {
  Scene scene;
  InTracking(scene, [&](frmTrackingOptions& dialog, UserActions& user) {
    user.Click(dialog.chkSearchNow);  // and Yes, it stops at scanned items
    user.Click(dialog.chkSearchNow);
    user.Click(dialog.cmdOk);
  });
  EXPECT_FALSE(scene.Page().SearchStopAtScanned);
}

}  // namespace
}  // namespace vexa::workbench
