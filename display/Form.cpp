#include "display/Form.h"

#include <algorithm>

#include "display/OptionButton.h"
#include "display/TextBox.h"
#include "display/Tree.h"

namespace vexa {
namespace {

/// A group of options is one stop of Tab: at the selected one, else at the first that can be used.
bool StandsForItsGroup(const Control& control) {
  if (control.Kind() != ControlKind::OptionButton) return true;
  const OptionGroup& group = static_cast<const OptionButton&>(control).Group();
  const auto usable = [](const OptionButton* option) { return option->IsUsable(); };
  const auto selected = std::ranges::find_if(
      group, [&](const OptionButton* option) { return option->Selected() && usable(option); });
  return &control == (selected != group.end() ? *selected : *std::ranges::find_if(group, usable));
}

}  // namespace

Control* Form::FindControl(std::string_view name) const {
  const auto found = std::ranges::find(controls_, name, [](Control* control) { return control->Name(); });
  return found == controls_.end() ? nullptr : *found;
}

void Form::SetEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  if (view_ != nullptr) view_->StateChanged(*this);
}

void Form::SetMousePointer(Pointer pointer) {
  if (pointer_ == pointer) return;
  pointer_ = pointer;
  if (view_ != nullptr) view_->StateChanged(*this);
}

bool Form::MoveFocus(Control& control) {
  if (focus_ == &control) return true;
  if (!control.TakesFocus() || !control.IsUsable()) return false;
  if (auto* box = dynamic_cast<TextBox*>(focus_); box != nullptr && box->IsUsable() && !box->Validate()) {
    return false;
  }
  // Validation may have shown a box or changed what is enabled.
  if (!control.IsUsable()) return false;
  ChangeFocus(&control);
  return focus_ == &control;
}

void Form::FocusFirst() {
  focus_ = NextInTabOrder(nullptr);
  if (view_ != nullptr) view_->FocusMoved(*this);
  if (focus_ != nullptr) Raise(focus_->OnGotFocus);
}

Control* Form::NextInTabOrder(const Control* from, bool backwards) const {
  const auto count = static_cast<std::ptrdiff_t>(controls_.size());
  const auto start = std::ranges::find(controls_, from) - controls_.begin();  // the end when there is none
  const std::ptrdiff_t step = backwards ? -1 : 1;
  std::ptrdiff_t at = start == count ? (backwards ? count : -1) : start;
  for (std::ptrdiff_t tried = 0; tried < count; ++tried) {
    at = (at + step + count) % count;
    Control* const control = controls_[static_cast<size_t>(at)];
    if (control->TakesFocus() && control->IsUsable() && StandsForItsGroup(*control)) return control;
  }
  return nullptr;
}

Button* Form::EffectiveDefaultButton() const {
  auto* focused = dynamic_cast<Button*>(focus_);
  return focused != nullptr ? focused : defaultButton_;
}

void Form::SetDefaultButton(Button& button) {
  if (defaultButton_ == &button) return;
  Button* const former = defaultButton_;
  defaultButton_ = &button;
  if (view_ == nullptr) return;
  if (former != nullptr) view_->Changed(*former);
  view_->Changed(button);
}

void Form::LoadCaptions(const Resources& resources) {
  for (Control* control : controls_) {
    if (control->CaptionId() != StringId::None)
      control->SetCaption(resources.LoadString(control->CaptionId()));
    if (control->PictureId() != 0) control->SetPicture(resources.LoadIcon(control->PictureId()));
  }
}

void Form::MoveFocusOffUnusable() {
  // A control that goes away cannot hold on to the focus, whatever its entry.
  if (focus_ != nullptr && !(focus_->IsUsable() && focus_->TakesFocus())) ChangeFocus(NextInTabOrder(focus_));
}

void Form::ChangeFocus(Control* control) {
  Control* const former = focus_;
  focus_ = control;
  // The keys of a tree act on its selected node.
  if (auto* tree = dynamic_cast<Tree*>(control); tree != nullptr && tree->Selected() == Tree::NoNode) {
    tree->Select(tree->FirstChild(Tree::NoNode));
  }
  if (view_ != nullptr) view_->FocusMoved(*this);
  if (former != nullptr) Raise(former->OnLostFocus);
  // The handler may have moved the focus on.
  if (control != nullptr && focus_ == control) Raise(control->OnGotFocus);
}

}  // namespace vexa
