// The one error type of the system. Whatever goes wrong, inside or in a call to the add-in or Outlook,
// travels as an Error and picks up a trail entry in every procedure that passes it on (see Handlers.h).
// The trail lives inside the source text, so it survives any border that carries a source text.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

namespace vexa {

/// Numbers that the library raises itself; the texts belong to them (see MakeError).
enum class ErrorNumber : int32_t {
  InvalidProcedureCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  TypeMismatch = 13,
  InternalError = 51,
  PathFileAccess = 75,
  ObjectNotSet = 91,
  ResourceNotFound = 326,
  KeyExists = 457,
};

class Error : public std::exception {
 public:
  int32_t Number = 0;
  std::string Description;
  std::string Source;
  std::string HelpFile;
  int32_t HelpContext = 0;
  /// Last operating-system error code at the time of the failure, 0 when none is known.
  int32_t LastDLLError = 0;
  /// Line in the procedure where the error arose, 0 when not known. Not part of the record: it goes into
  /// the next trail entry and is 0 again afterwards.
  int32_t Line = 0;

  Error() = default;
  Error(int32_t number, std::string description, std::string source);

  /// Appends the entry "module.procedure" and the current line to the trail in Source. A failure while
  /// appending leaves Source as it was.
  void AppendTrail(std::string_view module, std::string_view procedure) noexcept;

  const char* what() const noexcept override { return Description.c_str(); }
};

/// An error of the library itself, with the number's customary description and the library as its source.
Error MakeError(ErrorNumber number);

/// Inside a catch block: the exception being handled, as an Error. Memory exhaustion becomes error 7, any
/// other exception error 51 with its text.
Error CurrentError();

/// Inside a catch block: raises CurrentError with one more trail entry. Kept out of the procedures that pass
/// errors on: the less there is in them to clean up, the faster an error gets through.
[[noreturn]] void RaiseWithTrail(std::string_view module, std::string_view procedure);

/// The object behind a reference that came from outside; error 91 when there is none.
template <typename Pointer>
auto& Require(const Pointer& pointer) {
  if (pointer == nullptr) throw MakeError(ErrorNumber::ObjectNotSet);
  return *pointer;
}

/// A share of one's own in the object behind a reference; error 91 when there is none. An outside call may
/// lead to the reference being dropped before it returns: made on a share, it still has its object then.
template <typename Object>
std::shared_ptr<Object> Share(const std::shared_ptr<Object>& reference) {
  Require(reference);
  return reference;
}

/// What separates the initial source text from the first trail entry, and one entry from the next.
inline constexpr std::string_view TrailStart = "\r\n-->";
inline constexpr std::string_view TrailSeparator = "-->";

}  // namespace vexa
