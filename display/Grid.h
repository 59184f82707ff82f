// A grid of texts with one fixed header row and at least one data row; rows are counted from 1, columns
// from 0. One cell is the current one. OnSelChange is raised when the current cell moves, by the user or
// by code; filling cells raises nothing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "display/Control.h"

namespace vexa {

class Grid final : public Control {
 public:
  using Row = std::vector<std::string>;  // a text a column

  Grid(Form& form, std::string name, int32_t columns);

  int32_t ColumnCount() const { return columns_; }
  /// Data rows, the header not counted.
  int32_t RowCount() const { return static_cast<int32_t>(rows_.size()); }
  const Row& Headers() const { return headers_; }
  void SetHeaders(Row headers);
  const Row& RowAt(int32_t row) const { return rows_[static_cast<size_t>(row - 1)]; }

  /// Back to one blank row with the current cell in its first column.
  void Clear();
  void SetRow(int32_t row, Row texts);
  void AddRow(Row texts);
  /// The current cell keeps its row number, or goes to the last row when it stood behind it.
  void RemoveRow(int32_t row);

  int32_t CurrentRow() const { return currentRow_; }
  int32_t CurrentColumn() const { return currentColumn_; }
  /// Text of the current cell.
  const std::string& Text() const;
  void SetCurrent(int32_t row, int32_t column);

  Event OnSelChange;
  Event OnDoubleClick;

 private:
  int32_t columns_;
  Row headers_;
  std::vector<Row> rows_;
  int32_t currentRow_ = 1;
  int32_t currentColumn_ = 0;
};

}  // namespace vexa
