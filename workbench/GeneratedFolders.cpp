#include "workbench/GeneratedFolders.h"

#include <algorithm>
#include <array>

#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

constexpr size_t IdDigits = 8;

void AppendHex(std::string& text, uint32_t number) {
  for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789ABCDEF"[(number >> shift) & 0xF];
}

/// A number without visible order for each folder and seed (SplitMix64's finishing steps).
uint64_t Mix(uint64_t number, uint64_t seed) {
  uint64_t mixed = number + (seed + 1) * 0x9E3779B97F4A7C15U;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
  return mixed ^ (mixed >> 31);
}

}  // namespace

uint32_t GeneratedFolders::ChildCountOf(uint32_t number) const {
  const uint64_t first = uint64_t{number} * breadth + 1;
  return first >= count ? 0 : static_cast<uint32_t>(std::min<uint64_t>(breadth, count - first));
}

uint32_t GeneratedFolders::Depth() const {
  uint32_t levels = 1;
  for (uint32_t number = count - 1; number != 0; number = ParentOf(number)) ++levels;
  return levels;
}

std::string GeneratedFolders::EntryIdOf(uint32_t number) const {
  std::string id;
  AppendHex(id, seed);
  AppendHex(id, number);
  return id;
}

std::optional<uint32_t> GeneratedFolders::NumberOf(std::string_view entryID) const {
  if (entryID.size() != 2 * IdDigits) return std::nullopt;
  uint32_t number = 0;
  for (const char digit : entryID.substr(IdDigits)) {
    const auto value = std::string_view("0123456789ABCDEF0123456789abcdef").find(digit);
    if (value == std::string_view::npos) return std::nullopt;
    number = (number << 4U) | static_cast<uint32_t>(value % 16);
  }
  if (number >= count || !SameName(EntryIdOf(number), entryID)) return std::nullopt;
  return number;
}

ItemType GeneratedFolders::ItemTypeOf(uint32_t number) const {
  if (number == 0 || itemTypes.empty()) return ItemType::Mail;
  return static_cast<ItemType>(itemTypes[static_cast<size_t>(Mix(number, seed) % itemTypes.size())]);
}

std::string GeneratedFolders::NameOf(uint32_t number) const {
  if (number == 0) return name;
  constexpr std::array<std::string_view, 8> words{"Mail",    "Calendar", "Contacts", "Tasks",
                                                  "Journal", "Notes",    "Posts",    "Lists"};
  const auto type = static_cast<size_t>(ItemTypeOf(number));
  return std::string(type < words.size() ? words[type] : "Folder") + " " + std::to_string(number);
}

}  // namespace vexa::workbench
