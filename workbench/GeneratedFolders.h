// The rule of a synthetic folder hierarchy of any size. Its folders are numbered, the root is 0, and
// everything about a folder follows from its number: the subfolders of folder k are the `breadth` next ones
// from k * breadth + 1 on, as far as there are that many. So a world makes only the folders that it is asked
// for. A breadth of 1 gives a chain, one as large as the number of folders gives a single level.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contracts/Outlook.h"

namespace vexa::workbench {

struct GeneratedFolders {
  std::string name;      // of the root
  uint32_t count = 1;    // the root included
  uint32_t breadth = 1;  // subfolders in a folder
  uint32_t seed = 0;     // another one gives other ids and another mixture of item types
  std::vector<int32_t> itemTypes{0, 1, 2, 3, 4, 5, 6};

  uint32_t ChildCountOf(uint32_t number) const;
  uint32_t ChildOf(uint32_t number, uint32_t position) const { return number * breadth + 1 + position; }
  uint32_t ParentOf(uint32_t number) const { return (number - 1) / breadth; }
  /// Levels of the hierarchy, the root's included.
  uint32_t Depth() const;

  std::string EntryIdOf(uint32_t number) const;
  /// Which folder has this entry id; nothing when none has.
  std::optional<uint32_t> NumberOf(std::string_view entryID) const;
  ItemType ItemTypeOf(uint32_t number) const;
  std::string NameOf(uint32_t number) const;
};

}  // namespace vexa::workbench
