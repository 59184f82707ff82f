// Every outside call of every action of the page and its dialogs, failing once in turn. Whatever fails: no
// crash, the error ends where it must with its trail, and what is stored is what the action is known to
// leave.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "dialogs/frmAdvanced.h"
#include "dialogs/frmBackgroundAdjust.h"
#include "dialogs/frmCacheAdjust.h"
#include "dialogs/frmFolders.h"
#include "dialogs/frmSharedFolders.h"
#include "dialogs/frmTrackingOptions.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

struct Failed {
  std::string member;
  int n;
};

/// The members that `action` calls, each with how often: what there is to fail.
std::vector<Failed> CallsOf(const std::function<void(Scene&)>& prepare,
                            const std::function<void(Scene&)>& action) {
  std::vector<Failed> failures;
  for (const std::string& member : CallLog::KnownMembers()) {
    for (int n = 1;; ++n) {
      Scene scene;
      prepare(scene);
      scene.stage.calls.PlanFault(member, n, Error(4711, "planned", "Outside"));
      action(scene);
      if (scene.stage.calls.FaultsPlanned() > 0) break;  // fewer than n calls
      failures.push_back({member, n});
    }
  }
  return failures;
}

/// Runs the action once for each of its outside calls, with that call failing, and checks what is left.
void Sweep(size_t atLeast, const std::function<void(Scene&)>& prepare,
           const std::function<void(Scene&)>& action, const std::function<void(Scene&)>& check) {
  const std::vector<Failed> failures = CallsOf(prepare, action);
  EXPECT_GE(failures.size(), atLeast) << "the sweep must reach every call";
  for (const auto& [member, n] : failures) {
    SCOPED_TRACE(member + " call " + std::to_string(n));
    Scene scene;
    prepare(scene);
    scene.stage.calls.PlanFault(member, n, Error(4711, "planned", "Outside"));
    action(scene);
    check(scene);
  }
}

void Nothing(Scene&) {}

TEST(FaultSweep, InitializeLetsEveryErrorOutOrPassesItOver) {
  const auto initialize = [](Scene& scene) {
    OutlookPropertiesPage& page = scene.stage.CreatePage();
    bool failed = false;
    try {
      page.Initialize(scene.stage.workbench.Addin());
    } catch (const Error& error) {
      failed = true;
      EXPECT_EQ(error.Number, 4711);
      EXPECT_TRUE(error.Source.starts_with("Outside\r\n-->")) << error.Source;
      EXPECT_TRUE(error.Source.ends_with("OutlookPropertiesPage.Initialize")) << error.Source;
    }
    EXPECT_EQ(page.PageActive(), !failed);
    EXPECT_EQ(scene.TakeSeen(), "") << "no box while the page starts";
  };
  Sweep(40, Nothing, initialize, [](Scene& scene) {
    EXPECT_EQ(scene.Writes(), "");
    scene.Page().Initialize(scene.stage.workbench.Addin());  // the same again works
    EXPECT_TRUE(scene.Page().PageActive());
    EXPECT_EQ(scene.Page().gd.RowCount(), 2);
  });
}

TEST(FaultSweep, ApplyKeepsItsErrorsToItself) {
  const auto prepare = [](Scene& scene) {
    scene.Open().SetDirty();
    scene.Page().SearchNowPending = true;
    scene.stage.calls.Clear();
  };
  const auto apply = [](Scene& scene) { scene.Page().PropertyPage_Apply(); };
  Sweep(40, prepare, apply, [](Scene& scene) {
    EXPECT_EQ(scene.TakeSeen(), "");
    EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
    const bool reachedScanner = scene.stage.workbench.profile.addin.scanning;
    EXPECT_EQ(scene.Page().SearchNowPending, !reachedScanner) << "a search that was not started still waits";
    EXPECT_TRUE(scene.Page().PageActive() || reachedScanner)
        << "only a failing fresh start makes it inactive";
    scene.Page().Initialize(scene.stage.workbench.Addin());
    scene.Page().PropertyPage_Apply();
    EXPECT_TRUE(scene.stage.workbench.profile.addin.scanning);
  });
}

TEST(FaultSweep, RemoveShowsItsErrorAndGoesNoFurther) {
  const auto prepare = [](Scene& scene) { scene.Open(); };
  const auto remove = [](Scene& scene) { scene.Click(scene.Page(), scene.Page().cmdRemove); };
  Sweep(16, prepare, remove, [](Scene& scene) {
    const std::string seen = scene.TakeSeen();
    const bool told = scene.Page().PropertyPage_Dirty();
    if (!seen.empty()) {
      EXPECT_NE(seen.find("Error Number: 4711|nDescription: planned|n|nSource: Outside"), std::string::npos)
          << seen;
      EXPECT_NE(seen.find("OutlookPropertiesPage.cmdRemove_Click"), std::string::npos) << seen;
    } else {
      EXPECT_TRUE(told) << "an error that was passed over changes nothing";
    }
    const SettingsData& working = scene.Working();
    EXPECT_EQ(working.SharedCalEntryIDs.size(), 2U) << "routing stays in any case";
    EXPECT_EQ(working.FolderSetFlags, (std::vector<int32_t>{1, 3}));
  });
}

TEST(FaultSweep, AddAndChangeEndWithAUsablePage) {
  const auto prepare = [](Scene& scene) { scene.Open(); };
  const auto add = [](Scene& scene) {
    scene.AddFolderSet("P/C3", "P/J");
    EXPECT_TRUE(scene.dialogs.empty() || !scene.TakeSeen().empty())
        << "the editor did not open without a word";
    scene.dialogs.clear();
  };
  const auto change = [](Scene& scene) {
    scene.InNextDialog([&scene](Dialog& dialog) {
      auto& editor = static_cast<frmEditFolderset&>(dialog);
      scene.Pick({"P/C3"});
      scene.Click(editor, editor.cmdSelContact);
      scene.Click(editor, editor.cmdOk);
    });
    scene.Click(scene.Page(), scene.Page().cmdChange);
  };
  const auto check = [](Scene& scene) {
    scene.dialogs.clear();
    scene.picks.clear();
    // The page goes on: a fresh start shows what is stored, and the next change arrives.
    scene.Page().Initialize(scene.stage.workbench.Addin());
    scene.Click(scene.Page(), scene.Page().cmdRemove);
    EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
    EXPECT_EQ(scene.Working().ContactEntryIDs, (std::vector<std::string>{"c2"}));
  };
  Sweep(60, prepare, add, check);
  Sweep(60, prepare, change, check);
}

TEST(FaultSweep, CancelAndCloseWriteNothingWhateverFails) {
  for (const bool close : {false, true}) {
    const auto prepare = [](Scene& scene) {
      scene.Open();
      scene.stage.calls.Clear();
    };
    const auto editAndGiveUp = [close](Scene& scene) {
      scene.InNextDialog([&scene, close](Dialog& dialog) {
        auto& editor = static_cast<frmEditFolderset&>(dialog);
        scene.Pick({"P/C3", "P/J", "P/E"});
        scene.Click(editor, editor.cmdSelContact);
        scene.Click(editor, editor.cmdSelJourn);
        scene.Click(editor, editor.chkEmail);
        if (close) dialog.CloseWindow();
        if (!close) scene.Click(editor, editor.cmdCancel);
        EXPECT_FALSE(dialog.IsShowing());
        EXPECT_TRUE(editor.Cancelled());
      });
      scene.Click(scene.Page(), scene.Page().cmdAdd);
      scene.dialogs.clear();
    };
    Sweep(25, prepare, editAndGiveUp, [](Scene& scene) {
      EXPECT_EQ(scene.Writes(), "");
      EXPECT_FALSE(scene.Page().PropertyPage_Dirty());
    });
  }
}

TEST(FaultSweep, TrackingOptionsShowTheirErrorAndCanBeOpenedAgain) {
  const auto prepare = [](Scene& scene) {
    scene.Open();
    scene.stage.calls.Clear();
  };
  const auto change = [](Scene& scene) {
    bool shown = false;
    scene.InNextDialog([&](Dialog& dialog) {
      shown = true;
      auto& tracking = static_cast<frmTrackingOptions&>(dialog);
      UserActions user(tracking);
      user.Choose(tracking.optPersonal);
      user.Click(tracking.chkAudit);
      user.Click(tracking.chkSearchNow);
      user.Type(tracking.txtCategories, "A");
      scene.TakeSeen();
      user.Click(tracking.cmdOk);
      EXPECT_NE(dialog.IsShowing(), scene.seen.empty()) << "stays open with its error, closes without one";
      EXPECT_TRUE(tracking.cmdOk.Enabled());
    });
    scene.Click(scene.Page(), scene.Page().cmdTracking);
    scene.dialogs.clear();
    EXPECT_TRUE(shown || !scene.Page().PropertyPage_Dirty());
  };
  // Nine settings to write, twelve reads, and the host that is told.
  Sweep(22, prepare, change, [&change](Scene& scene) {
    const std::string seen = scene.TakeSeen();
    EXPECT_EQ(std::ranges::count(seen, '\n'), 1) << seen;
    EXPECT_NE(seen.find("Error Number: 4711|nDescription: planned|n|nSource: Outside"), std::string::npos)
        << seen;
    EXPECT_TRUE(seen.find("frmTrackingOptions.cmdOk_Click") != std::string::npos ||
                seen.find("OutlookPropertiesPage.cmdTracking_Click") != std::string::npos)
        << seen;
    change(scene);  // the same again works
    EXPECT_EQ(scene.Working().LoggingMethod, 2);
    EXPECT_EQ(scene.Working().TrackedCategories, "a");
    EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
  });
}

TEST(FaultSweep, TrackingOptionsWriteNothingWhenGivenUpWhateverFails) {
  const auto prepare = [](Scene& scene) {
    scene.Open();
    scene.stage.calls.Clear();
  };
  const auto giveUp = [](Scene& scene) {
    scene.InNextDialog([](Dialog& dialog) {
      auto& tracking = static_cast<frmTrackingOptions&>(dialog);
      UserActions user(tracking);
      user.Choose(tracking.optPersonal);
      user.Click(tracking.chkSearchNow);
      user.Click(tracking.cmdCancel);
      EXPECT_FALSE(dialog.IsShowing());
    });
    scene.Click(scene.Page(), scene.Page().cmdTracking);
    scene.dialogs.clear();
  };
  Sweep(14, prepare, giveUp, [](Scene& scene) {
    EXPECT_EQ(scene.Writes(), "");
    EXPECT_FALSE(scene.Page().SearchNowPending);
  });
}

TEST(FaultSweep, TheFolderPickerLeavesTheTrackingOptionsUsable) {
  const auto prepare = [](Scene& scene) {
    SettingsData& settings = scene.stage.workbench.profile.settings;
    settings.LoggingMethod = 3;
    settings.MonitoredFolderCount = 1;
    settings.MonitoredFolderEntryIDs = {"c1"};
    settings.MonitoredFolderStoreIDs = {"S"};
    settings.MonitoredFolderItemTypes = {2};
    scene.Open();
    scene.stage.calls.Clear();
  };
  const auto pick = [](Scene& scene) {
    scene.InNextDialog([&scene](Dialog& dialog) {
      auto& tracking = static_cast<frmTrackingOptions&>(dialog);
      bool picked = false;
      scene.InNextDialog([&](Dialog& opened) {
        auto& picker = dynamic_cast<frmFolders&>(opened);
        UserActions user(picker);
        const Tree::Node store = picker.tvFolders.Find(FolderKey("R", "S"));
        if (store != Tree::NoNode) user.Expand(picker.tvFolders, store, true);
        const Tree::Node journal = picker.tvFolders.Find(FolderKey("j", "S"));
        if (journal != Tree::NoNode) user.CheckNode(picker.tvFolders, journal, true);
        user.Click(picker.cmdOk);
        picked = !opened.IsShowing();
      });
      scene.TakeSeen();
      scene.Click(tracking, tracking.cmdFolders);
      scene.dialogs.clear();
      EXPECT_TRUE(tracking.IsShowing());
      EXPECT_EQ(tracking.cmdOk.Enabled(), picked) << "a change is what the picker's OK has carried out";
      EXPECT_LE(std::ranges::count(scene.seen, '\n'), 1) << scene.seen;
      scene.Click(tracking, tracking.cmdCancel);
      EXPECT_FALSE(tracking.IsShowing());
    });
    scene.Click(scene.Page(), scene.Page().cmdTracking);
    scene.dialogs.clear();
  };
  Sweep(60, prepare, pick, [&pick](Scene& scene) {
    pick(scene);  // the same again works, beside what a record that failed halfway has left
    const std::vector<std::string>& ids = scene.Working().MonitoredFolderEntryIDs;
    const std::vector<std::string>& stores = scene.Working().MonitoredFolderStoreIDs;
    ASSERT_EQ(stores.size(), ids.size());
    EXPECT_EQ(scene.Working().MonitoredFolderItemTypes.size(), ids.size());
    int found = 0;
    for (size_t i = 0; i < ids.size(); ++i) found += ids[i] == "j" && stores[i] == "S" ? 1 : 0;
    EXPECT_EQ(found, 1);
    EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
  });
}

/// Nothing was called after the call that failed, up to now.
void ExpectNothingAfterTheFailure(Scene& scene) {
  const std::vector<std::string>& lines = scene.stage.calls.Lines();
  const auto failed = std::ranges::find_if(
      lines, [](const std::string& line) { return line.find(" !! 4711") != std::string::npos; });
  ASSERT_NE(failed, lines.end());
  for (auto line = failed + 1; line != lines.end(); ++line) {
    EXPECT_TRUE(line->starts_with("MSG[") || line->starts_with("RS.ErrorLogPath"))
        << *line << " after " << *failed;
  }
}

/// Presses a button of a dialog in which a call may fail; then the failure was shown under `procedure`, and
/// the same again works. `ends`: the button closes the dialog.
void PressUntilDone(Scene& scene, Dialog& dialog, Button& button, const std::string& procedure,
                    bool ends = true) {
  scene.TakeSeen();
  scene.stage.calls.Clear();
  scene.Click(dialog, button);
  const std::string seen = scene.TakeSeen();
  if (seen.find("4711") == std::string::npos) {
    EXPECT_EQ(dialog.IsShowing(), !ends);
    return;
  }
  EXPECT_NE(seen.find(procedure), std::string::npos) << seen;
  EXPECT_TRUE(dialog.IsShowing());
  EXPECT_TRUE(dialog.Enabled());
  EXPECT_TRUE(button.Enabled());
  ExpectNothingAfterTheFailure(scene);
  scene.Click(dialog, button);
  EXPECT_EQ(dialog.IsShowing(), !ends);
  EXPECT_EQ(scene.TakeSeen().find("4711"), std::string::npos);
}

/// The page with its advanced settings open: `body` works there. Tries once more when opening them fails.
void WithAdvanced(Scene& scene, const std::function<void(frmAdvanced&)>& body) {
  bool shown = false;
  for (const int attempt : {1, 2}) {
    scene.InNextDialog([&](Dialog& dialog) {
      shown = true;
      body(dynamic_cast<frmAdvanced&>(dialog));
    });
    scene.Click(scene.Page(), scene.Page().cmdAdvanced);
    if (shown) return;
    const std::string seen = scene.TakeSeen();
    EXPECT_NE(seen.find("frmAdvanced.Initialize-->OutlookPropertiesPage.cmdAdvanced_Click"),
              std::string::npos)
        << attempt << seen;
    EXPECT_EQ(scene.Writes(), "") << "loading writes nothing";
    scene.dialogs.clear();
  }
  FAIL() << "the advanced settings do not open the second time";
}

void OpenAndForget(Scene& scene) {
  scene.Open();
  scene.stage.calls.Clear();
}

TEST(FaultSweep, AdvancedOkStaysOpenWithWhatItHasWritten) {
  const auto change = [](Scene& scene) {
    WithAdvanced(scene, [&](frmAdvanced& dialog) {
      scene.Click(dialog, dialog.chkShow);
      scene.Click(dialog, dialog.chkUseEnterprise);
      PressUntilDone(scene, dialog, dialog.cmdOk, "frmAdvanced.cmdOk_Click");
      EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
    });
  };
  const auto prepare = [](Scene& scene) {
    scene.stage.workbench.profile.settings.EnterpriseSettingsPresent = true;
    OpenAndForget(scene);
  };
  Sweep(39, prepare, change, [](Scene& scene) {
    SettingsData expected = scene.stage.workbench.profile.settings;
    expected.ShowVexa2Buttons = true;
    expected.IgnoreEnterpriseSettings = true;
    EXPECT_EQ(Scene::Differences(expected, scene.Working()), "");
  });
}

TEST(FaultSweep, AdvancedMarksThePageOnlyWhenAllIsWritten) {
  for (const char* member : {"RS.ShowVexa2Buttons=", "RS.LogLevel=", "RS.AutomaticErrorReporting="}) {
    Scene scene;
    OpenAndForget(scene);
    WithAdvanced(scene, [&](frmAdvanced& dialog) {
      scene.Click(dialog, dialog.chkShow);
      scene.stage.calls.PlanFault(member, 1, Error(4711, "planned", "Outside"));
      scene.Click(dialog, dialog.cmdOk);
      EXPECT_TRUE(dialog.IsShowing());
      scene.Click(dialog, dialog.cmdCancel);
    });
    EXPECT_FALSE(scene.Page().PropertyPage_Dirty()) << member;
  }
}

TEST(FaultSweep, RestoringTheDefaultsCanBeTriedAgain) {
  const auto prepare = [](Scene& scene) {
    SettingsData& stored = scene.stage.workbench.profile.settings;
    stored.QuickscanHours = 5;
    stored.RecordsPerDownload = 7;
    stored.BackgroundInterval = 7;
    OpenAndForget(scene);
  };
  const auto restore = [](Scene& scene) {
    WithAdvanced(scene, [&](frmAdvanced& dialog) {
      // The hours' own handler asks for the access, too, and tells of its failure itself.
      scene.Click(dialog, dialog.cmdDefault);
      const std::string seen = scene.TakeSeen();
      if (seen.find("4711") != std::string::npos) {
        EXPECT_TRUE(seen.find("frmAdvanced.cmdDefault_Click") != std::string::npos ||
                    seen.find("frmAdvanced.chkQuickscanHours_Click") != std::string::npos)
            << seen;
        scene.Click(dialog, dialog.cmdDefault);
      }
      EXPECT_TRUE(dialog.cmdOk.Enabled());
      EXPECT_EQ(dialog.txtLogPath.Text(), "C:\\Program Files\\Tolvane\\Vexa\\Bin\\VEXAERRORS.MDB");
      scene.TakeSeen();
      scene.Click(dialog, dialog.chkWork);
      EXPECT_NE(scene.TakeSeen().find("the next time you start Outlook"), std::string::npos)
          << "prompts are back";
    });
  };
  Sweep(32, prepare, restore, [](Scene& scene) {
    SettingsData expected = scene.stage.workbench.profile.settings;
    expected.RecordsPerDownload = 100;
    expected.BackgroundInterval = 10;
    EXPECT_EQ(Scene::Differences(expected, scene.Working()), "") << "the rest waits for OK";
    EXPECT_FALSE(scene.Page().PropertyPage_Dirty());
  });
}

TEST(FaultSweep, ChoosingTheLogsFolderCanBeTriedAgain) {
  const auto choose = [](Scene& scene) {
    scene.browse = {BrowseAnswer::Kind::Chosen, "D:\\logs"};
    WithAdvanced(scene, [&](frmAdvanced& dialog) {
      PressUntilDone(scene, dialog, dialog.cmdLocation, "frmAdvanced.cmdLocation_Click", false);
      EXPECT_EQ(dialog.txtLogPath.Text(), "D:\\logs\\VEXAERRORS.MDB");
      EXPECT_TRUE(dialog.cmdOk.Enabled());
    });
  };
  Sweep(24, OpenAndForget, choose, [](Scene& scene) { EXPECT_EQ(scene.Writes(), ""); });
}

TEST(FaultSweep, TuningStaysOpenWithWhatItHasWritten) {
  const auto tuneCache = [](Scene& scene) {
    WithAdvanced(scene, [&](frmAdvanced& advanced) {
      for (bool shown = false; !shown;) {
        scene.InNextDialog([&](Dialog& dialog) {
          shown = true;
          auto& cache = dynamic_cast<frmCacheAdjust&>(dialog);
          UserActions(cache).Type(cache.txtNumRecords, "50");
          PressUntilDone(scene, cache, cache.cmdOk, "frmCacheAdjust.cmdOk_Click");
        });
        scene.Click(advanced, advanced.cmdAdjCache);
        EXPECT_EQ(scene.TakeSeen().find("frmCacheAdjust.Initialize-->frmAdvanced.cmdAdjCache_Click") ==
                      std::string::npos,
                  shown);
        scene.dialogs.clear();
      }
    });
  };
  Sweep(29, OpenAndForget, tuneCache, [](Scene& scene) {
    SettingsData expected = scene.stage.workbench.profile.settings;
    expected.RecordsPerDownload = 50;
    EXPECT_EQ(Scene::Differences(expected, scene.Working()), "");
  });
  const auto tuneWork = [](Scene& scene) {
    WithAdvanced(scene, [&](frmAdvanced& advanced) {
      for (bool shown = false; !shown;) {
        scene.InNextDialog([&](Dialog& dialog) {
          shown = true;
          auto& background = dynamic_cast<frmBackgroundAdjust&>(dialog);
          scene.Click(background, background.chkDelay);
          EXPECT_TRUE(background.chkDelay.Checked());
          EXPECT_TRUE(background.txtDelay.Enabled()) << "whatever the question about the delay came to";
          PressUntilDone(scene, background, background.cmdOk, "frmBackgroundAdjust.cmdOk_Click");
        });
        scene.Click(advanced, advanced.cmdAdjBackground);
        scene.dialogs.clear();
      }
    });
  };
  Sweep(31, OpenAndForget, tuneWork, [](Scene& scene) {
    SettingsData expected = scene.stage.workbench.profile.settings;
    expected.DelayNewItems = 2000;
    EXPECT_EQ(Scene::Differences(expected, scene.Working()), "");
  });
}

TEST(FaultSweep, SharedFoldersEndWithAUsableEditor) {
  const auto prepare = [](Scene& scene) {
    World& world = scene.stage.workbench.profile.world;
    world.AddFolder(0, world.FindPath("P"), "Cal", "cal", ItemType::Appointment);
    OpenAndForget(scene);
  };
  const auto route = [](Scene& scene) {
    scene.InNextDialog([&](Dialog& dialog) {
      auto& editor = static_cast<frmEditFolderset&>(dialog);
      scene.InNextDialog([&](Dialog& inner) {
        auto& shared = static_cast<frmSharedFolders&>(inner);
        for (int attempt = 0; attempt < 2 && !shared.chkSCal.Checked(); ++attempt) {
          scene.picks = {"P/Cal"};
          scene.Click(shared, shared.chkSCal);
        }
        EXPECT_EQ(shared.txtSCal.Text(), "\\\\P\\Cal");
        EXPECT_TRUE(shared.txtSCal.Enabled());
        PressUntilDone(scene, shared, shared.cmdOk, "frmSharedFolders.cmdOk_Click");
      });
      scene.Click(editor, editor.cmdShared);
      if (scene.dialogs.empty()) {
        EXPECT_EQ(editor.SharedCalEntryID, "cal");
      } else {
        EXPECT_TRUE(!scene.TakeSeen().empty() || !editor.cmdShared.Enabled())
            << "did not open without a word";
        scene.dialogs.clear();
      }
      EXPECT_TRUE(editor.IsShowing());
    });
    scene.Click(scene.Page(), scene.Page().cmdChange);
    scene.dialogs.clear();
  };
  Sweep(40, prepare, route,
        [](Scene& scene) { EXPECT_EQ(scene.Writes(), "") << "the record is the editor's until its OK"; });
}

/// Opens the folder picker through the tracking options, does a bit of everything in it that makes outside
/// calls, and ends it. What was seen by then is in `seenBeforeEnd`.
void PickFolders(Scene& scene, bool ok, std::string& seenBeforeEnd) {
  scene.InNextDialog([&, ok](Dialog& dialog) {
    auto& tracking = static_cast<frmTrackingOptions&>(dialog);
    UserActions user(tracking);
    user.Choose(tracking.optCustom);
    EXPECT_EQ(scene.TakeSeen(), "");
    scene.InNextDialog([&scene, &seenBeforeEnd, ok](Dialog& inner) {
      auto& picker = static_cast<frmFolders&>(inner);
      UserActions inPicker(picker);
      Tree& tree = picker.tvFolders;
      const auto onFolder = [&](const char* entryID, const std::function<void(Tree::Node)>& action) {
        const Tree::Node node = tree.Find(FolderKey(entryID, "S"));
        if (node != Tree::NoNode) action(node);  // a folder whose entry id cannot be read has none
      };
      const auto checkItem = [&](const char* key, bool checked) {
        inPicker.CheckNode(picker.tvItems, picker.tvItems.Find(key), checked);
      };
      inPicker.Click(picker.cmdClear);
      inPicker.Expand(tree, tree.LastChild(Tree::NoNode), true);
      onFolder("c1", [&](Tree::Node node) { inPicker.CheckNode(tree, node, true); });
      checkItem("@135", true);
      onFolder("c2", [&](Tree::Node node) { inPicker.ClickNode(tree, node); });
      checkItem("@140", true);
      inPicker.Click(picker.cmdAll);
      checkItem("@135", false);
      onFolder("c3", [&](Tree::Node node) { inPicker.CheckNode(tree, node, true); });
      inPicker.Click(picker.cmdNone);
      seenBeforeEnd = scene.TakeSeen();
      inPicker.Click(ok ? picker.cmdOk : picker.cmdCancel);
      EXPECT_NE(picker.IsShowing(), scene.seen.empty()) << "stays open with its error, closes without one";
    });
    user.Click(tracking.cmdFolders);
    scene.dialogs.clear();
    EXPECT_TRUE(tracking.IsShowing()) << "whatever happened, the tracking options go on";
  });
  scene.Click(scene.Page(), scene.Page().cmdTracking);
  scene.dialogs.clear();
}

std::string Monitored(Scene& scene) {
  const SettingsData& data = scene.Working();
  std::string text = std::to_string(data.MonitoredFolderCount) + ":";
  for (size_t i = 0; i < data.MonitoredFolderItemTypes.size(); ++i) {
    text += " " + data.MonitoredFolderEntryIDs[i] + "/" + data.MonitoredFolderStoreIDs[i] + ":" +
            std::to_string(data.MonitoredFolderItemTypes[i]);
  }
  return text;
}

TEST(FaultSweep, TheFolderPickerShowsEachErrorOnceAndStaysUsable) {
  std::string seen;
  const auto prepare = [](Scene& scene) {
    scene.Open();
    scene.stage.calls.Clear();
  };
  const auto pick = [&seen](Scene& scene) { PickFolders(scene, true, seen); };
  Sweep(150, prepare, pick, [&](Scene& scene) {
    seen += scene.TakeSeen();
    // A folder that is left out, and one that is not compared with a default folder, say nothing.
    EXPECT_LE(std::ranges::count(seen, '\n'), 2)
        << "of the failure, and of a step that builds on it: " << seen;
    if (!seen.empty()) {
      EXPECT_NE(seen.find("Error Number: 4711|nDescription: planned|n|nSource: Outside"), std::string::npos)
          << seen;
      EXPECT_TRUE(seen.find("frmFolders.") != std::string::npos ||
                  seen.find("frmTrackingOptions.") != std::string::npos ||
                  seen.find("OutlookPropertiesPage.cmdTracking_Click") != std::string::npos)
          << seen;
    }
    pick(scene);  // the same again works
    EXPECT_EQ(seen + scene.TakeSeen(), "");
    EXPECT_EQ(Monitored(scene), "2: c1/S:3 c2/S:65534");
  });
}

TEST(FaultSweep, TheFolderPickerWritesNothingWhenGivenUpWhateverFails) {
  std::string seen;
  const auto prepare = [](Scene& scene) { scene.Open(); };
  const auto giveUp = [&seen](Scene& scene) { PickFolders(scene, false, seen); };
  Sweep(130, prepare, giveUp, [](Scene& scene) {
    EXPECT_EQ(Monitored(scene), "0:");
    EXPECT_EQ(scene.Working(), scene.stage.workbench.profile.settings);
  });
}

}  // namespace
}  // namespace vexa::workbench
