// The window of a form: a dialog's own, or a child of the container's window that is the options page. It
// makes a view for every control, lays them out, and shows what changes: not at once, but all changes of one
// user action together, before the next one arrives. Shared: whatever runs inside it keeps it until it is
// done, for a container may let go of the page in the middle of a handler.
#pragma once

#include <windows.h>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "windows/views/ActivationContext.h"
#include "windows/views/ControlViews.h"

namespace vexa::windows {

/// What became of a key that was offered to a form. It leaves when Tab goes on where the form ends.
enum class KeyOutcome { NotTaken, Taken, LeavesForward, LeavesBackward };

class FormWindow final : public FormView, private ViewHost, public std::enable_shared_from_this<FormWindow> {
 public:
  struct Setting {
    HMODULE module;  // of the pictures and of the manifest
    const Layout& layout;
    HWND parent;               // of the page; the owner of a dialog, which may be null
    Dialog* dialog = nullptr;  // the form, when it is one
    /// What has to live for as long as anything runs in the window.
    std::function<std::shared_ptr<void>()> keepAlive = {};
  };

  /// A hidden window of the size that the form would like to have. An Error when it cannot be made.
  static std::shared_ptr<FormWindow> Make(Form& form, const Setting& setting);
  ~FormWindow() override;

  HWND Handle() const { return window_; }
  /// Shows nothing of the form any more and does nothing to it, whatever still holds the window.
  void Close();

  /// What went wrong in a message of a dialog's window; forgotten afterwards.
  std::exception_ptr TakeFailure() { return std::exchange(failure_, nullptr); }

  /// The size that shows everything, in pixels.
  SIZE PreferredSize() const;
  /// Puts the keyboard focus where the form has it.
  void TakeFocus() override;
  /// A message of the keyboard before it is dispatched. Taken: it must not be.
  KeyOutcome Translate(const MSG& message);
  /// The letter of a menu key, as the message WM_SYSCHAR or WM_CHAR brings it.
  bool PressAccessKey(wchar_t letter);
  /// The letters that reach a control, in capitals.
  std::wstring AccessLetters() const { return keys_->Letters(); }

  // FormView
  void Changed(Control& control) override;
  void FocusMoved(Form& form) override;
  void StateChanged(Form& form) override;
  void Refresh(Form& form) override;
  void Refresh(Control& control) override;

 private:
  struct Entry {
    ControlViewPtr view;
    std::string caption;
    bool visible = false;
    bool stale = false;
    bool selectAll = false;
  };

  class Nesting;

  FormWindow(Form& form, const Setting& setting);

  // ViewHost
  HWND Window() const override { return window_; }
  HINSTANCE Module() const override { return setting_.module; }
  const Form& Shown() const override { return form_; }
  const Layout& ShownLayout() const override { return setting_.layout; }
  UserActions& Actions() override { return actions_; }
  const Typeface& Face() const override { return *face_; }
  IconCache& Icons() override { return *icons_; }
  const AccessKeys& Keys() const override { return *keys_; }
  const Button* DrawnDefault() const override;
  void SettleFocus() override;
  void Guard(const std::function<void()>& body) noexcept override;
  std::shared_ptr<void> KeepAlive() override;

  bool ShowPointer() const;
  /// Inside a handler of what went wrong.
  void Fail(const std::string& reason) noexcept;

  void CreateOwnWindow();
  void CreateViews();
  void PlaceOverOwner();
  /// A dialog's window around the size that shows everything.
  RECT PreferredFrame() const;

  Entry* FindEntry(const Control& control);
  ControlView* FindView(HWND window) const;
  LayoutEngine Engine() const;

  void PostSettle();
  /// Shows everything that has changed since the last time.
  void Settle();
  void SettleCaptions();
  void Arrange();
  /// Where the form has the focus; the window itself when no control can have it.
  HWND FocusTarget() const;
  bool HasKeyboard() const;
  /// Moves the keyboard focus to where the form has it, unless a button is being pressed: the button would
  /// come up without a click.
  void FollowFocus();
  void UseDpi(int dpi);
  void GrowToFit();

  KeyOutcome Tab(bool backwards);
  bool TakesReturn() const;
  void Activate(Control& control);
  void ShowKeyboardCues();

  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  Form& form_;
  Setting setting_;
  ActivationContext manifest_;
  UserActions actions_;
  HWND window_ = nullptr;
  std::optional<Typeface> face_;
  std::optional<IconCache> icons_;
  std::optional<AccessKeys> keys_;
  std::vector<Entry> entries_;  // in tab order
  std::unordered_map<std::string_view, ControlView*> byName_;

  bool closed_ = false;
  bool settlePosted_ = false;
  int depth_ = 0;
  std::exception_ptr failure_;
};

}  // namespace vexa::windows
