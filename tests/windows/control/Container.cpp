#include "tests/windows/control/Container.h"

#include <gtest/gtest.h>

#include "tests/windows/Modals.h"
#include "workbench/host/PageSite.h"

namespace vexa::windows {
namespace {

constexpr RECT PageArea{10, 40, 510, 440};

HWND MakeWindow(const wchar_t* windowClass, const wchar_t* text, DWORD style, DWORD extendedStyle,
                const RECT& place, HWND parent) {
  return CreateWindowExW(extendedStyle, windowClass, text, style, place.left, place.top,
                         place.right - place.left, place.bottom - place.top, parent, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

}  // namespace

class Container::PoorFrame final : public workbench::PageFrame {
 public:
  explicit PoorFrame(Container& container) : PageFrame(container.top_), container_(container) {}

  STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override { return container_.Called("SetBorderSpace"); }
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR name) override {
    PageFrame::SetActiveObject(container_.page_ ? object : nullptr, name);
    return container_.Called(object != nullptr ? "SetActiveObject" : "SetActiveObject null");
  }

 private:
  Container& container_;
};

class Container::PoorSite final : public workbench::PageSite {
 public:
  explicit PoorSite(Container& container)
      : PageSite(ComPtr<workbench::PageFrame>(container.frame_.Get()), container.area_,
                 {[&container] { return container.offers_.pageSite; },
                  [&container] { container.Called("OnStatusChange"); },
                  [&container](bool) { SetFocus(container.behind_); }}),
        container_(container) {}

  STDMETHODIMP ShowObject() override { return container_.Called("ShowObject"); }
  STDMETHODIMP GetWindow(HWND* window) override {
    *window = container_.offers_.noWindow ? nullptr : container_.area_;
    return S_OK;
  }
  STDMETHODIMP CanInPlaceActivate() override {
    return container_.Called("CanInPlaceActivate", container_.offers_.canActivate);
  }
  STDMETHODIMP OnInPlaceActivate() override {
    return container_.Called("OnInPlaceActivate", container_.offers_.activate);
  }
  STDMETHODIMP OnUIActivate() override {
    return container_.Called("OnUIActivate", container_.offers_.uiActivate);
  }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window, LPRECT position,
                                LPRECT clip, LPOLEINPLACEFRAMEINFO info) override {
    const Context context = container_.offers_.context;
    HRESULT outcome = E_NOTIMPL;
    if (context != Context::Fails) outcome = PageSite::GetWindowContext(frame, window, position, clip, info);
    if (context == Context::WithoutFrame && *frame != nullptr) std::exchange(*frame, nullptr)->Release();
    return container_.Called("GetWindowContext", outcome);
  }
  STDMETHODIMP OnUIDeactivate(BOOL) override { return container_.Called("OnUIDeactivate"); }
  STDMETHODIMP OnInPlaceDeactivate() override { return container_.Called("OnInPlaceDeactivate"); }
  STDMETHODIMP OnControlInfoChanged() override {
    if (const ComPtr<IOleControl> page = container_.PageAs<IOleControl>()) {
      container_.accessKeys.cb = sizeof container_.accessKeys;
      page->GetControlInfo(&container_.accessKeys);
    }
    return container_.Called("OnControlInfoChanged");
  }

 private:
  void* Find(REFIID id) override {
    const Offers& offers = container_.offers_;
    const bool missing = (!offers.inPlace && (id == IID_IOleInPlaceSite || id == IID_IOleWindow)) ||
                         (!offers.controlSite && id == IID_IOleControlSite) ||
                         (!offers.automation && id == IID_IDispatch);
    return missing ? nullptr : PageSite::Find(id);
  }

  Container& container_;
};

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
  area_ = MakeWindow(L"STATIC", nullptr, WS_CHILD | WS_VISIBLE, WS_EX_CONTROLPARENT, PageArea, top_);
  behind_ = MakeWindow(L"BUTTON", L"Behind", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, {10, 450, 90, 474}, top_);
  frame_ = MakeObject<PoorFrame, PoorFrame>(*this);
  site_ = MakeObject<PoorSite, PoorSite>(*this);
  SetActiveWindow(top_);
}

Container::~Container() {
  if (page_) LetGo();
  DestroyWindows();
  const auto referencesOn = [](auto& object) { return object.AddRef(), object.Release(); };
  EXPECT_EQ(referencesOn(*site_.Get()), 1U) << "somebody still holds the container";
  EXPECT_EQ(referencesOn(*frame_.Get()), 2U) << "somebody besides container and site holds the frame";
}

void Container::Forget() {
  frame_->PageFrame::SetActiveObject(nullptr, nullptr);
  page_.Reset();
}

void Container::DestroyWindows() {
  if (top_ != nullptr) DestroyWindow(std::exchange(top_, nullptr));
}

void Container::Site(const ComPtr<IOutlookPropertiesPage>& page) {
  page_ = page;
  EXPECT_EQ(PageAs<IOleObject>()->SetClientSite(site_.Get()), S_OK);
}

void Container::Embed(const ComPtr<IOutlookPropertiesPage>& page) {
  Site(page);
  EXPECT_EQ(PageAs<IPersistStreamInit>()->InitNew(), S_OK);
  EXPECT_EQ(DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
}

HRESULT Container::DoVerb(LONG verb) {
  const RECT place{0, 0, PageArea.right - PageArea.left, PageArea.bottom - PageArea.top};
  return PageAs<IOleObject>()->DoVerb(verb, nullptr, site_.Get(), 0, area_, &place);
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
  const ComPtr<IOleInPlaceActiveObject> active = frame_->ActiveObject();
  if (isKey && active && active->TranslateAccelerator(&message) == S_OK) return;
  if (top_ != nullptr && IsDialogMessageW(top_, &message) != FALSE) return;
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

void Container::Pump() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) Handle(message);
}

void Container::Click(const std::string& control) {
  Modals::PostClick(Control(control));
  Pump();
}

HRESULT Container::Called(const std::string& call, HRESULT result) {
  calls.push_back(call);
  const auto operation = operations_.find(call);
  if (operation == operations_.end()) return result;
  const std::function<void()> body = std::move(operation->second);
  operations_.erase(operation);
  body();
  return result;
}

}  // namespace vexa::windows
