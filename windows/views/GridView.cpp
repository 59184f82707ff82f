#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

constexpr const wchar_t* ColumnProperty = L"VexaColumn";
constexpr int CellPadding = 14;  // both sides of a text together, at 96 dpi
constexpr int RowPadding = 4;
constexpr int HeaderPadding = 11;
constexpr int DefaultRows = 4;

/// A virtual list: it holds no text and asks for those that it shows, so rows cost nothing.
class GridView final : public ControlView {
 public:
  GridView(ViewHost& host, Grid& grid) : ControlView(host, grid), grid_(grid) {
    constexpr DWORD style = LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER;
    Create(WC_LISTVIEWW, style | WS_TABSTOP, WS_EX_CLIENTEDGE);
    constexpr DWORD extended = LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER;
    Send(Window(), LVM_SETEXTENDEDLISTVIEWSTYLE, extended, extended);
    for (int column = 0; column < grid.ColumnCount(); ++column) {
      LVCOLUMNW description{};
      description.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
      description.iSubItem = column;
      std::wstring empty;
      description.pszText = empty.data();
      if (Send(Window(), LVM_INSERTCOLUMNW, column, &description) < 0) {
        ThrowSystemError(GetLastError(), "LVM_INSERTCOLUMN");
      }
    }
    GridView::Sync();
  }
  ~GridView() override { RemovePropW(Window(), ColumnProperty); }

  void Sync() override {
    ControlView::Sync();
    ShowHeaders();
    if (rows_ != grid_.RowCount()) {
      rows_ = grid_.RowCount();
      Send(Window(), LVM_SETITEMCOUNT, rows_, LVSICF_NOSCROLL);
      ShareWidth();  // a scroll bar may have come or gone
    }
    ShowCurrent();
    InvalidateRect(Window(), nullptr, FALSE);
  }

  void SyncFont() override {
    ControlView::SyncFont();
    ShareWidth();
  }

  void Place(const RECT& area) override {
    ControlView::Place(area);
    ShareWidth();
    // A row that was right at the edge must not have left the window when it became smaller.
    Send(Window(), LVM_ENSUREVISIBLE, grid_.CurrentRow() - 1, FALSE);
  }

  int MinWidth() const override {
    int width = 2 * GetSystemMetrics(SM_CXEDGE) + GetSystemMetrics(SM_CXVSCROLL);
    for (const std::string& header : grid_.Headers()) width += ColumnMinWidth(header);
    return width;
  }
  int HeightFor(int /*width*/) const override { return HeightForLines(DefaultRows); }
  int HeightForLines(int lines) const override {
    const Typeface& face = host_.Face();
    return (face.LineHeight() + face.Scale(RowPadding)) * lines + face.LineHeight() +
           face.Scale(HeaderPadding) + 2 * GetSystemMetrics(SM_CYEDGE);
  }

  bool TakesLetters() const override { return true; }

  bool KeyDown(int key) override {
    if (key < VK_LEFT || key > VK_DOWN) return ControlView::KeyDown(key);
    host_.Actions().Press(key);
    return true;
  }

  LRESULT Notified(UINT message, WPARAM /*wParam*/, LPARAM lParam) override {
    if (message != WM_NOTIFY) return 0;
    const UINT code = reinterpret_cast<const NMHDR*>(lParam)->code;
    switch (code) {
      case LVN_GETDISPINFOW:
        FillIn(reinterpret_cast<NMLVDISPINFOW*>(lParam)->item);
        return 0;
      case LVN_ODFINDITEMW:
        return FindRow(*reinterpret_cast<const NMLVFINDITEMW*>(lParam));
      case LVN_ITEMCHANGED:
        RowChosen(*reinterpret_cast<const NMLISTVIEW*>(lParam));
        return 0;
      case NM_CUSTOMDRAW:
        return DrawStage(*reinterpret_cast<const NMLVCUSTOMDRAW*>(lParam));
      default:
        return 0;
    }
  }

 protected:
  std::wstring WindowText() const override { return AccessibleName(); }

  bool Intercept(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
    if (message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK || message == WM_RBUTTONDOWN) {
      // All of it here: the list would wait for the button to come up and knows no current cell.
      if (!ReachByMouse()) return true;
      SetFocus(Window());
      Pressed({static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))},
              message == WM_LBUTTONDBLCLK);
      return true;
    }
    if (message == WM_SETFOCUS || message == WM_KILLFOCUS) InvalidateRect(Window(), nullptr, FALSE);
    return ControlView::Intercept(message, wParam, lParam, result);
  }

 private:
  int ColumnMinWidth(const std::string& header) const {
    return host_.Face().WidthOf(ToUtf16(header)) + host_.Face().Scale(CellPadding);
  }

  void ShowHeaders() {
    if (headers_ == grid_.Headers()) return;
    headers_ = grid_.Headers();
    int column = 0;
    for (const std::string& header : headers_) {
      std::wstring text = ToUtf16(header);
      LVCOLUMNW description{};
      description.mask = LVCF_TEXT;
      description.pszText = text.data();
      Send(Window(), LVM_SETCOLUMNW, column++, &description);
    }
    ShareWidth();
  }

  /// All columns together are as wide as the window, each with its share by the width of its header.
  void ShareWidth() {
    RECT client{};
    if (headers_.empty() || GetClientRect(Window(), &client) == FALSE || client.right == 0) return;
    int total = 0;
    for (const std::string& header : headers_) total += ColumnMinWidth(header);
    int left = static_cast<int>(client.right);
    int column = 0;
    for (const std::string& header : headers_) {
      const int least = ColumnMinWidth(header);
      const bool last = column + 1 == grid_.ColumnCount();
      const int width = last ? left : MulDiv(static_cast<int>(client.right), least, total);
      Send(Window(), LVM_SETCOLUMNWIDTH, column++, std::max(width, 0));
      left -= width;
    }
  }

  void ShowCurrent() {
    // The list has no current column: it is drawn here, and those who drive the window read this.
    Verified(SetPropW(Window(), ColumnProperty, reinterpret_cast<HANDLE>(INT_PTR{grid_.CurrentColumn()})),
             "SetPropW");
    const int wanted = grid_.CurrentRow() - 1;
    const int shown = static_cast<int>(Send(Window(), LVM_GETNEXTITEM, -1, LVNI_SELECTED));
    if (shown == wanted) return;
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    item.state = LVIS_SELECTED | LVIS_FOCUSED;
    Send(Window(), LVM_SETITEMSTATE, wanted, &item);
    Send(Window(), LVM_ENSUREVISIBLE, wanted, FALSE);
  }

  void FillIn(LVITEMW& item) {
    if ((item.mask & LVIF_TEXT) == 0) return;
    text_.clear();
    if (item.iItem >= 0 && item.iItem < grid_.RowCount()) {
      const int column = std::max(item.iSubItem, 0);
      if (column < grid_.ColumnCount()) text_ = ToUtf16(grid_.TextAt(item.iItem + 1, column));
    }
    item.pszText = text_.data();
  }

  LRESULT FindRow(const NMLVFINDITEMW& search) const {
    if ((search.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 || search.lvfi.psz == nullptr) return -1;
    const std::wstring wanted = search.lvfi.psz;
    const int start = std::clamp(search.iStart, 0, grid_.RowCount() - 1);
    for (int offset = 0; offset < grid_.RowCount(); ++offset) {
      const int row = (start + offset) % grid_.RowCount();
      const std::wstring text = ToUtf16(grid_.TextAt(row + 1, 0));
      if (text.size() >= wanted.size() &&
          CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, text.c_str(), static_cast<int>(wanted.size()),
                         wanted.c_str(), static_cast<int>(wanted.size())) == CSTR_EQUAL) {
        return row;
      }
    }
    return -1;
  }

  void Pressed(POINT at, bool twice) {
    LVHITTESTINFO hit{};
    hit.pt = at;
    const auto row = static_cast<int>(Send(Window(), LVM_SUBITEMHITTEST, 0, &hit));
    if (row < 0) return;
    host_.Actions().SelectCell(grid_, row + 1, std::max(hit.iSubItem, 0));
    if (twice) host_.Actions().DoubleClick(grid_);
  }

  void RowChosen(const NMLISTVIEW& change) {
    const bool chosen = (change.uNewState & LVIS_SELECTED) != 0 && (change.uOldState & LVIS_SELECTED) == 0;
    if (!chosen || change.iItem < 0 || change.iItem >= grid_.RowCount()) return;
    if (change.iItem + 1 == grid_.CurrentRow()) return;
    host_.Actions().SelectCell(grid_, change.iItem + 1, grid_.CurrentColumn());
    if (Window() != nullptr) ShowCurrent();  // back, when it was refused
  }

  LRESULT DrawStage(const NMLVCUSTOMDRAW& draw) const {
    switch (draw.nmcd.dwDrawStage) {
      case CDDS_PREPAINT:
        return GetFocus() == Window() ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT;
      case CDDS_ITEMPREPAINT:
        return static_cast<int>(draw.nmcd.dwItemSpec) == grid_.CurrentRow() - 1 ? CDRF_NOTIFYPOSTPAINT
                                                                                : CDRF_DODEFAULT;
      case CDDS_ITEMPOSTPAINT:
        MarkCurrentCell(draw.nmcd.hdc);
        return CDRF_DODEFAULT;
      default:
        return CDRF_DODEFAULT;
    }
  }

  /// The list marks the row; which of its cells is the current one, a dotted line shows.
  void MarkCurrentCell(HDC dc) const {
    RECT cell{};
    cell.top = grid_.CurrentColumn();
    cell.left = LVIR_BOUNDS;
    if (Send(Window(), LVM_GETSUBITEMRECT, grid_.CurrentRow() - 1, &cell) == 0) return;
    if (grid_.CurrentColumn() == 0) {
      cell.right = cell.left + static_cast<LONG>(Send(Window(), LVM_GETCOLUMNWIDTH, 0));
    }
    InflateRect(&cell, -1, -1);
    SetTextColor(dc, GetSysColor(COLOR_HIGHLIGHTTEXT));
    SetBkColor(dc, GetSysColor(COLOR_HIGHLIGHT));
    DrawFocusRect(dc, &cell);
  }

  Grid& grid_;
  std::vector<std::string> headers_;
  int rows_ = -1;
  std::wstring text_;  // lent to the list until it asks again
};

}  // namespace

ControlViewPtr MakeGridView(ViewHost& host, Grid& grid) { return std::make_unique<GridView>(host, grid); }

}  // namespace vexa::windows
