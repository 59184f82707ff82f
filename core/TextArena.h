// Keeps many short texts in few large pieces of memory. A text stays where it is until everything is
// dropped; its owner says when one is not needed any more and makes a fresh arena when too many are not.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace vexa {

class TextArena {
 public:
  /// Room for so many bytes.
  char* Take(size_t size) {
    if (size > left_) AddBlock(size);
    char* const taken = next_;
    next_ += size;
    left_ -= size;
    used_ += size;
    return taken;
  }
  /// Bytes taken, and those of the memory behind them.
  size_t Used() const { return used_; }
  size_t Capacity() const { return capacity_; }

 private:
  static constexpr size_t SmallestBlock = 1024;
  static constexpr size_t LargestBlock = size_t{64} * 1024;

  using Block = char[];  // NOLINT(modernize-avoid-c-arrays): blocks differ in length

  void AddBlock(size_t atLeast) {
    const size_t size = std::max(atLeast, std::clamp(capacity_, SmallestBlock, LargestBlock));
    blocks_.push_back(std::make_unique_for_overwrite<Block>(size));
    next_ = blocks_.back().get();
    left_ = size;
    capacity_ += size;
  }

  std::vector<std::unique_ptr<Block>> blocks_;
  char* next_ = nullptr;
  size_t left_ = 0;
  size_t used_ = 0;
  size_t capacity_ = 0;
};

}  // namespace vexa
