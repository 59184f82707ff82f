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

void InAdvanced(Scene& scene, const std::function<void(frmAdvanced&, UserActions&)>& body) {
  scene.In<frmAdvanced>(&OutlookPropertiesPage::cmdAdvanced, body);
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
      InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
        change.change(dialog, user);
        if (ending == 0) user.Click(dialog.cmdCancel);
        if (ending == 1) user.Escape();
        if (ending == 2) dialog.CloseWindow();
        EXPECT_FALSE(dialog.IsShowing());
        EXPECT_TRUE(dialog.Cancelled());
      });
      EXPECT_FALSE(scene.Page().PropertyPage_Dirty());
      EXPECT_EQ(scene.Writes(), "");
    }
  }
}

// --- loading and writing

TEST(Advanced, ShowsLevelsAndSizesAsSliders) {
  const struct {
    int32_t level;
    int32_t position;
    int kilobytes;
    const char* size;
  } rows[] = {{0, 3, 0, "0 MB"},       {1, 2, 511, "0 MB"},          {2, 1, 512, "0 MB"},
              {3, 0, 1536, "2 MB"},    {4, 3, 2560, "2 MB"},  // half-way, to the even number
              {-1, 3, 32767, "32 MB"}, {INT32_MIN, 3, -5000, "0 MB"}};
  for (const auto& row : rows) {
    Scene scene;
    scene.stage.workbench.profile.settings.LogLevel = row.level;
    scene.stage.workbench.profile.settings.MaxLogSize = static_cast<int16_t>(row.kilobytes);
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      EXPECT_EQ(dialog.sldLogLevel.Position(), row.position) << row.level;
      EXPECT_EQ(dialog.lblSize.Caption(), row.size) << row.kilobytes;
      user.Slide(dialog.sldMaxSize, 4);
      EXPECT_EQ(dialog.lblSize.Caption(), "4 MB");
      user.Click(dialog.cmdOk);
    });
    EXPECT_EQ(scene.Working().LogLevel, 3 - row.position);
  }
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
  } rows[] = {{"2.5", "2", 2}, {"3.5", "4", 4},           {"-7", "0", -7},        {"-0.4", "0", 0},
              {"abc", "0", 0}, {"  8 hours", "8", 8},     {"1,000", "1", 1},      {"1e3", "1", 1},
              {"", "0", 0},    {"32767", "32767", 32767}, {"-40000", "0", -40000}};
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
  for (const std::string& name : Names(Scene::Differences(expected, scene.Working())))
    EXPECT_TRUE(name.ends_with("IDs") || name.starts_with("FolderSet")) << name;
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

// --- tuning

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
    EXPECT_EQ(scene.TakeSeen().starts_with("MSG[exclamation | OK | \"Vexa\"] \"It is recommended"),
              row.warned)
        << row.typed;
    EXPECT_EQ(scene.Working().RecordsPerDownload, row.stored) << row.typed;
  }
}

TEST(BackgroundTuning, RefusesNumbersOutOfBounds) {
  const std::string work =
      "MSG[critical | OK | \"Vexa\"] \"Value must be between 1 and 2000 milliseconds\" -> ok\n";
  const std::string delay =
      "MSG[critical | OK | \"Vexa\"] \"Value must be between 1 and 60,000 milliseconds\" -> ok\n";
  Scene scene;
  scene.stage.workbench.profile.settings.DelayNewItems = 300;
  InTuning<frmBackgroundAdjust>(scene, [&](frmBackgroundAdjust& dialog, UserActions& user) {
    const struct {
      TextBox& box;
      std::vector<const char*> right, wrong;
      const std::string& message;
    } rows[] = {{dialog.txtInterval, {"1", "2001", "60000", "1.5"}, {"0", "60001", "60000.1", "x", ""}, work},
                {dialog.txtTime, {"1", "2000"}, {"0", "2001", "2000.4", "1e2"}, work},
                {dialog.txtDelay, {"1", "60000"}, {"0", "60001", "1,000"}, delay}};
    for (const auto& row : rows) {
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
  });
}

TEST(Tuning, OneChangeChangesOneSettingAndComesBack) {
  struct Row {
    const char* setting;
    bool cache;  // else the background work
    const char* control;
  };
  for (const Row& row : {Row{"RecordsPerDownload", true, "txtNumRecords"},
                         {"KeepCacheSynchronized", true, "chkSync"},
                         {"StopCacheFillOnExit", true, "chkFillOnExit"},
                         {"BackgroundInterval", false, "txtInterval"},
                         {"BackgroundWorkTime", false, "txtTime"},
                         {"DelayNewItems", false, "chkDelay"}}) {
    SCOPED_TRACE(row.setting);
    Scene scene;
    scene.Open();
    const SettingsData before = scene.Working();
    std::vector<std::string> shown;
    const auto open = [&](Dialog& dialog, UserActions& user) {
      Control& control = *dialog.FindControl(row.control);
      auto* const text = dynamic_cast<TextBox*>(&control);
      const Button& ok = *static_cast<Button*>(dialog.FindControl("cmdOk"));
      EXPECT_FALSE(ok.Enabled());
      if (shown.empty()) {
        if (text != nullptr) user.Type(*text, "9");
        if (text == nullptr) user.Click(control);
        EXPECT_TRUE(ok.Enabled());
      }
      shown.push_back(text != nullptr ? text->Text() : State(static_cast<CheckBox&>(control)));
      if (shown.size() == 1) user.Enter();
    };
    for (int opening = 0; opening < 2; ++opening) {
      if (row.cache) InTuning<frmCacheAdjust>(scene, open);
      if (!row.cache) InTuning<frmBackgroundAdjust>(scene, open);
    }
    EXPECT_EQ(Scene::Differences(before, scene.Working()), row.setting);
    EXPECT_EQ(shown.front(), shown.back());
  }
}

}  // namespace
}  // namespace vexa::workbench
