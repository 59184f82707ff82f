// One form's real window: what the user does arrives as messages of mouse and keyboard, and what there is to
// be seen is read from the windows of its controls.
#pragma once

#include <windows.h>

#include "workbench/FormDriver.h"

namespace vexa::workbench {

class WindowDriver;

class WindowForm final : public FormDriver {
 public:
  WindowForm(WindowDriver& driver, HWND window) : driver_(driver), window_(window) {}

  std::string Name() const override;
  std::string Caption() const override;
  std::vector<ControlName> Controls() const override;
  FormState State() const override;
  ControlState StateOf(const std::string& control) const override;
  std::string Focus() const override;
  std::string EnterButton() const override;
  std::string EscapeButton() const override;
  Node FindNode(const std::string& name, Node parent, std::string_view encodedText) const override;

  Outcome Click(const std::string& name) override;
  Outcome DoubleClick(const std::string& name) override;
  Outcome SetChecked(const std::string& name, bool checked) override;
  Outcome Choose(const std::string& name) override;
  Outcome Type(const std::string& name, const std::string& text) override;
  Outcome Slide(const std::string& name, int32_t position) override;
  Outcome SelectCell(const std::string& name, int32_t row, int32_t column) override;
  Outcome ClickNode(const std::string& name, Node node) override;
  Outcome CheckNode(const std::string& name, Node node, bool checked) override;
  Outcome Expand(const std::string& name, Node node, bool expanded) override;
  Outcome ClickHotSpot(const std::string& name, int32_t hotSpot) override;
  Outcome Focus(const std::string& name) override;
  Outcome Leave() override;
  Outcome Press(int keyCode, bool shift) override;
  Outcome Enter() override;
  Outcome Escape() override;
  bool CloseWindow() override;

 private:
  HWND Find(const std::string& control) const;
  HWND FocusedControl() const;
  HWND DefaultButton() const;
  ControlState Read(HWND control) const;

  /// Brings the keyboard focus to a control, as Tab would.
  Outcome Reach(HWND control);
  /// Presses the mouse at a place in a control; `twice` for a double click.
  Outcome PressMouse(HWND control, POINT place, bool twice = false);
  Outcome PressKey(HWND control, int keyCode, bool shift = false);
  /// Presses the key that stands for a button, if there is one.
  Outcome PressFor(const std::string& button, int keyCode);
  /// Runs `act`, an action on `control` that the form refuses while it carries out another one. Its Cancel
  /// button always acts.
  template <typename Act>
  Outcome Carry(HWND control, Act&& act);
  /// Whether something that was done to `control` has arrived, when `before` had the focus.
  Outcome Arrival(HWND control, HWND before) const;

  WindowDriver& driver_;
  HWND window_;
};

}  // namespace vexa::workbench
