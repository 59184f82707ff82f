// Files that are whole at every moment: written aside, flushed to the disk and renamed into place.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vexa::workbench {

/// Takes the next piece of the file's content.
using TextSink = std::function<void(std::string_view)>;

/// Replaces the file at `path` (a link is followed) by what `write` hands to its sink. Throws
/// std::system_error when that fails; the old file is then untouched and nothing is left beside it. Leftovers
/// of writers that died are removed on the way.
void WriteFileAtomically(const std::string& path, const std::function<void(const TextSink&)>& write);

/// The whole content of a file. Throws std::system_error.
std::string ReadWholeFile(const std::string& path);

}  // namespace vexa::workbench
