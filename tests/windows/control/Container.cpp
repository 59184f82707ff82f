#include "tests/windows/control/Container.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/windows/Modals.h"

namespace vexa::windows {
namespace {

constexpr IID PropertyPageSiteId{0x0006307F, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr DISPID OnStatusChangeId = 0x2100;
constexpr RECT PageArea{10, 40, 510, 440};

HWND MakeWindow(const wchar_t* windowClass, const wchar_t* text, DWORD style, DWORD extendedStyle,
                const RECT& place, HWND parent) {
  return CreateWindowExW(extendedStyle, windowClass, text, style, place.left, place.top,
                         place.right - place.left, place.bottom - place.top, parent, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

}  // namespace

Container::Container(const Offers& offers) : offers_(offers) {
  static const ATOM windowClass = [] {
    WNDCLASSW definition{};
    definition.lpfnWndProc = DefDlgProcW;
    definition.cbWndExtra = DLGWINDOWEXTRA;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.lpszClassName = L"VexaTestContainer";
    return RegisterClassW(&definition);
  }();
  top_ = MakeWindow(MAKEINTATOM(windowClass), L"Container", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                    WS_EX_CONTROLPARENT, {0, 0, 540, 520}, nullptr);
  before_ = MakeWindow(L"BUTTON", L"Before", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, {10, 10, 90, 34}, top_);
  area_ = MakeWindow(L"STATIC", nullptr, WS_CHILD | WS_VISIBLE, WS_EX_CONTROLPARENT, PageArea, top_);
  behind_ = MakeWindow(L"BUTTON", L"Behind", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, {10, 450, 90, 474}, top_);
  SetActiveWindow(top_);
}

Container::~Container() {
  if (page_) LetGo();
  DestroyWindows();
  EXPECT_EQ(References(), 0U) << "somebody still holds the container";
}

void Container::DestroyWindows() {
  if (top_ != nullptr) DestroyWindow(std::exchange(top_, nullptr));
}

void Container::Site(const ComPtr<IOutlookPropertiesPage>& page) {
  page_ = page;
  EXPECT_EQ(PageAs<IOleObject>()->SetClientSite(this), S_OK);
}

void Container::Embed(const ComPtr<IOutlookPropertiesPage>& page) {
  Site(page);
  EXPECT_EQ(PageAs<IPersistStreamInit>()->InitNew(), S_OK);
  EXPECT_EQ(DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
}

HRESULT Container::DoVerb(LONG verb) {
  const RECT place{0, 0, PageArea.right - PageArea.left, PageArea.bottom - PageArea.top};
  return PageAs<IOleObject>()->DoVerb(verb, nullptr, this, 0, area_, &place);
}

void Container::LetGo() {
  if (const ComPtr<IOleObject> object = PageAs<IOleObject>()) {
    EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
  }
  page_.Reset();
}

HWND Container::PageWindow() const {
  HWND window = nullptr;
  if (page_) PageAs<IOleInPlaceObject>()->GetWindow(&window);
  return window;
}

HWND Container::Control(const std::string& name) const {
  const HWND control = FindNamed(PageWindow(), name);
  EXPECT_NE(control, nullptr) << name;
  return control;
}

void Container::Handle(MSG& message) {
  const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
  if (isKey && frame_.active) {
    const ComPtr<IOleInPlaceActiveObject> active = frame_.active;
    if (active->TranslateAccelerator(&message) == S_OK) return;
  }
  if (top_ != nullptr && IsDialogMessageW(top_, &message) != FALSE) return;
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

void Container::Pump() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) Handle(message);
}

void Container::Press(int key, bool shift) {
  std::array<BYTE, 256> keys{};
  keys[VK_SHIFT] = shift ? 0x80 : 0;
  SetKeyboardState(keys.data());
  Modals::PostKey(key);
  Pump();
  keys[VK_SHIFT] = 0;
  SetKeyboardState(keys.data());
}

void Container::Click(const std::string& control) {
  Modals::PostClick(Control(control));
  Pump();
}

HRESULT Container::Called(const std::string& call, HRESULT result) {
  calls.push_back(call);
  const auto deed = deeds_.find(call);
  if (deed == deeds_.end()) return result;
  const std::function<void()> body = std::move(deed->second);
  deeds_.erase(deed);
  body();
  return result;
}

STDMETHODIMP Container::QueryInterface(REFIID interfaceId, void** object) {
  *object = nullptr;
  if (interfaceId == IID_IUnknown || interfaceId == IID_IOleClientSite) {
    *object = static_cast<IOleClientSite*>(this);
  } else if ((interfaceId == IID_IOleInPlaceSite || interfaceId == IID_IOleWindow) && offers_.inPlace) {
    *object = static_cast<IOleInPlaceSite*>(this);
  } else if (interfaceId == IID_IOleControlSite && offers_.controlSite) {
    *object = static_cast<IOleControlSite*>(this);
  } else if ((interfaceId == IID_IDispatch && offers_.automation) ||
             (interfaceId == PropertyPageSiteId && offers_.pageSite)) {
    *object = static_cast<IDispatch*>(this);
  } else {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

STDMETHODIMP Container::OnControlInfoChanged() {
  if (const ComPtr<IOleControl> page = PageAs<IOleControl>()) {
    accessKeys.cb = sizeof accessKeys;
    page->GetControlInfo(&accessKeys);
  }
  return Called("OnControlInfoChanged");
}

STDMETHODIMP Container::GetContainer(IOleContainer** container) {
  *container = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP Container::GetWindow(HWND* window) {
  *window = offers_.noWindow ? nullptr : area_;
  return S_OK;
}

STDMETHODIMP Container::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window,
                                         LPRECT position, LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
  *frame = nullptr;
  *window = nullptr;
  if (offers_.context == Context::Fails) return Called("GetWindowContext", E_NOTIMPL);
  *position = *clip = {0, 0, PageArea.right - PageArea.left, PageArea.bottom - PageArea.top};
  info->fMDIApp = FALSE;
  info->hwndFrame = top_;
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  if (offers_.context == Context::Whole) {
    frame_.AddRef();
    *frame = &frame_;
  }
  return Called("GetWindowContext");
}

STDMETHODIMP Container::TranslateAccelerator(LPMSG message, DWORD modifiers) {
  if (message->wParam != VK_TAB) return S_FALSE;
  SetFocus(modifiers == 0 ? behind_ : before_);
  return Called("TranslateAccelerator");
}

STDMETHODIMP Container::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                               UINT*) {
  if (member != OnStatusChangeId || (flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  return Called("OnStatusChange");
}

STDMETHODIMP Container::Frame::QueryInterface(REFIID interfaceId, void** object) {
  const bool known = interfaceId == IID_IUnknown || interfaceId == IID_IOleWindow ||
                     interfaceId == IID_IOleInPlaceUIWindow || interfaceId == IID_IOleInPlaceFrame;
  *object = known ? this : nullptr;
  if (known) AddRef();
  return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP Container::Frame::GetWindow(HWND* window) {
  *window = container_.top_;
  return S_OK;
}

STDMETHODIMP Container::Frame::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) {
  if (container_.page_) active = ComPtr<IOleInPlaceActiveObject>(object);
  return container_.Called(object != nullptr ? "SetActiveObject" : "SetActiveObject null");
}

}  // namespace vexa::windows
