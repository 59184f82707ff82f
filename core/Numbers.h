// Conversions to the widths that the settings have. A value that does not fit is error 6, "Overflow";
// fractions are rounded to the nearest integer, ties to even. Nothing here depends on a locale.
#pragma once

#include <cstdint>
#include <string_view>

namespace vexa {

/// `value` rounded to 16 bits; error 6 when it does not fit or is not a number.
int16_t ToInt16(double value);
/// `value` rounded to 32 bits; error 6 when it does not fit or is not a number.
int32_t ToInt32(double value);

/// Sum of two 32-bit numbers; error 6 when it does not fit.
int32_t CheckedAdd(int32_t left, int32_t right);

/// Whether the whole of `text`, but for blanks around it, is a number: an optional sign, digits and at most
/// one point, with at least one digit. Grouping, exponents and other bases are no numbers.
bool IsNumber(std::string_view text);

/// Whether `text` is a number from `least` to `most`, before any rounding.
bool IsNumberBetween(std::string_view text, double least, double most);

/// The longest number at the start of `text` (blanks before it are passed over): an optional sign, digits
/// and at most one point. 0 when the text does not start with a number, infinite when it is too great.
double LeadingNumber(std::string_view text);

}  // namespace vexa
