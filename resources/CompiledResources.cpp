#include "resources/CompiledResources.h"

#include <algorithm>
#include <array>

namespace vexa {
namespace {

#define STRING(id, text) StringEntry{id, text},
#define LANGUAGE_BEGIN(language, primary, country) \
  constexpr auto Texts##language = std::to_array<StringEntry>({
#define LANGUAGE_END(language) \
  });
#include "languages.inc"
#undef STRING
#undef LANGUAGE_BEGIN
#undef LANGUAGE_END

#define STRING(id, text)
#define LANGUAGE_BEGIN(language, primary, country) {language, Texts##language},
#define LANGUAGE_END(language)
constexpr auto Tables = std::to_array<LanguageTable>({
#include "languages.inc"
});
#undef STRING
#undef LANGUAGE_BEGIN
#undef LANGUAGE_END

constexpr bool IsAscending(std::span<const StringEntry> entries) {
  return std::ranges::adjacent_find(entries, [](const StringEntry& left, const StringEntry& right) {
           return left.id >= right.id;
         }) == entries.end();
}
/// Its ids are those of every language.
constexpr std::span<const StringEntry> First = Tables.front().entries;
static_assert(IsAscending(First) && First.front().id >= 0);
static_assert(std::ranges::all_of(Tables, [](const LanguageTable& table) {
  return std::ranges::equal(table.entries, First, {}, &StringEntry::id, &StringEntry::id);
}));

/// Where the text with an id stands, in each of the tables.
constexpr uint16_t NoPlace = UINT16_MAX;
constexpr auto Places = [] {
  std::array<uint16_t, static_cast<size_t>(First.back().id) + 1> places{};
  places.fill(NoPlace);
  for (size_t place = 0; place < First.size(); ++place) {
    places[static_cast<size_t>(First[place].id)] = static_cast<uint16_t>(place);
  }
  return places;
}();

/// Windows keeps the primary language in the low ten bits of a language number.
constexpr int32_t PrimaryLanguage(int32_t language) { return language & 0x3FF; }

const LanguageTable& TableFor(int32_t language) {
  const auto exact = std::ranges::find(Tables, language, &LanguageTable::language);
  if (exact != Tables.end()) return *exact;
  const auto related = std::ranges::find(Tables, PrimaryLanguage(language), [](const LanguageTable& table) {
    return PrimaryLanguage(table.language);
  });
  return related != Tables.end() ? *related : Tables.front();
}

constexpr bool IsIcon(int32_t wanted) {
  switch (wanted) {
#define ICON(id, shows) case id:
#define CURSOR(id, shows)
#include "resources/pictures.inc"
#undef ICON
#undef CURSOR
    return true;
    default:
      return false;
  }
}

constexpr bool IsCursor(int32_t wanted) {
  switch (wanted) {
#define ICON(id, shows)
#define CURSOR(id, shows) case id:
#include "resources/pictures.inc"
#undef ICON
#undef CURSOR
    return true;
    default:
      return false;
  }
}

}  // namespace

std::span<const LanguageTable> LanguageTables() { return Tables; }

CompiledResources::CompiledResources(int32_t language) : table_(TableFor(language)) {}

const TableText* CompiledResources::FindString(int32_t id, MadeText& /*made*/) const {
  if (id < 0 || static_cast<size_t>(id) >= Places.size()) return nullptr;
  const uint16_t place = Places[static_cast<size_t>(id)];
  return place == NoPlace ? nullptr : &table_.entries[place];
}

bool CompiledResources::HasIcon(int32_t id) const { return IsIcon(id); }

bool CompiledResources::HasCursor(int32_t id) const { return IsCursor(id); }

}  // namespace vexa
