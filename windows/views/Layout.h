// How the controls of a screen stand: boxes within boxes, in rows, columns and tables, with distances in
// dialog units and no position at all. One small table of them a screen, in layouts/; how big everything
// becomes, the texts decide. Controls are named as in the form; a control in no box is not shown.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace vexa::windows {

struct Box {
  enum class Kind { Control, Row, Column, Table, Framed, Filler };

  Kind kind = Kind::Filler;
  std::string_view control{};  // of a control, or of the frame around the one child
  std::vector<Box> children{};
  bool growsWide = false;    // takes what a row has left over
  bool growsHigh = false;    // takes what a column has left over
  bool fillsRow = false;     // as high as its row, instead of centred in it
  bool prose = false;        // a paragraph: wrapped, and no name of the field behind it
  bool equalWidths = false;  // a row whose children are all as wide as the widest
  int indent = 0;            // from the left
  int gap = -1;              // to the box before; -1 is the distance of related controls
  int width = 0;             // at least
  bool centred = false;      // a label whose text stands in its middle
  int wrapAt = 100;          // a paragraph asks for no more width than this
  int overColumns = 0;       // a slider whose positions stand over the middles of so many equal columns
  int lines = 0;             // exactly so many lines of text high; 0: what the content needs
  int32_t picture = 0;       // icon of a control whose form gives it none

  Box&& Wide() && { return growsWide = true, std::move(*this); }
  Box&& High() && { return growsHigh = true, std::move(*this); }
  Box&& FillsRow() && { return fillsRow = true, std::move(*this); }
  Box&& EqualWidths() && { return equalWidths = true, std::move(*this); }
  Box&& Indent(int units) && { return indent = units, std::move(*this); }
  Box&& Gap(int units) && { return gap = units, std::move(*this); }
  Box&& Width(int units) && { return width = units, std::move(*this); }
  Box&& Centred() && { return centred = true, std::move(*this); }
  Box&& WrapAt(int units) && { return wrapAt = units, std::move(*this); }
  Box&& OverColumns(int count) && { return overColumns = count, std::move(*this); }
  Box&& Lines(int count) && { return lines = count, std::move(*this); }
  Box&& DefaultPicture(int32_t id) && { return picture = id, std::move(*this); }
};

struct Layout {
  std::string_view form;
  int width;   // of the content, at least; texts may need more
  int height;  // of the content, at least; 0: what the content needs
  int margin;  // around the content
  Box content;
};

namespace distance {
inline constexpr int Related = 4;
inline constexpr int Unrelated = 7;
inline constexpr int Sections = 9;
inline constexpr int UnderSection = 14;  // contents begin under the caption, right of the picture
inline constexpr int DialogMargin = 7;
}  // namespace distance

namespace boxes {

inline Box Item(std::string_view control) { return Box{.kind = Box::Kind::Control, .control = control}; }
inline Box Prose(std::string_view control) {
  return Box{.kind = Box::Kind::Control, .control = control, .growsWide = true, .prose = true};
}
inline Box Filler() { return Box{.kind = Box::Kind::Filler, .growsWide = true}; }
inline Box Row(std::vector<Box> children) {
  return Box{.kind = Box::Kind::Row, .children = std::move(children)};
}
inline Box Column(std::vector<Box> children) {
  return Box{.kind = Box::Kind::Column, .children = std::move(children)};
}
/// Rows whose cells stand in common columns; the cells of the first row say which columns grow.
inline Box Table(std::vector<Box> rows) { return Box{.kind = Box::Kind::Table, .children = std::move(rows)}; }
inline Box Framed(std::string_view frame, Box content) {
  std::vector<Box> children;
  children.push_back(std::move(content));
  return Box{.kind = Box::Kind::Framed, .control = frame, .children = std::move(children)};
}
/// The buttons that end a dialog, at its right edge, with `others` at its left.
inline Box EndButtons(std::vector<Box> others, std::vector<Box> ending) {
  others.push_back(Filler());
  others.push_back(Row(std::move(ending)).EqualWidths());
  return Row(std::move(others)).Gap(distance::Sections);
}

}  // namespace boxes

/// The box of a control, or null.
const Box* FindBox(const Box& box, std::string_view control);

}  // namespace vexa::windows
