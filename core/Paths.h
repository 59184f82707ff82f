// Paths of Windows files taken apart and put together as texts. "/" separates as "\" does; nothing is looked
// up, made absolute or limited in length.
#pragma once

#include <string>
#include <string_view>

namespace vexa {

/// Everything before the file name, with the separator that ends it.
std::string_view FolderPart(std::string_view path);
/// What follows the last separator.
std::string_view FileNamePart(std::string_view path);
/// The path without the separators that it ends in.
std::string_view WithoutTrailingSeparator(std::string_view path);
/// `folder`, exactly one backslash, `name`.
std::string JoinPath(std::string_view folder, std::string_view name);

}  // namespace vexa
