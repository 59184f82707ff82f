// Keys like those of folders, and the least that an index under such keys can be made of: what the limits of
// the contests are measured with. Everything has its final size from the start, nothing is checked, and there
// is nothing but what the contest needs.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "core/KeyIndex.h"
#include "dialogs/FolderSelection.h"

namespace vexa::bench {

/// A key as the picker makes it: the ids of a folder in an Exchange store and of its store, and what splits
/// them. Of the folder's id only the twelve digits of the server's counter are its own.
constexpr size_t KeyLength = 312;
inline std::string KeyOf(uint32_t number) {
  static const std::string store = [] {
    std::string digits;
    std::mt19937 random(1);
    while (digits.size() < 188) digits += "0123456789ABCDEF"[random() % 16];
    return digits;
  }();
  std::array<char, 13> counter{};
  // Counters of folders in use have gaps everywhere; no two numbers have the same here.
  std::snprintf(
      counter.data(), counter.size(), "%012llX",
      static_cast<unsigned long long>((number * 0x9E3779B1ULL + 0x1A2B3C4D5E6FULL) & 0xFFFFFFFFFFFFULL));
  return store.substr(100, 72) + counter.data() + "00000000" + std::string(KeySplitter) + store;
}

inline std::vector<std::string> Keys(uint32_t count) {
  std::vector<std::string> keys;
  keys.reserve(count);
  for (uint32_t i = 0; i < count; ++i) keys.push_back(KeyOf(i));
  return keys;
}

/// All numbers below `count`, in the same random order every time.
inline std::vector<uint32_t> Shuffled(uint32_t count) {
  std::vector<uint32_t> order(count);
  for (uint32_t i = 0; i < count; ++i) order[i] = i;
  std::mt19937 random(4711);
  for (uint32_t i = count; i > 1; --i) std::swap(order[i - 1], order[random() % i]);
  return order;
}

/// Keys, and texts behind them, one behind the other; a table from hashes to numbers.
class LeastIndex {
 public:
  LeastIndex(size_t count, size_t bytes)
      : mask_(std::bit_ceil(count * 4 / 3 + 1) - 1),
        slots_(std::make_unique_for_overwrite<Slot[]>(mask_ + 1)),
        texts_(std::make_unique_for_overwrite<char[]>(bytes)),
        keys_(std::make_unique_for_overwrite<Key[]>(count)) {
    std::memset(slots_.get(), 0xFF, (mask_ + 1) * sizeof(Slot));
  }

  uint32_t Find(std::string_view key) const {
    const uint32_t hash = HashOfKey(key);
    for (size_t at = hash & mask_; slots_[at].number != UINT32_MAX; at = (at + 1) & mask_) {
      if (slots_[at].hash == hash && KeyOf(slots_[at].number) == key) return slots_[at].number;
    }
    return UINT32_MAX;
  }

  /// UINT32_MAX when the key is there already.
  uint32_t Add(std::string_view key, std::string_view text = {}) {
    const uint32_t hash = HashOfKey(key);
    size_t at = hash & mask_;
    for (; slots_[at].number != UINT32_MAX; at = (at + 1) & mask_) {
      if (slots_[at].hash == hash && KeyOf(slots_[at].number) == key) return UINT32_MAX;
    }
    char* const kept = texts_.get() + used_;
    std::memcpy(kept, key.data(), key.size());
    if (!text.empty()) std::memcpy(kept + key.size(), text.data(), text.size());
    used_ += key.size() + text.size();
    slots_[at] = {hash, count_};
    keys_[count_] = {kept, static_cast<uint32_t>(key.size())};
    return count_++;
  }

  uint32_t Remove(std::string_view key) {
    const uint32_t hash = HashOfKey(key);
    size_t hole = hash & mask_;
    while (slots_[hole].hash != hash || KeyOf(slots_[hole].number) != key) hole = (hole + 1) & mask_;
    const uint32_t number = slots_[hole].number;
    for (size_t at = (hole + 1) & mask_; slots_[at].number != UINT32_MAX; at = (at + 1) & mask_) {
      if (((at - slots_[at].hash) & mask_) < ((at - hole) & mask_)) continue;
      slots_[hole] = slots_[at];
      hole = at;
    }
    slots_[hole].number = UINT32_MAX;
    return number;
  }

 private:
  struct Slot {
    uint32_t hash;
    uint32_t number;
  };
  struct Key {
    const char* text;
    uint32_t length;
  };
  std::string_view KeyOf(uint32_t number) const { return {keys_[number].text, keys_[number].length}; }

  size_t mask_;
  std::unique_ptr<Slot[]> slots_;
  std::unique_ptr<char[]> texts_;
  std::unique_ptr<Key[]> keys_;
  size_t used_ = 0;
  uint32_t count_ = 0;
};

/// What stands before and behind something in a list.
struct Links {
  uint32_t previous;
  uint32_t next;
};

}  // namespace vexa::bench
