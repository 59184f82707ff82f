// The stand-in for Outlook and the add-in: the objects behind the library's contracts, made over one
// profile. Every call on them is traced and may be made to fail. Whoever drives the workbench answers what
// the system asks its user (UserAnswers).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "contracts/Addin.h"
#include "contracts/Desktop.h"
#include "workbench/CallLog.h"
#include "workbench/Mail.h"
#include "workbench/Profile.h"
#include "workbench/WindowsFiles.h"

namespace vexa::workbench {

/// What the browse-for-folder dialog came to.
struct BrowseAnswer {
  enum class Kind { Chosen, Cancelled, CannotBeCreated };
  Kind kind = Kind::Cancelled;
  std::string folder;
};

/// The user's part in the system's own dialogs.
class UserAnswers {
 public:
  UserAnswers() = default;
  UserAnswers(const UserAnswers&) = delete;
  UserAnswers& operator=(const UserAnswers&) = delete;
  virtual ~UserAnswers() = default;

  /// Outlook's folder picker; nothing when it is cancelled.
  virtual std::optional<FolderIndex> PickFolder() = 0;
  /// `asked` is the line that describes the box, up to its answer.
  virtual MessageAnswer AnswerMessage(const std::string& asked, MessageButtons buttons) = 0;
  virtual BrowseAnswer BrowseForFolder(const std::string& prompt, const std::string& startFolder) = 0;
  /// The shell's return code for opening a document.
  virtual int32_t OpenDocument(const std::string& path) = 0;
  /// Something happened that a user would see: printed as it happens.
  virtual void Seen(const std::string& line) = 0;
  /// The same, of something that did not succeed.
  virtual void SeenFailing(const std::string& line) { Seen(line); }
};

class Workbench {
 public:
  /// `savePath` is the profile's file, where Apply saves it; empty: nowhere.
  Workbench(Profile profile, std::string savePath, CallLog& calls, UserAnswers& user);
  Workbench(const Workbench&) = delete;
  Workbench& operator=(const Workbench&) = delete;
  ~Workbench();

  Profile profile;
  WindowsFiles files;
  /// What was sent, the last one last; every mail also lies as a file in the profile's outbox.
  std::vector<SentMail> sent;

  AddinAppRef Addin() const { return addin_; }
  Desktop& TheDesktop() const { return *desktop_; }
  AddinObjectFactory& Objects() const;
  std::shared_ptr<PropertyPageSite> Site() const { return site_; }

  /// The values of the working copy made last; null when it is gone.
  SettingsData* WorkingCopy() const;

  // --- used by the objects of the workbench

  CallLog& Calls() const { return calls_; }
  UserAnswers& User() const { return user_; }
  /// The add-in takes over a working copy and saves the profile.
  void TakeOver(RegSettings& workingCopy);
  /// Sends a mail: writes it into the outbox, a folder beside the profile.
  void Send(const SentMail& mail);
  FolderRef FolderObject(FolderIndex folder);
  /// NoFolder for a folder object that is none of the workbench's.
  static FolderIndex IndexOf(const Folder& folder);
  /// The folders in `parent`; NoFolder: the stores.
  std::shared_ptr<Folders> FoldersObject(FolderIndex parent);

 private:
  class ObjectFactory;

  std::string savePath_;
  CallLog& calls_;
  UserAnswers& user_;
  AddinAppRef addin_;
  std::shared_ptr<PropertyPageSite> site_;
  std::unique_ptr<Desktop> desktop_;
  std::unique_ptr<ObjectFactory> objects_;
};

/// A message box as traces and transcripts show it, up to its answer.
std::string MessageLine(const std::string& text, MessageIcon icon, MessageButtons buttons,
                        const std::string& title);

/// The word for an answer, as scripts write it: "ok", "cancel", "yes", "no".
std::string_view AnswerWord(MessageAnswer answer);

// Makers of the parts of a workbench, one source file each.
AddinAppRef MakeAddin(Workbench& workbench);
NameSpaceRef MakeSession(Workbench& workbench);
std::shared_ptr<OutlookApplication> MakeOutlook(Workbench& workbench);
/// A property of a mail item that is being written; other items have none here.
void SetMailProperty(Object& item, const std::string& name, const std::string& value);
std::unique_ptr<Desktop> MakeDesktop(Workbench& workbench);
std::shared_ptr<MonitoredFolder> MakeMonitoredFolder(Workbench& workbench);

}  // namespace vexa::workbench
