// Outlook's folder picker: a modal dialog with the stores and their folders in a tree.
#pragma once

#include <windows.h>

#include <optional>

#include "workbench/World.h"

namespace vexa::workbench {

inline constexpr const wchar_t* FolderPickerClass = L"VexaFolderPicker";
/// The picker's tree and buttons; each item's parameter is the index of its folder.
inline constexpr int FolderPickerTree = 100;

/// Runs the dialog; nothing when it is cancelled. `owner` is disabled meanwhile and may be null.
std::optional<FolderIndex> ShowFolderPicker(HWND owner, const World& world);

}  // namespace vexa::workbench
