#include "windows/views/ControlView.h"

#include "display/TextBox.h"
#include "windows/com/Text.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

constexpr UINT_PTR SubclassId = 1;

bool IsMousePress(UINT message) {
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
      return true;
    default:
      return false;
  }
}

/// Whether a label or check box right before the field is seen, so that its text names the field to
/// assistive software; these look at the window before.
bool IsNamedByWindowBefore(const Form& form, const Control& naming, const Control& field) {
  const auto& controls = form.Controls();
  for (size_t at = 1; at < controls.size(); ++at) {
    if (controls[at] == &field) {
      return controls[at - 1] == &naming && naming.Kind() == ControlKind::Label;
    }
  }
  return false;
}

}  // namespace

void ControlView::Create(const wchar_t* windowClass, DWORD style, DWORD extendedStyle) {
  const Control* naming = NamingControl(host_.Shown(), host_.ShownLayout(), control_);
  if (IsField(control_.Kind()) &&
      (naming == nullptr || !IsNamedByWindowBefore(host_.Shown(), *naming, control_))) {
    // Fields have no text of their own: assistive software reads the label before, seen or not.
    hiddenName_ = Verified(CreateWindowExW(0, L"STATIC", AccessibleName().c_str(), WS_CHILD, 0, 0, 0, 0,
                                           host_.Window(), nullptr, host_.Module(), nullptr),
                           "CreateWindowExW");
  }
  shownText_ = WindowText();
  window_ = Verified(CreateWindowExW(extendedStyle, windowClass, shownText_.c_str(), WS_CHILD | style, 0, 0,
                                     0, 0, host_.Window(), nullptr, host_.Module(), nullptr),
                     "CreateWindowExW");
  Verified(SetWindowSubclass(window_, Procedure, SubclassId, reinterpret_cast<DWORD_PTR>(this)),
           "SetWindowSubclass");
  Send(window_, WM_SETFONT, host_.Face().Font(), FALSE);
  // Names by which programs that drive the windows find them; the form and the control keep the texts.
  Verified(SetPropW(window_, L"VexaControlName", const_cast<char*>(control_.Name().c_str())), "SetPropW");
  Verified(SetPropW(host_.Window(), L"VexaFormName", const_cast<char*>(host_.Shown().Name().c_str())),
           "SetPropW");
}

ControlView::~ControlView() {
  if (window_ == nullptr) return;
  if (hiddenName_ != nullptr) DestroyWindow(hiddenName_);
  const HWND window = window_;
  Forget();
  DestroyWindow(window);
}

/// The container may destroy the windows before the view goes.
void ControlView::Forget() {
  RemovePropW(window_, L"VexaControlName");
  RemovePropW(window_, L"VexaPicture");
  RemoveWindowSubclass(window_, Procedure, SubclassId);
  window_ = nullptr;
  hiddenName_ = nullptr;
}

std::wstring ControlView::AccessibleName() const {
  const Control* naming = NamingControl(host_.Shown(), host_.ShownLayout(), control_);
  return ToUtf16(naming == nullptr ? host_.Shown().Caption() : naming->Caption());
}

void ControlView::Sync() {
  if (window_ == nullptr) return;
  // A hidden window cannot be used anyway; whether it is disabled shows once it is seen.
  const bool enabled = control_.IsUsable() || (!control_.IsShown() && control_.Enabled());
  if ((IsWindowEnabled(window_) != FALSE) != enabled) EnableWindow(window_, enabled ? TRUE : FALSE);
  const bool shown = control_.IsShown();
  const bool seen = (GetWindowLongPtrW(window_, GWL_STYLE) & WS_VISIBLE) != 0;
  if (seen != shown) ShowWindow(window_, shown ? SW_SHOWNA : SW_HIDE);
  SetPropW(window_, L"VexaPicture", reinterpret_cast<HANDLE>(static_cast<INT_PTR>(control_.Picture().id)));
}

void ControlView::Resync() {
  if (window_ != nullptr) Sync();
}

void ControlView::SyncText() {
  if (hiddenName_ != nullptr) {
    Verified(SetWindowTextW(hiddenName_, AccessibleName().c_str()), "SetWindowTextW");
  }
  std::wstring text = WindowText();
  if (text == shownText_) return;
  Verified(SetWindowTextW(window_, text.c_str()), "SetWindowTextW");
  shownText_ = std::move(text);
}

void ControlView::SyncFont() { Send(window_, WM_SETFONT, host_.Face().Font(), TRUE); }

void ControlView::Place(const RECT& area) {
  Verified(SetWindowPos(window_, nullptr, static_cast<int>(area.left), static_cast<int>(area.top),
                        static_cast<int>(area.right - area.left), static_cast<int>(area.bottom - area.top),
                        SWP_NOZORDER | SWP_NOACTIVATE),
           "SetWindowPos");
}

int ControlView::HeightForLines(int lines) const { return lines * host_.Face().LineHeight(); }

bool ControlView::KeyDown(int key) {
  switch (key) {
    case VK_SHIFT:
    case VK_CONTROL:
    case VK_MENU:
    case VK_SPACE:  // the window shows how it goes down, and says when it was pressed
    case VK_TAB:    // these three belong to whoever runs the message loop
    case VK_RETURN:
    case VK_ESCAPE:
      return false;
    default:
      if (TakesLetters() && (key < VK_F1 || key > VK_F24)) return false;
      host_.Actions().Press(key, GetKeyState(VK_SHIFT) < 0);
      return true;
  }
}

bool ControlView::ReachByMouse() {
  if (!control_.TakesFocus()) return true;
  return host_.Actions().Focus(control_) == Outcome::Done && window_ != nullptr;
}

bool ControlView::Pressed(UINT message) {
  const bool wasDown = GetKeyState(VK_LBUTTON) < 0;
  released_ = false;
  if (!ReachByMouse()) return true;
  // A message box on the way here may have taken the release, for which the window would wait.
  const bool released = released_ || (wasDown && GetKeyState(VK_LBUTTON) >= 0);
  const bool isLeft = message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK;
  if (!released || !isLeft) return false;
  host_.Actions().Click(control_);
  return true;
}

void ControlView::FocusArrived() {
  if (host_.Shown().Focus() == &control_) return;
  // A box that keeps the focus says why: it has to have the focus by then, for that is where the message
  // gives it back to.
  const auto* const box = dynamic_cast<const TextBox*>(host_.Shown().Focus());
  const bool mayStay = box != nullptr && box->OnValidate;
  if (mayStay) host_.TakeFocus();
  host_.Actions().Focus(control_);
  if (host_.Shown().Focus() != &control_) {
    host_.SettleFocus();
  } else if (mayStay) {
    host_.TakeFocus();
  }
}

bool ControlView::Intercept(UINT message, WPARAM wParam, LPARAM /*lParam*/, LRESULT& result) {
  if (IsMousePress(message)) return Pressed(message);
  if (message == WM_KEYDOWN && KeyDown(static_cast<int>(wParam))) return true;
  if (message == WM_CHAR && (wParam == VK_RETURN || wParam == VK_ESCAPE || wParam == VK_TAB)) return true;
  static_cast<void>(result);
  return false;
}

LRESULT ControlView::Default(UINT message, WPARAM wParam, LPARAM lParam) {
  return DefSubclassProc(window_, message, wParam, lParam);
}

LRESULT CALLBACK ControlView::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                        UINT_PTR /*id*/, DWORD_PTR view) {
  auto& self = *reinterpret_cast<ControlView*>(view);
  const std::shared_ptr<void> keep = self.host_.KeepAlive();
  LRESULT result = 0;
  bool taken = false;
  if (message == WM_LBUTTONUP) self.released_ = true;
  self.host_.Guard([&] { taken = self.Intercept(message, wParam, lParam, result); });
  if (taken) return result;
  if (message == WM_NCDESTROY) self.Forget();
  result = DefSubclassProc(window, message, wParam, lParam);
  if (message == WM_SETFOCUS) self.host_.Guard([&] { self.FocusArrived(); });
  return result;
}

}  // namespace vexa::windows
