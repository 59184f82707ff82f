// How many handles this process has of the windows' kind and of the drawing kind.
#pragma once

#include <windows.h>

#include <cstdint>

namespace vexa::windows {

struct HandleCounts {
  int user = 0;
  int gdi = 0;
  friend bool operator==(const HandleCounts&, const HandleCounts&) = default;
};

/// Windows counts them itself. Wine does not, and answers 0; but it takes a handle without its upper half for
/// any handle of that number, so there all numbers are tried.
inline HandleCounts CountHandles() {
  HandleCounts counts{static_cast<int>(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)),
                      static_cast<int>(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))};
  if (counts.user != 0 || counts.gdi != 0) return counts;
  const auto handle = [](uintptr_t number) { return reinterpret_cast<HANDLE>(number); };
  for (uintptr_t number = 1; number < 0x4000; ++number) {
    if (GetObjectType(handle(number)) != 0) ++counts.gdi;
  }
  for (uintptr_t number = 0x20; number < 0xFFF0; number += 2) {
    const HWND window = static_cast<HWND>(handle(number));
    DWORD process = 0;
    if (IsWindow(window) != FALSE) {
      GetWindowThreadProcessId(window, &process);
      if (process == GetCurrentProcessId()) ++counts.user;
      continue;
    }
    ICONINFO icon{};
    if (IsMenu(static_cast<HMENU>(handle(number))) != FALSE) {
      ++counts.user;
    } else if (GetIconInfo(static_cast<HICON>(handle(number)), &icon) != FALSE) {
      ++counts.user;
      DeleteObject(icon.hbmColor);
      DeleteObject(icon.hbmMask);
    }
  }
  return counts;
}

}  // namespace vexa::windows
