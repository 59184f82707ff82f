// Choosing a folder with Outlook's own picker, again and again until a fitting one is picked or the user
// gives up; and finding a chosen folder again by its two ids.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>

#include "dialogs/Screen.h"

namespace vexa {

struct ChosenFolder {
  std::string entryID;
  std::string storeID;
  std::string path;  // as shown to the user
};

struct FolderChoice {
  /// What a fitting folder holds by default, and the message for one that does not fit.
  std::initializer_list<ItemType> itemTypes;
  StringId wrongTypeMessage;
  /// Asked about a folder of the right type; true refuses it as set up already.
  std::function<bool(const std::string& entryID, const std::string& storeID)> isSetUp;
};

/// Nothing when the user cancels the picker.
std::optional<ChosenFolder> ChooseFolder(AddinApp& addin, const Services& services,
                                         const FolderChoice& choice);

/// The folder with these ids; null for an empty entry id, which means that no folder is set. An error when
/// it cannot be found.
FolderRef ResolveFolder(AddinApp& addin, const std::string& entryID, const std::string& storeID);

}  // namespace vexa
