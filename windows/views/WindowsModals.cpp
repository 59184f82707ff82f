#include "windows/views/WindowsModals.h"

#include <exception>

#include "windows/desktop/FocusKeeper.h"
#include "windows/views/FormWindow.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

/// The top-level window that a dialog of this form stands over.
HWND OwnerWindow(const Form* owner) {
  const auto* const window = owner == nullptr ? nullptr : dynamic_cast<const FormWindow*>(owner->View());
  return window == nullptr ? GetActiveWindow() : GetAncestor(window->Handle(), GA_ROOT);
}

/// The dialog on the screen and its owner disabled; afterwards the owner is first made usable again, so that
/// it becomes the active window and not one of another program.
class Showing {
 public:
  Showing(Dialog& dialog, FormWindow& window, HWND owner)
      : dialog_(dialog),
        window_(window),
        owner_(owner != nullptr && IsWindowEnabled(owner) != FALSE ? owner : nullptr) {
    dialog_.Show();
    // Nothing can fail any more: whatever was begun is taken back at the end.
    if (owner_ != nullptr) EnableWindow(owner_, FALSE);
    ShowWindow(window_.Handle(), SW_SHOW);
  }
  Showing(const Showing&) = delete;
  Showing& operator=(const Showing&) = delete;
  ~Showing() {
    dialog_.Hide();
    if (owner_ != nullptr) EnableWindow(owner_, TRUE);
    window_.Close();
    if (owner_ != nullptr) SetActiveWindow(owner_);
  }

 private:
  Dialog& dialog_;
  FormWindow& window_;
  HWND owner_;
};

void RunUntilHidden(const Dialog& dialog, FormWindow& window) {
  while (dialog.IsShowing() && IsWindow(window.Handle()) != FALSE) {
    MSG message{};
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got == -1) ThrowSystemError(GetLastError(), "GetMessageW");
    if (got == 0) {
      // The program ends: whoever runs the outer loop has to hear of it too.
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    if (CallMsgFilterW(&message, MSGF_DIALOGBOX) == FALSE &&
        window.Translate(message) == KeyOutcome::NotTaken) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    if (const std::exception_ptr failure = window.TakeFailure()) std::rethrow_exception(failure);
  }
}

}  // namespace

void WindowsModals::ShowModal(Dialog& dialog, Form* owner) {
  const FocusKeeper focus;
  const HWND ownerWindow = OwnerWindow(owner);
  const std::shared_ptr<FormWindow> window =
      FormWindow::Make(dialog, {module_, layouts_(dialog.Name()), ownerWindow, &dialog});
  const Showing showing(dialog, *window, ownerWindow);
  RunUntilHidden(dialog, *window);
}

}  // namespace vexa::windows
