// The buttons of the error log on the advanced settings, and what they work with.
#include "dialogs/ErrorLogTools.h"

#include <optional>

#include "core/Paths.h"
#include "dialogs/frmAdvanced.h"

namespace vexa {
namespace {

/// The form is disabled under the wait pointer for the time of a scope.
class BusyForm {
 public:
  explicit BusyForm(Form& form) : form_(form) {
    form_.SetEnabled(false);
    form_.SetMousePointer(Form::Pointer::Wait);
  }
  BusyForm(const BusyForm&) = delete;
  BusyForm& operator=(const BusyForm&) = delete;
  ~BusyForm() {
    form_.SetMousePointer(Form::Pointer::Default);
    form_.SetEnabled(true);
  }

 private:
  Form& form_;
};

/// The support's programs look for the marker and read the lines behind it: they are in no user's language.
std::string ReportBody(NameSpace& session, Desktop& desktop, const std::string& logPath) {
  constexpr std::string_view lineBreak = "\r\n";
  std::string body = "///--#VEXA3_ERROR_LOG#--///";
  body.append(lineBreak).append(lineBreak);
  body.append("This is an error log from user: ").append(Require(session.CurrentUser()).Name());
  body.append(lineBreak);
  body.append("On profile: ").append(session.CurrentProfileName()).append(lineBreak);
  body.append("Logged in as: ").append(desktop.UserName()).append(lineBreak);
  body.append("On machine: ").append(desktop.ComputerName()).append(lineBreak);
  body.append("Filename: ").append(logPath).append(lineBreak).append(lineBreak);
  return body;
}

}  // namespace

TemporaryFile::~TemporaryFile() {
  if (!removed_) IgnoreErrors([&] { desktop_.RemoveFile(path_); });
}

void TemporaryFile::Remove() {
  desktop_.RemoveFile(path_);
  removed_ = true;
}

void SendErrorLog(const AddinAppRef& addin, const Services& services, const std::string& logPath,
                  const TemporaryFile& copy, StageTrail& stages) {
  constexpr int32_t textProperty = 1;
  const AddinAppRef own = Share(addin);
  stages.Reach("Close");
  services.desktop.CopyFileTo(logPath, copy.Path());
  stages.Reach("M Closed");
  const NameSpaceRef session = own->Session();
  const auto mail = Require(Require(session).Application()).CreateItem(ItemType::Mail);
  Require(mail).LetBody(ReportBody(*session, services.desktop, logPath));
  // The add-in must not log the report as one of the user's own messages.
  Require(own->Utilities()).SetUserProperty(mail, "Vexa Tag", "Never Process", textProperty, true);
  mail->AddRecipient(services.supportAddress);
  mail->LetSubject("Vexa3 Error Log");
  mail->AddAttachment(copy.Path());
  mail->Send();
  stages.Reach("Addin called");
}

void frmAdvanced::ChooseLogFolder() {
  std::optional<std::string> folder;
  try {
    folder = services_.desktop.BrowseForFolder(services_.resources.LoadString(StringId::SelectLogLocation),
                                               JoinPath(FolderPart(txtLogPath.Text()), ""));
  } catch (...) {
    Error error = CurrentError();
    if (error.Number == 0) error.Number = static_cast<int32_t>(ErrorNumber::InternalError);
    error.Description = "Could not create browse dialog in cmdLocation_Click";
    throw error;
  }
  if (folder) {
    txtLogPath.SetText(JoinPath(*folder, ErrorLogName));
    EnableOk();
  }
  cmdEmail.SetEnabled(services_.desktop.FileExists(txtLogPath.Text()));
}

void frmAdvanced::EmailLog() {
  StageTrail stages(Name());
  stages.Run([&] {
    const std::string path = txtLogPath.Text();
    if (!services_.desktop.FileExists(path)) {
      services_.desktop.Show(services_.resources.LoadString(StringId::LogDoesNotExist) + path,
                             MessageIcon::Information, MessageButtons::Ok,
                             services_.resources.LoadString(StringId::ShortProductName));
      return;
    }
    stages.Reach("Showing MsgBox");
    const MessageAnswer answer = services_.desktop.Show(
        services_.resources.LoadString(StringId::SendLogPrivacy), MessageIcon::None, MessageButtons::OkCancel,
        services_.resources.LoadString(StringId::SendLogTitle));
    stages.Reach("Done MsgBox");
    if (answer != MessageAnswer::Ok || !SendLog(path, stages)) return;
    services_.desktop.Show(services_.resources.LoadString(StringId::LogSent, {services_.supportAddress}),
                           MessageIcon::Information, MessageButtons::Ok,
                           services_.resources.LoadString(StringId::ShortProductName));
    stages.Reach("Done cmdEmail");
  });
}

bool frmAdvanced::SendLog(const std::string& path, StageTrail& stages) {
  std::optional<CachedError> notSent;
  std::optional<CachedError> notTidied;
  const auto attempt = [&](std::optional<CachedError>& failure, const auto& body) {
    try {
      stages.Run(body);
    } catch (const Error& error) {
      failure.emplace().SetTo(error, Name(), "cmdEmail_Click");
    }
  };
  {
    const BusyForm busy(*this);
    TemporaryFile copy(services_.desktop, path + ".VexaRenamed");
    attempt(notSent, [&] { SendErrorLog(addin_, services_, path, copy, stages); });
    if (!notSent) {
      attempt(notTidied, [&] {
        copy.Remove();
        stages.Reach("Killed Tempfile");
        // While the dialog is still disabled: what was clicked in the meantime is dropped.
        services_.desktop.ProcessPendingMessages();
      });
    }
  }
  stages.Reach("Me Mousepointered");
  stages.Reach("Me Enabled");
  // The report has been sent, so this is no failure of it.
  if (notTidied) notTidied->Log(services_.errorLog);
  if (!notSent) return true;
  IgnoreErrors([&] {
    services_.desktop.Show(
        services_.resources.LoadString(StringId::LogNotSent) + "\r\n" + notSent->Description(),
        MessageIcon::Critical, MessageButtons::Ok, services_.resources.LoadString(StringId::ProductName));
  });
  notSent->Log(services_.errorLog);
  return false;
}

}  // namespace vexa
