#include <gtest/gtest.h>

#include "dialogs/frmNotice.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

TEST(Page, FooterSaysTheMostImportantOfWhatAppliesToAllUsers) {
  const struct {
    bool enterprise, canWrite;
    const char* footer;
  } rows[] = {{true, true, "Changes made will affect the enterprise settings"},
              {true, false, "You cannot change the enterprise settings"},
              {false, false, "Cannot make changes; insufficient registry access"}};
  for (const auto& row : rows) {
    Scene scene;
    Profile& profile = scene.stage.workbench.profile;
    profile.settings.AllUsersMode = true;
    profile.settings.UsingEnterpriseSettings = row.enterprise;
    profile.addin.canWrite = row.canWrite;
    EXPECT_EQ(scene.Open().lblFooter.Caption(), row.footer);
  }
}

TEST(Page, WithoutAPageSiteIsDirtyAllTheSameAndKeepsItsRequestWhenHidden) {
  Scene scene;
  scene.stage.CreatePage();
  scene.stage.DestroyPage();
  EXPECT_TRUE(scene.stage.calls.Lines().empty()) << "never initialised, it has nothing to tell";
  scene.stage.hasSite = false;
  scene.Open().SetDirty();
  EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
  scene.Page().SearchNowPending = true;
  scene.Page().UserControl_Hide();
  EXPECT_TRUE(scene.Page().SearchNowPending);
  EXPECT_EQ(scene.Page().ErrorLogPath(), "") << "it holds no settings";
}

TEST(Notice, HasOneToThreeButtonsAndEscIsTheLast) {
  for (size_t count = 0; count <= 4; ++count) {
    frmNotice notice;
    const std::vector<std::string> buttons(count, "b");
    if (count == 0 || count > 3) {
      EXPECT_THROW(notice.Initialize("t", "t", buttons), Error) << count;
      continue;
    }
    notice.Initialize("t", "t", buttons);
    notice.Show();
    UserActions(notice).Escape();
    EXPECT_EQ(notice.Answer(), static_cast<int32_t>(count));
    EXPECT_TRUE(notice.TopMost());
  }
}

}  // namespace
}  // namespace vexa::workbench
