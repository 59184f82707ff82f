// The control's window in its container: activation, focus, keys, and the moment at which the page counts
// as hidden.
#include <array>
#include <string>
#include <vector>

#include "windows/control/PageControlCall.h"

namespace vexa::windows {
namespace {

wchar_t LowerCase(wchar_t letter) {
  std::array<wchar_t, 2> text{letter, 0};
  CharLowerW(text.data());
  return text[0];
}

}  // namespace

HRESULT PageControl::Activate(bool takeFocus) {
  // The window may have been destroyed with the container's.
  if (window_ != nullptr && !IsInPlaceActive()) Deactivate();
  // In the middle of beginning or ending an activation there is nothing to begin.
  if (!inPlaceSite_) {
    const HRESULT outcome = ActivateInPlace();
    if (FAILED(outcome)) return outcome;
  }
  if (!IsInPlaceActive()) return OLE_E_NOT_INPLACEACTIVE;
  window_->Show(true);
  return takeFocus ? TakeFocus() : S_OK;
}

// Every call on the container may come back here and end what it has just begun: what goes on afterwards has
// to look whether the page is still to be activated.
HRESULT PageControl::ActivateInPlace() {
  const ComPtr<IOleClientSite> clientSite = clientSite_;
  const ComPtr<IOleInPlaceSite> site = clientSite.As<IOleInPlaceSite>();
  if (!site) return E_FAIL;
  if (site->CanInPlaceActivate() != S_OK) return OLE_E_NOT_INPLACEACTIVE;
  HWND parent = nullptr;
  HRESULT outcome = site->GetWindow(&parent);
  if (FAILED(outcome)) return outcome;
  if (parent == nullptr || clientSite_.Get() != clientSite.Get() || inPlaceSite_) {
    return OLE_E_NOT_INPLACEACTIVE;
  }
  inPlaceSite_ = site;
  outcome = site->OnInPlaceActivate();
  if (FAILED(outcome)) {
    inPlaceSite_.Reset();
    return outcome;
  }
  const auto goesOn = [&] { return inPlaceSite_.Get() == site.Get() && window_ == nullptr; };
  if (!goesOn()) return OLE_E_NOT_INPLACEACTIVE;

  ComPtr<IOleInPlaceFrame> frame;
  ComPtr<IOleInPlaceUIWindow> uiWindow;
  RECT position{};
  RECT clip{};
  OLEINPLACEFRAMEINFO frameInfo{};
  frameInfo.cb = sizeof frameInfo;
  // A container may have no frame and no window of its own: then there is nobody to tell.
  outcome = site->GetWindowContext(frame.Receive(), uiWindow.Receive(), &position, &clip, &frameInfo);
  std::unique_ptr<PageWindow> window;
  if (SUCCEEDED(outcome) && goesOn()) {
    // What the user does in the window may end with the container letting go of the control.
    const auto keepAlive = [this] {
      return std::make_shared<ComPtr<IUnknown>>(static_cast<IOutlookPropertiesPage*>(this));
    };
    outcome = Guarded(IID_IOleObject,
                      [&] { window = std::make_unique<PageWindow>(Page(), parent, position, keepAlive); });
  }
  if (!goesOn()) return OLE_E_NOT_INPLACEACTIVE;
  if (FAILED(outcome)) {
    Deactivate();
    return outcome;
  }
  frame_ = std::move(frame);
  uiWindow_ = std::move(uiWindow);
  window_ = std::move(window);
  clientSite->ShowObject();
  // The keys of a page that nobody sees are none.
  if (const ComPtr<IOleControlSite> keys = clientSite.As<IOleControlSite>()) keys->OnControlInfoChanged();
  return S_OK;
}

HRESULT PageControl::TakeFocus() {
  if (!IsInPlaceActive()) return OLE_E_NOT_INPLACEACTIVE;
  if (!uiActive_) {
    const ComPtr<IOleInPlaceFrame> frame = frame_;
    const ComPtr<IOleInPlaceUIWindow> uiWindow = uiWindow_;
    uiActive_ = true;
    const HRESULT outcome = ComPtr<IOleInPlaceSite>(inPlaceSite_)->OnUIActivate();
    if (FAILED(outcome)) {
      uiActive_ = false;
      return outcome;
    }
    for (IOleInPlaceUIWindow* place : {static_cast<IOleInPlaceUIWindow*>(frame.Get()), uiWindow.Get()}) {
      if (place != nullptr && uiActive_) place->SetActiveObject(this, nullptr);
      if (place != nullptr && uiActive_) place->SetBorderSpace(nullptr);
    }
  }
  if (uiActive_ && IsInPlaceActive()) window_->SetFocus();
  return S_OK;
}

void PageControl::GiveUpFocus() {
  if (!uiActive_) return;
  uiActive_ = false;
  const ComPtr<IOleInPlaceSite> site = inPlaceSite_;
  const ComPtr<IOleInPlaceFrame> frame = frame_;
  if (const ComPtr<IOleInPlaceUIWindow> uiWindow = uiWindow_) uiWindow->SetActiveObject(nullptr, nullptr);
  if (frame) frame->SetActiveObject(nullptr, nullptr);
  if (site) site->OnUIDeactivate(FALSE);
}

void PageControl::Deactivate() {
  // Whatever the container does in answer, it finds no active page any more.
  std::unique_ptr<PageWindow> window = std::move(window_);
  GiveUpFocus();
  window.reset();
  frame_.Reset();
  uiWindow_.Reset();
  if (const ComPtr<IOleInPlaceSite> site = std::exchange(inPlaceSite_, nullptr)) site->OnInPlaceDeactivate();
}

void PageControl::HidePage() { Page().UserControl_Hide(); }

STDMETHODIMP PageControl::GetWindow(HWND* window) {
  if (window == nullptr) return E_POINTER;
  *window = IsInPlaceActive() ? window_->Handle() : nullptr;
  return IsInPlaceActive() ? S_OK : E_FAIL;
}

STDMETHODIMP PageControl::ContextSensitiveHelp(BOOL /*enter*/) { return E_NOTIMPL; }

STDMETHODIMP PageControl::InPlaceDeactivate() {
  return Call(IID_IOleInPlaceObject, [&] {
    if (!inPlaceSite_) return;
    Deactivate();
    HidePage();
  });
}

STDMETHODIMP PageControl::UIDeactivate() {
  return Call(IID_IOleInPlaceObject, [&] { GiveUpFocus(); });
}

STDMETHODIMP PageControl::SetObjectRects(LPCRECT position, LPCRECT clip) {
  if (position == nullptr) return E_POINTER;
  return Call(IID_IOleInPlaceObject, [&] {
    if (IsInPlaceActive()) window_->Move(*position, clip != nullptr ? *clip : *position);
  });
}

STDMETHODIMP PageControl::ReactivateAndUndo() { return INPLACE_E_NOTUNDOABLE; }

STDMETHODIMP PageControl::TranslateAccelerator(LPMSG message) {
  if (message == nullptr) return E_POINTER;
  HRESULT outcome = S_FALSE;
  const HRESULT called = Call(IID_IOleInPlaceActiveObject, [&] {
    if (!IsInPlaceActive()) return;
    const KeyOutcome key = window_->Translate(*message);
    if (key == KeyOutcome::Taken) outcome = S_OK;
    if (key != KeyOutcome::LeavesForward && key != KeyOutcome::LeavesBackward) return;
    // Tab at the page's edge goes on in the container.
    if (const ComPtr<IOleControlSite> site = clientSite_.As<IOleControlSite>()) {
      constexpr DWORD shift = 1;
      outcome = site->TranslateAccelerator(message, key == KeyOutcome::LeavesBackward ? shift : 0);
    }
  });
  return FAILED(called) ? called : outcome;
}

STDMETHODIMP PageControl::OnFrameWindowActivate(BOOL /*activate*/) { return S_OK; }
STDMETHODIMP PageControl::OnDocWindowActivate(BOOL /*activate*/) { return S_OK; }
STDMETHODIMP PageControl::ResizeBorder(LPCRECT /*border*/, IOleInPlaceUIWindow* /*window*/, BOOL /*frame*/) {
  return S_OK;
}
STDMETHODIMP PageControl::EnableModeless(BOOL /*enable*/) { return S_OK; }

STDMETHODIMP PageControl::GetControlInfo(CONTROLINFO* info) {
  if (info == nullptr || info->cb < sizeof(CONTROLINFO)) return E_POINTER;
  return Call(IID_IOleControl, [&] {
    // As WM_SYSCHAR brings them, with and without Shift. Return and Esc are the container's.
    std::vector<ACCEL> keys;
    for (const wchar_t letter : IsInPlaceActive() ? window_->AccessLetters() : std::wstring()) {
      keys.push_back({FALT, letter, 0});
      if (LowerCase(letter) != letter) keys.push_back({FALT, LowerCase(letter), 0});
    }
    const int count = static_cast<int>(keys.size());
    accelerators_.reset(keys.empty() ? nullptr : CreateAcceleratorTableW(keys.data(), count));
    info->hAccel = accelerators_.get();
    info->cAccel = accelerators_ == nullptr ? WORD{0} : static_cast<WORD>(count);
    info->dwFlags = 0;
  });
}

STDMETHODIMP PageControl::OnMnemonic(LPMSG message) {
  if (message == nullptr) return E_POINTER;
  bool pressed = false;
  const HRESULT called =
      Call(IID_IOleControl, [&] { pressed = IsInPlaceActive() && window_->PressMnemonic(*message); });
  if (FAILED(called)) return called;
  return pressed ? S_OK : S_FALSE;
}

STDMETHODIMP PageControl::OnAmbientPropertyChange(DISPID /*property*/) { return S_OK; }
STDMETHODIMP PageControl::FreezeEvents(BOOL /*freeze*/) { return S_OK; }

}  // namespace vexa::windows
