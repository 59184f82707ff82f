// Choosing a folder with Outlook's own picker, again and again until a fitting one is picked or the user
// gives up; and finding a chosen folder again by its two ids.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>

#include "dialogs/Screen.h"
#include "display/CheckBox.h"
#include "display/TextBox.h"

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
std::optional<ChosenFolder> ChooseFolder(const AddinAppRef& addin, const Services& services,
                                         const FolderChoice& choice);

/// The folder with these ids; null for an empty entry id, which means that no folder is set. An error when
/// it cannot be found.
FolderRef ResolveFolder(const AddinAppRef& addin, const std::string& entryID, const std::string& storeID);

/// The same for a stored folder that may be gone by now: null when the session does not find it. Any other
/// failure is an error.
FolderRef FindStoredFolder(const AddinAppRef& addin, const std::string& entryID, const std::string& storeID);

/// The check box of a folder has changed. Ticked without a folder it has `choose` ask for one at once, and it
/// does not stay ticked without one, however the choice ends. True when there was a folder all along.
template <typename Choose>
bool FolderBoxChanged(CheckBox& box, const TextBox& path, Choose&& choose) {
  if (!path.Text().empty()) return true;
  if (!box.Checked()) return false;
  try {
    choose();
  } catch (...) {
    box.SetChecked(false);
    throw;
  }
  if (path.Text().empty()) box.SetChecked(false);
  return false;
}

}  // namespace vexa
