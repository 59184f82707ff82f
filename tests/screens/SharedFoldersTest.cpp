#include <gtest/gtest.h>

#include "dialogs/frmSharedFolders.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

TEST(SharedFolders, FlagsOutOfRangeAreRepairedButNegativeOnesAreNot) {
  const struct {
    int32_t stored;
    bool changeLog;  // else the copy
    int clicks;
    int32_t after;
  } rows[] = {{1, true, 1, 0},   {1, false, 1, 3}, {7, false, 2, 3}, {7, true, 1, 2},
              {4, true, 1, 1},   {4, false, 2, 0}, {0, true, 1, 1},  {INT32_MAX, false, 2, 3},
              {-1, true, 1, -2}, {-4, true, 1, -3}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.stored);
    Scene scene;
    scene.stage.workbench.profile.settings.FolderSetFlags = {row.stored, 2};
    const auto edit = [&](frmEditFolderset& editor, UserActions& user) {
      scene.InNextDialog([&](Dialog& inner) {
        auto& dialog = dynamic_cast<frmSharedFolders&>(inner);
        EXPECT_EQ(dialog.chkLog.Checked(), (row.stored & 1) != 0);
        EXPECT_EQ(dialog.chkLeaveCopy.Checked(), (row.stored & 2) != 0);
        for (int click = 0; click < row.clicks; ++click)
          scene.Click(dialog, row.changeLog ? dialog.chkLog : dialog.chkLeaveCopy);
        scene.Click(dialog, dialog.cmdOk);
      });
      user.Click(editor.cmdShared);
      user.Click(editor.cmdOk);
    };
    scene.In<frmEditFolderset>(&OutlookPropertiesPage::cmdChange, edit);
    EXPECT_EQ(scene.Working().FolderSetFlags, (std::vector<int32_t>{row.after, 2}));
  }
}

}  // namespace
}  // namespace vexa::workbench
