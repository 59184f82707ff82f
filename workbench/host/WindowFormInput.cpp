// What the user does to a form, as messages of mouse and keyboard.
#include <array>

#include "windows/com/Text.h"
#include "windows/views/Handles.h"
#include "workbench/host/ControlWindow.h"
#include "workbench/host/WindowDriver.h"
#include "workbench/host/WindowForm.h"

namespace vexa::workbench {
namespace {

using windows::Send;

HTREEITEM ToItem(FormDriver::Node node) { return reinterpret_cast<HTREEITEM>(node); }

}  // namespace

Outcome WindowForm::Arrival(HWND control, HWND before) const {
  if (IsWindow(window_) == FALSE || before == nullptr || before == control) return Outcome::Done;
  if (!TakesFocus(control) || KindOf(before) != ControlKind::TextBox) return Outcome::Done;
  // Only a text box with an invalid entry holds on to the focus.
  return FocusedControl() == before && GetDlgItem(window_, IDCANCEL) != control ? Outcome::FocusKept
                                                                                : Outcome::Done;
}

template <typename Act>
Outcome WindowForm::Carry(HWND control, Act&& act) {
  const bool busy = driver_.IsActing(window_) && control != GetDlgItem(window_, IDCANCEL);
  if (!busy) driver_.BeginAction(window_);
  const Outcome outcome = act();
  driver_.EndActions();
  return busy ? Outcome::Busy : outcome;
}

Outcome WindowForm::Reach(HWND control) {
  if (const Outcome outcome = Usability(control); outcome != Outcome::Done) return outcome;
  const HWND before = FocusedControl();
  driver_.Ui().Start([control] { SetFocus(control); });
  driver_.Settle();
  return Arrival(control, before);
}

Outcome WindowForm::PressMouse(HWND control, POINT place, bool twice) {
  if (const Outcome outcome = Usability(control); outcome != Outcome::Done) return outcome;
  const HWND before = FocusedControl();
  const LPARAM at = MAKELPARAM(place.x, place.y);
  PostMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, at);
  PostMessageW(control, WM_LBUTTONUP, 0, at);
  if (twice) {
    PostMessageW(control, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
    PostMessageW(control, WM_LBUTTONUP, 0, at);
  }
  driver_.Settle();
  return Arrival(control, before);
}

Outcome WindowForm::PressKey(HWND control, int keyCode, bool shift) {
  const HWND target = control == nullptr ? window_ : control;
  const auto setShift = [this](bool down) {
    driver_.Ui().Run([down] {
      std::array<BYTE, 256> keys{};
      GetKeyboardState(keys.data());
      keys[VK_SHIFT] = down ? 0x80 : 0;
      SetKeyboardState(keys.data());
    });
  };
  if (shift) setShift(true);
  PostMessageW(target, WM_KEYDOWN, static_cast<WPARAM>(keyCode), 1);
  PostMessageW(target, WM_KEYUP, static_cast<WPARAM>(keyCode), static_cast<LPARAM>(0xC0000001));
  driver_.Settle();
  if (shift) setShift(false);
  return Outcome::Done;
}

Outcome WindowForm::Click(const std::string& name) {
  const HWND control = Find(name);
  switch (KindOf(control)) {
    case ControlKind::ExtLabel:  // anywhere but on its words
      return Reach(control);
    case ControlKind::Button:
    case ControlKind::CheckBox:
      return Carry(control, [&] { return PressMouse(control, MiddleOf(control)); });
    default:
      return PressMouse(control, MiddleOf(control));
  }
}

Outcome WindowForm::DoubleClick(const std::string& name) {
  const HWND control = Find(name);
  POINT place = MiddleOf(control);
  if (KindOf(control) == ControlKind::Grid) {
    const ControlState grid = Read(control);
    RECT cell{LVIR_BOUNDS, grid.currentColumn, 0, 0};
    Send(control, LVM_GETSUBITEMRECT, grid.currentRow - 1, &cell);
    place = {cell.left + 2, (cell.top + cell.bottom) / 2};
  }
  return Carry(control, [&] { return PressMouse(control, place, true); });
}

Outcome WindowForm::SetChecked(const std::string& name, bool checked) {
  const HWND box = Find(name);
  const bool isChecked = Send(box, BM_GETCHECK) == BST_CHECKED;
  return Carry(box, [&] { return isChecked == checked ? Reach(box) : PressMouse(box, MiddleOf(box)); });
}

Outcome WindowForm::Choose(const std::string& name) {
  const HWND option = Find(name);
  return PressMouse(option, MiddleOf(option));
}

Outcome WindowForm::Type(const std::string& name, const std::string& text) {
  const HWND box = Find(name);
  if (const Outcome outcome = Reach(box); outcome != Outcome::Done) return outcome;
  if ((StyleOf(box) & ES_READONLY) != 0) return Outcome::ReadOnly;
  const std::wstring wide = windows::ToUtf16(text);
  driver_.Ui().Start([box, wide] {
    Send(box, EM_SETSEL, 0, -1);
    Send(box, EM_REPLACESEL, TRUE, wide.c_str());
  });
  driver_.Settle();
  return Outcome::Done;
}

Outcome WindowForm::Slide(const std::string& name, int32_t position) {
  const HWND slider = Find(name);
  if (const Outcome outcome = Reach(slider); outcome != Outcome::Done) return outcome;
  // What the control tells its parent when its thumb is dropped.
  driver_.Ui().Start([slider, position] {
    Send(slider, TBM_SETPOS, TRUE, position);
    Send(GetParent(slider), WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, position), slider);
  });
  driver_.Settle();
  return Outcome::Done;
}

Outcome WindowForm::SelectCell(const std::string& name, int32_t row, int32_t column) {
  const HWND grid = Find(name);
  if (const Outcome outcome = Usability(grid); outcome != Outcome::Done) return outcome;
  Send(grid, LVM_ENSUREVISIBLE, row - 1, FALSE);
  RECT cell{LVIR_BOUNDS, column, 0, 0};
  Send(grid, LVM_GETSUBITEMRECT, row - 1, &cell);
  return PressMouse(grid, {cell.left + 2, (cell.top + cell.bottom) / 2});
}

Outcome WindowForm::ClickNode(const std::string& name, Node node) {
  const HWND tree = Find(name);
  if (const Outcome outcome = Usability(tree); outcome != Outcome::Done) return outcome;
  return Carry(tree, [&] { return PressMouse(tree, PlaceOf(tree, ToItem(node), TVHT_ONITEMLABEL)); });
}

Outcome WindowForm::CheckNode(const std::string& name, Node node, bool checked) {
  const HWND tree = Find(name);
  return Carry(tree, [&] {
    if (ReadNode(tree, ToItem(node)).checked == checked) return Reach(tree);
    if (const Outcome outcome = Usability(tree); outcome != Outcome::Done) return outcome;
    return PressMouse(tree, PlaceOf(tree, ToItem(node), TVHT_ONITEMSTATEICON));
  });
}

Outcome WindowForm::Expand(const std::string& name, Node node, bool expanded) {
  const HWND tree = Find(name);
  return Carry(tree, [&] {
    if (ReadNode(tree, ToItem(node)).expanded == expanded) return Reach(tree);
    if (const Outcome outcome = Usability(tree); outcome != Outcome::Done) return outcome;
    return PressMouse(tree, PlaceOf(tree, ToItem(node), TVHT_ONITEMBUTTON));
  });
}

Outcome WindowForm::ClickHotSpot(const std::string& name, int32_t hotSpot) {
  const HWND label = Find(name);
  if (const Outcome outcome = Reach(label); outcome != Outcome::Done) return outcome;
  PressKey(label, VK_HOME);
  for (int32_t passed = 0; passed < hotSpot; ++passed) PressKey(label, VK_RIGHT);
  return Carry(label, [&] { return PressKey(label, VK_SPACE); });
}

Outcome WindowForm::Focus(const std::string& name) {
  const HWND control = Find(name);
  return TakesFocus(control) ? Reach(control) : Outcome::NotTaken;
}

Outcome WindowForm::Leave() { return Press(VK_TAB, false); }

Outcome WindowForm::Press(int keyCode, bool shift) {
  if (keyCode == VK_RETURN) return Enter();
  if (keyCode == VK_ESCAPE) return Escape();
  const HWND before = FocusedControl();
  const auto press = [&] { return PressKey(before, keyCode, shift); };
  const Outcome pressed = keyCode == VK_TAB ? press() : Carry(before, press);
  if (pressed == Outcome::Busy) return pressed;
  if (before == nullptr || IsWindow(window_) == FALSE) return Outcome::Done;
  const bool stayed = FocusedControl() == before;
  const ControlKind kind = KindOf(before);
  if (keyCode == VK_TAB) return stayed && kind == ControlKind::TextBox ? Outcome::FocusKept : Outcome::Done;
  const bool isArrow = keyCode >= VK_LEFT && keyCode <= VK_DOWN;
  const bool takesArrows = kind == ControlKind::Slider || kind == ControlKind::Grid ||
                           kind == ControlKind::OptionButton || kind == ControlKind::ExtLabel ||
                           kind == ControlKind::Tree;
  return isArrow && !takesArrows && stayed ? Outcome::NotTaken : Outcome::Done;
}

Outcome WindowForm::PressFor(const std::string& button, int keyCode) {
  if (button.empty()) return Outcome::NotTaken;
  const HWND control = Find(button);
  return Carry(control, [&] {
    const Outcome outcome = Usability(control);
    PressKey(FocusedControl(), keyCode);
    return outcome;
  });
}

Outcome WindowForm::Enter() { return PressFor(EnterButton(), VK_RETURN); }

Outcome WindowForm::Escape() { return PressFor(EscapeButton(), VK_ESCAPE); }

bool WindowForm::CloseWindow() {
  if ((StyleOf(window_) & WS_CHILD) != 0) return false;
  PostMessageW(window_, WM_CLOSE, 0, 0);
  driver_.Settle();
  return true;
}

}  // namespace vexa::workbench
