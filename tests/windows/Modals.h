// The user in front of modal windows. Steps wait in a queue; the next one is done as soon as the tested code
// waits in a modal loop with nothing left to do, on the window that is then in front. A window that nobody
// expects is closed, so that no test waits for ever, and is a failure unless the user sends away whatever
// comes up.
#pragma once

#include <windows.h>
// windows.h first
#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "windows/com/Text.h"

namespace vexa::windows {

inline std::wstring ClassOf(HWND window) {
  std::array<wchar_t, 64> name{};
  GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return name.data();
}

inline std::wstring TextOfWindow(HWND window) {
  std::wstring text(static_cast<size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
  text.resize(static_cast<size_t>(
      SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

inline bool IsMessageBox(HWND window) {
  return ClassOf(window) == L"#32770" && GetDlgItem(window, 0xFFFF) != nullptr;
}
/// What a message box says.
inline std::string MessageOf(HWND box) { return ToUtf8(TextOfWindow(GetDlgItem(box, 0xFFFF))); }

/// The window of a control of this name, anywhere below `window`.
inline HWND FindNamed(HWND window, const std::string& name) {
  struct Search {
    const std::string& name;
    HWND found = nullptr;
  } search{name};
  EnumChildWindows(
      window,
      [](HWND child, LPARAM argument) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(argument);
        const auto* const own = static_cast<const char*>(GetPropW(child, L"VexaControlName"));
        if (own != nullptr && wanted.name == own) wanted.found = child;
        return wanted.found == nullptr ? TRUE : FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

inline std::string NameOf(HWND control) {
  const auto* const name = static_cast<const char*>(GetPropW(control, L"VexaControlName"));
  return name == nullptr ? std::string() : name;
}

class Modals {
 public:
  using Step = std::function<void(HWND front)>;
  enum class Unexpected { Fail, AreSentAway };

  explicit Modals(Unexpected unexpected = Unexpected::Fail) : unexpected_(unexpected) {
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
  /// Answers the next message box, which has to say this among others, with the button of this id.
  Modals& Answer(const std::string& text, int button) {
    return Then([=](HWND front) {
      EXPECT_TRUE(IsMessageBox(front));
      EXPECT_NE(MessageOf(front).find(text), std::string::npos) << MessageOf(front);
      PostMessageW(GetDlgItem(front, button), BM_CLICK, 0, 0);
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
    RECT area{};
    GetClientRect(control, &area);
    const LPARAM middle = MAKELPARAM(area.right / 2, area.bottom / 2);
    PostMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, middle);
    PostMessageW(control, WM_LBUTTONUP, 0, middle);
  }

  /// Closes a window by the button that changes least.
  static void SendAway(HWND front) {
    for (const int id : {IDCANCEL, IDNO, IDOK}) {
      if (!IsMessageBox(front) || GetDlgItem(front, id) == nullptr) continue;
      PostMessageW(GetDlgItem(front, id), BM_CLICK, 0, 0);
      return;
    }
    PostMessageW(front, WM_CLOSE, 0, 0);
  }

  /// The modal window in front: a dialog of the system or of the module; null when there is none.
  static HWND Front() {
    std::vector<HWND> windows;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM list) -> BOOL {
          reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&windows));
    for (const HWND window : windows) {
      if (IsWindowVisible(window) == FALSE || IsWindowEnabled(window) == FALSE) continue;
      if (ClassOf(window) == L"#32770" || GetPropW(window, L"VexaFormName") != nullptr) return window;
    }
    return nullptr;
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
    if (self.unexpected_ == Unexpected::Fail) {
      ADD_FAILURE() << "nobody expects this window: " << ToUtf8(TextOfWindow(front)) << ": "
                    << (IsMessageBox(front) ? MessageOf(front) : std::string());
    }
    SendAway(front);
  }

  Unexpected unexpected_;
  HWND window_ = nullptr;
  std::deque<Step> steps_;
};

}  // namespace vexa::windows
