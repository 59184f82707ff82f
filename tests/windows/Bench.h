// A workbench over a small world, with its objects as COM objects: what tests hand to the module as the
// add-in. Everything exported must be released before it goes.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "tests/windows/TestModule.h"
#include "workbench/Workbench.h"
#include "workbench/com/Export.h"

namespace vexa::workbench {

/// A mailbox with two folders and a store of public folders with one.
inline Profile SmallProfile() {
  Profile profile;
  World& world = profile.world;
  const uint32_t mailbox = world.AddStore("AA01", StoreKind::Mailbox);
  const uint32_t shared = world.AddStore("BB02", StoreKind::PublicFolders);
  const FolderIndex root = world.AddFolder(mailbox, NoFolder, "Mailbox", "M1", ItemType::Mail);
  world.defaultFolders[6] = world.AddFolder(mailbox, root, "Inbox", "M2", ItemType::Mail);
  world.AddFolder(mailbox, root, "Contacts", "M3", ItemType::Contact);
  const FolderIndex top = world.AddFolder(shared, NoFolder, "Public Folders", "P1", ItemType::Mail);
  world.AddFolder(shared, top, "Kunden \xC3\x84\xC3\x96", "P2", ItemType::Contact);
  profile.addin.path = "C:\\Program Files\\Vexa";
  profile.addin.aboutInfo = "about";
  profile.addin.delayAvailable = true;
  profile.settings.EnterpriseSettingsPath = "HKEY_LOCAL_MACHINE\\Software";
  profile.settings.EnterpriseSettingsPresent = true;
  return profile;
}

class FixedAnswers final : public UserAnswers {
 public:
  std::optional<FolderIndex> PickFolder() override { return std::exchange(picked, std::nullopt); }
  MessageAnswer AnswerMessage(const std::string&, MessageButtons) override { return MessageAnswer::Ok; }
  BrowseAnswer BrowseForFolder(const std::string&, const std::string&) override { return {}; }
  int32_t OpenDocument(const std::string&) override { return 0; }
  void Seen(const std::string&) override {}

  std::optional<FolderIndex> picked;  // the next time; then the picker is cancelled
};

struct Bench {
  explicit Bench(Profile profile = SmallProfile()) : workbench(std::move(profile), "", calls, user) {}

  CallLog calls;
  FixedAnswers user;
  Workbench workbench;
  ExportsRef exports = Exports::Make(workbench, windows::TestedModulePath());
};

/// The same with one folder set, on the contacts of the mailbox.
inline Profile ProfileWithFolderSet() {
  Profile profile = SmallProfile();
  SettingsData& settings = profile.settings;
  settings.FolderSetCount = 1;
  settings.ContactEntryIDs = {"M3"};
  settings.ContactStoreIDs = {"AA01"};
  settings.JournEntryIDs = {"M2"};
  settings.JournStoreIDs = {"AA01"};
  for (auto* const list :
       {&settings.EmailEntryIDs, &settings.EmailStoreIDs, &settings.SharedCalEntryIDs,
        &settings.SharedCalStoreIDs, &settings.SharedJournEntryIDs, &settings.SharedJournStoreIDs,
        &settings.SharedTaskEntryIDs, &settings.SharedTaskStoreIDs}) {
    *list = {""};
  }
  settings.FolderSetFlags = {0};
  return profile;
}

}  // namespace vexa::workbench
