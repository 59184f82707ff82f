// The stand-in for what Outlook knows: stores, their folders, and which folders are the user's default
// ones. A plain data structure; the objects that the library sees are made over it (Session.cpp). The folders
// of a generated store come into being when they are first asked for, be it through a constant world.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "contracts/Outlook.h"
#include "workbench/GeneratedFolders.h"

namespace vexa::workbench {

enum class StoreKind { Mailbox, PublicFolders, PersonalFolders };

/// Index of a folder in World::folders.
using FolderIndex = uint32_t;
inline constexpr FolderIndex NoFolder = UINT32_MAX;

struct FolderNode {
  std::string name;
  std::string entryID;  // hexadecimal, as Outlook writes it
  ItemType itemType = ItemType::Mail;
  uint32_t store = 0;
  FolderIndex parent = NoFolder;      // NoFolder: the root folder of its store
  std::vector<FolderIndex> children;  // NoFolder: generated, but not asked for yet
  uint32_t number = 0;                // in a generated store
  bool unreadable = false;            // its EntryID cannot be read (no access)
  bool excluded = false;              // the add-in keeps its record out of the stored lists
  bool deleted = false;               // gone, with everything below it
};

struct Store {
  std::string storeID;
  StoreKind kind = StoreKind::PersonalFolders;
  FolderIndex root = NoFolder;
  uint32_t folderCount = 0;  // ever added, or to be generated
  std::optional<GeneratedFolders> generated;
};

class World {
 public:
  /// Adds a store; its root folder is the first folder added to it without a parent.
  uint32_t AddStore(std::string storeID, StoreKind kind);

  /// Adds a store whose folders follow from a rule.
  uint32_t AddGeneratedStore(std::string storeID, StoreKind kind, GeneratedFolders rule);

  /// Adds a folder below `parent`, or as the root of `store`. NoFolder when the store has a folder with
  /// this entry id already (then nothing is added).
  FolderIndex AddFolder(uint32_t store, FolderIndex parent, std::string name, std::string entryID,
                        ItemType itemType);

  /// NoFolder when there is none, or it is deleted. Ids compare without regard to the case of letters.
  FolderIndex Find(std::string_view entryID, std::string_view storeID) const;
  FolderIndex FindInStore(std::string_view entryID, uint32_t store) const;

  /// The folder at a path such as "\\Public Folders\All Public Folders\Sales" ("/" serves as well); see
  /// PathOf for characters that names share with the separators.
  FolderIndex FindPath(std::string_view path) const;
  /// Display path: two backslashes, then the names from the store down. In names "\", "/" and "%" read
  /// "%5C", "%2F" and "%25", as in Outlook's own folder paths.
  std::string PathOf(FolderIndex folder) const;

  /// Deletes a folder and everything below it.
  void Delete(FolderIndex folder);

  const std::vector<Store>& Stores() const { return stores_; }
  /// Of all stores, deleted ones and those never asked for included.
  size_t FolderCount() const;
  /// Every folder that was added, and those of generated stores that were asked for. Parents stand before
  /// their children. A folder stays where it is in memory.
  const std::deque<FolderNode>& FolderNodes() const { return folders_; }
  const FolderNode& At(FolderIndex folder) const { return folders_[folder]; }
  FolderNode& At(FolderIndex folder) { return folders_[folder]; }
  const Store& StoreOf(FolderIndex folder) const { return stores_[folders_[folder].store]; }

  /// The folders directly in a folder, in order, without deleted ones; of NoFolder the stores' roots.
  /// Counting and taking one of them cost nothing for the others.
  size_t ChildCount(FolderIndex folder) const;
  FolderIndex ChildAt(FolderIndex folder, size_t position) const;
  std::vector<FolderIndex> ChildrenOf(FolderIndex folder) const;

  /// The user's default folders by Outlook's OlDefaultFolders number (6 = Inbox, …).
  std::map<int32_t, FolderIndex> defaultFolders;

 private:
  FolderIndex Place(uint32_t store, FolderIndex parent, std::string name, std::string entryID,
                    ItemType itemType, uint32_t number) const;
  FolderIndex Generate(FolderIndex parent, size_t position) const;
  FolderIndex FindGenerated(std::string_view entryID, uint32_t store) const;
  std::vector<FolderIndex> Roots() const;

  std::vector<Store> stores_;
  mutable std::deque<FolderNode> folders_;
  mutable std::unordered_map<std::string, FolderIndex> byKey_;  // upper-case entry id, "|", store's number
};

}  // namespace vexa::workbench
