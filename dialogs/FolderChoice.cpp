#include "dialogs/FolderChoice.h"

#include <algorithm>

namespace vexa {

std::optional<ChosenFolder> ChooseFolder(AddinApp& addin, const Services& services,
                                         const FolderChoice& choice) {
  const auto refuse = [&](StringId message) {
    services.desktop.Show(services.resources.LoadString(message), MessageIcon::Critical, MessageButtons::Ok,
                          services.resources.LoadString(StringId::InvalidFolder));
  };
  const NameSpaceRef session = addin.Session();
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
    chosen.path = Require(addin.Utilities()).GetFolderPath(folder);
    return chosen;
  }
}

FolderRef ResolveFolder(AddinApp& addin, const std::string& entryID, const std::string& storeID) {
  if (entryID.empty()) return nullptr;
  return Require(addin.Session()).GetFolderFromID(entryID, storeID);
}

}  // namespace vexa
