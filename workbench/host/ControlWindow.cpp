#include "workbench/host/ControlWindow.h"

#include <commctrl.h>

#include <cstring>
#include <stdexcept>

#include "windows/com/Text.h"
#include "windows/views/AccessKeys.h"
#include "windows/views/Handles.h"
#include "workbench/host/MessageBox.h"

namespace vexa::workbench {
namespace {

using windows::Send;

constexpr UINT ImageMessage = WM_APP + 2;  // of the product's trees
constexpr UINT CheckedState = 2 << 12;     // state image of a ticked node

std::string Property(HWND window, const wchar_t* name) {
  const auto* const text = static_cast<const char*>(GetPropW(window, name));
  return text == nullptr ? std::string() : text;
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

ControlState ReadControl(HWND control) {
  ControlState state;
  state.name = ControlNameOf(control);
  state.kind = KindOf(control);
  state.text = ReadText(control, state.kind);
  state.visible = (StyleOf(control) & WS_VISIBLE) != 0;
  state.enabled = IsWindowEnabled(control) != FALSE;
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

// --- trees

HTREEITEM Related(HWND tree, HTREEITEM item, WPARAM relation) {
  return reinterpret_cast<HTREEITEM>(Send(tree, TVM_GETNEXTITEM, relation, item));
}
HTREEITEM FirstBelow(HWND tree, HTREEITEM item) {
  return item == nullptr ? Related(tree, nullptr, TVGN_ROOT) : Related(tree, item, TVGN_CHILD);
}
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

}  // namespace vexa::workbench
