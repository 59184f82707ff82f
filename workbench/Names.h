// Names as users write them: compared without case, put together to paths, and suggested when one does not
// exist.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexa::workbench {

/// "; did you mean "X"?" with the nearest of `known`, or "; right would be one of …" when none is near.
std::string SuggestName(std::string_view wrong, const std::vector<std::string_view>& known);

/// Equal but for the case of ASCII letters.
bool SameName(std::string_view left, std::string_view right);

/// A name as part of a path: "\", "/" and "%" in it read "%5C", "%2F" and "%25".
std::string EncodedName(std::string_view name);

/// The encoded names of a path; "\\" and "/" separate them, leading separators do not count.
std::vector<std::string_view> SplitPath(std::string_view path);

}  // namespace vexa::workbench
