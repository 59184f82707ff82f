// Paths of the file system and texts, one made of the other: texts are UTF-8 on every machine, while the
// library's own conversions follow the locale on Windows.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace vexa::workbench {

inline std::filesystem::path Utf8Path(std::string_view text) {
  return std::u8string(text.begin(), text.end());
}

inline std::string Utf8Text(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace vexa::workbench
