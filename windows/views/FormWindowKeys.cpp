// How the keyboard gets around in a form's window: the focus, Tab, access keys, default and cancel buttons.
#include <algorithm>

#include "windows/views/FormWindow.h"
#include "windows/views/Handles.h"

namespace vexa::windows {

const Button* FormWindow::DrawnDefault() const { return form_.EffectiveDefaultButton(); }

void FormWindow::SettleFocus() { PostSettle(); }

HWND FormWindow::FocusTarget() const {
  const Control* const focus = form_.Focus();
  const auto found = focus == nullptr ? byName_.end() : byName_.find(focus->Name());
  return found == byName_.end() ? window_ : found->second->Window();
}

bool FormWindow::HasKeyboard() const {
  const HWND focus = GetFocus();
  return focus != nullptr && (focus == window_ || IsChild(window_, focus) != FALSE);
}

void FormWindow::TakeFocus() {
  if (!closed_) SetFocus(FocusTarget());
}

void FormWindow::FollowFocus() {
  const bool pressing = GetCapture() != nullptr && IsChild(window_, GetCapture()) != FALSE;
  if (!pressing && GetFocus() != FocusTarget()) SetFocus(FocusTarget());
}

void FormWindow::ShowKeyboardCues() {
  Send(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEACCEL | UISF_HIDEFOCUS));
}

KeyOutcome FormWindow::Translate(const MSG& message) {
  if (closed_ || (message.hwnd != window_ && IsChild(window_, message.hwnd) == FALSE))
    return KeyOutcome::NotTaken;
  const std::shared_ptr<void> keep = KeepAlive();
  KeyOutcome outcome = KeyOutcome::NotTaken;
  Guard([&] {
    const ControlView* const view = FindView(message.hwnd);
    const auto key = static_cast<int>(message.wParam);
    const bool plain = GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_MENU) >= 0;
    switch (message.message) {
      case WM_SYSKEYDOWN:
        ShowKeyboardCues();
        break;
      case WM_SYSCHAR:
        if (PressAccessKey(static_cast<wchar_t>(message.wParam))) outcome = KeyOutcome::Taken;
        break;
      case WM_CHAR:
        if (view != nullptr && !view->TakesLetters() && key > VK_SPACE &&
            PressAccessKey(static_cast<wchar_t>(message.wParam))) {
          outcome = KeyOutcome::Taken;
        }
        break;
      case WM_KEYDOWN:
        if (!plain) break;
        if (key == VK_TAB) {
          ShowKeyboardCues();
          outcome = Tab(GetKeyState(VK_SHIFT) < 0);
        } else if (key == VK_RETURN || key == VK_ESCAPE) {
          const bool ours =
              key == VK_RETURN ? form_.EffectiveDefaultButton() != nullptr : form_.CancelButton() != nullptr;
          if (!ours) break;
          outcome = KeyOutcome::Taken;
          actions_.Press(key);
        } else if (key >= VK_PRIOR && key <= VK_DOWN) {
          // Here they never mean what a container makes of them.
          outcome = KeyOutcome::Taken;
          DispatchMessageW(&message);
        }
        break;
      default:
        break;
    }
  });
  return outcome;
}

bool FormWindow::TakesReturn() const {
  const Control* const focus = form_.Focus();
  return form_.EffectiveDefaultButton() != nullptr ||
         (focus != nullptr && focus->Kind() == ControlKind::ExtLabel);
}

KeyOutcome FormWindow::Tab(bool backwards) {
  const std::vector<Control*>& controls = form_.Controls();
  const Control* const next = form_.NextInTabOrder(form_.Focus(), backwards);
  const auto from = std::ranges::find(controls, form_.Focus());
  const auto to = std::ranges::find(controls, next);
  const bool wraps = next == nullptr || (from != controls.end() && (backwards ? to >= from : to <= from));
  if (setting_.dialog == nullptr && wraps) {
    // On in the container, unless an entry here is not valid yet.
    const auto* const box = dynamic_cast<const TextBox*>(form_.Focus());
    if (box != nullptr && !box->Validate()) return KeyOutcome::Taken;
    return backwards ? KeyOutcome::LeavesBackward : KeyOutcome::LeavesForward;
  }
  // Where the focus arrives or is kept, what stands there is typed over.
  const Outcome outcome = actions_.Leave(backwards);
  if (outcome == Outcome::Done || outcome == Outcome::FocusKept) {
    Settle();
    if (ControlView* const view = FindView(FocusTarget())) view->SelectContent();
  }
  return KeyOutcome::Taken;
}

bool FormWindow::PressAccessKey(wchar_t letter) {
  Control* const target = keys_->Target(letter);
  if (closed_ || target == nullptr || !target->IsUsable()) return false;
  const std::shared_ptr<void> keep = KeepAlive();
  Guard([&] {
    ShowKeyboardCues();
    Activate(*target);
  });
  return true;
}

void FormWindow::Activate(Control& control) {
  // First the focus: a window that the click opens gives it back to where it was.
  if (actions_.Focus(control) != Outcome::Done || closed_) return;
  TakeFocus();
  switch (control.Kind()) {
    case ControlKind::Button:
    case ControlKind::CheckBox:
    case ControlKind::OptionButton:
      actions_.Click(control);
      break;
    default:
      if (ControlView* const view = FindView(FocusTarget())) view->SelectContent();
      break;
  }
}

}  // namespace vexa::windows
