// The control's window in its container: activation, focus, keys, and the moment at which the page counts
// as hidden.
#include "windows/control/PageControlCall.h"

namespace vexa::windows {

HRESULT PageControl::Activate(bool takeFocus) {
  if (!IsInPlaceActive()) {
    if (!clientSite_) return E_FAIL;
    ComPtr<IOleInPlaceSite> site = clientSite_.As<IOleInPlaceSite>();
    if (!site) return E_FAIL;
    if (site->CanInPlaceActivate() != S_OK) return OLE_E_NOT_INPLACEACTIVE;
    HWND parent = nullptr;
    HRESULT outcome = site->GetWindow(&parent);
    if (FAILED(outcome)) return outcome;
    outcome = site->OnInPlaceActivate();
    if (FAILED(outcome)) return outcome;
    inPlaceSite_ = std::move(site);
    RECT position{};
    RECT clip{};
    OLEINPLACEFRAMEINFO frameInfo{};
    frameInfo.cb = sizeof frameInfo;
    // A container may have no frame and no window of its own: then there is nobody to tell.
    outcome =
        inPlaceSite_->GetWindowContext(frame_.Receive(), uiWindow_.Receive(), &position, &clip, &frameInfo);
    if (SUCCEEDED(outcome)) {
      // What the user does in the window may end with the container letting go of the control.
      const auto keepAlive = [this] {
        return std::make_shared<ComPtr<IUnknown>>(static_cast<IOutlookPropertiesPage*>(this));
      };
      outcome = Guarded(IID_IOleObject,
                        [&] { window_ = std::make_unique<PageWindow>(Page(), parent, position, keepAlive); });
    }
    if (FAILED(outcome)) {
      Deactivate();
      return outcome;
    }
    clientSite_->ShowObject();
  }
  window_->Show(true);
  return takeFocus ? TakeFocus() : S_OK;
}

HRESULT PageControl::TakeFocus() {
  if (!uiActive_) {
    const HRESULT outcome = inPlaceSite_->OnUIActivate();
    if (FAILED(outcome)) return outcome;
    uiActive_ = true;
    if (frame_) {
      frame_->SetActiveObject(this, nullptr);
      frame_->SetBorderSpace(nullptr);
    }
    if (uiWindow_) {
      uiWindow_->SetActiveObject(this, nullptr);
      uiWindow_->SetBorderSpace(nullptr);
    }
  }
  window_->SetFocus();
  return S_OK;
}

void PageControl::GiveUpFocus() {
  if (!uiActive_) return;
  uiActive_ = false;
  if (uiWindow_) uiWindow_->SetActiveObject(nullptr, nullptr);
  if (frame_) frame_->SetActiveObject(nullptr, nullptr);
  if (inPlaceSite_) inPlaceSite_->OnUIDeactivate(FALSE);
}

void PageControl::Deactivate() {
  GiveUpFocus();
  window_.reset();
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
    if (!IsInPlaceActive()) return;
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
  // Access keys are found by asking OnMnemonic; Return and Esc are the container's.
  info->hAccel = nullptr;
  info->cAccel = 0;
  info->dwFlags = 0;
  return S_OK;
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
