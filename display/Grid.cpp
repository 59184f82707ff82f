#include "display/Grid.h"

#include <algorithm>
#include <utility>

namespace vexa {

Grid::Grid(Form& form, std::string name, int32_t columns)
    : Control(form, std::move(name), ControlKind::Grid),
      columns_(columns),
      headers_(static_cast<size_t>(columns)),
      rows_(1, Row(static_cast<size_t>(columns))) {}

void Grid::SetHeaders(Row headers) {
  headers_ = std::move(headers);
  Changed();
}

void Grid::Clear() {
  rows_.assign(1, Row(static_cast<size_t>(columns_)));
  Changed();
  SetCurrent(1, 0);
}

void Grid::SetRow(int32_t row, Row texts) {
  rows_[static_cast<size_t>(row - 1)] = std::move(texts);
  Changed();
}

void Grid::AddRow(Row texts) {
  rows_.push_back(std::move(texts));
  Changed();
}

void Grid::RemoveRow(int32_t row) {
  rows_.erase(rows_.begin() + (row - 1));
  Changed();
  SetCurrent(std::min(currentRow_, RowCount()), currentColumn_);
}

const std::string& Grid::Text() const { return RowAt(currentRow_)[static_cast<size_t>(currentColumn_)]; }

void Grid::SetCurrent(int32_t row, int32_t column) {
  if (row == currentRow_ && column == currentColumn_) return;
  currentRow_ = row;
  currentColumn_ = column;
  Changed();
  Raise(OnSelChange);
}

}  // namespace vexa
