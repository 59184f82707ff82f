#include "workbench/host/OptionsDialog.h"

#include <olectl.h>

#include <algorithm>

#include "Outlook.h"
#include "windows/com/Text.h"
#include "windows/views/Handles.h"

namespace vexa::workbench {
namespace {

using windows::Check;
using windows::ComPtr;
using windows::Send;
using windows::Verified;

constexpr const wchar_t* PageProgId = L"VexaControls.OutlookPropertiesPage";
constexpr const wchar_t* WindowClass = L"VexaOptionsDialog";
constexpr const wchar_t* AreaClass = L"VexaPageArea";
constexpr int ApplyId = 100;

constexpr int Margin = 8;
constexpr int ButtonWidth = 80;
constexpr int ButtonHeight = 25;
constexpr int TabHeight = 26;
constexpr SIZE SmallestPage{400, 380};

ATOM RegisterWindowClass(const wchar_t* name, WNDPROC procedure) {
  WNDCLASSW definition{};
  definition.lpfnWndProc = procedure;
  definition.cbWndExtra = DLGWINDOWEXTRA;
  definition.hInstance = GetModuleHandleW(nullptr);
  definition.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  definition.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
  definition.lpszClassName = name;
  return Verified(RegisterClassW(&definition), "RegisterClassW");
}

/// The size that the page asks for, in pixels.
SIZE PageSize(IOleObject& object) {
  constexpr int himetricPerInch = 2540;
  SIZEL wished{};
  if (FAILED(object.GetExtent(DVASPECT_CONTENT, &wished))) return SmallestPage;
  const HDC screen = GetDC(nullptr);
  const SIZE size{MulDiv(wished.cx, GetDeviceCaps(screen, LOGPIXELSX), himetricPerInch),
                  MulDiv(wished.cy, GetDeviceCaps(screen, LOGPIXELSY), himetricPerInch)};
  ReleaseDC(nullptr, screen);
  return {std::max(size.cx, SmallestPage.cx), std::max(size.cy, SmallestPage.cy)};
}

}  // namespace

OptionsDialog::OptionsDialog(Events events) : events_(std::move(events)) {
  CreateWindows();
  try {
    EmbedPage();
  } catch (...) {
    ReleasePage();
    DestroyWindow(window_);
    throw;
  }
  UpdateApply();
  ShowWindow(window_, SW_SHOW);
}

OptionsDialog::~OptionsDialog() {
  ReleasePage();
  DestroyWindow(window_);
}

HWND OptionsDialog::Child(const wchar_t* windowClass, const wchar_t* text, DWORD style, DWORD extendedStyle,
                          int id) {
  const HWND child = Verified(
      CreateWindowExW(extendedStyle, windowClass, text, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | style, 0, 0,
                      0, 0, window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                      GetModuleHandleW(nullptr), nullptr),
      "CreateWindowExW");
  Send(child, WM_SETFONT, GetStockObject(DEFAULT_GUI_FONT), FALSE);
  return child;
}

void OptionsDialog::CreateWindows() {
  static const ATOM classes = RegisterWindowClass(WindowClass, Procedure) != 0
                                  ? RegisterWindowClass(AreaClass, DefWindowProcW)
                                  : ATOM{0};
  static_cast<void>(classes);
  window_ =
      Verified(CreateWindowExW(WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT, WindowClass, L"Options",
                               WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN, CW_USEDEFAULT,
                               CW_USEDEFAULT, 0, 0, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr),
               "CreateWindowExW");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  // Tabbing goes in the order of making; the area lies above the tabs that stand around it.
  area_ = Child(AreaClass, L"", 0, WS_EX_CONTROLPARENT, 0);
  notes_ = Child(WC_STATICW, L"Outlook's own options would stand here.", 0, 0, 0);
  tabs_ = Child(WC_TABCONTROLW, L"Tabs", WS_TABSTOP, 0, 0);
  ok_ = Child(WC_BUTTONW, L"OK", WS_TABSTOP | BS_DEFPUSHBUTTON, 0, IDOK);
  Child(WC_BUTTONW, L"Cancel", WS_TABSTOP, 0, IDCANCEL);
  apply_ = Child(WC_BUTTONW, L"&Apply", WS_TABSTOP | WS_DISABLED, 0, ApplyId);
  std::wstring general = L"General";
  TCITEMW item{};
  item.mask = TCIF_TEXT;
  item.pszText = general.data();
  Send(tabs_, TCM_INSERTITEMW, OutlooksOwn, &item);
  Send(tabs_, TCM_INSERTITEMW, VexaPage, &item);
}

void OptionsDialog::EmbedPage() {
  CLSID classId{};
  Check(CLSIDFromProgID(PageProgId, &classId));
  void* made = nullptr;
  Check(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IOutlookPropertiesPage), &made));
  page_ = ComPtr<IOutlookPropertiesPage>::Attach(static_cast<IOutlookPropertiesPage*>(made));
  object_ = page_.As<IOleObject>();
  if (!object_) Check(E_NOINTERFACE);

  frame_ = ComPtr<PageFrame>::Attach(new PageFrame(window_));
  site_ = ComPtr<PageSite>::Attach(new PageSite(frame_, area_,
                                                {events_.isPageSite,
                                                 [this] {
                                                   if (events_.statusChanged) events_.statusChanged();
                                                   UpdateApply();
                                                 },
                                                 [this](bool backwards) { FocusOutside(backwards); }}));
  Check(object_->SetClientSite(site_.Get()));
  if (const ComPtr<IPersistStreamInit> state = page_.As<IPersistStreamInit>()) Check(state->InitNew());

  const SIZE size = PageSize(*object_.Get());
  const int bottom = TabHeight + Margin + static_cast<int>(size.cy) + Margin;
  RECT outer{0, 0, size.cx + 4 * Margin, bottom + 3 * Margin + ButtonHeight};
  AdjustWindowRectEx(&outer, WS_POPUP | WS_CAPTION | WS_SYSMENU, FALSE, WS_EX_DLGMODALFRAME);
  SetWindowPos(window_, nullptr, 40, 40, outer.right - outer.left, outer.bottom - outer.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
  for (const HWND content : {area_, notes_})
    MoveWindow(content, 2 * Margin, TabHeight + Margin, size.cx, size.cy, FALSE);
  MoveWindow(tabs_, Margin, Margin, size.cx + 2 * Margin, bottom - Margin, FALSE);
  int left = static_cast<int>(size.cx) + 3 * Margin - 3 * ButtonWidth - 2 * Margin;
  for (const int id : {IDOK, IDCANCEL, ApplyId}) {
    MoveWindow(GetDlgItem(window_, id), left, bottom + Margin, ButtonWidth, ButtonHeight, FALSE);
    left += ButtonWidth + Margin;
  }
  ShowPage();
}

void OptionsDialog::ReleasePage() {
  if (object_) {
    // What a page answers to being let go of changes nothing.
    object_->Close(OLECLOSE_NOSAVE);
    object_->SetClientSite(nullptr);
  }
  if (site_) site_->Detach();
  object_.Reset();
  page_.Reset();
  site_.Reset();
  frame_.Reset();
  ShowWindow(window_, SW_HIDE);
}

void OptionsDialog::ShowPage() {
  std::wstring title = Caption();
  TCITEMW item{};
  item.mask = TCIF_TEXT;
  item.pszText = title.data();
  Send(tabs_, TCM_SETITEMW, VexaPage, &item);
  Send(tabs_, TCM_SETCURSEL, VexaPage);
  SelectTab(VexaPage);
}

void OptionsDialog::SelectTab(int tab) {
  // Another tab covers the page: it keeps what it holds, so it is not told to hide.
  ShowWindow(area_, tab == VexaPage ? SW_SHOW : SW_HIDE);
  ShowWindow(notes_, tab == VexaPage ? SW_HIDE : SW_SHOW);
  if (tab != VexaPage) return;
  RECT position{};
  Verified(GetClientRect(area_, &position), "GetClientRect");
  Check(object_->DoVerb(OLEIVERB_UIACTIVATE, nullptr, site_.Get(), 0, area_, &position));
}

void OptionsDialog::ApplyPage() {
  const ComPtr<PropertyPage> outlooks = page_.As<PropertyPage>();
  if (!outlooks) Check(E_NOINTERFACE);
  windows::Call(outlooks, &PropertyPage::Apply);
  UpdateApply();
}

bool OptionsDialog::IsDirty() const {
  VARIANT_BOOL dirty = VARIANT_FALSE;
  const ComPtr<PropertyPage> outlooks = page_.As<PropertyPage>();
  if (!outlooks) Check(E_NOINTERFACE);
  windows::Call(outlooks, &PropertyPage::get_Dirty, &dirty);
  return dirty != VARIANT_FALSE;
}

std::wstring OptionsDialog::Caption() const {
  DISPPARAMS none{};
  windows::OwnedVariant caption;
  EXCEPINFO exception{};
  const HRESULT outcome = page_->Invoke(DISPID_CAPTION, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                        &none, &caption.Get(), &exception, nullptr);
  windows::CheckInvoke(outcome, exception);
  return windows::ToUtf16(windows::FromVariant(caption.Get()).ToText());
}

void OptionsDialog::HidePage() {
  RECT position{};
  Check(object_->DoVerb(OLEIVERB_HIDE, nullptr, site_.Get(), 0, area_, &position));
}

void OptionsDialog::UpdateApply() {
  if (page_) EnableWindow(apply_, IsDirty() ? TRUE : FALSE);  // it may have been released in a call
}

void OptionsDialog::Command(int id) {
  if (id == IDOK || id == ApplyId) ApplyPage();
  if ((id == IDOK || id == IDCANCEL) && events_.closed) events_.closed();
}

void OptionsDialog::FocusOutside(bool backwards) {
  const HWND last = IsWindowEnabled(apply_) != FALSE ? apply_ : GetDlgItem(window_, IDCANCEL);
  SetFocus(backwards ? last : tabs_);
}

bool OptionsDialog::TranslateForPage(MSG& message) {
  if (!frame_ || !frame_->ActiveObject()) return false;
  if (IsChild(area_, message.hwnd) == FALSE) return PressMnemonic(message);
  const ComPtr<IOleInPlaceActiveObject> active = frame_->ActiveObject();  // the message may end its time
  return active->TranslateAccelerator(&message) == S_OK;
}

/// The access keys of the page work wherever the focus is in the dialog; its own button goes first.
bool OptionsDialog::PressMnemonic(MSG& message) {
  if (message.message != WM_SYSCHAR || IsWindowVisible(area_) == FALSE) return false;
  const bool own = message.wParam == L'a' && IsWindowEnabled(apply_) != FALSE;
  const ComPtr<IOleControl> page = page_.As<IOleControl>();
  return !own && page && page->OnMnemonic(&message) == S_OK;
}

void OptionsDialog::Handle(MSG& message) {
  const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
  if (isKey && TranslateForPage(message)) return;
  if (IsDialogMessageW(window_, &message) != FALSE) return;
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

LRESULT CALLBACK OptionsDialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const self = reinterpret_cast<OptionsDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  const auto guarded = [&](const auto& body) {
    try {
      body();
    } catch (const std::exception& failure) {
      MessageBoxW(window, windows::ToUtf16(failure.what()).c_str(), L"Options", MB_ICONERROR);
    }
  };
  switch (message) {
    case WM_COMMAND:
      guarded([&] { self->Command(LOWORD(wParam)); });
      return 0;
    case WM_CLOSE:
      guarded([&] { self->Command(IDCANCEL); });
      return 0;
    case WM_NOTIFY:
      if (reinterpret_cast<const NMHDR*>(lParam)->code == TCN_SELCHANGE)
        guarded([&] { self->SelectTab(static_cast<int>(Send(self->tabs_, TCM_GETCURSEL))); });
      return 0;
    case DM_GETDEFID:
      return MAKELRESULT(IDOK, DC_HASDEFID);
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

}  // namespace vexa::workbench
