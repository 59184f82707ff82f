#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "dialogs/frmAbout.h"
#include "dialogs/frmAdvanced.h"
#include "dialogs/frmNotice.h"
#include "tests/screens/Scene.h"

namespace vexa::workbench {
namespace {

namespace fs = std::filesystem;

constexpr const char* LogPath = "C:\\ProgramData\\Tolvane\\Vexa\\VEXAERRORS.MDB";

/// A folder for one test's profile, with its files and outbox; gone with it.
class Scratch {
 public:
  Scratch() : folder_(fs::temp_directory_path() / ("vexa-" + std::to_string(::getpid()))) {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() { fs::remove_all(folder_); }
  std::string Profile() const { return folder_ / "p.json"; }

 private:
  fs::path folder_;
};

void InAdvanced(Scene& scene, const std::function<void(frmAdvanced&, UserActions&)>& body) {
  scene.In<frmAdvanced>(&OutlookPropertiesPage::cmdAdvanced, body);
}

TEST(LogLocation, PutsTheFileNameBehindOneBackslash) {
  Scratch scratch;
  Scene scene(1033, scratch.Profile());
  scene.stage.files.Write("D:\\Mes r\u00e9sultats\\vexaerrors.mdb", "log");
  const std::string longName(300, 'n');
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    EXPECT_FALSE(dialog.cmdEmail.Enabled());
    const struct {
      std::string chosen, path, startOfNext;
    } rows[] = {
        {"D:", "D:\\VEXAERRORS.MDB", "D:\\"},
        {"D:\\", "D:\\VEXAERRORS.MDB", "D:\\"},
        {"C:\\My Logs\\", "C:\\My Logs\\VEXAERRORS.MDB", "C:\\My Logs\\"},
        {"C:\\My Logs", "C:\\My Logs\\VEXAERRORS.MDB", "C:\\My Logs\\"},
        {"\\\\server\\share\\", "\\\\server\\share\\VEXAERRORS.MDB", "\\\\server\\share\\"},
        {"C:/logs/", "C:/logs\\VEXAERRORS.MDB", "C:/logs\\"},
        {"C:\\" + longName, "C:\\" + longName + "\\VEXAERRORS.MDB", "C:\\" + longName + "\\"},
        {"D:\\Mes R\u00c9SULTATS", "D:\\Mes R\u00c9SULTATS\\VEXAERRORS.MDB", "D:\\Mes R\u00c9SULTATS\\"},
    };
    std::string start = "C:\\ProgramData\\Tolvane\\Vexa\\";
    for (const auto& row : rows) {
      scene.stage.calls.Clear();
      scene.browse = {BrowseAnswer::Kind::Chosen, row.chosen};
      user.Click(dialog.cmdLocation);
      EXPECT_EQ(dialog.txtLogPath.Text(), row.path);
      EXPECT_EQ(scene.stage.calls.Lines().front(),
                "Shell.BrowseForFolder(\"Select the new location for the Vexa log file.  If using Vexa in "
                "multiuser mode, ensure the path you specify is accessible to all users on the machine.\", " +
                    QuotedText(start) + ")");
      EXPECT_EQ(scene.stage.calls.Lines().back(), "Files.Exists(" + QuotedText(row.path) + ")");
      EXPECT_TRUE(dialog.cmdOk.Enabled());
      EXPECT_EQ(dialog.cmdEmail.Enabled(), row.path.starts_with("D:\\Mes")) << "names differ in case only";
      start = row.startOfNext;
    }
    EXPECT_EQ(scene.Writes(), "") << "the folder is written by OK alone";
    EXPECT_EQ(scene.stage.files.List().size(), 1U) << "no file was moved or copied";
  });
}

TEST(LogLocation, CancelledChangesNothingAndABrokenBrowserIsNamed) {
  Scene scene;
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    scene.stage.calls.Clear();
    user.Click(dialog.cmdLocation);
    EXPECT_EQ(scene.stage.calls.Lines().size(), 1U);
    EXPECT_EQ(dialog.txtLogPath.Text(), LogPath);
    EXPECT_FALSE(dialog.cmdOk.Enabled());
    scene.browse.kind = BrowseAnswer::Kind::CannotBeCreated;
    user.Click(dialog.cmdLocation);
    const std::string seen = scene.TakeSeen();
    EXPECT_NE(
        seen.find("Error Number: 5|nDescription: Could not create browse dialog in cmdLocation_Click|n"),
        std::string::npos)
        << seen;
    EXPECT_NE(seen.find("frmAdvanced.cmdLocation_Click"), std::string::npos) << seen;
    scene.stage.calls.PlanFault("Shell.BrowseForFolder", 1, Error(0, "", ""));
    user.Click(dialog.cmdLocation);
    EXPECT_NE(scene.TakeSeen().find("Could not create browse dialog"), std::string::npos)
        << "an error without a number is shown, too";
    EXPECT_FALSE(dialog.cmdOk.Enabled());
  });
}

// --- the report by mail

const char* const Question =
    "MSG[none | OK, Cancel | \"Send Error Report to Tolvane Solutions\"] \"This feature will send an email";
const std::string Sent =
    "MSG[information | OK | \"Vexa\"] \"Your error log has been sent to Tolvane Solutions support staff.  If "
    "you have not done so already, please contact them at support@tolvane.example or by phone to further "
    "detail "
    "the problem you are having.\" -> ok\n";

TEST(EmailLog, SendsACopyAndCleansUp) {
  Scratch scratch;
  Scene scene(1033, scratch.Profile());
  MachineState& machine = scene.stage.workbench.profile.machine;
  machine.outlookUser = "Ren\u00e9e \u017bak";
  machine.profileName = "Bureau";
  machine.userName = "rzak";
  machine.computerName = "PC 7";
  scene.stage.files.Write(LogPath, "the log");
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    EXPECT_TRUE(dialog.cmdEmail.Enabled());
    scene.answers = {MessageAnswer::Cancel};
    scene.stage.calls.Clear();
    user.Click(dialog.cmdEmail);
    EXPECT_EQ(scene.stage.calls.Lines().size(), 2U) << "the file test and the question";
    EXPECT_TRUE(scene.TakeSeen().starts_with(Question));

    scene.stage.calls.Clear();
    user.Click(dialog.cmdEmail);
    const std::string seen = scene.TakeSeen();
    EXPECT_TRUE(seen.starts_with(Question)) << seen;
    EXPECT_TRUE(seen.ends_with("-> ok\n" + Sent)) << seen;
    std::vector<std::string> calls = scene.stage.calls.Lines();
    std::erase_if(calls, [](const std::string& line) { return line.starts_with("MSG["); });
    const std::string temporary = "\"C:\\ProgramData\\Tolvane\\Vexa\\VEXAERRORS.MDB.VexaRenamed\"";
    EXPECT_EQ(calls,
              (std::vector<std::string>{
                  "Files.Exists(" + QuotedText(LogPath) + ")",
                  "  frmAdvanced disabled, normal pointer",
                  "  frmAdvanced disabled, wait pointer",
                  "Files.Copy(" + QuotedText(LogPath) + ", " + temporary + ")",
                  "App.Session",
                  "Sess.Application",
                  "Outlook.CreateItem(0)",
                  "Sess.CurrentUser",
                  "CurrentUser.Name",
                  "Sess.CurrentProfileName",
                  "Sys.UserName",
                  "Sys.ComputerName",
                  "Mail.Body = \"///--#VEXA3_ERROR_LOG#--///|n|nThis is an error log from user: Ren\u00e9e "
                  "\u017bak|nOn profile: Bureau|nLogged in as: rzak|nOn machine: PC 7|nFilename: " +
                      std::string(LogPath) + "|n|n\"",
                  "App.Utilities",
                  "Util.SetUserProperty(item, \"Vexa Tag\", \"Never Process\", 1, True)",
                  "Mail.Recipients.Add(\"support@tolvane.example\")",
                  "Mail.Subject = \"Vexa3 Error Log\"",
                  "Mail.Attachments.Add(" + temporary + ")",
                  "Mail.Send()",
                  "Files.Remove(" + temporary + ")",
                  "Sys.ProcessMessages()",
                  "  frmAdvanced disabled, normal pointer",
                  "  frmAdvanced enabled, normal pointer"}));
    EXPECT_FALSE(dialog.cmdOk.Enabled()) << "sending is no change";
  });
  EXPECT_EQ(scene.stage.files.List(), std::vector<std::string>{LogPath});
  ASSERT_EQ(scene.stage.workbench.sent.size(), 1U);
  const SentMail& mail = scene.stage.workbench.sent.front();
  ASSERT_EQ(mail.attachments.size(), 1U);
  EXPECT_EQ(mail.attachments.front().name, "VEXAERRORS.MDB.VexaRenamed");
  EXPECT_EQ(mail.attachments.front().content, "the log");
  EXPECT_TRUE(fs::exists(scratch.Profile() + ".outbox/0001.eml"));
}

TEST(EmailLog, SaysThatTheFileHasGone) {
  Scratch scratch;
  Scene scene(1033, scratch.Profile());
  scene.stage.files.Write(LogPath, "the log");
  InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
    scene.stage.files.Remove(LogPath);
    user.Click(dialog.cmdEmail);
    EXPECT_EQ(scene.TakeSeen(), "MSG[information | OK | \"Vexa\"] \"The error log file does not exist: " +
                                    std::string(LogPath) + "\" -> ok\n");
    EXPECT_TRUE(dialog.Enabled());
  });
  EXPECT_TRUE(scene.stage.workbench.sent.empty());
}

TEST(EmailLog, EveryFailureIsToldOnceAndLeavesNothingBehind) {
  const auto prepare = [](Scene& scene) {
    scene.stage.files.Write(LogPath, "the log");
    scene.Open();
  };
  const auto send = [](Scene& scene, const std::function<void(frmAdvanced&)>& check) {
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      scene.stage.calls.Clear();
      user.Click(dialog.cmdEmail);
      check(dialog);
    });
  };
  // Before the copy, with the copy made, while the mail is put together, and after it was sent.
  for (const char* const member :
       {"Files.Exists", "Files.Copy", "CurrentUser.Name", "Mail.Send", "Files.Remove"}) {
    SCOPED_TRACE(member);
    Scratch scratch;
    Scene scene(1033, scratch.Profile());
    prepare(scene);
    bool due = false;
    InAdvanced(scene, [&](frmAdvanced& dialog, UserActions& user) {
      scene.stage.calls.PlanFault(member, 1, Error(4711, "planned", "Outside"));
      user.Click(dialog.cmdEmail);
      due = scene.stage.calls.FaultsPlanned() == 0;
      EXPECT_TRUE(dialog.Enabled());
      EXPECT_EQ(dialog.MousePointer(), Form::Pointer::Default);
      EXPECT_FALSE(dialog.cmdOk.Enabled());
      EXPECT_TRUE(dialog.cmdEmail.Enabled());
    });
    EXPECT_TRUE(due);
    const std::string seen = scene.TakeSeen();
    const bool sent = !scene.stage.workbench.sent.empty();
    const std::string notSent =
        "MSG[critical | OK | \"Vexa\"] \"The error log could not be sent.  The following error occurred "
        "while "
        "trying:|nplanned\" -> ok\n";
    const bool building = seen.starts_with(Question) && !sent;
    EXPECT_EQ(seen.ends_with(notSent), building) << seen;
    EXPECT_EQ(seen.find("frmAdvanced.cmdEmail_Click") == std::string::npos, building) << seen;
    EXPECT_EQ(seen.find(Sent), std::string::npos) << "no success is claimed after a failure";
    std::string log;
    std::ifstream file(scene.stage.files.PlaceOf(LogPath));
    for (std::string line; std::getline(file, line);) log = line;
    EXPECT_NE(log.find("\"number\":4711"), std::string::npos) << log;
    EXPECT_NE(log.find("\"frmAdvanced.cmdEmail_Click\"]"), std::string::npos) << log;
    EXPECT_EQ(log.find("frmAdvanced.Done MsgBox") != std::string::npos, building || sent) << log;
    EXPECT_EQ(log.find("frmAdvanced.Addin called") != std::string::npos, sent) << log;
    EXPECT_EQ(scene.stage.files.List(), std::vector<std::string>{LogPath}) << "no temporary file is left";
    // The same again works.
    scene.stage.workbench.sent.clear();
    send(scene, [](frmAdvanced&) {});
    EXPECT_TRUE(scene.TakeSeen().ends_with(Sent));
    EXPECT_EQ(scene.stage.workbench.sent.size(), 1U);
  }
}

// --- about box and notice

TEST(About, StartsTheSystemInformationToolOrSaysThatItCannot) {
  Scene scene;
  scene.Open();
  for (const int32_t code : {33, 2}) {
    scene.shellCode = code;
    scene.stage.calls.Clear();
    scene.InNextDialog([&](Dialog& dialog) {
      auto& about = dynamic_cast<frmAbout&>(dialog);
      scene.Click(about, about.cmdSysInfo);
      EXPECT_TRUE(about.IsShowing());
    });
    scene.Click(scene.Page(), scene.Page().cmdAbout);
    EXPECT_NE(std::ranges::find(scene.stage.calls.Lines(), "Shell.Open(\"msinfo32.exe\")"),
              scene.stage.calls.Lines().end());
    EXPECT_EQ(scene.TakeSeen(), code >= 33
                                    ? ""
                                    : "MSG[critical | OK | \"Vexa\"] \"The system information tool could "
                                      "not be started.\" -> ok\n");
  }
}

TEST(Notice, AnswersWithTheButtonThatWasPressed) {
  for (size_t count = 1; count <= 3; ++count) {
    const std::vector<std::string> all{"Yes", "No", "Later"};
    const std::vector<std::string> buttons(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count));
    const auto answerOf = [&](const std::function<void(frmNotice&, UserActions&)>& act) {
      frmNotice notice;
      notice.Initialize("Title", "Keep [b]everything[b]?", buttons);
      EXPECT_TRUE(notice.TopMost());
      EXPECT_EQ(notice.Caption(), "Title");
      notice.Show();
      UserActions user(notice);
      act(notice, user);
      EXPECT_FALSE(notice.IsShowing());
      return notice.Answer();
    };
    const auto last = static_cast<int32_t>(count);
    EXPECT_EQ(answerOf([](frmNotice&, UserActions& user) { user.Enter(); }), 1);
    EXPECT_EQ(answerOf([](frmNotice&, UserActions& user) { user.Escape(); }), last);
    EXPECT_EQ(answerOf([](frmNotice& notice, UserActions&) { notice.CloseWindow(); }), last);
    EXPECT_EQ(answerOf([&](frmNotice& notice, UserActions& user) {
                EXPECT_EQ(user.Click(notice.cmdThird), count == 3 ? Outcome::Done : Outcome::Hidden);
                if (count < 3) user.Click(notice.cmdFirst);
              }),
              count == 3 ? 3 : 1);
  }
  for (const size_t count : {size_t{0}, size_t{4}}) {
    frmNotice notice;
    EXPECT_THROW(notice.Initialize("t", "t", std::vector<std::string>(count, "b")), Error) << count;
  }
}

}  // namespace
}  // namespace vexa::workbench
