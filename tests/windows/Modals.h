// The user in front of modal windows. Steps wait in a queue; the next one is done as soon as the tested code
// waits in a modal loop with nothing left to do, on the window that is then in front. A window that nobody
// expects is closed, so that no test waits for ever, and is a failure unless the user has a step for all of
// those.
#pragma once

#include <windows.h>
// windows.h first
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>

#include "windows/com/Text.h"
#include "workbench/host/ControlWindow.h"
#include "workbench/host/MessageBox.h"

namespace vexa::windows {

using workbench::ClassOfWindow;
using workbench::ControlNameOf;
using workbench::ReadMessageBox;
using workbench::TextOfWindow;

/// The window of a control of this name, `window` or anywhere below it.
inline HWND FindNamed(HWND window, const std::string& name) {
  if (ControlNameOf(window) == name) return window;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    if (const HWND found = FindNamed(child, name)) return found;
  }
  return nullptr;
}

class Modals {
 public:
  using Step = std::function<void(HWND front)>;

  /// `unexpected` is done whenever a window is in front and no step waits; without one that is a failure.
  explicit Modals(Step unexpected = {}) : unexpected_(std::move(unexpected)) {
    window_ = CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    // The lowest of all messages: it comes when there is nothing else to do.
    SetTimer(window_, 1, USER_TIMER_MINIMUM, Tick);
  }
  Modals(const Modals&) = delete;
  Modals& operator=(const Modals&) = delete;
  ~Modals() {
    EXPECT_EQ(Front(), nullptr) << "a modal window was left open";
    EXPECT_EQ(steps_.size(), 0U) << "fewer modal windows came up than expected";
    DestroyWindow(window_);
  }

  /// The next thing that the user does.
  Modals& Then(Step step) {
    steps_.push_back(std::move(step));
    return *this;
  }
  /// Answers the next message box, which has to say this, with its OK.
  Modals& Answer(const std::string& text) {
    return Then([=](HWND front) {
      const auto message = ReadMessageBox(front);
      EXPECT_EQ(message ? message->text : "no message", text);
      SendAway(front);
    });
  }
  /// Clicks a control of the dialog in front.
  Modals& Click(const std::string& control) {
    return Then([=](HWND front) { PostClick(FindNamed(front, control)); });
  }
  /// Presses a key in the window in front.
  Modals& Press(int key) {
    return Then([=](HWND) { PostKey(key); });
  }

  static void PostKey(int key) {
    PostMessageW(GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(key), 1);
    PostMessageW(GetFocus(), WM_KEYUP, static_cast<WPARAM>(key), static_cast<LPARAM>(0xC0000001));
  }
  static void PostClick(HWND control) {
    const POINT place = workbench::MiddleOf(control);
    const LPARAM middle = MAKELPARAM(place.x, place.y);
    PostMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, middle);
    PostMessageW(control, WM_LBUTTONUP, 0, middle);
  }

  /// Closes a window by the button that changes least.
  static void SendAway(HWND front) {
    for (const int id : {IDCANCEL, IDNO, IDOK}) {
      const HWND button = ClassOfWindow(front) == L"#32770" ? GetDlgItem(front, id) : nullptr;
      if (button != nullptr) return void(PostMessageW(button, BM_CLICK, 0, 0));
    }
    PostMessageW(front, WM_CLOSE, 0, 0);
  }

  /// The modal window in front: a dialog of the system or of the module; null when there is none.
  static HWND Front() {
    HWND front = nullptr;
    const auto isFront = [](HWND window, LPARAM found) -> BOOL {
      if (IsWindowVisible(window) == FALSE || IsWindowEnabled(window) == FALSE) return TRUE;
      if (ClassOfWindow(window) != L"#32770" && workbench::FormNameOf(window).empty()) return TRUE;
      *reinterpret_cast<HWND*>(found) = window;
      return FALSE;
    };
    EnumThreadWindows(GetCurrentThreadId(), isFront, reinterpret_cast<LPARAM>(&front));
    return front;
  }

 private:
  static void CALLBACK Tick(HWND window, UINT, UINT_PTR, DWORD) {
    auto& self = *reinterpret_cast<Modals*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    const HWND front = Front();
    if (front == nullptr) return;
    if (!self.steps_.empty()) {
      const Step step = std::move(self.steps_.front());
      self.steps_.pop_front();
      step(front);
      return;
    }
    if (self.unexpected_) return self.unexpected_(front);
    const auto message = ReadMessageBox(front);
    ADD_FAILURE() << "nobody expects this window: "
                  << (message ? message->text : ToUtf8(TextOfWindow(front)));
    SendAway(front);
  }

  Step unexpected_;
  HWND window_ = nullptr;
  std::deque<Step> steps_;
};

}  // namespace vexa::windows
