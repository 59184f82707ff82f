// Lower case as the operating system knows it.
#pragma once

#include <string>
#include <string_view>

namespace vexa::workbench {

/// `text` in lower case, all letters of Unicode that have one; bytes that are no UTF-8 stay.
std::string LowerCase(std::string_view text);

}  // namespace vexa::workbench
