#include "core/CachedError.h"

#include <charconv>

#include "core/Handlers.h"
#include "core/Resources.h"
#include "core/StringIds.h"

namespace vexa {
namespace {

struct TrailEntryParts {
  std::string module;
  std::string method;
  int32_t line = 0;
};

TrailEntryParts TakeApart(std::string_view entry) {
  TrailEntryParts parts;
  if (entry.ends_with(')')) {
    const size_t open = entry.rfind('(');
    if (open != std::string_view::npos) {
      const char* const end = entry.data() + entry.size() - 1;
      const auto [stop, failure] = std::from_chars(entry.data() + open + 1, end, parts.line);
      if (failure == std::errc() && stop == end) entry = entry.substr(0, open);
    }
  }
  const size_t point = entry.rfind('.');  // a procedure name holds no point, a module name may
  if (point == std::string_view::npos) {
    parts.module = entry;
  } else {
    parts.module = entry.substr(0, point);
    parts.method = entry.substr(point + 1);
  }
  return parts;
}

TrailEntryParts EntryAt(const CachedError& record, int32_t index) {
  const std::vector<std::string> entries = record.PropogationArray();
  if (index < 0 || static_cast<size_t>(index) >= entries.size()) {
    throw MakeError(ErrorNumber::SubscriptOutOfRange);
  }
  return TakeApart(entries[static_cast<size_t>(index)]);
}

TrailEntryParts Innermost(const CachedError& record) {
  const std::vector<std::string> entries = record.PropogationArray();
  return entries.empty() ? TrailEntryParts() : TakeApart(entries.front());
}

TrailEntryParts Outermost(const CachedError& record) {
  const std::vector<std::string> entries = record.PropogationArray();
  return entries.empty() ? TrailEntryParts() : TakeApart(entries.back());
}

struct ReportCaptions {
  std::string heading;
  std::string number;
  std::string description;
  std::string source;
  std::string trail;
};

ReportCaptions EnglishCaptions() {
  return {"An error occurred.  Details are below.",
          "Error Number: ", "Description: ", "Source: ", "Propogation Trail (for tech support): "};
}

ReportCaptions LocalizedCaptions(const Resources& resources) {
  return {resources.LoadString(StringId::ErrorOccurred), resources.LoadString(StringId::ErrorNumberCaption),
          resources.LoadString(StringId::ErrorDescriptionCaption),
          resources.LoadString(StringId::ErrorSourceCaption),
          resources.LoadString(StringId::ErrorTrailCaption)};
}

}  // namespace

void CachedError::SetTo(const Error& currentError, std::string_view modName, std::string_view procName) {
  error_ = currentError;
  error_.AppendTrail(modName, procName);
}

void CachedError::Raise() const { throw error_; }

std::string CachedError::toString(const Resources& resources, bool forceEnglish) const {
  constexpr std::string_view lineBreak = "\r\n";
  const ReportCaptions captions = forceEnglish ? EnglishCaptions() : LocalizedCaptions(resources);
  std::string text = captions.heading;
  text.append(lineBreak).append(lineBreak);
  text.append(captions.number).append(std::to_string(Number())).append(lineBreak);
  text.append(captions.description).append(Description());
  // The whole source decides: a record with a trail but no initial source shows the bare caption.
  if (!Source().empty()) {
    text.append(lineBreak).append(lineBreak).append(captions.source).append(OrgSource());
  }
  if (const std::string trail = PropogationString(); !trail.empty()) {
    text.append(lineBreak).append(captions.trail).append(trail);
  }
  return text;
}

void CachedError::Display(const Resources& resources, MessageBoxes& messageBoxes) const {
  if (Number() == 0) return;
  messageBoxes.Show(toString(resources), MessageIcon::Critical, MessageButtons::Ok,
                    resources.LoadString(StringId::ProductName));
}

void CachedError::Log(ErrorLog& log) const { log.Write(*this); }

std::string CachedError::OrgSource() const { return Source().substr(0, Source().find(TrailStart)); }

std::string CachedError::PropogationString() const {
  const size_t start = Source().find(TrailStart);
  return start == std::string::npos ? std::string() : Source().substr(start + TrailStart.size());
}

std::vector<std::string> CachedError::PropogationArray() const {
  std::vector<std::string> entries;
  const std::string trail = PropogationString();
  if (trail.empty()) return entries;
  size_t start = 0;
  for (;;) {
    const size_t end = trail.find(TrailSeparator, start);
    if (end == std::string::npos) break;
    entries.push_back(trail.substr(start, end - start));
    start = end + TrailSeparator.size();
  }
  entries.push_back(trail.substr(start));
  return entries;
}

int32_t CachedError::PropogationCount() const { return static_cast<int32_t>(PropogationArray().size()); }

std::string CachedError::PropogatedModule(int32_t indexStartAt0) const {
  return EntryAt(*this, indexStartAt0).module;
}
std::string CachedError::PropogatedMethod(int32_t indexStartAt0) const {
  return EntryAt(*this, indexStartAt0).method;
}
int32_t CachedError::PropogatedLine(int32_t indexStartAt0) const {
  return EntryAt(*this, indexStartAt0).line;
}

std::string CachedError::InnermostModule() const { return Innermost(*this).module; }
std::string CachedError::InnermostMethod() const { return Innermost(*this).method; }
int32_t CachedError::InnermostLine() const { return Innermost(*this).line; }
std::string CachedError::OutermostModule() const { return Outermost(*this).module; }
std::string CachedError::OutermostMethod() const { return Outermost(*this).method; }
int32_t CachedError::OutermostLine() const { return Outermost(*this).line; }

void ErrorReporter::Report(const CachedError& record) noexcept {
  // A box that cannot be shown must not keep the record out of the log.
  IgnoreErrors([&] { record.Display(resources_, messageBoxes_); });
  IgnoreErrors([&] { record.Log(log_); });
}

}  // namespace vexa
