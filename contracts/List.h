// A collection of the library's own making: what a list of the settings object is replaced by. The settings
// object may keep it, or copy what is in it.
#pragma once

#include <vector>

#include "contracts/Collection.h"
#include "core/Error.h"

namespace vexa {

template <typename Value>
class List final : public Collection<Value> {
 public:
  int32_t Count() override { return static_cast<int32_t>(values_.size()); }
  Value Item(int32_t position) override { return values_[Checked(position)]; }
  void Add(const Value& value) override { values_.push_back(value); }
  void AddBefore(const Value& value, int32_t before) override { values_.insert(At(before), value); }
  void AddAfter(const Value& value, int32_t after) override { values_.insert(At(after) + 1, value); }
  void Remove(int32_t position) override { values_.erase(At(position)); }

 private:
  size_t Checked(int32_t position) const {
    if (position < 1 || static_cast<size_t>(position) > values_.size()) {
      throw MakeError(ErrorNumber::SubscriptOutOfRange);
    }
    return static_cast<size_t>(position - 1);
  }
  auto At(int32_t position) { return values_.begin() + static_cast<std::ptrdiff_t>(Checked(position)); }

  std::vector<Value> values_;
};

}  // namespace vexa
