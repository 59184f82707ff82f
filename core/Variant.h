// A value of one of the simple types that cross the library's outside borders: what the add-in and Outlook
// call a Variant. Used where a member's type is left open (the answer of FindFolderSet, the about
// information, user-defined properties) and for the arguments that fill a localized text.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace vexa {

/// Root of everything that the add-in or Outlook hands in as an object.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;
};

using ObjectRef = std::shared_ptr<Object>;

class Variant {
 public:
  Variant() = default;
  Variant(bool value) : value_(value) {}
  template <typename Integer>
  requires(std::is_integral_v<Integer> && !std::is_same_v<Integer, bool> && sizeof(Integer) <= 4)
      Variant(Integer value)
      : value_(static_cast<int64_t>(value)) {}
  Variant(int64_t value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(std::string_view value) : value_(std::string(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(ObjectRef value) : value_(std::move(value)) {}

  bool IsEmpty() const { return std::holds_alternative<std::monostate>(value_); }

  /// The value as text: "True" or "False", a number in decimal with a point and at most 15 significant
  /// digits, a string as it stands, empty text for no value. Error 13 (type mismatch) for an object.
  std::string ToText() const;
  /// The same without copying a string; any other text is put into `made`.
  std::string_view TextView(std::string& made) const {
    const auto* const text = std::get_if<std::string>(&value_);
    return text != nullptr ? std::string_view(*text) : std::string_view(made = ToText());
  }

  /// True for True, a number other than 0, an object, and a text that reads as a number other than 0.
  bool IsNonZero() const;

  /// The object held, or null when the value is not one.
  ObjectRef ToObject() const;

  /// Calls the visitor with what is held: std::monostate, bool, int64_t, double, std::string or ObjectRef.
  template <typename Visitor>
  decltype(auto) Visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), value_);
  }

 private:
  std::variant<std::monostate, bool, int64_t, double, std::string, ObjectRef> value_;
};

}  // namespace vexa
