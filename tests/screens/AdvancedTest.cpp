#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

#include "dialogs/frmAdvanced.h"
#include "dialogs/frmBackgroundAdjust.h"
#include "dialogs/frmCacheAdjust.h"
#include "tests/screens/Scene.h"
#include "workbench/FormState.h"

namespace vexa::workbench {
namespace {

/// Opens the advanced settings from the page and runs `body` on them.
void InAdvanced(Scene& scene, const std::function<void(frmAdvanced&, UserActions&)>& body) {
  if (scene.stage.Page() == nullptr) scene.Open();
  bool shown = false;
  scene.InNextDialog([&](Dialog& dialog) {
    shown = true;
    UserActions user(dialog);
    body(dynamic_cast<frmAdvanced&>(dialog), user);
  });
  scene.Click(scene.Page(), scene.Page().cmdAdvanced);
  EXPECT_TRUE(shown) << scene.seen;
}

/// Opens one of the two tuning dialogs from the advanced settings.
template <typename Tuning>
void InTuning(Scene& scene, const std::function<void(Tuning&, UserActions&)>& body) {
  InAdvanced(scene, [&](frmAdvanced& advanced, UserActions& user) {
    bool shown = false;
    scene.InNextDialog([&](Dialog& dialog) {
      shown = true;
      UserActions inside(dialog);
      body(dynamic_cast<Tuning&>(dialog), inside);
    });
    user.Click(std::is_same_v<Tuning, frmCacheAdjust> ? advanced.cmdAdjCache : advanced.cmdAdjBackground);
    EXPECT_TRUE(shown) << scene.seen;
    EXPECT_FALSE(advanced.cmdOk.Enabled()) << "tuning is none of its changes";
  });
  EXPECT_FALSE(scene.Page().PropertyPage_Dirty());
}

std::string State(const CheckBox& box) {
  return std::string(box.Checked() ? "x" : "-") + (box.Enabled() ? "" : "!");
}

/// The four boxes and the button that the cache rules tie together: ticked or not, "!" disabled.
std::string CacheState(const frmAdvanced& dialog) {
  return State(dialog.chkAssume) + State(dialog.chkSearchEmail) + " only " + State(dialog.chkOnlySearch) +
         " cache " + State(dialog.chkCache) + (dialog.cmdAdjCache.Enabled() ? " adjust" : "");
}

// --- one control at a time

struct Change {
  const char* setting;
  std::function<void(frmAdvanced&, UserActions&)> change;
};

const std::vector<Change>& Changes() {
  const auto click = [](CheckBox frmAdvanced::*box) {
    return [box](frmAdvanced& dialog, UserActions& user) { user.Click(dialog.*box); };
  };
  static const std::vector<Change> changes{
      {"ShowVexa2Buttons", click(&frmAdvanced::chkShow)},
      {"OnlySearchIfNoLinks", click(&frmAdvanced::chkOnlySearch)},
      {"BypassObjectModel", click(&frmAdvanced::chkBypass)},
      {"EditFolderFields", click(&frmAdvanced::chkDontEdit)},
      {"MakeWorkingCopy", click(&frmAdvanced::chkMakeWorking)},
      {"QuickscanHours", click(&frmAdvanced::chkQuickscanHours)},
      {"QuickscanHours",
       [](frmAdvanced& dialog, UserActions& user) { user.Type(dialog.txtQuickscanHours, "24"); }},
      {"CacheContactFolders", click(&frmAdvanced::chkCache)},
      {"AssumeUniqueEmailAddresses CacheContactFolders", click(&frmAdvanced::chkAssume)},
      {"SearchEmailAddresses CacheContactFolders", click(&frmAdvanced::chkSearchEmail)},
      {"WorkInBackground", click(&frmAdvanced::chkWork)},
      {"LogLevel", [](frmAdvanced& dialog, UserActions& user) { user.Slide(dialog.sldLogLevel, 0); }},
      {"MaxLogSize", [](frmAdvanced& dialog, UserActions& user) { user.Slide(dialog.sldMaxSize, 31); }},
      {"AutomaticErrorReporting", click(&frmAdvanced::chkErrReporting)},
      {"IgnoreEnterpriseSettings", click(&frmAdvanced::chkUseEnterprise)},
      {"AllUsersMode", click(&frmAdvanced::chkAllUsers)},
  };
  return changes;
}

/// Names of settings, whatever their order.
std::vector<std::string> Names(const std::string& text) {
  std::vector<std::string> names;
  std::istringstream words(text);
  for (std::string word; words >> word;) names.push_back(word);
  std::ranges::sort(names);
  return names;
}

TEST(Advanced, OneChangeChangesOneSettingAndComesBack) {
  for (const Change& change : Changes()) {
    SCOPED_TRACE(change.setting);
    Scene scene;
    SettingsData& stored = scene.stage.workbench.profile.settings;
    stored.EnterpriseSettingsPresent = true;
    stored.QuickscanHours = 7;
    scene.Open();
    const SettingsData before = scene.Working();
    FormState changed;
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      EXPECT_EQ(scene.TakeSeen(), "") << "loading asks nothing";
      EXPECT_FALSE(dialog.cmdOk.Enabled());
      EXPECT_EQ(user.Enter(), Outcome::Disabled);
      change.change(dialog, user);
      EXPECT_TRUE(dialog.cmdOk.Enabled());
      changed = StateOf(dialog);
      user.Enter();
      EXPECT_FALSE(dialog.IsShowing());
      EXPECT_FALSE(dialog.Cancelled());
    });
    EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
    EXPECT_EQ(Names(Scene::Differences(before, scene.Working())), Names(change.setting));
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions&) {
      for (size_t i = 0; i < changed.controls.size(); ++i) {
        const ControlState& then = changed.controls[i];
        const ControlState now = StateOf(dialog, *dialog.Controls()[i]);
        if (then.name == "txtQuickscanHours") continue;  // an unticked box leaves its number as it was
        EXPECT_EQ(now.checked, then.checked) << then.name;
        EXPECT_EQ(now.text, then.text) << then.name;
        EXPECT_EQ(now.position, then.position) << then.name;
        EXPECT_EQ(now.enabled, then.enabled && then.name != "cmdOk") << then.name;
      }
    });
  }
}

TEST(Advanced, CancelEscAndClosingWriteNothing) {
  for (const int ending : {0, 1, 2}) {
    for (const Change& change : Changes()) {
      Scene scene;
      scene.Open();
      const SettingsData before = scene.Working();
      scene.stage.calls.Clear();
      InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
        change.change(dialog, user);
        if (ending == 0) user.Click(dialog.cmdCancel);
        if (ending == 1) user.Escape();
        if (ending == 2) dialog.CloseWindow();
        EXPECT_FALSE(dialog.IsShowing());
        EXPECT_TRUE(dialog.Cancelled());
        EXPECT_EQ(scene.Page().PropertyPage_Dirty(), false);
      });
      EXPECT_EQ(scene.Writes(), "");
      EXPECT_EQ(Scene::Differences(before, scene.Working()), "");
    }
  }
}

// --- loading and writing

TEST(Advanced, ReadsAndWritesInOrder) {
  Scene scene;
  scene.Open();
  scene.stage.calls.Clear();
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    EXPECT_EQ(scene.stage.calls.Lines(),
              (std::vector<std::string>{
                  "RS.ShowVexa2Buttons",
                  "RS.AssumeUniqueEmailAddresses",
                  "RS.SearchEmailAddresses",
                  "RS.OnlySearchIfNoLinks",
                  "RS.BypassObjectModel",
                  "App.Utilities",
                  "Util.BypassBlocked",
                  "RS.EditFolderFields",
                  "RS.MakeWorkingCopy",
                  "RS.CacheContactFolders",
                  "RS.WorkInBackground",
                  "RS.LogLevel",
                  "RS.MaxLogSize",
                  "RS.ErrorLogPath",
                  "RS.AutomaticErrorReporting",
                  "RS.QuickscanHours",
                  "RS.IgnoreEnterpriseSettings",
                  "RS.EnterpriseSettingsPresent",
                  "RS.AllUsersMode",
                  "Reg.CanWrite(\"HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Office\\Outlook\\Addins\\"
                  "VexaAddin.Connect\")",
                  "Files.Exists(\"C:\\ProgramData\\Tolvane\\Vexa\\VEXAERRORS.MDB\")",
                  "RS.CanWrite(0)"}));
    user.Click(dialog.chkShow);
    scene.stage.calls.Clear();
    user.Click(dialog.cmdOk);
  });
  EXPECT_EQ(scene.stage.calls.Lines(),
            (std::vector<std::string>{
                "RS.CanWrite(0)", "RS.ShowVexa2Buttons = True", "RS.AssumeUniqueEmailAddresses = True",
                "RS.SearchEmailAddresses = True", "RS.OnlySearchIfNoLinks = False",
                "RS.BypassObjectModel = False", "RS.EditFolderFields = True", "RS.MakeWorkingCopy = False",
                "RS.QuickscanHours = 0", "RS.CacheContactFolders = True", "RS.WorkInBackground = True",
                "RS.AllUsersMode = False", "RS.IgnoreEnterpriseSettings = False", "RS.LogLevel = 0",
                "RS.MaxLogSize = 2048", "RS.ErrorLogPath = \"C:\\ProgramData\\Tolvane\\Vexa\"",
                "RS.AutomaticErrorReporting = False", "Site.OnStatusChange()"}));
}

TEST(Advanced, ShowsLevelsAndSizesAsSliders) {
  for (const auto& [level, position] :
       std::map<int32_t, int32_t>{{0, 3}, {1, 2}, {2, 1}, {3, 0}, {4, 3}, {-1, 3}, {INT32_MIN, 3}}) {
    Scene scene;
    scene.stage.workbench.profile.settings.LogLevel = level;
    InAdvanced(scene, [&, wanted = position](frmAdvanced& dialog, UserActions& user) {
      EXPECT_EQ(dialog.sldLogLevel.Position(), wanted);
      user.Click(dialog.chkShow);
      user.Click(dialog.cmdOk);
    });
    EXPECT_EQ(scene.Working().LogLevel, 3 - position);
  }
  // 1536 and 2560 lie half-way and go to the even number.
  for (const auto& [kilobytes, label] : std::map<int, std::string>{{0, "0 MB"},
                                                                   {511, "0 MB"},
                                                                   {512, "0 MB"},
                                                                   {1536, "2 MB"},
                                                                   {2560, "2 MB"},
                                                                   {4096, "4 MB"},
                                                                   {32767, "32 MB"},
                                                                   {-5000, "0 MB"}}) {
    Scene scene;
    scene.stage.workbench.profile.settings.MaxLogSize = static_cast<int16_t>(kilobytes);
    InAdvanced(scene, [&, wanted = label](frmAdvanced& dialog, UserActions& user) {
      EXPECT_EQ(dialog.lblSize.Caption(), wanted);
      user.Slide(dialog.sldMaxSize, 4);
      EXPECT_EQ(dialog.lblSize.Caption(), "4 MB");
    });
  }
}

TEST(Advanced, OkOverflowsFrom32MegabytesAndStays) {
  Scene scene;
  scene.Open();
  const SettingsData before = scene.Working();
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    user.Slide(dialog.sldLogLevel, 1);
    user.Slide(dialog.sldMaxSize, 32);
    user.Click(dialog.chkErrReporting);
    user.Click(dialog.cmdOk);
    EXPECT_TRUE(dialog.IsShowing());
    const std::string seen = scene.TakeSeen();
    EXPECT_NE(seen.find("Error Number: 6|nDescription: Overflow"), std::string::npos) << seen;
    EXPECT_NE(seen.find("frmAdvanced.cmdOk_Click"), std::string::npos) << seen;
    EXPECT_EQ(Scene::Differences(before, scene.Working()), "LogLevel") << "and nothing behind it";
    EXPECT_FALSE(scene.Page().PropertyPage_Dirty());
    user.Slide(dialog.sldMaxSize, 31);
    user.Click(dialog.cmdOk);
    EXPECT_FALSE(dialog.IsShowing()) << "the references are still there";
  });
  EXPECT_EQ(scene.Working().MaxLogSize, 31744);
  EXPECT_TRUE(scene.Page().PropertyPage_Dirty());
}

TEST(Advanced, WritesTheFolderOfWhateverPathTheLogHas) {
  const std::string longName(300, 'n');
  for (const std::string& folder :
       std::vector<std::string>{"C:", "C:\\My Logs", "\\\\server\\share", "D:\\\u00c9t\u00e9\\\u0416",
                                "C:\\" + longName, "C:/logs/vexa"}) {
    Scene scene;
    scene.stage.workbench.profile.settings.ErrorLogPath =
        folder + (folder == "C:/logs/vexa" ? "/" : "\\") + "VEXAERRORS.MDB";
    scene.Open();
    scene.stage.calls.Clear();
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      EXPECT_EQ(user.Type(dialog.txtLogPath, "x"), Outcome::ReadOnly);
      user.Click(dialog.chkShow);
      user.Click(dialog.cmdOk);
    });
    EXPECT_NE(scene.Writes().find("RS.ErrorLogPath = " + QuotedText(folder) + ";"), std::string::npos)
        << scene.Writes();
  }
}

TEST(Advanced, DisabledBoxesAreWrittenAsTheTableSays) {
  Scene scene;
  Profile& profile = scene.stage.workbench.profile;
  profile.settings.BypassObjectModel = true;
  profile.settings.OnlySearchIfNoLinks = true;
  profile.settings.SearchEmailAddresses = false;
  profile.settings.AllUsersMode = true;
  profile.settings.IgnoreEnterpriseSettings = true;
  profile.addin.bypassBlocked = true;
  profile.machine.canWriteMachine = false;
  scene.Open();
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    EXPECT_EQ(Scene::Disabled(dialog),
              "chkOnlySearch chkBypass txtQuickscanHours chkCache cmdAdjCache cmdEmail chkUseEnterprise "
              "chkAllUsers cmdOk");
    EXPECT_EQ(State(dialog.chkBypass) + State(dialog.chkOnlySearch) + State(dialog.chkCache) +
                  State(dialog.chkUseEnterprise) + State(dialog.chkAllUsers),
              "-!x!-!x!x!");
    user.Click(dialog.chkShow);
    user.Click(dialog.cmdOk);
  });
  const SettingsData& working = scene.Working();
  EXPECT_FALSE(working.BypassObjectModel);
  EXPECT_TRUE(working.OnlySearchIfNoLinks);
  EXPECT_FALSE(working.CacheContactFolders);
  EXPECT_TRUE(working.AllUsersMode);
  EXPECT_FALSE(working.IgnoreEnterpriseSettings) << "there are none to ignore";
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

// --- the rules that tie boxes together

TEST(Advanced, ClearingAssumeAsksWhetherCachingMayGo) {
  const std::string question =
      "MSG[exclamation | OK, Cancel | \"Vexa\"] \"If this option is disabled, caching must also be disabled, "
      "which may result in a loss in performance.\" -> ";
  Scene scene;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    EXPECT_EQ(CacheState(dialog), "xx only - cache x adjust");
    scene.answers = {MessageAnswer::Cancel};
    user.Click(dialog.chkAssume);
    EXPECT_EQ(scene.TakeSeen(), question + "cancel\n");
    EXPECT_EQ(CacheState(dialog), "xx only - cache x adjust");
    EXPECT_TRUE(dialog.cmdOk.Enabled()) << "after Cancel, too";
    user.Click(dialog.chkAssume);
    EXPECT_EQ(scene.TakeSeen(), question + "ok\n");
    EXPECT_EQ(CacheState(dialog), "-x only - cache -!");
    user.Click(dialog.chkAssume);
    EXPECT_EQ(CacheState(dialog), "xx only - cache -");
    user.Click(dialog.chkAssume);
    EXPECT_EQ(scene.TakeSeen(), "") << "nothing is lost without a cache";
    EXPECT_EQ(CacheState(dialog), "-x only - cache -!");
  });
}

TEST(Advanced, TickingTheSearchOffersTheCache) {
  const std::string question =
      "MSG[question | Yes, No | \"Vexa\"] \"If this option is enabled, you should turn on caching to gain "
      "performance enhancements.  Click Yes to do so now, or No if your administrator has asked you to leave "
      "caching off.\" -> ";
  Scene scene;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    user.Click(dialog.chkSearchEmail);
    EXPECT_EQ(scene.TakeSeen(), "") << "clearing it asks nothing";
    EXPECT_EQ(CacheState(dialog), "x- only -! cache -!");
    scene.answers = {MessageAnswer::No};
    user.Click(dialog.chkSearchEmail);
    EXPECT_EQ(scene.TakeSeen(), question + "no\n");
    EXPECT_EQ(CacheState(dialog), "xx only - cache -");
    user.Click(dialog.chkAssume);
    user.Click(dialog.chkSearchEmail);
    EXPECT_EQ(CacheState(dialog), "-- only -! cache -!");
    scene.answers = {MessageAnswer::Yes};
    user.Click(dialog.chkSearchEmail);
    EXPECT_EQ(scene.TakeSeen(), question + "yes\n") << "once, though it ticks the other box, too";
    EXPECT_EQ(CacheState(dialog), "xx only - cache x adjust");
    user.Click(dialog.chkCache);
    EXPECT_EQ(CacheState(dialog), "xx only - cache -");
    EXPECT_EQ(scene.TakeSeen(), "");
  });
}

TEST(Advanced, WorkInTheBackgroundTellsEveryTimeAndNeverWhileLoading) {
  const std::string note =
      "MSG[information | OK | \"Vexa\"] \"This change will take place the next time you start Outlook.\" -> "
      "ok\n";
  for (const bool stored : {false, true}) {
    Scene scene;
    scene.stage.workbench.profile.settings.WorkInBackground = stored;
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      EXPECT_EQ(scene.TakeSeen(), "");
      for (bool now = !stored; const int time : {1, 2}) {
        user.Click(dialog.chkWork);
        EXPECT_EQ(scene.TakeSeen(), note) << time;
        EXPECT_EQ(dialog.cmdAdjBackground.Enabled(), now);
        now = !now;
      }
    });
  }
}

TEST(Advanced, HoursBecomeAWholeNumberWhenTheBoxIsLeft) {
  Scene scene;
  scene.stage.workbench.profile.settings.QuickscanHours = 12;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    EXPECT_EQ(State(dialog.chkQuickscanHours), "x");
    EXPECT_EQ(dialog.txtQuickscanHours.Text(), "12");
    for (const auto& [typed, left] : std::map<std::string, std::string>{{"2.5", "2"},
                                                                        {"3.5", "4"},
                                                                        {"-7", "0"},
                                                                        {"-0.4", "0"},
                                                                        {"abc", "0"},
                                                                        {"  8 hours", "8"},
                                                                        {"1,000", "1"},
                                                                        {"1e3", "1"},
                                                                        {"", "0"},
                                                                        {"32767", "32767"},
                                                                        {"-40000", "0"}}) {
      user.Type(dialog.txtQuickscanHours, typed);
      user.Leave();
      EXPECT_EQ(dialog.txtQuickscanHours.Text(), left) << typed;
    }
    EXPECT_EQ(scene.TakeSeen(), "");
    user.Type(dialog.txtQuickscanHours, "32768");
    user.Leave();
    const std::string seen = scene.TakeSeen();
    EXPECT_NE(seen.find("Description: Overflow"), std::string::npos) << seen;
    EXPECT_NE(seen.find("frmAdvanced.txtQuickscanHours_LostFocus"), std::string::npos) << seen;
    EXPECT_EQ(dialog.txtQuickscanHours.Text(), "32768") << "the text stays";
    user.Click(dialog.cmdOk);
  });
  EXPECT_EQ(scene.Working().QuickscanHours, 32768) << "the setting is wider than the box's rule";
}

TEST(Advanced, HoursThatWereNeverLeftAreTakenAsTheyStand) {
  for (const auto& [typed, stored] : std::map<std::string, int32_t>{
           {"2.5", 2}, {"-3", -3}, {"100000", 100000}, {"12 hours", 12}, {"", 0}, {"x", 0}}) {
    Scene scene;
    scene.stage.workbench.profile.settings.QuickscanHours = 1;
    InAdvanced(scene, [&, text = typed](frmAdvanced& dialog, UserActions& user) {
      user.Type(dialog.txtQuickscanHours, text);
      user.Enter();  // the box keeps the focus
      EXPECT_FALSE(dialog.IsShowing());
    });
    EXPECT_EQ(scene.Working().QuickscanHours, stored) << typed;
  }
  Scene scene;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    EXPECT_EQ(dialog.txtQuickscanHours.Text(), "0");
    EXPECT_FALSE(dialog.txtQuickscanHours.Enabled());
    user.Click(dialog.chkQuickscanHours);
    EXPECT_TRUE(dialog.txtQuickscanHours.Enabled());
    user.Type(dialog.txtQuickscanHours, std::string(30, '9'));
    user.Enter();
    EXPECT_TRUE(dialog.IsShowing());
    EXPECT_NE(scene.TakeSeen().find("Description: Overflow"), std::string::npos);
  });
}

// --- read-only

TEST(Advanced, ReadOnlyShowsEverythingAndSavesNothing) {
  Scene scene;
  Profile& profile = scene.stage.workbench.profile;
  profile.addin.canWrite = false;
  profile.settings.QuickscanHours = 3;
  profile.settings.EnterpriseSettingsPresent = true;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    EXPECT_EQ(Scene::Disabled(dialog),
              "chkShow chkAssume chkSearchEmail chkOnlySearch chkBypass chkDontEdit chkMakeWorking "
              "chkQuickscanHours txtQuickscanHours chkCache chkWork cmdEmail cmdOk");
    EXPECT_EQ(dialog.cmdAdjCache.Caption(), "View...");
    EXPECT_EQ(dialog.cmdAdjBackground.Caption(), "View...");
    scene.browse = {BrowseAnswer::Kind::Chosen, "D:\\"};
    user.Click(dialog.cmdLocation);
    EXPECT_EQ(dialog.txtLogPath.Text(), "D:\\VEXAERRORS.MDB");
    user.Click(dialog.chkErrReporting);
    user.Click(dialog.chkUseEnterprise);
    user.Click(dialog.chkAllUsers);
    user.Slide(dialog.sldLogLevel, 1);
    user.Slide(dialog.sldMaxSize, 1);
    profile.addin.canWrite = true;  // too late for this opening
    user.Click(dialog.chkErrReporting);
    EXPECT_EQ(user.Click(dialog.cmdOk), Outcome::Disabled);
    EXPECT_EQ(user.Enter(), Outcome::Disabled);
  });
  EXPECT_EQ(scene.Writes(), "");
}

TEST(Advanced, LosingTheAccessLeavesTheRestToOk) {
  Scene scene;
  scene.Open();
  const SettingsData before = scene.Working();
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    user.Click(dialog.chkShow);
    user.Slide(dialog.sldLogLevel, 0);
    scene.stage.workbench.profile.addin.canWrite = false;
    user.Click(dialog.chkQuickscanHours);
    EXPECT_FALSE(dialog.txtQuickscanHours.Enabled());
    user.Click(dialog.cmdOk);
    EXPECT_FALSE(dialog.IsShowing());
  });
  EXPECT_EQ(Scene::Differences(before, scene.Working()), "LogLevel");
}

// --- restoring the defaults

TEST(Advanced, RestoringWritesTheTuningAtOnceAndTheRestWithOk) {
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
  scene.Open();
  const SettingsData before = scene.Working();
  scene.stage.calls.Clear();
  const std::string question =
      "MSG[none | OK, Cancel | \"Vexa\"] \"Restore all Advanced options to their default settings?\" -> ";
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    scene.answers = {MessageAnswer::Cancel};
    user.Click(dialog.cmdDefault);
    EXPECT_EQ(scene.TakeSeen(), question + "cancel\n");
    EXPECT_EQ(Scene::Differences(before, scene.Working()), "");
    EXPECT_FALSE(dialog.cmdOk.Enabled());

    user.Click(dialog.cmdDefault);
    EXPECT_EQ(scene.TakeSeen(), question + "ok\n") << "and no other box";
    EXPECT_EQ(scene.Writes(),
              "RS.RecordsPerDownload = 100; RS.KeepCacheSynchronized = True; RS.StopCacheFillOnExit = False; "
              "RS.BackgroundWorkTime = 10; RS.BackgroundInterval = 10");
    EXPECT_EQ(CacheState(dialog), "xx only - cache x adjust");
    EXPECT_EQ(State(dialog.chkShow) + State(dialog.chkBypass) + State(dialog.chkDontEdit) +
                  State(dialog.chkMakeWorking) + State(dialog.chkQuickscanHours) + State(dialog.chkWork) +
                  State(dialog.chkUseEnterprise) + State(dialog.chkErrReporting),
              "-x---xx-");
    EXPECT_EQ(dialog.txtQuickscanHours.Text(), "0");
    EXPECT_FALSE(dialog.txtQuickscanHours.Enabled());
    EXPECT_EQ(dialog.sldLogLevel.Position(), 3);
    EXPECT_EQ(dialog.lblSize.Caption(), "2048 MB");
    EXPECT_EQ(dialog.txtLogPath.Text(), "C:\\Program Files\\Tolvane\\Vexa\\Bin\\VEXAERRORS.MDB");
    EXPECT_TRUE(dialog.cmdOk.Enabled());
    user.Click(dialog.cmdOk);
    EXPECT_TRUE(dialog.IsShowing()) << "2048 is more than OK can store";
    EXPECT_NE(scene.TakeSeen().find("Description: Overflow"), std::string::npos);
    EXPECT_FALSE(scene.Page().PropertyPage_Dirty());
    user.Slide(dialog.sldMaxSize, 2);
    user.Click(dialog.cmdOk);
    EXPECT_FALSE(dialog.IsShowing());
  });
  SettingsData expected = SettingsData::Defaults();
  expected.BypassObjectModel = true;
  expected.DelayNewItems = 8;  // not restored
  expected.EnterpriseSettingsPresent = true;
  expected.ErrorLogPath = "C:\\Program Files\\Tolvane\\Vexa\\Bin\\VEXAERRORS.MDB";
  const std::vector<std::string> others = Names(Scene::Differences(expected, scene.Working()));
  for (const std::string& name : others)
    EXPECT_TRUE(name.ends_with("IDs") || name.starts_with("FolderSet")) << name;
}

TEST(Advanced, RestoringTwiceAndPromptsComeBackAfterwards) {
  Scene scene;
  scene.stage.workbench.profile.addin.bypassBlocked = true;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    user.Click(dialog.cmdDefault);
    EXPECT_EQ(State(dialog.chkBypass), "-!") << "blocked";
    scene.TakeSeen();
    user.Click(dialog.chkWork);
    EXPECT_NE(scene.TakeSeen().find("the next time you start Outlook"), std::string::npos);
    scene.stage.calls.PlanFault("Util.App", 1, Error(4711, "planned", "Outside"));
    user.Click(dialog.cmdDefault);
    EXPECT_NE(scene.TakeSeen().find("frmAdvanced.cmdDefault_Click"), std::string::npos);
    user.Click(dialog.chkWork);
    EXPECT_NE(scene.TakeSeen().find("the next time you start Outlook"), std::string::npos)
        << "after a failure, too";
  });
}

TEST(Advanced, ReadOnlyRestoreLeavesTheFirstGroupsAlone) {
  Scene scene;
  scene.stage.workbench.profile.settings.ShowVexa2Buttons = true;
  scene.stage.workbench.profile.addin.canWrite = false;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    user.Click(dialog.cmdDefault);
    EXPECT_EQ(State(dialog.chkShow), "x!");
    EXPECT_EQ(dialog.sldMaxSize.Position(), 2048);
    EXPECT_FALSE(dialog.cmdOk.Enabled());
  });
  EXPECT_EQ(scene.Writes(), "");
}

// --- tuning the cache

TEST(CacheTuning, LoadsWritesAndKeepsToItself) {
  for (const bool stop : {false, true}) {
    Scene scene;
    SettingsData& stored = scene.stage.workbench.profile.settings;
    stored.RecordsPerDownload = 55;
    stored.StopCacheFillOnExit = stop;
    scene.Open();
    const SettingsData before = scene.Working();
    scene.stage.calls.Clear();
    InTuning<frmCacheAdjust>(scene, [&](frmCacheAdjust& dialog, UserActions& user) {
      EXPECT_EQ(dialog.Caption(), "Fine-Tune Caching");
      EXPECT_EQ(dialog.txtNumRecords.Text() + State(dialog.chkSync) + State(dialog.chkFillOnExit),
                stop ? "55x-" : "55xx");
      EXPECT_EQ(Scene::Disabled(dialog), "cmdOk");
      user.Click(dialog.chkFillOnExit);
      EXPECT_TRUE(dialog.cmdOk.Enabled());
      scene.stage.calls.Clear();
      user.Click(dialog.cmdOk);
      EXPECT_FALSE(dialog.Cancelled());
    });
    EXPECT_EQ(scene.Writes(),
              "RS.RecordsPerDownload = 55; RS.KeepCacheSynchronized = True; RS.StopCacheFillOnExit = " +
                  std::string(stop ? "False" : "True"));
    EXPECT_EQ(Scene::Differences(before, scene.Working()), "StopCacheFillOnExit");
  }
}

TEST(CacheTuning, RefusesNumbersOutOfBoundsAndKeepsTheFocus) {
  const std::string refusal =
      "MSG[critical | OK, Cancel | \"Vexa\"] \"Value must be between 1 and 10,000\" -> ";
  Scene scene;
  InTuning<frmCacheAdjust>(scene, [&](frmCacheAdjust& dialog, UserActions& user) {
    for (const char* wrong :
         {"0", "10001", "-1", "", "ten", "0.9", "10000.4", "1,000", "1e3", "&H10", "5 5"}) {
      for (const MessageAnswer answer : {MessageAnswer::Ok, MessageAnswer::Cancel}) {
        scene.answers = {answer};
        user.Type(dialog.txtNumRecords, wrong);
        EXPECT_EQ(user.Click(dialog.chkSync), Outcome::FocusKept) << wrong;
        EXPECT_EQ(scene.TakeSeen(), refusal + std::string(AnswerWord(answer)) + "\n");
        EXPECT_EQ(dialog.Focus(), &dialog.txtNumRecords);
        EXPECT_TRUE(dialog.chkSync.Checked());
      }
    }
    for (const char* right : {"1", "10000", " 42 ", "+7", "99.5"}) {
      user.Type(dialog.txtNumRecords, right);
      EXPECT_EQ(user.Leave(), Outcome::Done) << right;
      user.Focus(dialog.txtNumRecords);
    }
    EXPECT_EQ(scene.TakeSeen(), "");
    user.Type(dialog.txtNumRecords, "x");
    user.Click(dialog.cmdCancel);
    EXPECT_FALSE(dialog.IsShowing()) << "Cancel never validates";
    EXPECT_EQ(scene.TakeSeen(), "");
  });
  EXPECT_EQ(scene.Writes(), "");
}

TEST(CacheTuning, WarnsAboutMoreThanAHundredAndGoesOn) {
  const std::string warning =
      "MSG[exclamation | OK | \"Vexa\"] \"It is recommended you do not download greater than 100 records at "
      "a "
      "time into the cache.  Click OK to proceed, or Cancel to change your entry.\" -> ok\n";
  const struct {
    const char* typed;
    bool warned;
    int stored;
  } rows[] = {{"100", false, 100}, {"101", true, 101},     {"100.5", true, 100}, {"10000", true, 10000},
              {"2.5", false, 2},   {"20000", true, 20000}, {"abc", false, 0}};
  for (const auto& row : rows) {
    Scene scene;
    InTuning<frmCacheAdjust>(scene, [&](frmCacheAdjust& dialog, UserActions& user) {
      user.Type(dialog.txtNumRecords, "");
      user.Type(dialog.txtNumRecords, row.typed);
      user.Enter();  // without leaving the box
      EXPECT_FALSE(dialog.IsShowing()) << row.typed;
    });
    EXPECT_EQ(scene.TakeSeen(), row.warned ? warning : "") << row.typed;
    EXPECT_EQ(scene.Working().RecordsPerDownload, row.stored) << row.typed;
  }
  Scene scene;
  InTuning<frmCacheAdjust>(scene, [&](frmCacheAdjust& dialog, UserActions& user) {
    user.Type(dialog.txtNumRecords, "40000");
    user.Enter();
    EXPECT_TRUE(dialog.IsShowing());
    EXPECT_NE(scene.TakeSeen().find("frmCacheAdjust.cmdOk_Click"), std::string::npos);
  });
  EXPECT_EQ(scene.Writes(), "");
}

// --- tuning the background work

TEST(BackgroundTuning, LoadsWritesAndValidates) {
  const std::string work =
      "MSG[critical | OK | \"Vexa\"] \"Value must be between 1 and 2000 milliseconds\" -> ok\n";
  const std::string delay =
      "MSG[critical | OK | \"Vexa\"] \"Value must be between 1 and 60,000 milliseconds\" -> ok\n";
  Scene scene;
  scene.stage.workbench.profile.settings.DelayNewItems = 300;
  scene.Open();
  scene.stage.calls.Clear();
  InTuning<frmBackgroundAdjust>(scene, [&](frmBackgroundAdjust& dialog, UserActions& user) {
    EXPECT_EQ(dialog.Caption(), "Fine-Tune Background Processing");
    EXPECT_EQ(dialog.txtTime.Text() + " " + dialog.txtInterval.Text() + " " + dialog.txtDelay.Text() +
                  State(dialog.chkDelay),
              "10 10 300x");
    EXPECT_EQ(Scene::Disabled(dialog), "cmdOk");
    struct Row {
      TextBox& box;
      std::vector<const char*> right, wrong;
      const std::string& message;
    };
    for (const Row& row :
         {Row{dialog.txtInterval, {"1", "2001", "60000", "1.5"}, {"0", "60001", "60000.1", "x", ""}, work},
          Row{dialog.txtTime, {"1", "2000"}, {"0", "2001", "2000.4", "1e2"}, work},
          Row{dialog.txtDelay, {"1", "60000"}, {"0", "60001", "1,000"}, delay}}) {
      for (const char* wrong : row.wrong) {
        user.Type(row.box, wrong);
        EXPECT_EQ(user.Leave(), Outcome::FocusKept) << wrong;
        EXPECT_EQ(scene.TakeSeen(), row.message) << wrong;
      }
      for (const char* right : row.right) {
        user.Type(row.box, right);
        EXPECT_EQ(user.Leave(), Outcome::Done) << right;
        EXPECT_EQ(scene.TakeSeen(), "") << right;
      }
    }
    user.Type(dialog.txtInterval, "2.5");
    scene.stage.calls.Clear();
    user.Enter();
  });
  EXPECT_EQ(scene.Writes(),
            "RS.BackgroundWorkTime = 2000; RS.BackgroundInterval = 2; RS.DelayNewItems = 60000");
}

TEST(BackgroundTuning, TickingTheDelayMayAskFirst) {
  const std::string question =
      "MSG[exclamation | OK, Cancel | \"Vexa\"] \"This feature may slow down Outlook 2007 when new messages "
      "arrive.\" -> ";
  for (const bool available : {false, true}) {
    Scene scene;
    scene.stage.workbench.profile.addin.delayAvailable = available;
    InTuning<frmBackgroundAdjust>(scene, [&](frmBackgroundAdjust& dialog, UserActions& user) {
      EXPECT_EQ(scene.TakeSeen(), "");
      EXPECT_EQ(dialog.txtDelay.Text() + State(dialog.chkDelay), "2000-");
      EXPECT_EQ(Scene::Disabled(dialog), "txtDelay cmdOk");
      if (available) {
        scene.answers = {MessageAnswer::Cancel};
        user.Click(dialog.chkDelay);
        EXPECT_EQ(scene.TakeSeen(), question + "cancel\n");
        EXPECT_EQ(State(dialog.chkDelay), "-");
        EXPECT_FALSE(dialog.txtDelay.Enabled());
      }
      user.Click(dialog.chkDelay);
      EXPECT_EQ(scene.TakeSeen(), available ? question + "ok\n" : "");
      EXPECT_EQ(Scene::Disabled(dialog), "");
      user.Click(dialog.chkDelay);
      EXPECT_EQ(scene.TakeSeen(), "") << "clearing it asks nothing";
      user.Click(dialog.cmdOk);
    });
    EXPECT_EQ(scene.Working().DelayNewItems, 0) << "whatever the greyed number says";
  }
  Scene scene;
  scene.stage.workbench.profile.settings.DelayNewItems = 5;
  scene.stage.workbench.profile.addin.delayAvailable = true;
  InTuning<frmBackgroundAdjust>(scene, [&](frmBackgroundAdjust&, UserActions&) {});
  EXPECT_EQ(scene.TakeSeen(), "") << "loading a delay asks nothing";
}

TEST(Tuning, ReadOnlyShowsTheValues) {
  Scene scene;
  scene.stage.workbench.profile.addin.canWrite = false;
  scene.stage.workbench.profile.settings.DelayNewItems = 5;
  InTuning<frmCacheAdjust>(scene, [&](frmCacheAdjust& dialog, UserActions& user) {
    EXPECT_EQ(Scene::Disabled(dialog), "txtNumRecords chkSync chkFillOnExit cmdOk");
    EXPECT_EQ(user.Click(dialog.cmdOk), Outcome::Disabled);
  });
  InTuning<frmBackgroundAdjust>(scene, [&](frmBackgroundAdjust& dialog, UserActions&) {
    EXPECT_EQ(Scene::Disabled(dialog), "txtInterval txtTime chkDelay txtDelay cmdOk");
    dialog.CloseWindow();
    EXPECT_TRUE(dialog.Cancelled());
  });
  EXPECT_EQ(scene.Writes(), "");
}

TEST(Tuning, OneChangeChangesOneSettingAndComesBack) {
  struct Row {
    const char* setting;
    std::function<void(frmCacheAdjust&, UserActions&)> cache;
    std::function<void(frmBackgroundAdjust&, UserActions&)> background;
  };
  const std::vector<Row> rows{
      {"RecordsPerDownload",
       [](frmCacheAdjust& dialog, UserActions& user) { user.Type(dialog.txtNumRecords, "9"); },
       {}},
      {"KeepCacheSynchronized",
       [](frmCacheAdjust& dialog, UserActions& user) { user.Click(dialog.chkSync); },
       {}},
      {"StopCacheFillOnExit",
       [](frmCacheAdjust& dialog, UserActions& user) { user.Click(dialog.chkFillOnExit); },
       {}},
      {"BackgroundInterval",
       {},
       [](frmBackgroundAdjust& dialog, UserActions& user) { user.Type(dialog.txtInterval, "9"); }},
      {"BackgroundWorkTime",
       {},
       [](frmBackgroundAdjust& dialog, UserActions& user) { user.Type(dialog.txtTime, "9"); }},
      {"DelayNewItems",
       {},
       [](frmBackgroundAdjust& dialog, UserActions& user) { user.Click(dialog.chkDelay); }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.setting);
    Scene scene;
    scene.Open();
    const SettingsData before = scene.Working();
    std::vector<FormState> shown;
    const auto change = [&](auto& dialog, UserActions& user, const auto& act) {
      if (shown.empty()) {
        EXPECT_FALSE(dialog.cmdOk.Enabled());
        act(dialog, user);
        EXPECT_TRUE(dialog.cmdOk.Enabled());
        shown.push_back(StateOf(dialog));
        user.Click(dialog.cmdOk);
      } else {
        shown.push_back(StateOf(dialog));
      }
    };
    for (int opening = 0; opening < 2; ++opening) {
      if (row.cache) {
        InTuning<frmCacheAdjust>(
            scene, [&](frmCacheAdjust& dialog, UserActions& user) { change(dialog, user, row.cache); });
      } else {
        InTuning<frmBackgroundAdjust>(scene, [&](frmBackgroundAdjust& dialog, UserActions& user) {
          change(dialog, user, row.background);
        });
      }
    }
    EXPECT_EQ(Scene::Differences(before, scene.Working()), row.setting);
    ASSERT_EQ(shown.size(), 2U);
    for (size_t i = 0; i < shown[0].controls.size(); ++i) {
      EXPECT_EQ(shown[1].controls[i].text, shown[0].controls[i].text);
      EXPECT_EQ(shown[1].controls[i].checked, shown[0].controls[i].checked);
    }
  }
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
  EXPECT_EQ(scene.Writes(), "");
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    user.Click(dialog.chkShow);
    user.Click(dialog.cmdOk);
    dialog.CloseWindow();
    EXPECT_FALSE(dialog.Cancelled()) << "closing what has ended changes no outcome";
  });
}

// --- texts

TEST(Advanced, ShowsEveryTextInEachLanguage) {
  for (const int32_t language : {1033, 1036, 3084}) {
    Scene scene(language);
    const Resources& resources = scene.stage.resources;
    frmAdvanced advanced(scene.stage.services);
    frmCacheAdjust cache(scene.stage.services);
    frmBackgroundAdjust background(scene.stage.services);
    const std::map<const Form*, StringId> titles{{&advanced, StringId::AdvancedTitle},
                                                 {&cache, StringId::CacheTitle},
                                                 {&background, StringId::BackgroundTitle}};
    for (const auto& [form, title] : titles) {
      EXPECT_EQ(form->Caption(), resources.LoadString(title));
      for (const Control* control : form->Controls()) {
        if (control->CaptionId() == StringId::None) {
          EXPECT_TRUE(control->Kind() == ControlKind::TextBox || control->Kind() == ControlKind::Slider ||
                      control == &advanced.lblSize)
              << control->Name() << " has no text";
        } else {
          EXPECT_EQ(control->Caption(), resources.LoadString(control->CaptionId())) << control->Name();
        }
      }
    }
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions&) {
      EXPECT_EQ(dialog.lblSize.Caption(), language == 1033 ? "2 MB" : "2 Mo");
    });
  }
}

}  // namespace
}  // namespace vexa::workbench
