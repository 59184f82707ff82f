#include "dialogs/ErrorLogTools.h"

namespace vexa {
namespace {

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

void SendErrorLog(AddinApp& addin, const Services& services, const std::string& logPath,
                  const TemporaryFile& copy, StageTrail& stages) {
  constexpr int32_t textProperty = 1;
  stages.Reach("Close");
  services.desktop.CopyFileTo(logPath, copy.Path());
  stages.Reach("M Closed");
  const NameSpaceRef session = addin.Session();
  const auto mail = Require(Require(session).Application()).CreateItem(ItemType::Mail);
  Require(mail).LetBody(ReportBody(*session, services.desktop, logPath));
  // The add-in must not log the report as one of the user's own messages.
  Require(addin.Utilities()).SetUserProperty(mail, "Vexa Tag", "Never Process", textProperty, true);
  mail->AddRecipient(services.supportAddress);
  mail->LetSubject("Vexa3 Error Log");
  mail->AddAttachment(copy.Path());
  mail->Send();
  stages.Reach("Addin called");
}

}  // namespace vexa
