// Lower case as the operating system knows it.
#pragma once

#include <string>
#include <string_view>

namespace vexa::workbench {

/// `text` in lower case, all letters of Unicode that have one; bytes that are no UTF-8 stay.
std::string LowerCase(std::string_view text);

/// Order of names of files and registry keys, whose case makes no difference.
struct LessIgnoringCase {
  bool operator()(std::string_view left, std::string_view right) const {
    return LowerCase(left) < LowerCase(right);
  }
};

}  // namespace vexa::workbench
