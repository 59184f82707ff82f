#include "dialogs/FolderChoice.h"

#include <algorithm>

namespace vexa {

std::optional<ChosenFolder> ChooseFolder(const AddinAppRef& addin, const Services& services,
                                         const FolderChoice& choice) {
  const AddinAppRef own = Share(addin);  // the dialog may be closed while Outlook's picker is open
  const auto refuse = [&](StringId message) {
    services.Tell(message, MessageIcon::Critical, StringId::InvalidFolder);
  };
  const NameSpaceRef session = own->Session();
  for (;;) {
    const FolderRef folder = Require(session).PickFolder();
    if (folder == nullptr) return std::nullopt;
    if (std::ranges::find(choice.itemTypes, folder->DefaultItemType()) == choice.itemTypes.end()) {
      refuse(choice.wrongTypeMessage);
      continue;
    }
    ChosenFolder chosen{folder->EntryID(), folder->StoreID(), {}};
    if (choice.isSetUp && choice.isSetUp(chosen.entryID, chosen.storeID)) {
      refuse(StringId::FolderAlreadySetUp);
      continue;
    }
    chosen.path = Require(own->Utilities()).GetFolderPath(folder);
    return chosen;
  }
}

FolderRef ResolveFolder(const AddinAppRef& addin, const std::string& entryID, const std::string& storeID) {
  if (entryID.empty()) return nullptr;
  return Require(Share(addin)->Session()).GetFolderFromID(entryID, storeID);
}

FolderRef FindStoredFolder(const AddinAppRef& addin, const std::string& entryID, const std::string& storeID) {
  if (entryID.empty()) return nullptr;
  const NameSpaceRef session = Share(addin)->Session();
  Require(session);
  try {
    return session->GetFolderFromID(entryID, storeID);
  } catch (const Error& error) {
    if (error.Number == static_cast<int32_t>(ErrorNumber::OutOfMemory)) throw;
    return nullptr;
  }
}

}  // namespace vexa
