#include "dialogs/ErrorLogTools.h"

#include <string_view>
#include <vector>

#include "core/Paths.h"

namespace vexa {

/// The stages that an action has come through. An error that leaves Run carries them in its trail, before the
/// action's own entry, so that a report from the field tells how far it came.
class ErrorLogTools::StageTrail {
 public:
  explicit StageTrail(std::string_view module) : module_(module) {}
  void Reach(std::string_view stage) { stages_.push_back(stage); }

  template <typename Body>
  void Run(Body&& body) {
    try {
      body();
    } catch (...) {
      Error error = CurrentError();
      for (const std::string_view stage : stages_) error.AppendTrail(module_, stage);
      throw error;
    }
  }

 private:
  std::string_view module_;
  std::vector<std::string_view> stages_;
};

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

/// A copy that is removed in the end, whatever happens.
class TemporaryFile {
 public:
  TemporaryFile(Desktop& desktop, std::string path) : desktop_(desktop), path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!removed_) IgnoreErrors([&] { desktop_.RemoveFile(path_); });
  }

  const std::string& Path() const { return path_; }
  /// An error when it cannot be removed; the destructor then tries once more.
  void Remove() {
    desktop_.RemoveFile(path_);
    removed_ = true;
  }

 private:
  Desktop& desktop_;
  std::string path_;
  bool removed_ = false;
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

std::optional<std::string> ErrorLogTools::ChooseLocation(const std::string& logPath) {
  std::optional<std::string> folder;
  try {
    folder = services_.desktop.BrowseForFolder(services_.resources.LoadString(StringId::SelectLogLocation),
                                               JoinPath(FolderPart(logPath), ""));
  } catch (...) {
    Error error = CurrentError();
    if (error.Number == 0) error.Number = static_cast<int32_t>(ErrorNumber::InternalError);
    error.Description = "Could not create browse dialog in cmdLocation_Click";
    throw error;
  }
  return folder ? std::optional(JoinPath(*folder, ErrorLogName)) : std::nullopt;
}

void ErrorLogTools::Email(const AddinAppRef& addin, const std::string& logPath) {
  StageTrail stages(form_.Name());
  stages.Run([&] {
    if (!services_.desktop.FileExists(logPath)) {
      services_.Tell(services_.resources.LoadString(StringId::LogDoesNotExist) + logPath,
                     MessageIcon::Information);
      return;
    }
    stages.Reach("Showing MsgBox");
    const MessageAnswer answer = services_.Ask(StringId::SendLogPrivacy, MessageIcon::None,
                                               MessageButtons::OkCancel, StringId::SendLogTitle);
    stages.Reach("Done MsgBox");
    if (answer != MessageAnswer::Ok || !Send(addin, logPath, stages)) return;
    services_.Tell(services_.resources.LoadString(StringId::LogSent, {services_.supportAddress}),
                   MessageIcon::Information);
    stages.Reach("Done cmdEmail");
  });
}

void ErrorLogTools::SendCopy(const AddinAppRef& addin, const std::string& logPath,
                             const std::string& copyPath, StageTrail& stages) {
  constexpr int32_t textProperty = 1;
  const AddinAppRef own = Share(addin);
  stages.Reach("Close");
  services_.desktop.CopyFileTo(logPath, copyPath);
  stages.Reach("M Closed");
  const NameSpaceRef session = own->Session();
  const auto mail = Require(Require(session).Application()).CreateItem(ItemType::Mail);
  Require(mail).LetBody(ReportBody(*session, services_.desktop, logPath));
  // The add-in must not log the report as one of the user's own messages.
  Require(own->Utilities()).SetUserProperty(mail, "Vexa Tag", "Never Process", textProperty, true);
  mail->AddRecipient(services_.supportAddress);
  mail->LetSubject("Vexa3 Error Log");
  mail->AddAttachment(copyPath);
  mail->Send();
  stages.Reach("Addin called");
}

/// False when it could not be sent, which the user has been told.
bool ErrorLogTools::Send(const AddinAppRef& addin, const std::string& logPath, StageTrail& stages) {
  std::optional<CachedError> notSent;
  std::optional<CachedError> notTidied;
  const auto attempt = [&](std::optional<CachedError>& failure, const auto& body) {
    try {
      stages.Run(body);
    } catch (const Error& error) {
      failure.emplace().SetTo(error, form_.Name(), "cmdEmail_Click");
    }
  };
  {
    const BusyForm busy(form_);
    TemporaryFile copy(services_.desktop, logPath + ".VexaRenamed");
    attempt(notSent, [&] { SendCopy(addin, logPath, copy.Path(), stages); });
    if (!notSent) {
      attempt(notTidied, [&] {
        copy.Remove();
        stages.Reach("Killed Tempfile");
        // While the form is still disabled: what was clicked in the meantime is dropped.
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
    services_.Tell(services_.resources.LoadString(StringId::LogNotSent) + "\r\n" + notSent->Description(),
                   MessageIcon::Critical, StringId::ProductName);
  });
  notSent->Log(services_.errorLog);
  return false;
}

}  // namespace vexa
