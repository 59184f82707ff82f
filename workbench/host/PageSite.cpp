#include "workbench/host/PageSite.h"

#include "windows/com/NamedObject.h"
#include "windows/views/Handles.h"

namespace vexa::workbench {
namespace {

// Outlook's IID of PropertyPageSite, and the number of its one member that matters.
constexpr IID PropertyPageSiteId{0x0006307F, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr DISPID OnStatusChangeId = 0x2100;

}  // namespace

STDMETHODIMP PageFrame::GetWindow(HWND* window) {
  if (window == nullptr) return E_POINTER;
  *window = window_;
  return S_OK;
}
STDMETHODIMP PageFrame::ContextSensitiveHelp(BOOL /*enter*/) { return E_NOTIMPL; }

// A dialog has no tool bars or menus to share.
STDMETHODIMP PageFrame::GetBorder(LPRECT /*border*/) { return INPLACE_E_NOTOOLSPACE; }
STDMETHODIMP PageFrame::RequestBorderSpace(LPCBORDERWIDTHS /*widths*/) { return INPLACE_E_NOTOOLSPACE; }
STDMETHODIMP PageFrame::SetBorderSpace(LPCBORDERWIDTHS widths) {
  return widths == nullptr ? S_OK : INPLACE_E_NOTOOLSPACE;
}
STDMETHODIMP PageFrame::InsertMenus(HMENU /*menu*/, LPOLEMENUGROUPWIDTHS /*widths*/) { return E_NOTIMPL; }
STDMETHODIMP PageFrame::SetMenu(HMENU /*menu*/, HOLEMENU /*shared*/, HWND /*object*/) { return E_NOTIMPL; }
STDMETHODIMP PageFrame::RemoveMenus(HMENU /*menu*/) { return E_NOTIMPL; }
STDMETHODIMP PageFrame::SetStatusText(LPCOLESTR /*text*/) { return E_NOTIMPL; }

STDMETHODIMP PageFrame::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR /*name*/) {
  active_ = windows::ComPtr<IOleInPlaceActiveObject>(object);
  return S_OK;
}
STDMETHODIMP PageFrame::EnableModeless(BOOL /*enable*/) { return S_OK; }
STDMETHODIMP PageFrame::TranslateAccelerator(LPMSG /*message*/, WORD /*id*/) { return S_FALSE; }

void* PageSite::Find(REFIID interfaceId) {
  if (interfaceId == PropertyPageSiteId && events_.isPageSite && events_.isPageSite()) {
    return static_cast<IDispatch*>(this);
  }
  return CountedObject::Find(interfaceId);
}

STDMETHODIMP PageSite::SaveObject() { return E_NOTIMPL; }
STDMETHODIMP PageSite::GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** moniker) {
  if (moniker == nullptr) return E_POINTER;
  *moniker = nullptr;
  return E_NOTIMPL;
}
STDMETHODIMP PageSite::GetContainer(IOleContainer** container) {
  if (container == nullptr) return E_POINTER;
  *container = nullptr;
  return E_NOINTERFACE;
}
STDMETHODIMP PageSite::ShowObject() { return S_OK; }
STDMETHODIMP PageSite::OnShowWindow(BOOL /*show*/) { return S_OK; }
STDMETHODIMP PageSite::RequestNewObjectLayout() { return E_NOTIMPL; }

STDMETHODIMP PageSite::GetWindow(HWND* window) {
  if (window == nullptr) return E_POINTER;
  *window = area_;
  return S_OK;
}
STDMETHODIMP PageSite::ContextSensitiveHelp(BOOL /*enter*/) { return E_NOTIMPL; }
STDMETHODIMP PageSite::CanInPlaceActivate() { return S_OK; }
STDMETHODIMP PageSite::OnInPlaceActivate() { return S_OK; }
STDMETHODIMP PageSite::OnUIActivate() { return S_OK; }

STDMETHODIMP PageSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window,
                                        LPRECT position, LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
  if (frame == nullptr || window == nullptr || position == nullptr || clip == nullptr || info == nullptr) {
    return E_POINTER;
  }
  *frame = nullptr;
  *window = nullptr;
  return windows::Guarded(IID_IOleInPlaceSite, [&] {
    windows::Verified(GetClientRect(area_, position), "GetClientRect");
    *clip = *position;
    HWND top = nullptr;
    windows::Check(frame_->GetWindow(&top));
    info->fMDIApp = FALSE;
    info->hwndFrame = top;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    *frame = windows::ComPtr<PageFrame>(frame_).Detach();
  });
}

STDMETHODIMP PageSite::Scroll(SIZE /*extent*/) { return E_NOTIMPL; }
STDMETHODIMP PageSite::OnUIDeactivate(BOOL /*undoable*/) { return S_OK; }
STDMETHODIMP PageSite::OnInPlaceDeactivate() { return S_OK; }
STDMETHODIMP PageSite::DiscardUndoState() { return E_NOTIMPL; }
STDMETHODIMP PageSite::DeactivateAndUndo() { return E_NOTIMPL; }
STDMETHODIMP PageSite::OnPosRectChange(LPCRECT /*position*/) { return E_NOTIMPL; }

STDMETHODIMP PageSite::OnControlInfoChanged() { return S_OK; }
STDMETHODIMP PageSite::LockInPlaceActive(BOOL /*lock*/) { return S_OK; }
STDMETHODIMP PageSite::GetExtendedControl(IDispatch** control) {
  if (control == nullptr) return E_POINTER;
  *control = nullptr;
  return E_NOTIMPL;
}
STDMETHODIMP PageSite::TransformCoords(POINTL* /*himetric*/, POINTF* /*container*/, DWORD /*flags*/) {
  return E_NOTIMPL;
}

STDMETHODIMP PageSite::TranslateAccelerator(LPMSG message, DWORD modifiers) {
  if (message == nullptr) return E_POINTER;
  constexpr DWORD shift = 1;
  if (message->message != WM_KEYDOWN || message->wParam != VK_TAB || !events_.tabbedOut) return S_FALSE;
  const auto tabbedOut = events_.tabbedOut;
  return windows::Guarded(IID_IOleControlSite, [&] { tabbedOut((modifiers & shift) != 0); });
}
STDMETHODIMP PageSite::OnFocus(BOOL /*got*/) { return S_OK; }
STDMETHODIMP PageSite::ShowPropertyFrame() { return E_NOTIMPL; }

STDMETHODIMP PageSite::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}
STDMETHODIMP PageSite::GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return DISP_E_BADINDEX;
}
STDMETHODIMP PageSite::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                                     DISPID* ids) {
  if (names == nullptr || ids == nullptr || count != 1) return E_INVALIDARG;
  const bool known = CompareStringOrdinal(names[0], -1, L"OnStatusChange", -1, TRUE) == CSTR_EQUAL;
  ids[0] = known ? OnStatusChangeId : DISPID_UNKNOWN;
  return known ? S_OK : DISP_E_UNKNOWNNAME;
}

STDMETHODIMP PageSite::Invoke(DISPID member, REFIID /*reserved*/, LCID /*locale*/, WORD flags,
                              DISPPARAMS* /*parameters*/, VARIANT* /*result*/, EXCEPINFO* exception,
                              UINT* /*wrongArgument*/) {
  // Ambient properties are asked for here as well: the page gets by without them.
  if (member != OnStatusChangeId || (flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  const auto statusChanged = events_.statusChanged;  // the container may be gone when it returns
  const HRESULT outcome = windows::Guarded(PropertyPageSiteId, [&] {
    if (statusChanged) statusChanged();
  });
  return FAILED(outcome) ? windows::FillException(outcome, exception) : S_OK;
}

}  // namespace vexa::workbench
