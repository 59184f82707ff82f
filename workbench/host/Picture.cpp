#include "workbench/host/Picture.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "windows/views/Handles.h"

namespace vexa::workbench {
namespace {

using windows::Verified;

void CloseBitmap(HBITMAP bitmap) { DeleteObject(bitmap); }
using BitmapHandle = windows::Owned<HBITMAP, CloseBitmap>;

}  // namespace

void SavePicture(HWND window, const std::wstring& file) {
  RedrawWindow(window, nullptr, nullptr,
               RDW_INVALIDATE | RDW_FRAME | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  RECT area{};
  Verified(GetWindowRect(window, &area), "GetWindowRect");
  const auto width = static_cast<int>(area.right - area.left);
  const auto height = static_cast<int>(area.bottom - area.top);

  // Of the window itself: printing it into another picture leaves its controls blank.
  const HDC screen = Verified(GetWindowDC(window), "GetWindowDC");
  const windows::MemoryDc memory(Verified(CreateCompatibleDC(screen), "CreateCompatibleDC"));
  const BitmapHandle bitmap(
      Verified(CreateCompatibleBitmap(screen, width, height), "CreateCompatibleBitmap"));
  const HGDIOBJ former = SelectObject(memory.Get(), bitmap.Get());
  Verified(BitBlt(memory.Get(), 0, 0, width, height, screen, 0, 0, SRCCOPY), "BitBlt");
  SelectObject(memory.Get(), former);
  ReleaseDC(window, screen);

  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  const size_t stride = (static_cast<size_t>(width) * 3 + 3) / 4 * 4;
  std::vector<char> pixels(stride * static_cast<size_t>(height));
  Verified(GetDIBits(memory.Get(), bitmap.Get(), 0, static_cast<UINT>(height), pixels.data(), &info,
                     DIB_RGB_COLORS),
           "GetDIBits");

  BITMAPFILEHEADER header{};
  header.bfType = 0x4D42;  // "BM"
  header.bfOffBits = sizeof header + sizeof info.bmiHeader;
  header.bfSize = header.bfOffBits + static_cast<DWORD>(pixels.size());
  std::ofstream out(std::filesystem::path(file), std::ios::binary);
  out.write(reinterpret_cast<const char*>(&header), sizeof header);
  out.write(reinterpret_cast<const char*>(&info.bmiHeader), sizeof info.bmiHeader);
  out.write(pixels.data(), static_cast<std::streamsize>(pixels.size()));
  if (!out.flush()) throw std::runtime_error(std::filesystem::path(file).string() + ": cannot be written");
}

}  // namespace vexa::workbench
