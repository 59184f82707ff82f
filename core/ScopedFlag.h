// A flag that is True for the time of a scope.
#pragma once

#include <utility>

namespace vexa {

class ScopedFlag {
 public:
  explicit ScopedFlag(bool& flag) : flag_(flag), former_(std::exchange(flag, true)) {}
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;
  ~ScopedFlag() { flag_ = former_; }

 private:
  bool& flag_;
  bool former_;
};

}  // namespace vexa
