// One folder set as a plain value: a tracked contact folder, the folders that its contacts' items are logged
// in, and the shared folders that new items are routed to. Also how the settings keep the list of folder
// sets: a count and thirteen parallel collections, one a field.
#pragma once

#include <cstdint>
#include <string>

#include "contracts/RegSettings.h"

namespace vexa {

/// Folders go by their ids; an empty entry id means that no folder is set.
struct FolderSet {
  std::string ContactEntryID, ContactStoreID;
  std::string JournEntryID, JournStoreID;
  std::string EmailEntryID, EmailStoreID;
  std::string SharedCalEntryID, SharedCalStoreID;
  std::string SharedJournEntryID, SharedJournStoreID;
  std::string SharedTaskEntryID, SharedTaskStoreID;
  int32_t FLAGS = LeaveCopy;

  // The bits of FLAGS.
  static constexpr int32_t LogRouted = 1;
  static constexpr int32_t LeaveCopy = 2;
};

/// Folder set `index`, counted from 1. What cannot be read stays empty, so that damaged settings can be
/// opened.
FolderSet LoadFolderSet(RegSettings& settings, int16_t index);

/// Removes folder set `index` from all collections. What cannot be removed is passed over.
void EraseFolderSet(RegSettings& settings, int16_t index);

/// Inserts a folder set so that it becomes number `index`. What cannot be stored is passed over.
void InsertFolderSet(RegSettings& settings, int16_t index, const FolderSet& folderSet);

}  // namespace vexa
