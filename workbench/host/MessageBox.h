// Message boxes on the screen, read and answered as a user does.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "core/MessageBox.h"

namespace vexa::workbench {

struct ShownMessage {
  std::string text;
  std::string title;
  MessageIcon icon = MessageIcon::None;
  MessageButtons buttons = MessageButtons::Ok;
};

/// Nothing for a window that is no message box.
std::optional<ShownMessage> ReadMessageBox(HWND window);

/// Presses the button of this answer; it takes effect when the box's thread gets to it.
void AnswerMessageBox(HWND window, MessageAnswer answer);

/// A window's text.
std::wstring TextOfWindow(HWND window);
std::wstring ClassOfWindow(HWND window);

}  // namespace vexa::workbench
