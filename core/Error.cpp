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

void AppendTrailEntry(std::string& trail, std::string_view module, std::string_view procedure, int32_t line) {
  if (module.empty() && procedure.empty() && line == 0) return;
  trail += module.empty() ? std::string_view("?") : module;
  trail += '.';
  trail += procedure.empty() ? std::string_view("?") : procedure;
  if (line != 0) {
    trail += '(';
    trail += std::to_string(line);
    trail += ')';
  }
}

}  // namespace

Error::Error(int32_t number, std::string description, std::string source)
    : Number(number), Description(std::move(description)), Source(std::move(source)) {}

void Error::AppendTrail(std::string_view module, std::string_view procedure) noexcept {
  const size_t before = Source.size();
  try {
    Source += Source.find(TrailStart) == std::string::npos ? TrailStart : TrailSeparator;
    AppendTrailEntry(Source, module, procedure, Line);
  } catch (...) {
    // A trail that cannot grow must not replace the error that it describes.
    Source.resize(before);
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

void RaiseWithTrail(std::string_view module, std::string_view procedure) {
  Error error = CurrentError();
  error.AppendTrail(module, procedure);
  throw error;
}

}  // namespace vexa
