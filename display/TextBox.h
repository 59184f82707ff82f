// A one-line text box. OnChange is raised whenever the text really changes, by the user or by code.
// OnValidate runs when the focus is about to leave; it answers whether the focus may go.
#pragma once

#include "display/Control.h"

namespace vexa {

class TextBox final : public Control {
 public:
  enum class Typing { Allowed, Locked };

  /// A locked box is filled by code alone.
  TextBox(Form& form, std::string name, Typing typing = Typing::Allowed)
      : Control(form, std::move(name), ControlKind::TextBox), locked_(typing == Typing::Locked) {}

  const std::string& Text() const { return text_; }
  void SetText(std::string text) {
    if (text_ == text) return;
    text_ = std::move(text);
    Changed();
    Raise(OnChange);
  }
  bool Locked() const { return locked_; }
  bool Validate() const { return !OnValidate || OnValidate(); }

  /// Asks the view to select the whole text.
  void SelectAll() {
    allSelected_ = true;
    Changed();
    allSelected_ = false;
  }
  /// Inside a view's Changed: whether the whole text is to be selected.
  bool AllSelected() const { return allSelected_; }

  Event OnChange;
  std::function<bool()> OnValidate;

 private:
  bool locked_;
  bool allSelected_ = false;
  std::string text_;
};

}  // namespace vexa
