// What the fuzz targets share. A target is one source: libFuzzer's function, which takes any bytes as its
// input and ends the program when a promise is broken.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace vexa::fuzz {

/// Ends the program, with what was promised, when it does not hold.
inline void Promise(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", promise);
  std::abort();
}

/// The input as a row of values; zeros and empty texts once it is used up.
class Input {
 public:
  Input(const uint8_t* data, size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  bool IsUsedUp() const { return rest_.empty(); }
  uint8_t Byte() { return static_cast<uint8_t>(Take(1).empty() ? 0 : last_.front()); }
  int32_t Number() {
    uint32_t number = 0;
    for (int i = 0; i < 4; ++i) number = number << 8 | Byte();
    return static_cast<int32_t>(number);
  }
  /// A length of one byte, then as many characters.
  std::string_view Text() { return Take(Byte()); }
  std::string_view Rest() { return Take(rest_.size()); }

 private:
  std::string_view Take(size_t count) {
    last_ = rest_.substr(0, count);
    rest_.remove_prefix(last_.size());
    return last_;
  }

  std::string_view rest_;
  std::string_view last_;
};

}  // namespace vexa::fuzz
