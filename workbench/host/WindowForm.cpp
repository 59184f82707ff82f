#include "workbench/host/WindowForm.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "windows/com/Text.h"
#include "windows/views/AccessKeys.h"
#include "windows/views/Handles.h"
#include "workbench/Names.h"
#include "workbench/Words.h"
#include "workbench/host/MessageBox.h"
#include "workbench/host/WindowDriver.h"

namespace vexa::workbench {
namespace {

using windows::Send;

constexpr UINT ImageMessage = WM_APP + 2;  // of the product's trees
constexpr UINT CheckedState = 2 << 12;     // state image of a ticked node

std::string Property(HWND window, const wchar_t* name) {
  const auto* const text = static_cast<const char*>(GetPropW(window, name));
  return text == nullptr ? std::string() : text;
}

DWORD StyleOf(HWND window) { return static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE)); }

ControlKind KindOf(HWND window) {
  const std::wstring name = ClassOfWindow(window);
  if (name == WC_EDITW) return ControlKind::TextBox;
  if (name == TRACKBAR_CLASSW) return ControlKind::Slider;
  if (name == WC_LISTVIEWW) return ControlKind::Grid;
  if (name == WC_TREEVIEWW) return ControlKind::Tree;
  const DWORD style = StyleOf(window);
  if (name == WC_BUTTONW) {
    switch (style & BS_TYPEMASK) {
      case BS_CHECKBOX:
      case BS_AUTOCHECKBOX:
        return ControlKind::CheckBox;
      case BS_RADIOBUTTON:
      case BS_AUTORADIOBUTTON:
        return ControlKind::OptionButton;
      case BS_GROUPBOX:
        return ControlKind::Frame;
      default:
        return ControlKind::Button;
    }
  }
  if ((style & SS_TYPEMASK) != SS_OWNERDRAW) return ControlKind::Label;
  return (style & SS_NOTIFY) != 0 ? ControlKind::ExtLabel : ControlKind::Section;
}

bool TakesFocus(HWND control) { return (StyleOf(control) & WS_TABSTOP) != 0; }

Outcome Usability(HWND control) {
  if ((StyleOf(control) & WS_VISIBLE) == 0) return Outcome::Hidden;
  return IsWindowEnabled(control) == FALSE ? Outcome::Disabled : Outcome::Done;
}

std::vector<HWND> ControlsOf(HWND form) {
  std::vector<HWND> controls;
  for (HWND child = GetWindow(form, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    if (!ControlNameOf(child).empty()) controls.push_back(child);
  }
  return controls;
}

POINT MiddleOf(HWND control) {
  RECT area{};
  GetClientRect(control, &area);
  return {area.right / 2, area.bottom / 2};
}

// --- trees

HTREEITEM Related(HWND tree, HTREEITEM item, WPARAM relation) {
  return reinterpret_cast<HTREEITEM>(Send(tree, TVM_GETNEXTITEM, relation, item));
}
HTREEITEM FirstBelow(HWND tree, HTREEITEM item) {
  return item == nullptr ? Related(tree, nullptr, TVGN_ROOT) : Related(tree, item, TVGN_CHILD);
}
FormDriver::Node ToNode(HTREEITEM item) { return reinterpret_cast<FormDriver::Node>(item); }
HTREEITEM ToItem(FormDriver::Node node) { return reinterpret_cast<HTREEITEM>(node); }

NodeState ReadNode(HWND tree, HTREEITEM item) {
  std::wstring text(1024, L'\0');
  TVITEMW read{};
  read.mask = TVIF_TEXT | TVIF_STATE | TVIF_CHILDREN;
  read.stateMask = TVIS_STATEIMAGEMASK | TVIS_EXPANDED | TVIS_SELECTED;
  read.hItem = item;
  read.pszText = text.data();
  read.cchTextMax = static_cast<int>(text.size());
  Send(tree, TVM_GETITEMW, 0, &read);
  NodeState node;
  node.text = windows::ToUtf8(read.pszText);
  node.checked = (read.state & TVIS_STATEIMAGEMASK) == CheckedState;
  node.selected = (read.state & TVIS_SELECTED) != 0;
  node.expanded = (read.state & TVIS_EXPANDED) != 0;
  node.hasChildren = read.cChildren != 0;
  node.image = reinterpret_cast<const char*>(Send(tree, ImageMessage, 0, item));
  return node;
}

void ReadTree(HWND tree, HTREEITEM first, int depth, std::vector<NodeState>& nodes) {
  for (HTREEITEM item = first; item != nullptr; item = Related(tree, item, TVGN_NEXT)) {
    NodeState node = ReadNode(tree, item);
    node.depth = depth;
    const bool expanded = node.expanded;
    nodes.push_back(std::move(node));
    if (expanded) ReadTree(tree, FirstBelow(tree, item), depth + 1, nodes);
  }
}

/// A place where the tree sees the wanted part of an item: its text, its box, or what expands it.
POINT PlaceOf(HWND tree, HTREEITEM item, UINT part) {
  Send(tree, TVM_ENSUREVISIBLE, 0, item);
  UpdateWindow(tree);  // where the parts of an item are, the tree knows once it has drawn it
  RECT area{};
  std::memcpy(&area, &item, sizeof(void*));  // the message takes the item where it puts the place
  Send(tree, TVM_GETITEMRECT, FALSE, &area);
  TVHITTESTINFO hit{};
  hit.pt.y = (area.top + area.bottom) / 2;
  for (hit.pt.x = 0; hit.pt.x < area.right; ++hit.pt.x) {
    Send(tree, TVM_HITTEST, 0, &hit);
    if (hit.hItem == item && (hit.flags & part) != 0) return {hit.pt.x + 2, hit.pt.y};
  }
  throw std::runtime_error("an item of the tree has no such part");
}

// --- grids

std::string CellText(HWND grid, int row, int column) {
  std::wstring text(1024, L'\0');
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  const auto length = static_cast<size_t>(Send(grid, LVM_GETITEMTEXTW, row, &item));
  return windows::ToUtf8(std::wstring_view(item.pszText, length));
}

void ReadGrid(HWND grid, ControlState& state) {
  const auto header = reinterpret_cast<HWND>(Send(grid, LVM_GETHEADER));
  const auto columns = static_cast<int>(Send(header, HDM_GETITEMCOUNT));
  std::vector<std::string> names;
  for (int column = 0; column < columns; ++column) {
    std::wstring text(256, L'\0');
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    Send(header, HDM_GETITEMW, column, &item);
    names.push_back(windows::ToUtf8(item.pszText));
  }
  state.rows.push_back(std::move(names));
  const auto rows = static_cast<int>(Send(grid, LVM_GETITEMCOUNT));
  for (int row = 0; row < rows; ++row) {
    std::vector<std::string> texts;
    texts.reserve(static_cast<size_t>(columns));
    for (int column = 0; column < columns; ++column) texts.push_back(CellText(grid, row, column));
    state.rows.push_back(std::move(texts));
  }
  state.currentRow = static_cast<int32_t>(Send(grid, LVM_GETNEXTITEM, -1, LVNI_FOCUSED)) + 1;
  state.currentColumn = static_cast<int32_t>(reinterpret_cast<INT_PTR>(GetPropW(grid, L"VexaColumn")));
}

std::string ReadText(HWND control, ControlKind kind) {
  switch (kind) {
    case ControlKind::TextBox:
      return windows::ToUtf8(TextOfWindow(control));
    case ControlKind::ExtLabel:
      return Property(control, L"VexaMarkup");
    default:
      return windows::ToUtf8(windows::PlainText(TextOfWindow(control)));
  }
}

}  // namespace

std::string FormNameOf(HWND window) { return Property(window, L"VexaFormName"); }
std::string ControlNameOf(HWND window) { return Property(window, L"VexaControlName"); }

HWND FindFormWindow(HWND window) {
  if (!FormNameOf(window).empty()) return window;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    if (const HWND found = FindFormWindow(child)) return found;
  }
  return nullptr;
}

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
  ControlState state;
  state.name = ControlNameOf(control);
  state.kind = KindOf(control);
  state.text = ReadText(control, state.kind);
  state.visible = (StyleOf(control) & WS_VISIBLE) != 0;
  state.enabled = IsWindowEnabled(control) != FALSE;
  state.focused = FocusedControl() == control;
  state.isDefault = DefaultButton() == control;
  state.pictureId = static_cast<int32_t>(reinterpret_cast<INT_PTR>(GetPropW(control, L"VexaPicture")));
  switch (state.kind) {
    case ControlKind::CheckBox:
    case ControlKind::OptionButton:
      state.checked = Send(control, BM_GETCHECK) == BST_CHECKED;
      break;
    case ControlKind::TextBox:
      state.readOnly = (StyleOf(control) & ES_READONLY) != 0;
      break;
    case ControlKind::Slider:
      state.position = static_cast<int32_t>(Send(control, TBM_GETPOS));
      state.minimum = static_cast<int32_t>(Send(control, TBM_GETRANGEMIN));
      state.maximum = static_cast<int32_t>(Send(control, TBM_GETRANGEMAX));
      break;
    case ControlKind::Grid:
      ReadGrid(control, state);
      break;
    case ControlKind::Tree:
      ReadTree(control, FirstBelow(control, nullptr), 0, state.nodes);
      break;
    default:
      break;
  }
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
  HTREEITEM item = FirstBelow(tree, parent == NoNode ? nullptr : ToItem(parent));
  while (item != nullptr && EncodedName(ReadNode(tree, item).text) != encodedText)
    item = Related(tree, item, TVGN_NEXT);
  return ToNode(item);
}

// --- what the user does

Outcome WindowForm::Arrival(HWND control, HWND before) const {
  if (IsWindow(window_) == FALSE || before == nullptr || before == control) return Outcome::Done;
  if (!TakesFocus(control) || KindOf(before) != ControlKind::TextBox) return Outcome::Done;
  // Only a text box with an invalid entry holds on to the focus.
  return FocusedControl() == before && GetDlgItem(window_, IDCANCEL) != control ? Outcome::FocusKept
                                                                                : Outcome::Done;
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
  // Anywhere but on its words.
  if (KindOf(control) == ControlKind::ExtLabel) return Reach(control);
  return PressMouse(control, MiddleOf(control));
}

Outcome WindowForm::DoubleClick(const std::string& name) {
  const HWND control = Find(name);
  if (KindOf(control) != ControlKind::Grid) return PressMouse(control, MiddleOf(control), true);
  const ControlState grid = Read(control);
  RECT cell{LVIR_BOUNDS, grid.currentColumn, 0, 0};
  Send(control, LVM_GETSUBITEMRECT, grid.currentRow - 1, &cell);
  return PressMouse(control, {cell.left + 2, (cell.top + cell.bottom) / 2}, true);
}

Outcome WindowForm::SetChecked(const std::string& name, bool checked) {
  const HWND box = Find(name);
  const bool isChecked = Send(box, BM_GETCHECK) == BST_CHECKED;
  return isChecked == checked ? Reach(box) : PressMouse(box, MiddleOf(box));
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
  return PressMouse(tree, PlaceOf(tree, ToItem(node), TVHT_ONITEMLABEL));
}

Outcome WindowForm::CheckNode(const std::string& name, Node node, bool checked) {
  const HWND tree = Find(name);
  if (ReadNode(tree, ToItem(node)).checked == checked) return Reach(tree);
  if (const Outcome outcome = Usability(tree); outcome != Outcome::Done) return outcome;
  return PressMouse(tree, PlaceOf(tree, ToItem(node), TVHT_ONITEMSTATEICON));
}

Outcome WindowForm::Expand(const std::string& name, Node node, bool expanded) {
  const HWND tree = Find(name);
  if (ReadNode(tree, ToItem(node)).expanded == expanded) return Reach(tree);
  if (const Outcome outcome = Usability(tree); outcome != Outcome::Done) return outcome;
  return PressMouse(tree, PlaceOf(tree, ToItem(node), TVHT_ONITEMBUTTON));
}

Outcome WindowForm::ClickHotSpot(const std::string& name, int32_t hotSpot) {
  const HWND label = Find(name);
  if (const Outcome outcome = Reach(label); outcome != Outcome::Done) return outcome;
  PressKey(label, VK_HOME);
  for (int32_t passed = 0; passed < hotSpot; ++passed) PressKey(label, VK_RIGHT);
  return PressKey(label, VK_SPACE);
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
  PressKey(before, keyCode, shift);
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

Outcome WindowForm::Enter() {
  const std::string name = EnterButton();
  if (name.empty()) return Outcome::NotTaken;
  const Outcome outcome = Usability(Find(name));
  PressKey(FocusedControl(), VK_RETURN);
  return outcome;
}

Outcome WindowForm::Escape() {
  const std::string name = EscapeButton();
  if (name.empty()) return Outcome::NotTaken;
  const Outcome outcome = Usability(Find(name));
  PressKey(FocusedControl(), VK_ESCAPE);
  return outcome;
}

bool WindowForm::CloseWindow() {
  if ((StyleOf(window_) & WS_CHILD) != 0) return false;
  PostMessageW(window_, WM_CLOSE, 0, 0);
  driver_.Settle();
  return true;
}

}  // namespace vexa::workbench
