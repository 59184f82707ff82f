#include "workbench/host/FolderPicker.h"

#include <memory>

#include "windows/com/Text.h"
#include "windows/views/Handles.h"

namespace vexa::workbench {
namespace {

using windows::Send;
using windows::Verified;

constexpr int Width = 340;
constexpr int Height = 400;
constexpr int Margin = 10;
constexpr int ButtonWidth = 80;
constexpr int ButtonHeight = 25;

class Picker {
 public:
  Picker(HWND owner, const World& world) : owner_(owner), world_(world) {}

  std::optional<FolderIndex> Run() {
    const HWND focus = GetFocus();
    Create();
    if (owner_ != nullptr) EnableWindow(owner_, FALSE);
    ShowWindow(window_, SW_SHOW);
    SetFocus(tree_);
    MSG message{};
    while (!done_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
      if (IsDialogMessageW(window_, &message) != FALSE) continue;
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    if (message.message == WM_QUIT) PostQuitMessage(static_cast<int>(message.wParam));
    // The owner comes back before the window goes, or another program's window would come to the front.
    if (owner_ != nullptr) EnableWindow(owner_, TRUE);
    DestroyWindow(window_);
    if (focus != nullptr) SetFocus(focus);  // a window that is activated again has it for itself
    return picked_;
  }

 private:
  HWND Child(const wchar_t* windowClass, const wchar_t* text, DWORD style, int id, const RECT& area) {
    const HWND child =
        Verified(CreateWindowExW(0, windowClass, text, WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, area.left,
                                 area.top, area.right - area.left, area.bottom - area.top, window_,
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                                 nullptr),
                 "CreateWindowExW");
    Send(child, WM_SETFONT, GetStockObject(DEFAULT_GUI_FONT), FALSE);
    return child;
  }

  void Create() {
    static const ATOM windowClass = [] {
      WNDCLASSW definition{};
      definition.lpfnWndProc = Procedure;
      definition.cbWndExtra = DLGWINDOWEXTRA;
      definition.hInstance = GetModuleHandleW(nullptr);
      definition.hCursor = LoadCursorW(nullptr, IDC_ARROW);
      definition.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
      definition.lpszClassName = FolderPickerClass;
      return Verified(RegisterClassW(&definition), "RegisterClassW");
    }();
    window_ = Verified(CreateWindowExW(WS_EX_DLGMODALFRAME, MAKEINTATOM(windowClass), L"Select Folder",
                                       WS_POPUP | WS_CAPTION | WS_SYSMENU, CW_USEDEFAULT, CW_USEDEFAULT,
                                       Width, Height, owner_, nullptr, GetModuleHandleW(nullptr), nullptr),
                       "CreateWindowExW");
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    RECT area{};
    Verified(GetClientRect(window_, &area), "GetClientRect");
    const LONG buttons = area.bottom - Margin - ButtonHeight;
    tree_ = Child(WC_TREEVIEWW, L"",
                  WS_BORDER | TVS_HASLINES | TVS_LINESATROOT | TVS_HASBUTTONS | TVS_SHOWSELALWAYS,
                  FolderPickerTree, {Margin, Margin, area.right - Margin, buttons - Margin});
    const LONG cancel = area.right - Margin - ButtonWidth;
    const LONG ok = cancel - Margin - ButtonWidth;
    Child(WC_BUTTONW, L"OK", BS_DEFPUSHBUTTON, IDOK, {ok, buttons, ok + ButtonWidth, buttons + ButtonHeight});
    Child(WC_BUTTONW, L"Cancel", 0, IDCANCEL,
          {cancel, buttons, cancel + ButtonWidth, buttons + ButtonHeight});
    for (const Store& store : world_.Stores()) Insert(TVI_ROOT, store.root);
  }

  void Insert(HTREEITEM parent, FolderIndex folder) {
    if (world_.At(folder).deleted) return;
    std::wstring name = windows::ToUtf16(world_.At(folder).name);
    const std::vector<FolderIndex> children = world_.ChildrenOf(folder);
    TVINSERTSTRUCTW insertion{};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_CHILDREN;
    insertion.item.pszText = name.data();
    insertion.item.lParam = static_cast<LPARAM>(folder);
    insertion.item.cChildren = children.empty() ? 0 : 1;
    const LRESULT made = Send(tree_, TVM_INSERTITEMW, 0, &insertion);
    for (const FolderIndex child : children) Insert(reinterpret_cast<HTREEITEM>(made), child);
  }

  void Command(int id) {
    if (id == IDOK) {
      TVITEMW item{};
      item.mask = TVIF_PARAM;
      item.hItem = reinterpret_cast<HTREEITEM>(Send(tree_, TVM_GETNEXTITEM, TVGN_CARET));
      if (item.hItem == nullptr || Send(tree_, TVM_GETITEMW, 0, &item) == FALSE) return;  // nothing is chosen
      picked_ = static_cast<FolderIndex>(item.lParam);
      done_ = true;
    } else if (id == IDCANCEL) {
      done_ = true;
    }
  }

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const self = reinterpret_cast<Picker*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
      case WM_COMMAND:
        self->Command(LOWORD(wParam));
        return 0;
      case WM_CLOSE:
        self->Command(IDCANCEL);
        return 0;
      case DM_GETDEFID:
        return MAKELRESULT(IDOK, DC_HASDEFID);
      default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
  }

  HWND owner_;
  const World& world_;
  HWND window_ = nullptr;
  HWND tree_ = nullptr;
  bool done_ = false;
  std::optional<FolderIndex> picked_;
};

}  // namespace

std::optional<FolderIndex> ShowFolderPicker(HWND owner, const World& world) {
  return Picker(owner, world).Run();
}

}  // namespace vexa::workbench
