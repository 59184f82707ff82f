// The page's window while it is in-place active: a child of the container's window that holds the page's
// form, clipped to what the container grants.
#pragma once

#include <windows.h>

#include <memory>

#include "display/Form.h"

namespace vexa::windows {

enum class KeyOutcome { NotTaken, Taken, LeavesForward, LeavesBackward };

class PageWindow {
 public:
  /// `position` in the parent's client coordinates. An Error when the window cannot be made.
  PageWindow(Form& form, HWND parent, const RECT& position);
  PageWindow(const PageWindow&) = delete;
  PageWindow& operator=(const PageWindow&) = delete;
  ~PageWindow();

  HWND Handle() const;
  void Move(const RECT& position, const RECT& clip);
  void Show(bool visible);
  /// Puts the keyboard focus where the form has it.
  void SetFocus();
  KeyOutcome Translate(const MSG& message);
  bool PressMnemonic(const MSG& message);

  /// The size that the page would like to have, in pixels.
  static SIZE PreferredSize(Form& form);

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vexa::windows
