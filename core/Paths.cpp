#include "core/Paths.h"

namespace vexa {
namespace {

constexpr std::string_view Separators = "\\/";

}  // namespace

std::string_view FolderPart(std::string_view path) { return path.substr(0, path.find_last_of("\\/:") + 1); }

std::string_view FileNamePart(std::string_view path) { return path.substr(FolderPart(path).size()); }

std::string_view WithoutTrailingSeparator(std::string_view path) {
  return path.substr(0, path.find_last_not_of(Separators) + 1);
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  return std::string(WithoutTrailingSeparator(folder)).append("\\").append(name);
}

}  // namespace vexa
