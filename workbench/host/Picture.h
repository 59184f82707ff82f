// A picture of a window as it stands on the screen, frame included, whether or not others cover it.
#pragma once

#include <windows.h>

#include <string>

namespace vexa::workbench {

/// Writes a bitmap file of 24 bits a pixel. std::runtime_error when it cannot be written.
void SavePicture(HWND window, const std::wstring& file);

}  // namespace vexa::workbench
