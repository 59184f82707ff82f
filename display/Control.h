// A control of a form: its state and its events, no pixels. Forms own their controls as typed members and
// change them by code; what the user does arrives through UserActions, which refuses what a user could not
// do. A view shows the state and is told of every change.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/Resources.h"
#include "core/StringIds.h"

namespace vexa {

class Form;
class Frame;

enum class ControlKind {
  Label,
  Button,
  CheckBox,
  OptionButton,
  TextBox,
  Slider,
  Grid,
  Tree,
  Frame,
  Section,
  ExtLabel,
};

using Event = std::function<void()>;

class Control {
 public:
  /// Becomes part of `form`, behind the controls made before it: the order of making is the tab order.
  Control(Form& form, std::string name, ControlKind kind, StringId captionId = StringId::None,
          int32_t pictureId = 0);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control() = default;

  const std::string& Name() const { return name_; }
  ControlKind Kind() const { return kind_; }

  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  bool Visible() const { return visible_; }
  void SetVisible(bool visible);

  const std::string& Caption() const { return caption_; }
  virtual void SetCaption(std::string caption);
  /// The text that the control shows when its form loads; None when the form sets it otherwise.
  StringId CaptionId() const { return captionId_; }

  /// Section headers and buttons may show a picture.
  const vexa::Picture& Picture() const { return picture_; }
  void SetPicture(const vexa::Picture& picture);
  /// The icon that the control shows when its form loads; 0 for none.
  int32_t PictureId() const { return pictureId_; }

  /// The frame that the control stands in; a disabled or hidden frame disables or hides it for the user.
  void SetFrame(const Frame* frame) { frame_ = frame; }
  /// Whether the user sees it, and whether the user can act on it.
  bool IsShown() const;
  bool IsUsable() const;
  /// Whether the control is one that takes the keyboard focus.
  virtual bool TakesFocus() const;

  /// Redraws the control. An error when the view cannot.
  void Refresh();

  Event OnGotFocus;
  Event OnLostFocus;

 protected:
  Form& Owner() const { return form_; }
  /// Tells the view that something to be seen has changed.
  void Changed();
  /// The control may no longer be one that can have the focus.
  void FocusabilityChanged();

 private:
  Form& form_;
  std::string name_;
  ControlKind kind_;
  StringId captionId_;
  int32_t pictureId_;
  const Frame* frame_ = nullptr;
  bool enabled_ = true;
  bool visible_ = true;
  std::string caption_;
  vexa::Picture picture_;
};

inline void Raise(const Event& event) {
  if (event) event();
}

}  // namespace vexa
