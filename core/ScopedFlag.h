// Gives a flag another value, True unless told otherwise, for the time of a scope.
#pragma once

#include <utility>

namespace vexa {

class ScopedFlag {
 public:
  explicit ScopedFlag(bool& flag, bool value = true) : flag_(flag), former_(std::exchange(flag, value)) {}
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;
  ~ScopedFlag() { flag_ = former_; }

 private:
  bool& flag_;
  bool former_;
};

}  // namespace vexa
