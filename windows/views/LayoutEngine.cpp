#include "windows/views/LayoutEngine.h"

#include <algorithm>
#include <numeric>

namespace vexa::windows {
namespace {

/// From a slider's edge to the middle of its thumb at the first position, at 96 dpi.
constexpr int SliderInset = 13;

int Total(const std::vector<int>& values) { return std::accumulate(values.begin(), values.end(), 0); }

int WidthOf(const RECT& area) { return static_cast<int>(area.right - area.left); }
int HeightOf(const RECT& area) { return static_cast<int>(area.bottom - area.top); }

/// Hands `spare` in equal parts to those of `sizes` whose child grows. What is missing is taken from them.
template <typename Grows>
void Share(std::vector<int>& sizes, int spare, Grows grows) {
  int receivers = 0;
  for (size_t index = 0; index < sizes.size(); ++index) receivers += grows(index) ? 1 : 0;
  for (size_t index = 0; index < sizes.size() && receivers > 0; ++index) {
    if (!grows(index)) continue;
    const int part = std::max(spare / receivers, -sizes[index]);
    sizes[index] += part;
    spare -= part;
    --receivers;
  }
}

}  // namespace

const Box* FindBox(const Box& box, std::string_view control) {
  if (!control.empty() && box.control == control) return &box;
  for (const Box& child : box.children) {
    if (const Box* found = FindBox(child, control)) return found;
  }
  return nullptr;
}

SIZE LayoutEngine::PreferredSize() const {
  const int marginX = typeface_.UnitsX(layout_.margin);
  const int marginY = typeface_.UnitsY(layout_.margin);
  const int width = std::max(MinWidth(layout_.content), typeface_.UnitsX(layout_.width));
  const int height = std::max(HeightFor(layout_.content, width), typeface_.UnitsY(layout_.height));
  return {width + 2 * marginX, height + 2 * marginY};
}

std::vector<LayoutEngine::Placement> LayoutEngine::Place(SIZE area) const {
  const int marginX = typeface_.UnitsX(layout_.margin);
  const int marginY = typeface_.UnitsY(layout_.margin);
  std::vector<Placement> placements;
  Place(layout_.content, {marginX, marginY, area.cx - marginX, area.cy - marginY}, placements);
  return placements;
}

bool LayoutEngine::IsShown(const Box& box) const {
  switch (box.kind) {
    case Box::Kind::Filler:
      return true;
    case Box::Kind::Control:
    case Box::Kind::Framed: {
      const Measured* control = find_(box.control);
      return control != nullptr && control->TakesRoom();
    }
    default:
      return std::ranges::any_of(
          box.children, [&](const Box& child) { return child.kind != Box::Kind::Filler && IsShown(child); });
  }
}

int LayoutEngine::GapBefore(const Box& box, bool first, bool across) const {
  if (first) return 0;
  const int units = box.gap < 0 ? distance::Related : box.gap;
  return across ? typeface_.UnitsX(units) : typeface_.UnitsY(units);
}

RECT LayoutEngine::FramePadding(const Box& box) const {
  const int side = typeface_.UnitsX(distance::Unrelated);
  return {side, find_(box.control)->HeightFor(0), side, typeface_.UnitsY(distance::Related)};
}

int LayoutEngine::MinWidth(const Box& box) const {
  int width = 0;
  switch (box.kind) {
    case Box::Kind::Filler:
      break;
    case Box::Kind::Control:
      width = find_(box.control)->MinWidth();
      if (box.prose) width = std::min(width, typeface_.UnitsX(box.wrapAt));
      break;
    case Box::Kind::Framed: {
      const RECT padding = FramePadding(box);
      width = std::max(find_(box.control)->MinWidth(),
                       MinWidth(box.children.front()) + static_cast<int>(padding.left + padding.right));
      break;
    }
    case Box::Kind::Row:
    case Box::Kind::Table:
      width = Total(MinWidths(box));
      break;
    case Box::Kind::Column:
      for (const Box& child : box.children) {
        if (IsShown(child)) width = std::max(width, MinWidth(child));
      }
      break;
  }
  return std::max(width, typeface_.UnitsX(box.width)) + typeface_.UnitsX(box.indent);
}

LayoutEngine::Widths LayoutEngine::MinWidths(const Box& box) const {
  Widths widths;
  const auto take = [&](const Box& row) {
    if (!IsShown(row)) return;
    widths.resize(std::max(widths.size(), row.children.size()));
    int widest = 0;
    bool first = true;
    for (size_t index = 0; index < row.children.size(); ++index) {
      const Box& cell = row.children[index];
      if (!IsShown(cell)) continue;
      const int width = MinWidth(cell) + GapBefore(cell, first, true);
      widths[index] = std::max(widths[index], width);
      widest = std::max(widest, MinWidth(cell));
      first = false;
    }
    if (!row.equalWidths) return;
    first = true;
    for (size_t index = 0; index < row.children.size(); ++index) {
      if (!IsShown(row.children[index])) continue;
      widths[index] = widest + GapBefore(row.children[index], first, true);
      first = false;
    }
  };
  if (box.kind == Box::Kind::Table) {
    for (const Box& row : box.children) take(row);
  } else {
    take(box);
  }
  return widths;
}

LayoutEngine::Widths LayoutEngine::CellWidths(const Box& box, int width) const {
  Widths widths = MinWidths(box);
  if (widths.empty()) return widths;
  const Box& pattern = box.kind == Box::Kind::Table ? box.children.front() : box;
  Share(widths, width - Total(widths), [&](size_t index) {
    return index < pattern.children.size() && pattern.children[index].growsWide &&
           (box.kind == Box::Kind::Table || IsShown(pattern.children[index]));
  });
  return widths;
}

int LayoutEngine::RowHeight(const Box& row, const Widths& widths) const {
  int height = 0;
  bool first = true;
  for (size_t index = 0; index < row.children.size(); ++index) {
    const Box& cell = row.children[index];
    if (!IsShown(cell)) continue;
    height = std::max(height, HeightFor(cell, widths[index] - GapBefore(cell, first, true)));
    first = false;
  }
  return height;
}

std::vector<int> LayoutEngine::ChildHeights(const Box& box, int width) const {
  std::vector<int> heights;
  const Widths widths = box.kind == Box::Kind::Table ? CellWidths(box, width) : Widths();
  for (const Box& child : box.children) {
    if (!IsShown(child)) {
      heights.push_back(0);
    } else {
      heights.push_back(box.kind == Box::Kind::Table ? RowHeight(child, widths) : HeightFor(child, width));
    }
  }
  return heights;
}

int LayoutEngine::HeightFor(const Box& box, int width) const {
  width -= typeface_.UnitsX(box.indent);
  switch (box.kind) {
    case Box::Kind::Filler:
      return 0;
    case Box::Kind::Control: {
      const Measured& control = *find_(box.control);
      return box.lines > 0 ? control.HeightForLines(box.lines) : control.HeightFor(width);
    }
    case Box::Kind::Framed: {
      const RECT padding = FramePadding(box);
      return HeightFor(box.children.front(), width - static_cast<int>(padding.left + padding.right)) +
             static_cast<int>(padding.top + padding.bottom);
    }
    case Box::Kind::Row:
      return RowHeight(box, CellWidths(box, width));
    case Box::Kind::Table:
    case Box::Kind::Column: {
      int height = Total(ChildHeights(box, width));
      bool first = true;
      for (const Box& child : box.children) {
        if (!IsShown(child)) continue;
        height += GapBefore(child, first, false);
        first = false;
      }
      return height;
    }
  }
  return 0;
}

void LayoutEngine::Place(const Box& box, const RECT& given, std::vector<Placement>& placements) const {
  if (!IsShown(box)) return;
  RECT area = given;
  area.left += typeface_.UnitsX(box.indent);
  switch (box.kind) {
    case Box::Kind::Filler:
      return;
    case Box::Kind::Control:
      if (box.overColumns > 0) {
        const int inset = WidthOf(area) / (2 * box.overColumns) - typeface_.Scale(SliderInset);
        area.left += inset;
        area.right -= inset;
      }
      placements.push_back({find_(box.control), area});
      return;
    case Box::Kind::Framed: {
      placements.push_back({find_(box.control), area});
      const RECT padding = FramePadding(box);
      Place(box.children.front(),
            {area.left + padding.left, area.top + padding.top, area.right - padding.right,
             area.bottom - padding.bottom},
            placements);
      return;
    }
    case Box::Kind::Row:
      PlaceRow(box, CellWidths(box, WidthOf(area)), area, placements);
      return;
    case Box::Kind::Table:
    case Box::Kind::Column:
      PlaceColumn(box, area, placements);
      return;
  }
}

void LayoutEngine::PlaceRow(const Box& row, const Widths& widths, const RECT& area,
                            std::vector<Placement>& placements) const {
  LONG x = area.left;
  bool first = true;
  for (size_t index = 0; index < row.children.size(); ++index) {
    const Box& cell = row.children[index];
    if (!IsShown(cell)) {
      // A table's column stays where the other rows need it.
      x += widths[index];
      continue;
    }
    const int gap = GapBefore(cell, first, true);
    const int height =
        cell.fillsRow ? HeightOf(area) : std::min(HeightFor(cell, widths[index] - gap), HeightOf(area));
    const LONG y = area.top + (HeightOf(area) - height) / 2;
    Place(cell, {x + gap, y, x + widths[index], y + height}, placements);
    x += widths[index];
    first = false;
  }
}

void LayoutEngine::PlaceColumn(const Box& box, const RECT& area, std::vector<Placement>& placements) const {
  std::vector<int> heights = ChildHeights(box, WidthOf(area));
  const Widths widths = box.kind == Box::Kind::Table ? CellWidths(box, WidthOf(area)) : Widths();
  int gaps = 0;
  bool first = true;
  for (const Box& child : box.children) {
    if (!IsShown(child)) continue;
    gaps += GapBefore(child, first, false);
    first = false;
  }
  Share(heights, HeightOf(area) - Total(heights) - gaps,
        [&](size_t index) { return box.children[index].growsHigh && IsShown(box.children[index]); });
  LONG y = area.top;
  first = true;
  for (size_t index = 0; index < box.children.size(); ++index) {
    const Box& child = box.children[index];
    if (!IsShown(child)) continue;
    y += GapBefore(child, first, false);
    const RECT place{area.left, y, area.right, y + heights[index]};
    if (box.kind == Box::Kind::Table) {
      PlaceRow(child, widths, place, placements);
    } else {
      Place(child, place, placements);
    }
    y += heights[index];
    first = false;
  }
}

}  // namespace vexa::windows
