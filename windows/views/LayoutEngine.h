// Turns a layout's boxes into rectangles. Widths come first, from what every control asks for; heights
// follow, since wrapped texts grow high when they get narrow. Hidden controls take no room. Made for one
// pass and forgotten.
#pragma once

#include <windows.h>

#include <functional>
#include <string_view>
#include <vector>

#include "windows/views/Layout.h"
#include "windows/views/Typeface.h"

namespace vexa::windows {

/// What the engine asks of a control.
class Measured {
 public:
  Measured() = default;
  Measured(const Measured&) = delete;
  Measured& operator=(const Measured&) = delete;
  virtual ~Measured() = default;
  virtual bool TakesRoom() const = 0;
  /// Width at which nothing is cut; a paragraph may be wrapped narrower.
  virtual int MinWidth() const = 0;
  virtual int HeightFor(int width) const = 0;
  /// Height with `lines` lines of text inside.
  virtual int HeightForLines(int lines) const = 0;
};

class LayoutEngine {
 public:
  using Find = std::function<Measured*(std::string_view control)>;
  struct Placement {
    Measured* control;
    RECT area;
  };

  LayoutEngine(const Layout& layout, const Typeface& typeface, Find find)
      : layout_(layout), typeface_(typeface), find_(std::move(find)) {}

  /// Width and height that show everything, margins included.
  SIZE PreferredSize() const;
  /// Where everything stands in an area of this size. Too small an area cuts at the right and bottom.
  std::vector<Placement> Place(SIZE area) const;

 private:
  using Widths = std::vector<int>;

  bool IsShown(const Box& box) const;
  int MinWidth(const Box& box) const;
  int HeightFor(const Box& box, int width) const;
  void Place(const Box& box, const RECT& given, std::vector<Placement>& placements) const;

  int GapBefore(const Box& box, bool first, bool across) const;
  /// The least widths of a row's or table's cells, and what is handed to them in `width`.
  Widths MinWidths(const Box& box) const;
  Widths CellWidths(const Box& box, int width) const;
  int RowHeight(const Box& row, const Widths& widths) const;
  void PlaceRow(const Box& row, const Widths& widths, const RECT& area,
                std::vector<Placement>& placements) const;
  void PlaceColumn(const Box& box, const RECT& area, std::vector<Placement>& placements) const;
  /// Heights of a column's or table's children in `width`; 0 for those that are not shown.
  std::vector<int> ChildHeights(const Box& box, int width) const;
  RECT FramePadding(const Box& box) const;

  const Layout& layout_;
  const Typeface& typeface_;
  Find find_;
};

}  // namespace vexa::windows
