#include "core/Numbers.h"

#include <algorithm>
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

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

size_t FirstNonBlank(std::string_view text) {
  return static_cast<size_t>(std::ranges::find_if_not(text, IsBlank) - text.begin());
}

/// Length of the sign, digits and point that `text` starts with; there may be no digit among them.
size_t MeasureNumber(std::string_view text) {
  size_t length = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  bool seenPoint = false;
  for (; length < text.size(); ++length) {
    if (!IsDigit(text[length]) && (text[length] != '.' || seenPoint)) break;
    seenPoint = seenPoint || text[length] == '.';
  }
  return length;
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

bool IsNumber(std::string_view text) {
  const size_t start = FirstNonBlank(text);
  size_t end = text.size();
  while (end > start && IsBlank(text[end - 1])) --end;
  text = text.substr(start, end - start);
  return MeasureNumber(text) == text.size() && std::ranges::any_of(text, IsDigit);
}

bool IsNumberBetween(std::string_view text, double least, double most) {
  if (!IsNumber(text)) return false;
  const double number = LeadingNumber(text);
  return number >= least && number <= most;
}

double LeadingNumber(std::string_view text) {
  text.remove_prefix(FirstNonBlank(text));
  text = text.substr(0, MeasureNumber(text));
  const bool negative = text.starts_with('-');
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);  // std::from_chars takes no plus
  double number = 0;
  const auto parsed =
      std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  if (parsed.ec == std::errc::result_out_of_range) {
    // A fraction too small to tell from 0 is out of range, too.
    const std::string_view whole = text.substr(0, text.find('.'));
    const bool great = std::ranges::any_of(whole, [](char c) { return c != '0'; });
    number = great ? std::numeric_limits<double>::infinity() : 0;
  }
  return negative ? -number : number;
}

}  // namespace vexa
