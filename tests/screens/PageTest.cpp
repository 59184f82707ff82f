#include <gtest/gtest.h>

#include <algorithm>

#include "dialogs/frmAbout.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

TEST(Page, FooterSaysWhatChangesAffect) {
  for (const bool enterprise : {false, true}) {
    for (const bool canWrite : {false, true}) {
      for (const bool allUsers : {false, true}) {
        Scene scene;
        Profile& profile = scene.stage.workbench.profile;
        profile.settings.UsingEnterpriseSettings = enterprise;
        profile.settings.AllUsersMode = allUsers;
        profile.addin.canWrite = canWrite;
        const OutlookPropertiesPage& page = scene.Open();
        const std::string footer = page.lblFooter.Visible() ? page.lblFooter.Caption() : "";
        const std::string expected = enterprise
                                         ? (canWrite ? "Changes made will affect the enterprise settings"
                                                     : "You cannot change the enterprise settings")
                                     : !canWrite ? "Cannot make changes; insufficient registry access"
                                     : allUsers  ? "Changes made will affect all users on this computer"
                                                 : "";
        EXPECT_EQ(footer, expected);
        EXPECT_EQ(page.cmdAdd.Enabled(), canWrite);
        EXPECT_EQ(page.cmdChange.Caption(), canWrite ? "Change..." : "View...");
        EXPECT_EQ(page.cmdTracking.Caption(), canWrite ? "Configure..." : "View...");
      }
    }
  }
}

int HowOften(const CallLog& calls, const std::string& line) {
  return static_cast<int>(std::ranges::count(calls.Lines(), line));
}

TEST(Page, TellsTheAddinOnceThatItIsClosed) {
  const std::string closed = "App.SetOptionsPageOpen(False)";
  Scene scene;
  scene.Open().UserControl_Hide();
  scene.stage.DestroyPage();
  EXPECT_EQ(HowOften(scene.stage.calls, closed), 1) << "hidden, then destroyed";
  scene.Open();
  scene.stage.DestroyPage();
  EXPECT_EQ(HowOften(scene.stage.calls, closed), 2) << "destroyed without being hidden";
  scene.stage.CreatePage();
  scene.stage.DestroyPage();
  EXPECT_EQ(HowOften(scene.stage.calls, closed), 2) << "never initialised";
}

TEST(Page, HoldsNoSettingsAfterHiding) {
  Scene scene;
  scene.Open().SearchNowPending = true;
  scene.Page().UserControl_Hide();
  EXPECT_EQ(scene.stage.workbench.WorkingCopy(), nullptr);
  EXPECT_TRUE(scene.Page().SearchNowPending) << "the request is kept";
  EXPECT_EQ(scene.Page().ErrorLogPath(), "");
}

TEST(Page, WithoutAPageSiteIsDirtyAllTheSame) {
  Scene scene;
  scene.stage.hasSite = false;
  scene.Open().SetDirty();
  EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
  EXPECT_EQ(HowOften(scene.stage.calls, "Site.OnStatusChange()"), 0);
}

TEST(Page, AddsAtTheEndAndChangesInPlace) {
  Scene scene;
  scene.Open();
  scene.AddFolderSet("P/C3", "P/J");
  EXPECT_EQ(scene.FolderSets(),
            "3 [c1,c2,c3] [S,S,S] [,e,] [,S,] [j,j,j] [S,S,S] [r1,r2,] [r1,r2,] [r1,r2,] [r1,r2,] [r1,r2,] "
            "[r1,r2,]");
  EXPECT_EQ(scene.Working().FolderSetFlags, (std::vector<int32_t>{1, 3, 2}));
  scene.Click(scene.Page(), scene.Page().cmdRemove);
  EXPECT_EQ(scene.FolderSets(),
            "2 [c2,c3] [S,S] [e,] [S,] [j,j] [S,S] [r1,r2,] [r1,r2,] [r1,r2,] [r1,r2,] [r1,r2,] [r1,r2,]")
      << "the routing of the set that went is the next one's now";
}

TEST(Page, ShowsEveryTextInEachLanguage) {
  for (const int32_t language : {1033, 1036, 3084}) {
    Scene scene(language);
    const Resources& resources = scene.stage.resources;
    frmEditFolderset editor(scene.stage.services);
    frmAbout about(scene.stage.services);
    for (const Form* form : {static_cast<const Form*>(&scene.Open()), static_cast<const Form*>(&editor),
                             static_cast<const Form*>(&about)}) {
      for (const Control* control : form->Controls()) {
        if (control->CaptionId() == StringId::None) continue;
        EXPECT_EQ(control->Caption(), resources.LoadString(control->CaptionId())) << control->Name();
      }
    }
    EXPECT_EQ(editor.Caption(), resources.LoadString(StringId::FolderSetTitle));
    EXPECT_EQ(scene.Page().gd.Headers().back(), resources.LoadString(StringId::AssociatedEmailColumn));
  }
}

}  // namespace
}  // namespace vexa::workbench
