#include "workbench/EveryScreen.h"

#include "display/UserActions.h"

namespace vexa::workbench {
namespace {

constexpr int Deepest = 5;

bool OpensSomething(const Form& form, const Control& control) {
  return control.Kind() == ControlKind::Button && &control != form.CancelButton() &&
         control.Name() != "cmdOk" && control.IsUsable();
}

}  // namespace

void EveryScreen::Walk(Form& form) {
  if (names_.insert(form.Name()).second) Opened(form, nullptr);
  PressButtons(form);
}

void EveryScreen::ShowModal(Dialog& dialog, Form* /*owner*/) {
  dialog.Show();
  if (names_.insert(dialog.Name()).second) Opened(dialog, &dialog);
  if (depth_ < Deepest) {
    ++depth_;
    PressButtons(dialog);
    --depth_;
  }
  dialog.Hide();
}

void EveryScreen::PressButtons(Form& form) {
  std::set<const Control*> pressed;
  const auto* const dialog = dynamic_cast<const Dialog*>(&form);
  const auto isGone = [&] { return dialog != nullptr && !dialog->IsShowing(); };
  const auto pressAll = [&] {
    for (Control* const control : form.Controls()) {
      if (isGone()) return;
      if (OpensSomething(form, *control) && pressed.insert(control).second) UserActions(form).Click(*control);
    }
  };
  pressAll();
  for (Control* const control : form.Controls()) {
    if (isGone()) return;
    if (control->Kind() != ControlKind::OptionButton || !control->IsUsable()) continue;
    UserActions(form).Click(*control);
    pressAll();
  }
}

}  // namespace vexa::workbench
