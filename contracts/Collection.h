// A 1-based list owned by the settings object: what the folder-set and monitored-folder settings are kept
// in. Edited in place through the settings' Get; positions out of range are error 9.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/Variant.h"

namespace vexa {

template <typename Value>
class Collection : public Object {
 public:
  virtual int32_t Count() = 0;
  virtual Value Item(int32_t position) = 0;
  /// Appends.
  virtual void Add(const Value& value) = 0;
  /// Inserts in front of the item at `before`.
  virtual void AddBefore(const Value& value, int32_t before) = 0;
  /// Inserts behind the item at `after`.
  virtual void AddAfter(const Value& value, int32_t after) = 0;
  virtual void Remove(int32_t position) = 0;
};

using StringCollection = Collection<std::string>;
using LongCollection = Collection<int32_t>;

template <typename Value>
using CollectionRef = std::shared_ptr<Collection<Value>>;

}  // namespace vexa
