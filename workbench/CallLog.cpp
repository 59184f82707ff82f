#include "workbench/CallLog.h"

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>

#include "contracts/RegSettings.h"

namespace vexa::workbench {

void CallLog::PlanFault(std::string_view member, int n, Fault fault) {
  faults_.push_back({std::string(member), n, std::move(fault)});
}

const Fault* CallLog::TakeFault(std::string_view member) {
  bool due = false;
  for (PlannedFault& planned : faults_) {
    if ((planned.member != AnyMember && planned.member != member) || --planned.remaining != 0) continue;
    due_ = planned.fault;
    due = true;
  }
  std::erase_if(faults_, [](const PlannedFault& planned) { return planned.remaining == 0; });
  return due ? &due_ : nullptr;
}

void CallLog::PlanInterruption(std::string_view member, int n, std::function<void()> interruption) {
  interruptions_.push_back({std::string(member), n, std::move(interruption)});
}

void CallLog::Interrupt(std::string_view member) {
  std::vector<PlannedInterruption> due;
  for (PlannedInterruption& planned : interruptions_) {
    if (planned.member != AnyMember && planned.member != member) continue;
    if (--planned.remaining == 0) due.push_back(planned);
  }
  std::erase_if(interruptions_, [](const PlannedInterruption& planned) { return planned.remaining == 0; });
  for (const PlannedInterruption& planned : due) planned.run();
}

void CallLog::Throw(const Fault& fault) {
  switch (fault.kind) {
    case Fault::Kind::Raised:
      throw Error(fault.error);
    case Fault::Kind::Nothing:
      return;
    case Fault::Kind::WrongType:
      throw MakeError(ErrorNumber::TypeMismatch);
    case Fault::Kind::OutOfMemory:
      throw std::bad_alloc();
    case Fault::Kind::Exception:
      throw std::runtime_error(fault.error.Description);
    case Fault::Kind::Foreign:
      throw 4711;
  }
}

std::string CallLog::FaultMark(const Fault& fault) {
  switch (fault.kind) {
    case Fault::Kind::Raised:
      break;
    case Fault::Kind::Nothing:
      return " !! no object";
    case Fault::Kind::WrongType:
      return " !! wrong type";
    case Fault::Kind::OutOfMemory:
      return " !! out of memory";
    case Fault::Kind::Exception:
    case Fault::Kind::Foreign:
      return " !! exception";
  }
  return " !! " + std::to_string(fault.error.Number) + " " + QuotedText(fault.error.Description);
}

bool CallLog::AnswersWithObject(std::string_view member) {
  static constexpr std::array<std::string_view, 17> objects{
      "New RegSettings",    "New MonitoredFolder",  "App.Utilities",
      "App.Scanner",        "App.Session",          "Util.App",
      "Sess.Application",   "Sess.CurrentUser",     "Sess.Folders",
      "Folders.Item",       "Sess.GetFolderFromID", "Sess.GetDefaultFolder",
      "Sess.PickFolder",    "Folder.Folders",       "Folder.Parent",
      "Outlook.CreateItem", "App.FolderSetContext"};
  if (std::ranges::find(objects, member) != objects.end()) return true;
  return std::ranges::any_of(RegSettingsMembers, [&](const RegSettingsMember& known) {
    return known.kind == MemberKind::Collection && member.starts_with("RS.") &&
           member.substr(3) == known.name;
  });
}

const std::vector<std::string>& CallLog::KnownMembers() {
  static const std::vector<std::string> members = [] {
    std::vector<std::string> names{"New RegSettings",
                                   "New MonitoredFolder",
                                   "RS.RestoreHiddenDialogs",
                                   "RS.Load",
                                   "RS.CanWrite",
                                   "RS.FindFolderSet",
                                   "App.Utilities",
                                   "App.Scanner",
                                   "App.Session",
                                   "App.FolderSetContext",
                                   "App.SetOptionsPageOpen",
                                   "App.ApplySettings",
                                   "Util.BypassBlocked",
                                   "Util.DelayAvailable",
                                   "Util.GetFolderPath",
                                   "Util.IsPublicFolder",
                                   "Util.App",
                                   "Util.App.Path",
                                   "Util.SetUserProperty",
                                   "Util.AboutInfo",
                                   "Scan.StartSearch",
                                   "Scan.IsScanning",
                                   "MF.EntryID",
                                   "MF.EntryID=",
                                   "MF.StoreID",
                                   "MF.StoreID=",
                                   "MF.ItemTypes",
                                   "MF.ItemTypes=",
                                   "MF.SetMailDefaults",
                                   "MF.Flag",
                                   "MF.Flag=",
                                   "MF.MaskFromResId",
                                   "MF.ResIdFromMask",
                                   "MF.MaskFromOlItemType",
                                   "MF.Excluded",
                                   "Sess.Application",
                                   "Sess.CurrentUser",
                                   "Sess.CurrentProfileName",
                                   "CurrentUser.Name",
                                   "Outlook.CreateItem",
                                   "Mail.Body=",
                                   "Mail.Subject=",
                                   "Mail.Recipients.Add",
                                   "Mail.Attachments.Add",
                                   "Mail.Send",
                                   "Sess.Folders",
                                   "Sess.GetFolderFromID",
                                   "Sess.GetDefaultFolder",
                                   "Sess.PickFolder",
                                   "Folder.Name",
                                   "Folder.EntryID",
                                   "Folder.StoreID",
                                   "Folder.DefaultItemType",
                                   "Folder.Folders",
                                   "Folder.Parent",
                                   "Folders.Count",
                                   "Folders.Item",
                                   "Site.OnStatusChange",
                                   "View.Refresh",
                                   "Shell.Open",
                                   "Shell.BrowseForFolder",
                                   "Files.Exists",
                                   "Files.Copy",
                                   "Files.Remove",
                                   "Sys.UserName",
                                   "Sys.ComputerName",
                                   "Sys.ProcessMessages",
                                   "Reg.Read",
                                   "Reg.Write",
                                   "Reg.CanWrite"};
    for (const RegSettingsMember& member : RegSettingsMembers) {
      const std::string name = "RS." + std::string(member.name);
      switch (member.kind) {
        case MemberKind::Property:
          names.push_back(name);
          names.push_back(name + "=");
          break;
        case MemberKind::Read:
        case MemberKind::ReadOnly:
          names.push_back(name);
          break;
        case MemberKind::Collection:
          for (const char* part : {"", "=", ":=", ".Count", ".Item", ".Add", ".Remove"})
            names.push_back(name + part);
          break;
        default:
          break;  // methods stand above by name, unused places are never called
      }
    }
    return names;
  }();
  return members;
}

std::string OneLine(std::string_view text) {
  std::string line;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) == "\r\n") ++i;
    const bool breaks = text[i] == '\n' || text[i] == '\r';
    line += breaks ? std::string_view("|n") : text.substr(i, 1);
  }
  return line;
}

std::string QuotedText(std::string_view text) {
  std::string quoted = "\"";
  for (const char letter : OneLine(text)) quoted.append(letter == '"' ? 2 : 1, letter);
  return quoted += '"';
}

std::string ValueText(bool value) { return value ? "True" : "False"; }
std::string ValueText(int32_t value) { return std::to_string(value); }
std::string ValueText(const std::string& value) { return QuotedText(value); }

}  // namespace vexa::workbench
