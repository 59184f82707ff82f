// Finds numbered things by text keys in constant time: an open-addressing table of 32-bit numbers over the
// hashes of their keys. The keys stay where their owner keeps them; the table asks the owner whether a
// candidate has the key that is looked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vexa {

/// Keys are long and differ in a few places: every bit counts, eight bytes at a time.
uint32_t HashOfKey(std::string_view key) noexcept;

class KeyIndex {
 public:
  static constexpr uint32_t None = UINT32_MAX;

  /// The number whose key has this hash and for which `hasKey(number)` holds; None when there is none.
  template <typename HasKey>
  uint32_t Find(uint32_t hash, HasKey&& hasKey) const {
    if (slots_.empty()) return None;
    for (size_t at = hash & Mask();; at = (at + 1) & Mask()) {
      const Slot& slot = slots_[at];
      if (slot.number == None) return None;
      if (slot.hash == hash && hasKey(slot.number)) return slot.number;
    }
  }
  /// Who says how many are to come may be wrong: no more than this is reserved.
  static constexpr size_t MostReserved = size_t{1} << 17;
  /// Makes room for so many more at once.
  void Reserve(size_t more);
  /// `number` (not None) must not be there yet.
  void Insert(uint32_t hash, uint32_t number);
  /// `number` must be there under this hash.
  void Erase(uint32_t hash, uint32_t number);
  void Clear();
  size_t MemoryInUse() const { return slots_.capacity() * sizeof(Slot); }

 private:
  /// The hash stands beside the number, so that a search reads no wrong key and growing reads none at all.
  struct Slot {
    uint32_t hash = 0;
    uint32_t number = None;
  };

  size_t Mask() const { return slots_.size() - 1; }
  void Place(Slot placed);
  void Grow(size_t slots);

  std::vector<Slot> slots_;  // a power of two, at most three quarters of them taken
  size_t taken_ = 0;
};

}  // namespace vexa
