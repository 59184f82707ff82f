// The monitored-folder selection: how folders and item types are named by keys, and the selection itself, as
// it is stored in the settings and as it is worked on. The folder picker owns one while it is open; its tree
// and the selection share their keys, so that one finds what the other has.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "contracts/Addin.h"
#include "core/KeyedCollection.h"

namespace vexa {

// Parts of keys; stored nowhere, but known to the add-in. The braces of the last one are as they are.
inline constexpr std::string_view KeySplitter = "///--{VEXA_UNIQUE_SPLITTER}--///";
inline constexpr std::string_view DefaultFolderPrefix = "@///--{VEXA_DEFAULT_FOLDER_PREFIX}--///";
inline constexpr std::string_view ChildPlaceholder = "///--{VEXA_CHILD_PLACEHOLDER}--///";
inline constexpr std::string_view DefaultFoldersRoot = "///--{VEXA_DEFAULT_FOLDERS--///";

/// The bit among a record's item types that makes it the default folder of whoever runs Outlook: its entry id
/// is then the folder's number in decimal digits, and it has no store id.
inline constexpr int32_t DefaultFolderFlag = 0x40000000;

/// The two ids of a folder of a store.
struct FolderIds {
  std::string entryID;
  std::string storeID;
};

std::string FolderKey(std::string_view entryID, std::string_view storeID);
/// The ids that the key of a folder is made of; error 9 for a key without both.
FolderIds IdsOfKey(std::string_view key);
/// A default folder goes by the number of its text (116 to 125).
std::string DefaultFolderKey(int32_t rsIndex);
bool IsDefaultFolderKey(std::string_view key);
int32_t DefaultFolderOfKey(std::string_view key);
/// Item types and images go by the number of their text (115 to 150). Never digits alone: a key must not be
/// taken for a position.
std::string NumberKey(int32_t resId);
int32_t NumberOfKey(std::string_view key);

/// From the number of a default folder's text to Outlook's number; 0 for the pseudo-store of the default
/// folders, -1 for any other.
int32_t RSIndexToDefFolderIndex(int32_t rsIndex);
/// The inverse for the ten folders, but not for 0; -1 for any other.
int32_t DefFolderIndexToRSIndex(int32_t index);

using MonitoredFolderRef = std::shared_ptr<MonitoredFolder>;

/// Records by the keys of their folders, in the order in which they were added.
class FolderSelection {
 public:
  /// Adds the stored entries. They end where the shortest of the stored count and the three lists does: the
  /// count may be too large, because it includes excluded records. Error 457 when two entries have one key.
  void Load(RegSettings& settings, AddinObjectFactory& objects);
  /// Replaces the three lists and fills them. A failure on the way leaves them partly filled.
  void Save(RegSettings& settings) const;

  /// Adds an empty record; error 457 when the key is taken, 91 when the add-in makes none.
  MonitoredFolderRef Add(const std::string& key, AddinObjectFactory& objects);
  /// Null when there is none.
  MonitoredFolderRef Find(std::string_view key) const;
  void Remove(std::string_view key) { records_.Remove(key); }
  void Clear() { records_.Clear(); }
  size_t Size() const { return records_.Size(); }
  /// Calls visit(key) for each, in order.
  template <typename Visitor>
  void ForEachKey(Visitor&& visit) const {
    records_.ForEach([&](const std::string& key, const MonitoredFolderRef&) { visit(key); });
  }

 private:
  KeyedCollection<MonitoredFolderRef> records_;
};

}  // namespace vexa
