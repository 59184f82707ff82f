// Brings the keyboard focus back to where it was after another window has had it. Containers differ in
// whether they do it themselves; one that does not would leave the user's keys without a target.
#pragma once

#include <windows.h>

namespace vexa::windows {

class FocusKeeper {
 public:
  FocusKeeper() : focus_(GetFocus()) {}
  FocusKeeper(const FocusKeeper&) = delete;
  FocusKeeper& operator=(const FocusKeeper&) = delete;
  ~FocusKeeper() {
    if (focus_ == nullptr || IsWindow(focus_) == FALSE || GetFocus() == focus_) return;
    const HWND top = GetAncestor(focus_, GA_ROOT);
    if (GetActiveWindow() == top && IsWindowEnabled(focus_) != FALSE && IsWindowVisible(focus_) != FALSE)
      SetFocus(focus_);
  }

 private:
  HWND focus_;
};

}  // namespace vexa::windows
