#include "core/Error.h"

#include <new>
#include <utility>

namespace vexa {
namespace {

constexpr std::string_view LibraryName = "VexaControls";

const char* DescriptionOf(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::InvalidProcedureCall:
      return "Invalid procedure call or argument";
    case ErrorNumber::Overflow:
      return "Overflow";
    case ErrorNumber::OutOfMemory:
      return "Out of memory";
    case ErrorNumber::SubscriptOutOfRange:
      return "Subscript out of range";
    case ErrorNumber::TypeMismatch:
      return "Type mismatch";
    case ErrorNumber::InternalError:
      return "Internal error";
    case ErrorNumber::PathFileAccess:
      return "Path/File access error";
    case ErrorNumber::ObjectNotSet:
      return "Object variable not set";
    case ErrorNumber::KeyExists:
      return "The key belongs to another element of the collection";
    case ErrorNumber::ResourceNotFound:
      return "Resource with identifier not found";
  }
  return "Internal error";
}

std::string TrailEntry(std::string_view module, std::string_view procedure, int32_t line) {
  if (module.empty() && procedure.empty() && line == 0) return {};
  std::string entry(module.empty() ? std::string_view("?") : module);
  entry += '.';
  entry += procedure.empty() ? std::string_view("?") : procedure;
  if (line != 0) {
    entry += '(';
    entry += std::to_string(line);
    entry += ')';
  }
  return entry;
}

}  // namespace

Error::Error(int32_t number, std::string description, std::string source)
    : Number(number), Description(std::move(description)), Source(std::move(source)) {}

void Error::AppendTrail(std::string_view module, std::string_view procedure) noexcept {
  try {
    const bool hasTrail = Source.find(TrailStart) != std::string::npos;
    std::string addition(hasTrail ? TrailSeparator : TrailStart);
    addition += TrailEntry(module, procedure, Line);
    Source += addition;
  } catch (...) {
    // A trail that cannot grow must not replace the error that it describes.
  }
  Line = 0;
}

Error MakeError(ErrorNumber number) {
  return {static_cast<int32_t>(number), DescriptionOf(number), std::string(LibraryName)};
}

Error CurrentError() {
  try {
    throw;
  } catch (const Error& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return MakeError(ErrorNumber::OutOfMemory);
  } catch (const std::exception& exception) {
    Error error = MakeError(ErrorNumber::InternalError);
    error.Description += ": ";
    error.Description += exception.what();
    return error;
  } catch (...) {
    return MakeError(ErrorNumber::InternalError);
  }
}

}  // namespace vexa
