// A grid of texts with one fixed header row and at least one data row; rows are counted from 1, columns
// from 0. One cell is the current one. OnSelChange is raised when the current cell moves, by the user or
// by code; filling cells raises nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/TextArena.h"
#include "display/Control.h"

namespace vexa {

class Grid final : public Control {
 public:
  using Texts = std::initializer_list<std::string_view>;  // a text a column; columns without one are blank

  Grid(Form& form, std::string name, int32_t columns);

  int32_t ColumnCount() const { return columns_; }
  /// Data rows, the header not counted.
  int32_t RowCount() const { return static_cast<int32_t>(cells_.size() / Columns()); }
  const std::vector<std::string>& Headers() const { return headers_; }
  void SetHeaders(std::vector<std::string> headers);
  /// Valid until the grid is cleared.
  std::string_view TextAt(int32_t row, int32_t column) const {
    return cells_[RowStart(row) + static_cast<size_t>(column)];
  }

  /// Back to one blank row with the current cell in its first column.
  void Clear();
  void SetRow(int32_t row, Texts texts);
  void AddRow(Texts texts);
  /// The current cell keeps its row number, or goes to the last row when it stood behind it.
  void RemoveRow(int32_t row);

  int32_t CurrentRow() const { return currentRow_; }
  int32_t CurrentColumn() const { return currentColumn_; }
  /// Text of the current cell.
  std::string_view Text() const { return TextAt(currentRow_, currentColumn_); }
  void SetCurrent(int32_t row, int32_t column);

  Event OnSelChange;
  Event OnDoubleClick;

 private:
  size_t Columns() const { return static_cast<size_t>(columns_); }
  size_t RowStart(int32_t row) const { return static_cast<size_t>(row - 1) * Columns(); }
  std::string_view Keep(std::string_view text);

  int32_t columns_;
  std::vector<std::string> headers_;
  /// Row by row. What rows that were replaced or removed said stays in the arena until the grid is cleared,
  /// which is whenever it is filled anew: users replace them one by one.
  std::vector<std::string_view> cells_;
  TextArena texts_;
  int32_t currentRow_ = 1;
  int32_t currentColumn_ = 0;
};

}  // namespace vexa
