// A set of controls with a keyboard focus: the options page, and, as Dialog, every modal window. It knows
// which button Enter and Esc press, and guards the focus: a text box may keep it until its entry is valid.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/ScopedFlag.h"
#include "display/Button.h"
#include "display/Control.h"

namespace vexa {

/// Shows one form; told whatever changes in it.
class FormView {
 public:
  FormView() = default;
  FormView(const FormView&) = delete;
  FormView& operator=(const FormView&) = delete;
  virtual ~FormView() = default;
  virtual void Changed(Control& control) = 0;
  virtual void FocusMoved(Form& form) = 0;
  /// The form was enabled or disabled, or its pointer is another one.
  virtual void StateChanged(Form& /*form*/) {}
  /// Redraws the whole form, or one control; an error when that fails.
  virtual void Refresh(Form& form) = 0;
  virtual void Refresh(Control& control) = 0;
};

class Form {
 public:
  explicit Form(std::string name) : name_(std::move(name)) {}
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  virtual ~Form() = default;

  const std::string& Name() const { return name_; }
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string caption) { caption_ = std::move(caption); }

  /// A disabled form takes no input; its controls keep their own state.
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  enum class Pointer { Default, Wait };
  /// What the mouse pointer looks like over the form.
  Pointer MousePointer() const { return pointer_; }
  void SetMousePointer(Pointer pointer);

  /// In tab order.
  const std::vector<Control*>& Controls() const { return controls_; }
  /// Null when there is none of this name.
  Control* FindControl(std::string_view name) const;

  void SetView(FormView* view) { view_ = view; }
  FormView* View() const { return view_; }

  /// The control that has the keyboard focus; null when none can have it.
  Control* Focus() const { return focus_; }
  /// Gives the focus to `control`. A text box that has it may refuse: its entry is validated first. False
  /// when the focus did not move there.
  bool MoveFocus(Control& control);
  /// Gives the focus to the first control that can have it, as the form is being shown.
  void FocusFirst();
  /// The next or previous usable control in tab order, counted from `from`; null when there is none. Of a
  /// group of options only one is met: arrows lead to the others.
  Control* NextInTabOrder(const Control* from, bool backwards = false) const;

  /// The button that Enter presses: the focused one, else the one made the default.
  Button* EffectiveDefaultButton() const;
  Button* DefaultButton() const { return defaultButton_; }
  void SetDefaultButton(Button& button);
  /// The button that Esc presses; null when the form leaves Esc to its container.
  Button* CancelButton() const { return cancelButton_; }
  void SetCancelButton(Button& button) { cancelButton_ = &button; }

  /// An action of the user on a form, for the time of a scope. A call that it makes may let the user act
  /// again before it returns; UserActions refuses that.
  class Action {
   public:
    explicit Action(Form& form) : acting_(form.acting_) {}

   private:
    ScopedFlag acting_;
  };
  bool IsActing() const { return acting_; }
  /// Whether an action runs here or in a dialog opened from here. One that waits for its dialog does not
  /// count.
  bool IsAtWork() const { return openDialog_ != nullptr ? openDialog_->IsAtWork() : acting_; }
  /// The dialog that an action of this form has opened and waits for; null for none.
  void SetOpenDialog(const Form* dialog) { openDialog_ = dialog; }

  /// A key that no control took, by its virtual-key code.
  virtual void KeyDown(int /*keyCode*/) {}

 protected:
  /// Gives every control its caption and picture.
  void LoadCaptions(const Resources& resources);

 private:
  friend class Control;
  void Add(Control& control) { controls_.push_back(&control); }
  void MoveFocusOffUnusable();
  void ChangeFocus(Control* control);

  std::string name_;
  std::string caption_;
  std::vector<Control*> controls_;
  FormView* view_ = nullptr;
  bool enabled_ = true;
  bool acting_ = false;
  const Form* openDialog_ = nullptr;
  Pointer pointer_ = Pointer::Default;
  Control* focus_ = nullptr;
  Button* defaultButton_ = nullptr;
  Button* cancelButton_ = nullptr;
};

/// A modal window. Its opener waits until it is no longer shown; its handlers end it with End.
class Dialog : public Form {
 public:
  using Form::Form;

  /// Whether it stays above all other windows while it is shown.
  bool TopMost() const { return topMost_; }

  bool IsShowing() const { return showing_; }
  void Show() {
    showing_ = true;
    FocusFirst();
  }
  void Hide() { showing_ = false; }

  /// True unless the dialog ended with its OK or another button that takes its place.
  bool Cancelled() const { return cancelled_; }
  /// The user closes the window by its frame. Never validates.
  virtual void CloseWindow() {
    if (showing_) End(true);
  }

 protected:
  /// Hides the dialog, notes how it ended, and drops what it was given to work with.
  void End(bool cancelled) {
    Hide();
    cancelled_ = cancelled;
    DropReferences();
  }
  virtual void DropReferences() {}
  void SetTopMost(bool topMost) { topMost_ = topMost; }

 private:
  bool showing_ = false;
  bool cancelled_ = true;
  bool topMost_ = false;
};

/// Shows dialogs and runs them until they end.
class ModalWindows {
 public:
  ModalWindows() = default;
  ModalWindows(const ModalWindows&) = delete;
  ModalWindows& operator=(const ModalWindows&) = delete;
  virtual ~ModalWindows() = default;

  /// Returns when the dialog is no longer shown. `owner` is the form it belongs to, null for none.
  virtual void ShowModal(Dialog& dialog, Form* owner) = 0;
};

}  // namespace vexa
