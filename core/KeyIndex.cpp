#include "core/KeyIndex.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace vexa {
namespace {

// Odd numbers with their bits well spread.
constexpr uint64_t Spread = 0x9E3779B97F4A7C15;
constexpr uint64_t Fold = 0xD6E8FEB86659FD93;

uint64_t WordAt(const char* bytes) noexcept {
  uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

/// Multiplying carries differences upwards, the shift brings them down again.
uint64_t Mixed(uint64_t state, uint64_t word) noexcept {
  state = (state ^ word) * Spread;
  return state ^ (state >> 29);
}

}  // namespace

uint32_t HashOfKey(std::string_view key) noexcept {
  constexpr size_t wordSize = sizeof(uint64_t);
  const char* at = key.data();
  size_t left = key.size();
  // Four lanes, so that one multiplication need not wait for the one before.
  uint64_t a = Spread;
  uint64_t b = Fold;
  uint64_t c = Spread ^ key.size();
  uint64_t d = ~Fold;
  for (; left >= 4 * wordSize; left -= 4 * wordSize, at += 4 * wordSize) {
    a = Mixed(a, WordAt(at));
    b = Mixed(b, WordAt(at + wordSize));
    c = Mixed(c, WordAt(at + 2 * wordSize));
    d = Mixed(d, WordAt(at + 3 * wordSize));
  }
  if (left >= wordSize) a = Mixed(a, WordAt(at));
  if (left >= 2 * wordSize) b = Mixed(b, WordAt(at + wordSize));
  if (left >= 3 * wordSize) c = Mixed(c, WordAt(at + 2 * wordSize));
  uint64_t rest = 0;
  if (const size_t odd = left % wordSize; odd != 0) std::memcpy(&rest, at + (left - odd), odd);
  d = Mixed(d, rest);
  const uint64_t hash = (a ^ std::rotl(b, 23)) * Spread + (c ^ std::rotl(d, 41)) * Fold;
  return static_cast<uint32_t>(Mixed(hash, hash >> 32) >> 16);
}

void KeyIndex::Reserve(size_t more) {
  const size_t slots = std::bit_ceil((taken_ + std::min(more, MostReserved)) * 4 / 3 + 1);
  if (slots > std::max(slots_.size(), FirstSize)) Grow(slots);
}

void KeyIndex::Grow(size_t slots) {
  std::vector<Slot> former(slots);
  former.swap(slots_);
  for (const Slot& slot : former) {
    if (slot.number != None) slots_[PlaceOf(slot.hash, [](uint32_t) { return false; })] = slot;
  }
}

void KeyIndex::Erase(uint32_t hash, uint32_t number) {
  size_t hole = hash & Mask();
  while (slots_[hole].number != number) hole = (hole + 1) & Mask();
  // Those behind move up when a search for them would end at the hole: no marks of the dead stay behind.
  for (size_t at = (hole + 1) & Mask(); slots_[at].number != None; at = (at + 1) & Mask()) {
    const size_t home = slots_[at].hash & Mask();
    if (((at - home) & Mask()) < ((at - hole) & Mask())) continue;
    slots_[hole] = slots_[at];
    hole = at;
  }
  slots_[hole] = {};
  --taken_;
}

void KeyIndex::Clear() {
  slots_.clear();
  taken_ = 0;
}

}  // namespace vexa
