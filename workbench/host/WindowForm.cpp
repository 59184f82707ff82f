// What there is to be seen of a form.
#include "workbench/host/WindowForm.h"

#include "windows/com/Text.h"
#include "windows/views/Handles.h"
#include "workbench/Names.h"
#include "workbench/Words.h"
#include "workbench/host/ControlWindow.h"
#include "workbench/host/MessageBox.h"
#include "workbench/host/WindowDriver.h"

namespace vexa::workbench {

using windows::Send;

std::string WindowForm::Name() const { return FormNameOf(window_); }

std::string WindowForm::Caption() const {
  return (StyleOf(window_) & WS_CHILD) != 0 ? std::string() : windows::ToUtf8(TextOfWindow(window_));
}

std::vector<FormDriver::ControlName> WindowForm::Controls() const {
  std::vector<ControlName> names;
  for (const HWND control : ControlsOf(window_)) names.push_back({ControlNameOf(control), KindOf(control)});
  return names;
}

HWND WindowForm::Find(const std::string& control) const {
  for (const HWND candidate : ControlsOf(window_)) {
    if (ControlNameOf(candidate) == control) return candidate;
  }
  throw ScriptError("the window of " + control + " is gone");
}

HWND WindowForm::FocusedControl() const {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  if (GetGUIThreadInfo(driver_.Ui().Id(), &info) == FALSE) return nullptr;
  return info.hwndFocus != nullptr && IsChild(window_, info.hwndFocus) != FALSE ? info.hwndFocus : nullptr;
}

HWND WindowForm::DefaultButton() const {
  const LRESULT answer = Send(window_, DM_GETDEFID);
  if (HIWORD(answer) == DC_HASDEFID) return GetDlgItem(window_, LOWORD(answer));
  for (const HWND control : ControlsOf(window_)) {
    if (KindOf(control) == ControlKind::Button && (StyleOf(control) & BS_TYPEMASK) == BS_DEFPUSHBUTTON)
      return control;
  }
  return nullptr;
}

ControlState WindowForm::Read(HWND control) const {
  ControlState state = ReadControl(control);
  state.focused = FocusedControl() == control;
  state.isDefault = DefaultButton() == control;
  return state;
}

FormState WindowForm::State() const {
  FormState state;
  state.name = Name();
  state.caption = Caption();
  for (const HWND control : ControlsOf(window_)) state.controls.push_back(Read(control));
  return state;
}

ControlState WindowForm::StateOf(const std::string& control) const { return Read(Find(control)); }

std::string WindowForm::Focus() const {
  const HWND focused = FocusedControl();
  return focused == nullptr ? std::string() : ControlNameOf(focused);
}

std::string WindowForm::EnterButton() const {
  const HWND focused = FocusedControl();
  if (focused != nullptr && KindOf(focused) == ControlKind::Button) return ControlNameOf(focused);
  const HWND button = DefaultButton();
  return button == nullptr ? std::string() : ControlNameOf(button);
}

std::string WindowForm::EscapeButton() const {
  const HWND button = GetDlgItem(window_, IDCANCEL);
  return button == nullptr ? std::string() : ControlNameOf(button);
}

FormDriver::Node WindowForm::FindNode(const std::string& name, Node parent,
                                      std::string_view encodedText) const {
  const HWND tree = Find(name);
  HTREEITEM item = FirstBelow(tree, parent == NoNode ? nullptr : reinterpret_cast<HTREEITEM>(parent));
  while (item != nullptr && EncodedName(ReadNode(tree, item).text) != encodedText)
    item = Related(tree, item, TVGN_NEXT);
  return reinterpret_cast<Node>(item);
}

}  // namespace vexa::workbench
