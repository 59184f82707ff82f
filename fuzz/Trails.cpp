// Error sources from anywhere: whatever stands in one, taking its trail apart fails nowhere, and a new entry
// is found again at its end.
#include "core/CachedError.h"
#include "core/JsonErrorLog.h"
#include "core/Resources.h"
#include "fuzz/Fuzz.h"
#include "resources/CompiledResources.h"

using vexa::CachedError;
using vexa::fuzz::Promise;

namespace {

void TakeApart(const CachedError& record) {
  const std::vector<std::string> entries = record.PropogationArray();
  Promise(entries.size() == static_cast<size_t>(record.PropogationCount()),
          "the count is that of the entries");
  Promise(record.Source().starts_with(record.OrgSource()), "the original source comes first");
  // Each of them walks along the trail: asking for every entry would take the square of its length.
  const int32_t count = record.PropogationCount();
  if (count == 0) return;
  for (const int32_t i : {0, count / 2, count - 1}) {
    record.PropogatedModule(i);
    record.PropogatedMethod(i);
    record.PropogatedLine(i);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const vexa::CompiledResources texts(1033);
  static const vexa::Resources resources(texts);
  vexa::fuzz::Input input(data, size);
  vexa::Error error;
  error.Number = input.Number();
  error.Line = input.Number();
  error.Description = input.Text();
  const std::string module(input.Text());
  const std::string procedure(input.Text());
  error.Source = input.Rest();

  TakeApart(CachedError(error));
  CachedError record;
  record.SetTo(error, module, procedure);
  TakeApart(record);
  const bool isNamed = !module.empty() || !procedure.empty() || error.Line != 0;
  if (isNamed) Promise(record.PropogationCount() >= 1, "there is an entry once one was added");
  Promise(record.Source().starts_with(error.Source), "the source before is kept");
  constexpr const char* marks = "[]():.->\r\n";
  const auto isPlain = [&](const std::string& text) {
    return text.find_first_of(marks) == std::string::npos;
  };
  if (isPlain(module) && isPlain(procedure) && isPlain(error.Source) && !module.empty() &&
      !procedure.empty()) {
    Promise(record.OutermostModule() == module && record.OutermostMethod() == procedure &&
                record.OutermostLine() == error.Line,
            "the new entry is the outermost one");
  }
  record.toString(resources);
  const std::string literal = vexa::JsonLiteral(record.Source());
  Promise(literal.size() >= 2 && literal.find('\n') == std::string::npos, "a record is one line");
  return 0;
}
