#include <windows.h>
// windows.h first
#include <stdexcept>

#include "workbench/LowerCase.h"

namespace vexa::workbench {

std::string LowerCase(std::string_view text) {
  if (text.empty()) return {};
  const auto length = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  const int units = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), length);
  std::wstring lower(static_cast<size_t>(units), L'\0');
  if (LCMapStringEx(LOCALE_NAME_USER_DEFAULT, LCMAP_LOWERCASE, wide.data(), units, lower.data(), units,
                    nullptr, nullptr, 0) == 0) {
    throw std::runtime_error("the system knows no lower case");
  }
  constexpr int mostBytesOfAUnit = 3;
  std::string bytes(lower.size() * mostBytesOfAUnit, '\0');
  bytes.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, lower.data(), units, bytes.data(),
                                                       static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

}  // namespace vexa::workbench
