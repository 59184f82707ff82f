#include "windows/views/FormWindow.h"

#include <algorithm>
#include <utility>

#include "core/Error.h"
#include "windows/com/Text.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

constexpr const wchar_t* WindowClass = L"VexaForm";
constexpr UINT SettleMessage = WM_APP;
constexpr int PictureSize = 16;  // at 96 dpi
constexpr int FirstControlId = 100;

/// The class belongs to the module that this code is part of, and goes with it.
class FormClass {
 public:
  explicit FormClass(WNDPROC procedure) {
    constexpr DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    Verified(GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(procedure), &module_), "GetModuleHandleExW");
    WNDCLASSEXW definition{};
    definition.cbSize = sizeof definition;
    definition.lpfnWndProc = procedure;
    definition.hInstance = module_;
    definition.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    definition.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
    definition.lpszClassName = WindowClass;
    Verified(RegisterClassExW(&definition), "RegisterClassExW");
  }
  FormClass(const FormClass&) = delete;
  FormClass& operator=(const FormClass&) = delete;
  ~FormClass() { UnregisterClassW(WindowClass, module_); }

  HINSTANCE Module() const { return module_; }

 private:
  HMODULE module_ = nullptr;
};

bool GrowsHigh(const Box& box) {
  return (box.growsHigh && box.kind != Box::Kind::Filler) || std::ranges::any_of(box.children, GrowsHigh);
}

DWORD DialogStyle(const Layout& layout) {
  // A window that shows a list is worth making larger.
  return WS_POPUP | WS_CAPTION | WS_SYSMENU | (GrowsHigh(layout.content) ? WS_THICKFRAME : DS_MODALFRAME);
}

DWORD DialogExtendedStyle(const Dialog& dialog) {
  return WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT | (dialog.TopMost() ? WS_EX_TOPMOST : 0U);
}

int WidthOf(const RECT& area) { return static_cast<int>(area.right - area.left); }
int HeightOf(const RECT& area) { return static_cast<int>(area.bottom - area.top); }

}  // namespace

/// Counts how deep one message stands within another.
class FormWindow::Nesting {
 public:
  explicit Nesting(int& depth) : depth_(depth) { ++depth_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;
  ~Nesting() { --depth_; }

 private:
  int& depth_;
};

std::shared_ptr<FormWindow> FormWindow::Make(Form& form, const Setting& setting) {
  std::shared_ptr<FormWindow> made(new FormWindow(form, setting));
  made->CreateOwnWindow();
  const ActivationContext::Scope themed(made->manifest_);
  made->CreateViews();
  made->Arrange();
  if (setting.dialog != nullptr) made->PlaceOverOwner();
  form.SetView(made.get());
  return made;
}

FormWindow::FormWindow(Form& form, const Setting& setting)
    : form_(form), setting_(setting), manifest_(setting.module), actions_(form) {
  const int dpi = DpiOf(setting.parent);
  face_.emplace(dpi);
  icons_.emplace(setting.module, face_->Scale(PictureSize));
  keys_.emplace(form, setting.layout);
}

FormWindow::~FormWindow() {
  Close();
  entries_.clear();
  if (window_ != nullptr) DestroyWindow(window_);
}

void FormWindow::Close() {
  if (std::exchange(closed_, true)) return;
  if (form_.View() == this) form_.SetView(nullptr);
  if (window_ != nullptr) ShowWindow(window_, SW_HIDE);
}

void FormWindow::CreateOwnWindow() {
  static const FormClass windowClass(Procedure);
  const bool isDialog = setting_.dialog != nullptr;
  const DWORD style = isDialog ? DialogStyle(setting_.layout) : WS_CHILD;
  const DWORD extendedStyle = isDialog ? DialogExtendedStyle(*setting_.dialog) : WS_EX_CONTROLPARENT;
  window_ = Verified(
      CreateWindowExW(extendedStyle, WindowClass, ToUtf16(isDialog ? form_.Caption() : std::string()).c_str(),
                      style, 0, 0, 0, 0, setting_.parent, nullptr, windowClass.Module(), nullptr),
      "CreateWindowExW");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  Send(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_INITIALIZE, 0));
}

void FormWindow::CreateViews() {
  int id = FirstControlId;
  entries_.reserve(form_.Controls().size());
  for (Control* control : form_.Controls()) {
    Entry entry{MakeView(*this, *control), control->Caption(), control->IsShown()};
    byName_[control->Name()] = entry.view.get();
    // Whoever asks for the buttons of a dialog does it by number.
    const bool cancels = control == form_.CancelButton();
    SetWindowLongPtrW(entry.view->Window(), GWLP_ID, cancels ? IDCANCEL : id++);
    entries_.push_back(std::move(entry));
  }
}

void FormWindow::PlaceOverOwner() {
  const RECT frame = PreferredFrame();
  const HMONITOR monitor = MonitorFromWindow(setting_.parent, MONITOR_DEFAULTTOPRIMARY);
  MONITORINFO info{};
  info.cbSize = sizeof info;
  Verified(GetMonitorInfoW(monitor, &info), "GetMonitorInfoW");
  RECT around = info.rcWork;
  if (setting_.parent != nullptr) GetWindowRect(setting_.parent, &around);
  const auto centred = [](int from, int to, int size, int least, int most) {
    return std::max(std::min((from + to - size) / 2, most - size), least);
  };
  const auto x = centred(around.left, around.right, WidthOf(frame), info.rcWork.left, info.rcWork.right);
  const auto y = centred(around.top, around.bottom, HeightOf(frame), info.rcWork.top, info.rcWork.bottom);
  Verified(
      SetWindowPos(window_, nullptr, x, y, WidthOf(frame), HeightOf(frame), SWP_NOZORDER | SWP_NOACTIVATE),
      "SetWindowPos");
}

// --- the form has changed

FormWindow::Entry* FormWindow::FindEntry(const Control& control) {
  const auto found =
      std::ranges::find_if(entries_, [&](const Entry& entry) { return &entry.view->Shown() == &control; });
  return found == entries_.end() ? nullptr : &*found;
}

void FormWindow::Changed(Control& control) {
  Entry* const entry = FindEntry(control);
  if (closed_ || entry == nullptr) return;
  entry->stale = true;
  if (control.Kind() == ControlKind::TextBox && static_cast<TextBox&>(control).AllSelected()) {
    entry->selectAll = true;
  }
  if (control.Kind() == ControlKind::Frame) {
    for (Entry& inside : entries_) inside.stale = true;
  }
  PostSettle();
}

void FormWindow::FocusMoved(Form& /*form*/) {
  for (Entry& entry : entries_) {
    if (entry.view->Shown().Kind() == ControlKind::Button) entry.stale = true;  // another default
  }
  // At once: a message box that a handler shows now gives the focus back to the window that has it.
  if (!closed_ && HasKeyboard()) FollowFocus();
  PostSettle();
}

void FormWindow::StateChanged(Form& form) {
  if (closed_) return;
  // At once: what disables a form is long work, during which nothing else is shown.
  if ((IsWindowEnabled(window_) != FALSE) != form.Enabled()) {
    EnableWindow(window_, form.Enabled() ? TRUE : FALSE);
    if (form.Enabled()) TakeFocus();
  }
  ShowPointer();
}

/// False when the pointer is the usual one.
bool FormWindow::ShowPointer() const {
  const bool waits = form_.MousePointer() == Form::Pointer::Wait;
  SetCursor(LoadCursorW(nullptr, waits ? IDC_WAIT : IDC_ARROW));
  return waits;
}

void FormWindow::Refresh(Form& /*form*/) {
  if (closed_) return;
  Settle();
  Verified(
      RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW),
      "RedrawWindow");
}

void FormWindow::Refresh(Control& control) {
  const Entry* const entry = FindEntry(control);
  if (closed_ || entry == nullptr) return;
  Settle();
  Verified(RedrawWindow(entry->view->Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW),
           "RedrawWindow");
}

void FormWindow::PostSettle() {
  if (closed_ || settlePosted_) return;
  settlePosted_ = PostMessageW(window_, SettleMessage, 0, 0) != FALSE;
  if (!settlePosted_) Settle();  // the queue is full
}

void FormWindow::Settle() {
  settlePosted_ = false;
  if (closed_) return;
  // Disabling the window that has the focus takes it away.
  const bool hadKeyboard = HasKeyboard();
  for (Entry& entry : entries_) {
    if (!std::exchange(entry.stale, false)) continue;
    entry.view->Sync();
    if (std::exchange(entry.selectAll, false)) entry.view->SelectContent();
  }
  SettleCaptions();
  if (hadKeyboard) FollowFocus();
}

void FormWindow::SettleCaptions() {
  bool renamed = false;
  bool arranged = true;
  for (Entry& entry : entries_) {
    const Control& control = entry.view->Shown();
    if (entry.caption != control.Caption()) {
      entry.caption = control.Caption();
      renamed = true;
    }
    if (std::exchange(entry.visible, control.IsShown()) != control.IsShown()) arranged = false;
  }
  if (renamed) {
    keys_.emplace(form_, setting_.layout);
    for (const Entry& entry : entries_) entry.view->SyncText();
  }
  if (renamed || !arranged) {
    if (setting_.dialog != nullptr) GrowToFit();
    Arrange();
  }
  if (setting_.dialog != nullptr) {
    Verified(SetWindowTextW(window_, ToUtf16(form_.Caption()).c_str()), "SetWindowTextW");
  }
}

LayoutEngine FormWindow::Engine() const {
  return {setting_.layout, *face_, [this](std::string_view name) -> Measured* {
            const auto found = byName_.find(name);
            return found == byName_.end() ? nullptr : found->second;
          }};
}

SIZE FormWindow::PreferredSize() const { return Engine().PreferredSize(); }

RECT FormWindow::PreferredFrame() const {
  const SIZE content = PreferredSize();
  RECT frame{0, 0, content.cx, content.cy};
  AdjustWindowRectEx(&frame, DialogStyle(setting_.layout), FALSE, DialogExtendedStyle(*setting_.dialog));
  return frame;
}

void FormWindow::Arrange() {
  RECT client{};
  Verified(GetClientRect(window_, &client), "GetClientRect");
  if (client.right == 0 || client.bottom == 0) return;
  const ActivationContext::Scope themed(manifest_);
  for (const LayoutEngine::Placement& placement : Engine().Place({client.right, client.bottom})) {
    static_cast<ControlView*>(placement.control)->Place(placement.area);
  }
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void FormWindow::GrowToFit() {
  const SIZE wanted = PreferredSize();
  RECT client{};
  RECT frame{};
  Verified(GetClientRect(window_, &client), "GetClientRect");
  Verified(GetWindowRect(window_, &frame), "GetWindowRect");
  const int wider = std::max(static_cast<int>(wanted.cx - client.right), 0);
  const int higher = std::max(static_cast<int>(wanted.cy - client.bottom), 0);
  if (wider == 0 && higher == 0) return;
  Verified(SetWindowPos(window_, nullptr, 0, 0, WidthOf(frame) + wider, HeightOf(frame) + higher,
                        SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE),
           "SetWindowPos");
}

void FormWindow::UseDpi(int dpi) {
  std::optional<IconCache> former = std::move(icons_);  // until no window shows its icons any more
  face_.emplace(dpi);
  icons_.emplace(setting_.module, face_->Scale(PictureSize));
  for (const Entry& entry : entries_) {
    entry.view->SyncFont();
    entry.view->Sync();
  }
}

// --- messages

void FormWindow::Guard(const std::function<void()>& body) noexcept {
  if (closed_) return;
  const Nesting nesting(depth_);
  try {
    const ActivationContext::Scope themed(manifest_);
    // What comes next acts on what the user sees.
    if (depth_ == 1 && settlePosted_) Settle();
    body();
  } catch (const Error& error) {
    Fail(error.Description);
  } catch (const std::exception& failure) {
    Fail(failure.what());
  } catch (...) {
    Fail("An exception of no known kind");
  }
  // The loop that shows a dialog looks whether it is still shown only after a message.
  if (!closed_ && setting_.dialog != nullptr && (!setting_.dialog->IsShowing() || failure_ != nullptr)) {
    PostMessageW(window_, WM_NULL, 0, 0);
  }
}

void FormWindow::Fail(const std::string& reason) noexcept {
  if (setting_.dialog != nullptr) {
    failure_ = std::current_exception();
  } else {
    // Nobody has called who could be told; the page shows the errors of its actions itself.
    OutputDebugStringA(reason.c_str());
  }
}

std::shared_ptr<void> FormWindow::KeepAlive() {
  std::shared_ptr<FormWindow> self = weak_from_this().lock();
  if (self == nullptr || closed_ || !setting_.keepAlive) return self;
  struct Keeper {
    std::shared_ptr<void> owner;
    std::shared_ptr<FormWindow> window;  // goes first
  };
  return std::make_shared<Keeper>(Keeper{setting_.keepAlive(), std::move(self)});
}

ControlView* FormWindow::FindView(HWND window) const {
  const auto found =
      std::ranges::find_if(entries_, [&](const Entry& entry) { return entry.view->Window() == window; });
  return found == entries_.end() ? nullptr : found->view.get();
}

LRESULT FormWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const auto notify = [&](HWND from) {
    ControlView* const view = FindView(from);
    LRESULT result = 0;
    if (view != nullptr) Guard([&] { result = view->Notified(message, wParam, lParam); });
    return result;
  };
  switch (message) {
    case SettleMessage:
      Guard([&] { Settle(); });
      return 0;
    case WM_COMMAND:
    case WM_HSCROLL:
    case WM_VSCROLL:
      return notify(reinterpret_cast<HWND>(lParam));
    case WM_NOTIFY:
      return notify(reinterpret_cast<const NMHDR*>(lParam)->hwndFrom);
    case WM_DRAWITEM:
      return notify(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)->hwndItem);
    case WM_KEYDOWN:
      Guard([&] { actions_.Press(static_cast<int>(wParam), GetKeyState(VK_SHIFT) < 0); });
      return 0;
    case WM_SETFOCUS:
      if (FocusTarget() != window_) SetFocus(FocusTarget());
      return 0;
    case WM_SETCURSOR:
      if (ShowPointer()) return TRUE;
      break;
    case WM_SIZE:
      Guard([&] { Arrange(); });
      return 0;
    case WM_GETMINMAXINFO:
      if (setting_.dialog != nullptr && !entries_.empty()) {
        Guard([&] {
          const RECT frame = PreferredFrame();
          reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {WidthOf(frame), HeightOf(frame)};
        });
      }
      return 0;
    case WM_CLOSE:
      if (setting_.dialog != nullptr) Guard([&] { setting_.dialog->CloseWindow(); });
      return 0;
    case DM_GETDEFID: {
      const auto* const button = form_.DefaultButton();
      const Entry* const entry = button == nullptr ? nullptr : FindEntry(*button);
      return entry == nullptr ? 0 : MAKELRESULT(GetDlgCtrlID(entry->view->Window()), DC_HASDEFID);
    }
    case WM_DPICHANGED:
      Guard([&] {
        UseDpi(LOWORD(wParam));
        const auto& area = *reinterpret_cast<const RECT*>(lParam);
        SetWindowPos(window_, nullptr, static_cast<int>(area.left), static_cast<int>(area.top), WidthOf(area),
                     HeightOf(area), SWP_NOZORDER | SWP_NOACTIVATE);
        GrowToFit();
        Arrange();
      });
      return 0;
    case WM_SETTINGCHANGE:
      if (wParam != SPI_SETNONCLIENTMETRICS) break;
      Guard([&] {
        UseDpi(face_->Dpi());
        Arrange();
      });
      return 0;
    case WM_SYSCOLORCHANGE:
      for (const Entry& entry : entries_) Send(entry.view->Window(), message);
      break;
    default:
      break;
  }
  return DefWindowProcW(window_, message, wParam, lParam);
}

LRESULT CALLBACK FormWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const self = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  const std::shared_ptr<void> keep = self->KeepAlive();
  if (message == WM_NCDESTROY) {
    RemovePropW(window, L"VexaFormName");
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    self->window_ = nullptr;
    self->Close();
    // The window of a dialog may go by a message that its loop never sees.
    if (self->setting_.dialog != nullptr) PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
    return DefWindowProcW(window, message, wParam, lParam);
  }
  if (self->closed_) return DefWindowProcW(window, message, wParam, lParam);
  return self->Handle(message, wParam, lParam);
}

}  // namespace vexa::windows
