#include "workbench/Names.h"

#include <algorithm>
#include <numeric>

namespace vexa::workbench {
namespace {

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// Levenshtein's distance, case ignored.
size_t Distance(std::string_view left, std::string_view right) {
  std::vector<size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < left.size(); ++i) {
    size_t diagonal = row[0]++;
    for (size_t j = 0; j < right.size(); ++j) {
      const size_t replace = diagonal + (LowerCase(left[i]) == LowerCase(right[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replace, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string SuggestName(std::string_view wrong, const std::vector<std::string_view>& known) {
  size_t tooFar = 2 + wrong.size() / 4;
  const std::string_view* nearest = nullptr;
  for (const std::string_view& name : known) {
    // The lengths alone tell most names apart.
    if (std::max(wrong.size(), name.size()) - std::min(wrong.size(), name.size()) >= tooFar) continue;
    const size_t distance = Distance(wrong, name);
    if (distance >= tooFar) continue;
    tooFar = distance;
    nearest = &name;
  }
  if (nearest != nullptr) return "; did you mean \"" + std::string(*nearest) + "\"?";
  constexpr size_t most = 24;
  std::string text = "; right would be ";
  if (known.size() > 1) text += "one of ";
  for (size_t i = 0; i < known.size() && i < most; ++i) text.append(i == 0 ? "" : ", ").append(known[i]);
  return known.size() > most ? text + ", …" : text;
}

bool SameName(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, {}, LowerCase, LowerCase);
}

std::string EncodedName(std::string_view name) {
  std::string encoded;
  for (const char c : name) {
    switch (c) {
      case '\\':
        encoded += "%5C";
        break;
      case '/':
        encoded += "%2F";
        break;
      case '%':
        encoded += "%25";
        break;
      default:
        encoded += c;
    }
  }
  return encoded;
}

std::vector<std::string_view> SplitPath(std::string_view path) {
  std::vector<std::string_view> parts;
  while (!path.empty()) {
    const size_t end = std::min(path.find_first_of("\\/"), path.size());
    if (end > 0) parts.push_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return parts;
}

}  // namespace vexa::workbench
