// The texts and pictures that are compiled into the library: one table a language, made from the same
// source files as the resources of the Windows module.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "core/Resources.h"

namespace vexa {

struct StringEntry : TableText {
  constexpr StringEntry(int32_t theId, std::string_view theText) : TableText(theText), id(theId) {}
  int32_t id;
};

/// One language's texts, ascending by id.
struct LanguageTable {
  int32_t language;  // Windows language number
  std::span<const StringEntry> entries;
};

/// English (1033), the fallback, first; then the others that CMakeLists.txt names.
std::span<const LanguageTable> LanguageTables();

class CompiledResources final : public ResourceSource {
 public:
  /// The tables in the user's interface language: exactly this one, else one of the same primary language,
  /// else English.
  explicit CompiledResources(int32_t language);

  const TableText* FindString(int32_t id, MadeText& made) const override;
  bool HasIcon(int32_t id) const override;
  bool HasCursor(int32_t id) const override;

  /// The language that was found.
  int32_t Language() const { return table_.language; }

 private:
  const LanguageTable& table_;
};

}  // namespace vexa
