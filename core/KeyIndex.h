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
    return slots_.empty() ? None : slots_[PlaceOf(hash, hasKey)].number;
  }

  /// Where a search has ended, good until the next insertion or removal.
  struct Place {
    size_t slot;
    uint32_t number;  // as from Find
  };
  /// Find, to be followed by Insert when there is none: makes room for one more beforehand.
  template <typename HasKey>
  Place FindPlace(uint32_t hash, HasKey&& hasKey) {
    if ((taken_ + 1) * 4 > slots_.size() * 3) Grow(slots_.empty() ? FirstSize : slots_.size() * 2);
    const size_t slot = PlaceOf(hash, hasKey);
    return {slot, slots_[slot].number};
  }
  /// `place` is one where nothing was found, `number` not None.
  void Insert(const Place& place, uint32_t hash, uint32_t number) {
    slots_[place.slot] = {hash, number};
    ++taken_;
  }
  /// Who says how many are to come may be wrong: no more than this is reserved.
  static constexpr size_t MostReserved = size_t{1} << 17;
  /// Makes room for so many more at once.
  void Reserve(size_t more);
  /// `number` must be there under this hash.
  void Erase(uint32_t hash, uint32_t number);
  void Clear();
  size_t MemoryInUse() const { return slots_.capacity() * sizeof(Slot); }

 private:
  static constexpr size_t FirstSize = 16;

  /// The hash stands beside the number, so that a search reads no wrong key and growing reads none at all.
  struct Slot {
    uint32_t hash = 0;
    uint32_t number = None;
  };

  size_t Mask() const { return slots_.size() - 1; }
  /// The slot with the key, or the free one where the search for it ends.
  template <typename HasKey>
  size_t PlaceOf(uint32_t hash, HasKey&& hasKey) const {
    size_t at = hash & Mask();
    while (slots_[at].number != None && (slots_[at].hash != hash || !hasKey(slots_[at].number))) {
      at = (at + 1) & Mask();
    }
    return at;
  }
  void Grow(size_t slots);

  std::vector<Slot> slots_;  // a power of two, at most three quarters of them taken
  size_t taken_ = 0;
};

}  // namespace vexa
