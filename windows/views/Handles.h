// Small owners for what Windows hands out, and the check that ends every call to it. A handle's type names
// its closer; windows are the exception, since their parent destroys them.
#pragma once

#include <windows.h>
// windows.h first
#include <commctrl.h>

#include <utility>

namespace vexa::windows {

/// Owner of a handle that `Close` ends.
template <typename Handle, auto Close>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Handle handle) : handle_(handle) {}
  Owned(Owned&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Owned& operator=(Owned other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Owned() {
    if (handle_ != nullptr) Close(handle_);
  }
  Handle Get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }

 private:
  Handle handle_ = nullptr;
};

inline void CloseFont(HFONT font) { DeleteObject(font); }
using FontHandle = Owned<HFONT, CloseFont>;
using IconHandle = Owned<HICON, DestroyIcon>;
using ImageListHandle = Owned<HIMAGELIST, ImageList_Destroy>;
using MemoryDc = Owned<HDC, DeleteDC>;
using WindowHandle = Owned<HWND, DestroyWindow>;

/// Throws the system's error `code`, named after the `call` that failed.
[[noreturn]] void ThrowSystemError(DWORD code, const char* call);

/// What a Windows call returned; an error when that is null or FALSE.
template <typename Result>
Result Verified(Result result, const char* call) {
  if (!result) ThrowSystemError(GetLastError(), call);
  return result;
}

/// SendMessageW with the casts that its arguments need.
template <typename W = WPARAM, typename L = LPARAM>
LRESULT Send(HWND window, UINT message, W wParam = {}, L lParam = {}) {
  const auto raw = [](auto value) {
    if constexpr (std::is_pointer_v<decltype(value)>) {
      return reinterpret_cast<LPARAM>(value);
    } else {
      return static_cast<LPARAM>(value);
    }
  };
  return SendMessageW(window, message, static_cast<WPARAM>(raw(wParam)), raw(lParam));
}

}  // namespace vexa::windows
