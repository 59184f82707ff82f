// The window of one control. It shows what the control says and hands what the user does to UserActions,
// which may refuse; then it shows the control's state again. It keeps nothing that the control knows, only
// what it has shown last. The FormWindow owns it; the control outlives it.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "display/Form.h"
#include "display/UserActions.h"
#include "windows/views/AccessKeys.h"
#include "windows/views/IconCache.h"
#include "windows/views/LayoutEngine.h"
#include "windows/views/Typeface.h"

namespace vexa::windows {

/// What the window of a form does for the windows of its controls.
class ViewHost {
 public:
  ViewHost() = default;
  ViewHost(const ViewHost&) = delete;
  ViewHost& operator=(const ViewHost&) = delete;
  virtual ~ViewHost() = default;

  virtual HWND Window() const = 0;
  virtual HINSTANCE Module() const = 0;
  virtual const Form& Shown() const = 0;
  virtual const Layout& ShownLayout() const = 0;
  virtual UserActions& Actions() = 0;
  virtual const Typeface& Face() const = 0;
  virtual IconCache& Icons() = 0;
  virtual const AccessKeys& Keys() const = 0;
  /// The button that Enter would press now, which is drawn so.
  virtual const Button* DrawnDefault() const = 0;
  /// Puts the keyboard focus where the form says: at once, and once the present message is done.
  virtual void TakeFocus() = 0;
  virtual void SettleFocus() = 0;
  /// Runs what a window procedure has to do; no exception comes out.
  virtual void Guard(const std::function<void()>& body) noexcept = 0;
  /// Keeps the form and its windows for as long as the result is held: what a message starts may end both.
  virtual std::shared_ptr<void> KeepAlive() = 0;
};

class ControlView : public Measured {
 public:
  ControlView(ViewHost& host, Control& control) : host_(host), control_(control) {}
  ~ControlView() override;

  Control& Shown() const { return control_; }
  HWND Window() const { return window_; }

  /// Shows what has changed.
  virtual void Sync();
  /// Another caption or access key, font or icon size.
  void SyncText();
  virtual void SyncFont();
  /// Moves the window; content that depends on its size follows.
  virtual void Place(const RECT& area);

  /// WM_COMMAND, WM_NOTIFY, WM_HSCROLL or WM_DRAWITEM that the window has sent to its parent.
  virtual LRESULT Notified(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) { return 0; }
  /// A key that has come to the focused window or is about to. False: the window takes it as it always does.
  virtual bool KeyDown(int key);
  /// Whether letters typed here mean something, so that they reach no access key without Alt.
  virtual bool TakesLetters() const { return false; }
  /// Selects what is to be typed over after the focus came by keyboard.
  virtual void SelectContent() {}

  bool TakesRoom() const override { return control_.IsShown(); }
  int HeightForLines(int lines) const override;

 protected:
  /// Makes the window; called once, by the constructor of each kind.
  void Create(const wchar_t* windowClass, DWORD style, DWORD extendedStyle = 0);
  /// The text that the window has; what is seen of it is the kind's business.
  virtual std::wstring WindowText() const { return host_.Keys().MarkedCaption(control_); }
  /// What a field is called: the caption of the control that names it, else that of the form.
  std::wstring AccessibleName() const;
  /// A message to the window, before the window itself. False: let the window have it.
  virtual bool Intercept(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);
  /// Shows the control's state again after an action of the user that the window has shown already. The
  /// action may have been refused, or have destroyed the window.
  void Resync();
  /// Brings the focus here for a press of the mouse. False when another control keeps it,
  /// or the window was destroyed.
  virtual bool ReachByMouse();

  ViewHost& host_;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                    DWORD_PTR view);
  /// A button of the mouse goes down here. True when the window is not to know.
  bool Pressed(UINT message);
  void FocusArrived();
  void Forget();

  Control& control_;
  HWND window_ = nullptr;
  HWND hiddenName_ = nullptr;
  std::wstring shownText_;
  bool released_ = false;  // the left button of the mouse, since it was pressed
};

}  // namespace vexa::windows
