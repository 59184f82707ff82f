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

/// The longest number at the start of `text` (blanks before it are passed over): an optional sign, digits
/// and at most one point. 0 when the text does not start with a number.
double LeadingNumber(std::string_view text);

}  // namespace vexa
