// Values under text keys, in the order in which they were added. Finding, adding and removing take constant
// time; what is removed and added again goes to the end. Keys compare exactly.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/Error.h"
#include "core/KeyIndex.h"

namespace vexa {

template <typename Value>
class KeyedCollection {
 public:
  /// Error 457 when the key is taken; the collection is then as it was.
  Value& Add(std::string key, Value value) {
    const uint32_t hash = HashOfKey(key);
    if (NumberOf(key, hash) != None) throw MakeError(ErrorNumber::KeyExists);
    if (free_ == None) {
      entries_.emplace_back();
      free_ = static_cast<uint32_t>(entries_.size() - 1);
    }
    const uint32_t number = free_;
    index_.Insert(hash, number);  // the last that can fail
    Entry& entry = entries_[number];
    free_ = entry.next;
    entry.key = std::move(key);
    entry.value = std::move(value);
    entry.previous = last_;
    entry.next = None;
    (last_ == None ? first_ : entries_[last_].next) = number;
    last_ = number;
    ++size_;
    return entry.value;
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
    entry.key = {};
    entry.value = {};
    entry.next = free_;
    free_ = number;
    --size_;
    return true;
  }

  void Clear() {
    entries_.clear();
    index_.Clear();
    first_ = last_ = free_ = None;
    size_ = 0;
  }

  size_t Size() const { return size_; }

  /// Calls visit(key, value) for each, in order. The collection must not change meanwhile.
  template <typename Visitor>
  void ForEach(Visitor&& visit) const {
    for (uint32_t number = first_; number != None; number = entries_[number].next) {
      visit(entries_[number].key, entries_[number].value);
    }
  }

 private:
  static constexpr uint32_t None = KeyIndex::None;

  struct Entry {
    std::string key;
    Value value{};
    uint32_t previous = None;
    uint32_t next = None;  // of a free entry, the next free one
  };

  uint32_t NumberOf(std::string_view key, uint32_t hash) const {
    return index_.Find(hash, [&](uint32_t number) { return entries_[number].key == key; });
  }

  std::vector<Entry> entries_;
  KeyIndex index_;
  uint32_t first_ = None;
  uint32_t last_ = None;
  uint32_t free_ = None;
  size_t size_ = 0;
};

}  // namespace vexa
