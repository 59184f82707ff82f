// The error-log writer: one record a call, appended as one line of UTF-8 JSON. The platform supplies the
// file, the clock and the report of component versions; where the log lies is asked when a record is
// written, since the user may move it at any time. In front of a session's first record stands a line with
// the components in full. Nothing that fails here reaches the user.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/CachedError.h"
#include "core/ComponentReport.h"

namespace vexa {

/// Appends to files. One call is one record: it is on its way to the disk when the call returns, no other
/// writer's text stands inside it, and it begins a line of its own, whatever a writer that died has left.
class FileAppender {
 public:
  FileAppender() = default;
  FileAppender(const FileAppender&) = delete;
  FileAppender& operator=(const FileAppender&) = delete;
  virtual ~FileAppender() = default;
  /// Error 75 when the file cannot be written.
  virtual void Append(const std::string& path, std::string_view text) = 0;
};

class JsonErrorLog final : public ErrorLog {
 public:
  struct Environment {
    FileAppender& files;
    /// Full path of the log; empty when there is nowhere to write.
    std::function<std::string()> path;
    /// The time now, ISO 8601 in UTC.
    std::function<std::string()> now;
    /// What is at work; one report serves all logs of a session.
    ComponentReport& components;
  };
  explicit JsonErrorLog(Environment environment) : environment_(std::move(environment)) {}

  void Write(const CachedError& record) noexcept override;

 private:
  Environment environment_;
};

/// `text` as a JSON string literal in pure UTF-8: surrogates that stand alone are escaped, bytes that are
/// no UTF-8 become U+FFFD.
std::string JsonLiteral(std::string_view text);

}  // namespace vexa
