// The three ways in which a procedure treats an error that its body raises: pass it on with a trail entry,
// show and log it at the top of a user action, or go on with the next statement.
#pragma once

#include <string_view>
#include <utility>

#include "core/CachedError.h"
#include "core/Error.h"

namespace vexa {

/// The system's one global: error trapping in Apply and Help is off and cmdIDEApply is shown where it is
/// True. False in the product and never set at run time.
inline bool InDevelopmentMode = false;

/// Runs `body` as module.procedure; an error that leaves it carries one more trail entry.
template <typename Body>
decltype(auto) PassOn(std::string_view module, std::string_view procedure, Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (Error& error) {
    // In place: the same outcome as CachedError's SetTo and Raise, without copying the record a level.
    error.AppendTrail(module, procedure);
    throw;
  } catch (...) {
    RaiseWithTrail(module, procedure);
  }
}

/// Runs `body` as module.procedure at the top of a user action; an error ends here, shown to the user and
/// then written to the error log. True when no error came.
template <typename Body>
bool ShowAndLog(ErrorReporter& reporter, std::string_view module, std::string_view procedure, Body&& body) {
  try {
    std::forward<Body>(body)();
    return true;
  } catch (...) {
    CachedError record;
    record.SetTo(CurrentError(), module, procedure);
    reporter.Report(record);
    return false;
  }
}

/// Runs `statement` and goes on whatever happens. True when no error came.
template <typename Statement>
bool IgnoreErrors(Statement&& statement) noexcept {
  try {
    std::forward<Statement>(statement)();
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace vexa
