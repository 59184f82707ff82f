#include "windows/com/Text.h"

#include <cstddef>
#include <cstdint>

namespace vexa::windows {
namespace {

constexpr uint32_t Replacement = 0xFFFD;
constexpr uint32_t FirstHigh = 0xD800;
constexpr uint32_t FirstLow = 0xDC00;
constexpr uint32_t LastLow = 0xDFFF;
constexpr uint32_t FirstSupplementary = 0x10000;

bool IsHigh(uint32_t unit) { return unit >= FirstHigh && unit < FirstLow; }
bool IsLow(uint32_t unit) { return unit >= FirstLow && unit <= LastLow; }

/// The code point that begins at `at`, which moves behind it.
uint32_t Decode(std::string_view text, size_t& at) {
  const auto byteAt = [&](size_t index) { return static_cast<uint32_t>(static_cast<uint8_t>(text[index])); };
  const uint32_t first = byteAt(at);
  ++at;
  if (first < 0x80) return first;
  size_t following = 0;
  uint32_t smallest = 0;
  if (first >= 0xC2 && first <= 0xDF) {
    following = 1;
    smallest = 0x80;
  } else if (first >= 0xE0 && first <= 0xEF) {
    following = 2;
    smallest = 0x800;
  } else if (first >= 0xF0 && first <= 0xF4) {
    following = 3;
    smallest = FirstSupplementary;
  } else {
    return Replacement;
  }
  if (text.size() - at < following) return Replacement;
  uint32_t point = first & (0x3FU >> following);
  for (size_t index = at; index < at + following; ++index) {
    if ((byteAt(index) & 0xC0U) != 0x80U) return Replacement;
    point = (point << 6) | (byteAt(index) & 0x3FU);
  }
  if (point < smallest || point > 0x10FFFF) return Replacement;
  at += following;
  return point;
}

void Append(std::string& text, uint32_t point) {
  const auto append = [&](uint32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (point < 0x80) {
    append(point);
    return;
  }
  if (point < 0x800) {
    append(0xC0 | point >> 6);
  } else {
    if (point < FirstSupplementary) {
      append(0xE0 | point >> 12);
    } else {
      append(0xF0 | point >> 18);
      append(0x80 | (point >> 12 & 0x3F));
    }
    append(0x80 | (point >> 6 & 0x3F));
  }
  append(0x80 | (point & 0x3F));
}

}  // namespace

std::wstring ToUtf16(std::string_view utf8) {
  std::wstring text;
  text.reserve(utf8.size());
  for (size_t at = 0; at < utf8.size();) {
    const uint32_t point = Decode(utf8, at);
    if (point < FirstSupplementary) {
      text.push_back(static_cast<wchar_t>(point));
    } else {
      text.push_back(static_cast<wchar_t>(FirstHigh + ((point - FirstSupplementary) >> 10)));
      text.push_back(static_cast<wchar_t>(FirstLow + ((point - FirstSupplementary) & 0x3FF)));
    }
  }
  return text;
}

std::string ToUtf8(std::wstring_view utf16) {
  std::string text;
  text.reserve(utf16.size());
  for (size_t at = 0; at < utf16.size(); ++at) {
    auto point = static_cast<uint32_t>(utf16[at]);
    if (IsHigh(point) && at + 1 < utf16.size() && IsLow(static_cast<uint32_t>(utf16[at + 1]))) {
      ++at;
      point =
          FirstSupplementary + ((point - FirstHigh) << 10) + (static_cast<uint32_t>(utf16[at]) - FirstLow);
    }
    Append(text, point);
  }
  return text;
}

}  // namespace vexa::windows
