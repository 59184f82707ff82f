#include <gtest/gtest.h>

#include "dialogs/frmAbout.h"
#include "dialogs/frmAdvanced.h"
#include "dialogs/frmBackgroundAdjust.h"
#include "dialogs/frmCacheAdjust.h"
#include "dialogs/frmFolders.h"
#include "dialogs/frmNotice.h"
#include "dialogs/frmSharedFolders.h"
#include "dialogs/frmTrackingOptions.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

TEST(Page, FooterSaysTheMostImportantOfWhatApplies) {
  const struct {
    bool enterprise, canWrite, allUsers;
    const char* footer;
  } rows[] = {{true, true, true, "Changes made will affect the enterprise settings"},
              {true, false, true, "You cannot change the enterprise settings"},
              {false, false, true, "Cannot make changes; insufficient registry access"},
              {false, true, true, "Changes made will affect all users on this computer"}};
  for (const auto& row : rows) {
    Scene scene;
    Profile& profile = scene.stage.workbench.profile;
    profile.settings.UsingEnterpriseSettings = row.enterprise;
    profile.settings.AllUsersMode = row.allUsers;
    profile.addin.canWrite = row.canWrite;
    EXPECT_EQ(scene.Open().lblFooter.Caption(), row.footer);
    EXPECT_TRUE(scene.Page().lblFooter.Visible());
  }
}

TEST(Page, HoldsNoSettingsAfterHidingAndTellsTheAddinOnceThatItIsClosed) {
  const std::string closed = "App.SetOptionsPageOpen(False)";
  Scene scene;
  scene.stage.CreatePage();
  scene.stage.DestroyPage();
  EXPECT_EQ(scene.TimesCalled(closed), 0) << "never initialised";
  scene.Open().SearchNowPending = true;
  scene.Page().UserControl_Hide();
  EXPECT_TRUE(scene.Page().SearchNowPending) << "the request is kept";
  EXPECT_EQ(scene.Page().ErrorLogPath(), "");
  scene.stage.DestroyPage();
  EXPECT_EQ(scene.TimesCalled(closed), 1);
}

TEST(Page, WithoutAPageSiteIsDirtyAllTheSame) {
  Scene scene;
  scene.stage.hasSite = false;
  scene.Open().SetDirty();
  EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
  EXPECT_EQ(scene.TimesCalled("Site.OnStatusChange()"), 0);
}

TEST(Notice, AnswersWithTheButtonThatWasPressed) {
  const std::vector<std::string> all{"Yes", "No", "Later"};
  for (int32_t count = 1; count <= 3; ++count) {
    const auto answerOf = [&](const std::function<void(frmNotice&, UserActions&)>& act) {
      frmNotice notice;
      notice.Initialize("Title", "Keep [b]everything[b]?", {all.begin(), all.begin() + count});
      EXPECT_TRUE(notice.TopMost());
      notice.Show();
      UserActions user(notice);
      act(notice, user);
      EXPECT_FALSE(notice.IsShowing());
      return notice.Answer();
    };
    EXPECT_EQ(answerOf([](frmNotice&, UserActions& user) { user.Enter(); }), 1);
    EXPECT_EQ(answerOf([](frmNotice&, UserActions& user) { user.Escape(); }), count);
  }
  for (const size_t count : {size_t{0}, size_t{4}}) {
    frmNotice notice;
    EXPECT_THROW(notice.Initialize("t", "t", std::vector<std::string>(count, "b")), Error) << count;
  }
}

TEST(Screens, ShowEveryTextInEachLanguage) {
  for (const int32_t language : {1033, 1036, 3084}) {
    Scene scene(language);
    const Services& services = scene.stage.services;
    const frmEditFolderset editor(services);
    const frmSharedFolders shared(services);
    const frmTrackingOptions tracking(services);
    const frmFolders picker(services);
    const frmAdvanced advanced(services);
    const frmCacheAdjust cache(services);
    const frmBackgroundAdjust background(services);
    const frmAbout about(services);
    const struct {
      const Form& form;
      StringId title;
      const char* without;  // controls without a text of their own
    } rows[] = {
        {scene.Open(), StringId::None, " gd lblFooter cmdIDEApply"},
        {editor, StringId::FolderSetTitle, " txtContact txtJourn txtEmail"},
        {shared, StringId::None, " txtSCal txtSJourn txtSTask"},
        {tracking, StringId::TrackingOptions, " txtCategories"},
        {picker, StringId::FolderPickerTitle, " lblInstructions tvFolders lblHotTip tvItems"},
        {advanced, StringId::AdvancedTitle, " txtQuickscanHours sldLogLevel sldMaxSize lblSize txtLogPath"},
        {cache, StringId::CacheTitle, " txtNumRecords"},
        {background, StringId::BackgroundTitle, " txtInterval txtTime txtDelay"},
        {about, StringId::AboutTitle, " lblVersion lblInfo lblEnterprise"}};
    for (const auto& row : rows) {
      SCOPED_TRACE(row.form.Name());
      if (row.title != StringId::None) {
        EXPECT_EQ(row.form.Caption(), scene.stage.resources.LoadString(row.title));
      }
      std::string without;
      for (const Control* control : row.form.Controls()) {
        if (control->CaptionId() == StringId::None) {
          without += " " + control->Name();
        } else {
          EXPECT_EQ(control->Caption(), scene.stage.resources.LoadString(control->CaptionId()))
              << control->Name();
        }
      }
      EXPECT_EQ(without, row.without);
    }
    EXPECT_EQ(scene.Page().gd.Headers().back(),
              scene.stage.resources.LoadString(StringId::AssociatedEmailColumn));
  }
}

}  // namespace
}  // namespace vexa::workbench
