#include "core/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "core/Error.h"

namespace vexa {
namespace {

double RoundTiesToEven(double value) {
  // std::nearbyint would follow the host process's rounding mode.
  const double floor = std::floor(value);
  const double rest = value - floor;
  if (rest < 0.5) return floor;
  if (rest > 0.5) return floor + 1;
  return std::fmod(floor, 2) == 0 ? floor : floor + 1;
}

template <typename Integer>
Integer Rounded(double value) {
  const double rounded = RoundTiesToEven(value);
  const bool fits = rounded >= std::numeric_limits<Integer>::min() &&
                    rounded <= std::numeric_limits<Integer>::max();  // false for NaN, too
  if (!fits) throw MakeError(ErrorNumber::Overflow);
  return static_cast<Integer>(rounded);
}

}  // namespace

int16_t ToInt16(double value) { return Rounded<int16_t>(value); }

int32_t ToInt32(double value) { return Rounded<int32_t>(value); }

int32_t CheckedAdd(int32_t left, int32_t right) {
  return ToInt32(static_cast<double>(left) + static_cast<double>(right));
}

double LeadingNumber(std::string_view text) {
  size_t start = 0;
  while (start < text.size() && (text[start] == ' ' || text[start] == '\t')) ++start;
  size_t end = start;
  if (end < text.size() && (text[end] == '-' || text[end] == '+')) ++end;
  bool seenPoint = false;
  for (; end < text.size(); ++end) {
    const bool digit = text[end] >= '0' && text[end] <= '9';
    if (!digit && (text[end] != '.' || seenPoint)) break;
    seenPoint = seenPoint || text[end] == '.';
  }
  if (start < end && text[start] == '+') ++start;  // std::from_chars takes no plus sign
  double number = 0;
  std::from_chars(text.data() + start, text.data() + end, number, std::chars_format::fixed);
  return number;
}

}  // namespace vexa
