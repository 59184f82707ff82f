// Values under text keys, in the order in which they were added. Finding, adding and removing take constant
// time; what is removed and added again goes to the end. Keys compare exactly. They are kept apart from what
// the caller handed in, in one place, without what they have in common.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/Error.h"
#include "core/KeyFrames.h"
#include "core/KeyIndex.h"
#include "core/TextArena.h"

namespace vexa {

template <typename Value>
class KeyedCollection {
 public:
  /// Error 457 when the key is taken; the collection is then as it was.
  Value& Add(std::string_view key, Value value) {
    const uint32_t hash = HashOfKey(key);
    const KeyIndex::Place place = index_.FindPlace(hash, HasKey(key));
    if (place.number != None) throw MakeError(ErrorNumber::KeyExists);
    const KeyFrames::Number frame = frames_.FrameFor(key);
    const std::string_view ownPart = Keep(frames_.OwnPart(frame, key));
    if (free_ == None) {
      entries_.emplace_back();
      free_ = static_cast<uint32_t>(entries_.size() - 1);
    }
    const uint32_t number = free_;
    index_.Insert(place, hash, number);  // nothing can fail any more
    Entry& entry = entries_[number];
    free_ = entry.next;
    entry.ownPart = ownPart;
    entry.frame = frame;
    entry.value = std::move(value);
    entry.previous = last_;
    entry.next = None;
    (last_ == None ? first_ : entries_[last_].next) = number;
    last_ = number;
    ++size_;
    return entry.value;
  }

  /// So many more are about to be added; a hint.
  void Reserve(size_t more) {
    index_.Reserve(more);
    entries_.reserve(entries_.size() + std::min(more, KeyIndex::MostReserved));
  }

  /// Null when nothing has the key.
  Value* Find(std::string_view key) {
    const uint32_t number = NumberOf(key, HashOfKey(key));
    return number == None ? nullptr : &entries_[number].value;
  }
  const Value* Find(std::string_view key) const { return const_cast<KeyedCollection*>(this)->Find(key); }

  /// False when nothing has the key.
  bool Remove(std::string_view key) {
    const uint32_t hash = HashOfKey(key);
    const uint32_t number = NumberOf(key, hash);
    if (number == None) return false;
    Entry& entry = entries_[number];
    (entry.previous == None ? first_ : entries_[entry.previous].next) = entry.next;
    (entry.next == None ? last_ : entries_[entry.next].previous) = entry.previous;
    index_.Erase(hash, number);
    unused_ += entry.ownPart.size();
    entry.ownPart = {};
    entry.value = {};
    entry.next = free_;
    free_ = number;
    --size_;
    if (unused_ > UnusedAllowed && unused_ > texts_.Used() / 2) Compact();
    return true;
  }

  void Clear() {
    entries_.clear();
    index_.Clear();
    texts_ = {};
    first_ = last_ = free_ = None;
    size_ = unused_ = 0;
  }

  size_t Size() const { return size_; }

  /// Calls visit(key, value) for each, in order. The collection must not change meanwhile.
  template <typename Visitor>
  void ForEach(Visitor&& visit) const {
    for (uint32_t number = first_; number != None; number = entries_[number].next) {
      const Entry& entry = entries_[number];
      visit(frames_.KeyOf(entry.frame, entry.ownPart), entry.value);
    }
  }

 private:
  static constexpr uint32_t None = KeyIndex::None;
  /// Keys that are gone may take this much room before the others are moved together.
  static constexpr size_t UnusedAllowed = size_t{64} * 1024;

  struct Entry {
    std::string_view ownPart;  // of the key
    uint32_t previous = None;
    uint32_t next = None;  // of a free entry, the next free one
    KeyFrames::Number frame = KeyFrames::Whole;
    Value value{};
  };

  uint32_t NumberOf(std::string_view key, uint32_t hash) const { return index_.Find(hash, HasKey(key)); }
  auto HasKey(std::string_view key) const {
    return [this, key](uint32_t number) {
      return frames_.Make(entries_[number].frame, entries_[number].ownPart, key);
    };
  }

  std::string_view Keep(std::string_view ownPart) {
    char* const kept = texts_.Take(ownPart.size());
    if (!ownPart.empty()) std::memcpy(kept, ownPart.data(), ownPart.size());
    return {kept, ownPart.size()};
  }

  void Compact() {
    const TextArena former = std::exchange(texts_, {});
    unused_ = 0;
    for (uint32_t number = first_; number != None; number = entries_[number].next) {
      entries_[number].ownPart = Keep(entries_[number].ownPart);
    }
  }

  std::vector<Entry> entries_;
  KeyIndex index_;
  KeyFrames frames_;
  TextArena texts_;
  size_t unused_ = 0;  // bytes of keys that are gone
  uint32_t first_ = None;
  uint32_t last_ = None;
  uint32_t free_ = None;
  size_t size_ = 0;
};

}  // namespace vexa
