// The page's window while it is in-place active: a child of the container's window that holds the page's
// form, clipped to what the container grants.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "display/Form.h"
#include "windows/views/FormWindow.h"

namespace vexa::windows {

class PageWindow {
 public:
  using KeepAlive = std::function<std::shared_ptr<void>()>;

  /// `position` in the parent's client coordinates. What `keepAlive` hands out is held while anything runs
  /// in the window. An Error when the window cannot be made.
  PageWindow(Form& form, HWND parent, const RECT& position, KeepAlive keepAlive);
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
  /// The letters that PressMnemonic takes, in capitals.
  std::wstring AccessLetters() const;

  /// The size that the page would like to have, in pixels: in this window, and before there is one.
  SIZE PreferredSize() const;
  static SIZE PreferredSize(Form& form);

 private:
  std::shared_ptr<FormWindow> window_;
};

}  // namespace vexa::windows
