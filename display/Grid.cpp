#include "display/Grid.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vexa {

Grid::Grid(Form& form, std::string name, int32_t columns)
    : Control(form, std::move(name), ControlKind::Grid),
      columns_(columns),
      headers_(Columns()),
      cells_(Columns()) {}

void Grid::SetHeaders(std::vector<std::string> headers) {
  headers_ = std::move(headers);
  Changed();
}

void Grid::Clear() {
  cells_.assign(Columns(), {});
  texts_ = {};
  Changed();
  SetCurrent(1, 0);
}

std::string_view Grid::Keep(std::string_view text) {
  if (text.empty()) return {};
  char* const kept = texts_.Take(text.size());
  std::memcpy(kept, text.data(), text.size());
  return {kept, text.size()};
}

void Grid::SetRow(int32_t row, Texts texts) {
  size_t cell = RowStart(row);
  const size_t end = cell + Columns();
  for (const std::string_view text : texts) cells_[cell++] = Keep(text);
  while (cell < end) cells_[cell++] = {};
  Changed();
}

void Grid::AddRow(Texts texts) {
  const size_t end = cells_.size() + Columns();
  for (const std::string_view text : texts) cells_.push_back(Keep(text));
  cells_.resize(end);
  Changed();
}

void Grid::RemoveRow(int32_t row) {
  const auto first = cells_.begin() + static_cast<std::ptrdiff_t>(RowStart(row));
  cells_.erase(first, first + columns_);
  Changed();
  SetCurrent(std::min(currentRow_, RowCount()), currentColumn_);
}

void Grid::SetCurrent(int32_t row, int32_t column) {
  if (row == currentRow_ && column == currentColumn_) return;
  currentRow_ = row;
  currentColumn_ = column;
  Changed();
  Raise(OnSelChange);
}

}  // namespace vexa
