#include "windows/control/PageWindow.h"

#include "windows/control/Module.h"
#include "windows/views/FormWindow.h"
#include "windows/views/Handles.h"
#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

PageWindow::PageWindow(Form& form, HWND parent, const RECT& position, KeepAlive keepAlive)
    : window_(FormWindow::Make(
          form, {ModuleHandle(), FindLayout(form.Name()), parent, nullptr, std::move(keepAlive)})) {
  Move(position, position);
}

PageWindow::~PageWindow() { window_->Close(); }

HWND PageWindow::Handle() const { return window_->Handle(); }

void PageWindow::Move(const RECT& position, const RECT& clip) {
  const auto width = static_cast<int>(position.right - position.left);
  const auto height = static_cast<int>(position.bottom - position.top);
  Verified(SetWindowPos(Handle(), nullptr, static_cast<int>(position.left), static_cast<int>(position.top),
                        width, height, SWP_NOZORDER | SWP_NOACTIVATE),
           "SetWindowPos");
  RECT seen{};
  if (EqualRect(&position, &clip) != FALSE || IntersectRect(&seen, &position, &clip) == FALSE) {
    SetWindowRgn(Handle(), nullptr, TRUE);
    return;
  }
  OffsetRect(&seen, static_cast<int>(-position.left), static_cast<int>(-position.top));
  const HRGN region = Verified(CreateRectRgnIndirect(&seen), "CreateRectRgnIndirect");
  if (SetWindowRgn(Handle(), region, TRUE) == 0) DeleteObject(region);  // else the window owns it
}

void PageWindow::Show(bool visible) { ShowWindow(Handle(), visible ? SW_SHOWNA : SW_HIDE); }

// These may end with this object gone.

void PageWindow::SetFocus() { std::shared_ptr(window_)->TakeFocus(); }

KeyOutcome PageWindow::Translate(const MSG& message) { return std::shared_ptr(window_)->Translate(message); }

bool PageWindow::PressMnemonic(const MSG& message) {
  return std::shared_ptr(window_)->PressAccessKey(static_cast<wchar_t>(message.wParam));
}

std::wstring PageWindow::AccessLetters() const { return window_->AccessLetters(); }

SIZE PageWindow::PreferredSize() const { return window_->PreferredSize(); }

SIZE PageWindow::PreferredSize(Form& form) {
  // The controls are measured in a window that nobody sees.
  const auto window = FormWindow::Make(form, {ModuleHandle(), FindLayout(form.Name()), HWND_MESSAGE});
  return window->PreferredSize();
}

}  // namespace vexa::windows
