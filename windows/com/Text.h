// The two functions that texts cross the Windows border with: inside, every text is UTF-8, outside UTF-16.
// Every UTF-16 text, unpaired surrogates and embedded zeros included, comes back as it was. So does every
// UTF-8 text; an unpaired surrogate has the three bytes that its number would have.
#pragma once

#include <string>
#include <string_view>

namespace vexa::windows {

/// Bytes that are no UTF-8 become U+FFFD, one for each.
std::wstring ToUtf16(std::string_view utf8);
std::string ToUtf8(std::wstring_view utf16);

}  // namespace vexa::windows
