#include "windows/views/Typeface.h"

#include <algorithm>
#include <string_view>

namespace vexa::windows {
namespace {

int ScreenDpi() {
  const HDC screen = Verified(GetDC(nullptr), "GetDC");
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dpi > 0 ? dpi : Typeface::BaseDpi;
}

/// The message font, which the system describes at its own resolution, at `dpi`.
HFONT CreateMessageFont(int dpi) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  Verified(SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0),
           "SystemParametersInfoW");
  LOGFONTW& font = metrics.lfMessageFont;
  font.lfHeight = MulDiv(font.lfHeight, dpi, ScreenDpi());
  font.lfWidth = 0;
  return Verified(CreateFontIndirectW(&font), "CreateFontIndirectW");
}

}  // namespace

Typeface::Typeface(int dpi)
    : dpi_(dpi),
      font_(CreateMessageFont(dpi)),
      dc_(Verified(CreateCompatibleDC(nullptr), "CreateCompatibleDC")),
      formerFont_(SelectObject(dc_.Get(), font_.Get())) {
  TEXTMETRICW metrics{};
  Verified(GetTextMetricsW(dc_.Get(), &metrics), "GetTextMetricsW");
  lineHeight_ = metrics.tmHeight;
  // The average that dialog units are defined by is that of the alphabet, not the font's own.
  constexpr std::wstring_view alphabet = L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
  SIZE size{};
  Verified(GetTextExtentPoint32W(dc_.Get(), alphabet.data(), static_cast<int>(alphabet.size()), &size),
           "GetTextExtentPoint32W");
  averageWidth_ = std::max(1, static_cast<int>((size.cx / 26 + 1) / 2));
}

Typeface::~Typeface() { SelectObject(dc_.Get(), formerFont_); }

int Typeface::WidthOf(const std::wstring& text) const {
  if (text.empty()) return 0;
  RECT bounds{};
  Verified(DrawTextW(dc_.Get(), text.c_str(), static_cast<int>(text.size()), &bounds,
                     DT_CALCRECT | DT_NOPREFIX | DT_EXPANDTABS),
           "DrawTextW");
  return static_cast<int>(bounds.right);
}

int Typeface::HeightOf(const std::wstring& text, int width) const {
  if (text.empty()) return lineHeight_;
  RECT bounds{0, 0, std::max(width, 1), 0};
  Verified(DrawTextW(dc_.Get(), text.c_str(), static_cast<int>(text.size()), &bounds,
                     DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS),
           "DrawTextW");
  return std::max(static_cast<int>(bounds.bottom), lineHeight_);
}

int DpiOf(HWND window) {
  using Function = UINT(WINAPI*)(HWND);  // since Windows 10
  const auto function = reinterpret_cast<Function>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  const UINT dpi = function == nullptr || window == nullptr ? 0 : function(window);
  return dpi == 0 ? ScreenDpi() : static_cast<int>(dpi);
}

}  // namespace vexa::windows
