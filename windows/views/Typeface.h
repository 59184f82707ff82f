// The system's message font at one resolution, and the measures that follow from it: how wide and high texts
// are, and dialog units, in which layouts state their distances. Owned by the window that writes with it.
#pragma once

#include <windows.h>

#include <string>

#include "windows/views/Handles.h"

namespace vexa::windows {

class Typeface {
 public:
  static constexpr int BaseDpi = 96;

  explicit Typeface(int dpi);
  Typeface(const Typeface&) = delete;
  Typeface& operator=(const Typeface&) = delete;
  ~Typeface();

  HFONT Font() const { return font_.Get(); }
  int Dpi() const { return dpi_; }

  /// Pixels for `pixels` at 96 dpi, and for design units of 1/1440 inch; and back to those.
  int Scale(int pixels) const { return MulDiv(pixels, dpi_, BaseDpi); }
  int FromTwips(int twips) const { return MulDiv(twips, dpi_, TwipsPerInch); }
  int ToTwips(int pixels) const { return MulDiv(pixels, TwipsPerInch, dpi_); }
  /// Pixels for dialog units: a quarter of the average letter's width, an eighth of its height.
  int UnitsX(int units) const { return MulDiv(units, averageWidth_, 4); }
  int UnitsY(int units) const { return MulDiv(units, lineHeight_, 8); }

  int LineHeight() const { return lineHeight_; }
  /// Width of a text on one line; line breaks in it count.
  int WidthOf(const std::wstring& text) const;
  /// Height of a text that is wrapped at words into `width`; at least one line.
  int HeightOf(const std::wstring& text, int width) const;

 private:
  static constexpr int TwipsPerInch = 1440;

  int dpi_;
  FontHandle font_;
  MemoryDc dc_;
  HGDIOBJ formerFont_ = nullptr;
  int lineHeight_ = 0;
  int averageWidth_ = 0;
};

/// The resolution of the monitor that shows `window`, or of the screen on systems that know only one.
int DpiOf(HWND window);

}  // namespace vexa::windows
