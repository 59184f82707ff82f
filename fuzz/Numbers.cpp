// Numbers that somebody typed: what is called a number is read as one, and no conversion wraps round.
#include "core/Numbers.h"

#include <cmath>

#include "core/Error.h"
#include "core/Variant.h"
#include "fuzz/Fuzz.h"

using vexa::fuzz::Promise;

namespace {

template <typename Integer>
void CheckWidth(double value, Integer (*convert)(double)) {
  try {
    Promise(std::fabs(static_cast<double>(convert(value)) - value) <= 0.5, "the nearest integer");
  } catch (const vexa::Error& error) {
    Promise(error.Number == 6, "what does not fit is an overflow");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const double value = vexa::LeadingNumber(text);
  Promise(!std::isnan(value), "a leading number is a number");
  if (vexa::IsNumber(text)) {
    Promise(std::fabs(value - std::strtod(text.c_str(), nullptr)) == 0 || std::isinf(value),
            "the whole of a number is read");
    Promise(vexa::IsNumberBetween(text, value, value), "a number lies between itself and itself");
  }
  CheckWidth(value, vexa::ToInt16);
  CheckWidth(value, vexa::ToInt32);
  vexa::Variant(text).IsNonZero();
  if (std::isfinite(value)) Promise(!vexa::Variant(value).ToText().empty(), "a number has digits");
  return 0;
}
