#include "core/Variant.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

#include "core/Error.h"
#include "core/Numbers.h"

namespace vexa {
namespace {

std::string NumberText(double number) {
  if (std::isnan(number) || std::isinf(number)) throw MakeError(ErrorNumber::TypeMismatch);
  std::array<char, 40> buffer{};
  const int length = std::snprintf(buffer.data(), buffer.size(), "%.15G", number);
  std::string text(buffer.data(), static_cast<size_t>(length));
  // The process may have set a locale of its own; numbers read the same in every language here.
  if (const size_t comma = text.find(','); comma != std::string::npos) text[comma] = '.';
  return text;
}

}  // namespace

std::string Variant::ToText() const {
  struct Converter {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(bool value) const { return value ? "True" : "False"; }
    std::string operator()(int64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const { return NumberText(value); }
    std::string operator()(const std::string& value) const { return value; }
    std::string operator()(const ObjectRef&) const { throw MakeError(ErrorNumber::TypeMismatch); }
  };
  return std::visit(Converter{}, value_);
}

bool Variant::IsNonZero() const {
  struct Converter {
    bool operator()(std::monostate) const { return false; }
    bool operator()(bool value) const { return value; }
    bool operator()(int64_t value) const { return value != 0; }
    bool operator()(double value) const { return value != 0; }
    bool operator()(const std::string& value) const { return value == "True" || LeadingNumber(value) != 0; }
    bool operator()(const ObjectRef& value) const { return value != nullptr; }
  };
  return std::visit(Converter{}, value_);
}

ObjectRef Variant::ToObject() const {
  const auto* object = std::get_if<ObjectRef>(&value_);
  return object != nullptr ? *object : nullptr;
}

}  // namespace vexa
