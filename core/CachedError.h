// The error record: a copy of an error with its propagation trail taken apart. Made in an error handler,
// filled by SetTo, then raised again or ended at the top of a user action by Display and Log. It holds no
// reference to anything. "Propogation" is the system's own spelling and stays in every name and text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/Error.h"
#include "core/MessageBox.h"

namespace vexa {

class ErrorLog;
class Resources;

class CachedError {
 public:
  CachedError() = default;
  /// A record of `error` as it is, without a new trail entry.
  explicit CachedError(Error error) : error_(std::move(error)) {}

  const std::string& Description() const { return error_.Description; }
  int32_t HelpContext() const { return error_.HelpContext; }
  const std::string& HelpFile() const { return error_.HelpFile; }
  /// Last operating-system error code.
  int32_t LastDLLError() const { return error_.LastDLLError; }
  int32_t Number() const { return error_.Number; }
  /// The initial source text followed by the trail.
  const std::string& Source() const { return error_.Source; }

  /// Copies the current error and appends the entry of this module and procedure (and the error's line).
  void SetTo(const Error& currentError, std::string_view modName, std::string_view procName);
  /// Raises the record again, all fields kept. Never returns.
  [[noreturn]] void Raise() const;
  CachedError Clone() const { return *this; }
  void Clear() { error_ = Error(); }

  /// The report text with CR LF line breaks: forced English for the log and support, otherwise localized
  /// captions.
  std::string toString(const Resources& resources, bool forceEnglish = false) const;
  /// Shows the localized report in a message box; nothing when Number is 0.
  void Display(const Resources& resources, MessageBoxes& messageBoxes) const;
  /// Hands the record to the error-log writer.
  void Log(ErrorLog& log) const;

  /// Source up to the trail.
  std::string OrgSource() const;
  /// The trail without its opening; empty when there is none.
  std::string PropogationString() const;
  /// Entries of the trail, innermost first; empty when there is none.
  std::vector<std::string> PropogationArray() const;
  int32_t PropogationCount() const;

  /// Parts of one entry, counted from 0 = innermost; error 9 when there is no such entry.
  std::string PropogatedModule(int32_t indexStartAt0) const;
  std::string PropogatedMethod(int32_t indexStartAt0) const;
  /// 0 when the entry has no line.
  int32_t PropogatedLine(int32_t indexStartAt0) const;

  /// The same for the first and the last entry; empty and 0 when there is no trail.
  std::string InnermostModule() const;
  std::string InnermostMethod() const;
  int32_t InnermostLine() const;
  std::string OutermostModule() const;
  std::string OutermostMethod() const;
  int32_t OutermostLine() const;

 private:
  Error error_;
};

/// Where records end up. Writing is the end of the line: an implementation reports its own failures to
/// nobody.
class ErrorLog {
 public:
  ErrorLog() = default;
  ErrorLog(const ErrorLog&) = delete;
  ErrorLog& operator=(const ErrorLog&) = delete;
  virtual ~ErrorLog() = default;
  virtual void Write(const CachedError& record) noexcept = 0;
};

/// Shows a record to the user, then logs it: what the top of every user action does with an error.
class ErrorReporter {
 public:
  ErrorReporter(const Resources& resources, MessageBoxes& messageBoxes, ErrorLog& log)
      : resources_(resources), messageBoxes_(messageBoxes), log_(log) {}
  void Report(const CachedError& record) noexcept;

 private:
  const Resources& resources_;
  MessageBoxes& messageBoxes_;
  ErrorLog& log_;
};

}  // namespace vexa
