// The control as an embedded object: its site, its verbs, its size and looks when it is not active.
#include <olectl.h>

#include "windows/control/PageControlCall.h"

namespace vexa::windows {
namespace {

constexpr int HimetricPerInch = 2540;

/// The screen's resolution, for sizes that containers give and take in hundredths of a millimetre.
class ScreenResolution {
 public:
  ScreenResolution() {
    if (const HDC screen = GetDC(nullptr)) {
      x_ = GetDeviceCaps(screen, LOGPIXELSX);
      y_ = GetDeviceCaps(screen, LOGPIXELSY);
      ReleaseDC(nullptr, screen);
    }
  }
  SIZEL ToHimetric(SIZE pixels) const {
    return {MulDiv(pixels.cx, HimetricPerInch, x_), MulDiv(pixels.cy, HimetricPerInch, y_)};
  }

 private:
  int x_ = 96;
  int y_ = 96;
};

}  // namespace

STDMETHODIMP PageControl::SetClientSite(IOleClientSite* site) {
  return Call(IID_IOleObject, [&] {
    if (site == nullptr) Deactivate();
    clientSite_ = ComPtr<IOleClientSite>(site);
  });
}

STDMETHODIMP PageControl::GetClientSite(IOleClientSite** site) {
  if (site == nullptr) return E_POINTER;
  *site = ComPtr<IOleClientSite>(clientSite_).Detach();
  return S_OK;
}

STDMETHODIMP PageControl::SetHostNames(LPCOLESTR /*application*/, LPCOLESTR /*object*/) { return S_OK; }

STDMETHODIMP PageControl::Close(DWORD /*saveOption*/) {
  return Call(IID_IOleObject, [&] {
    Deactivate();
    HidePage();
  });
}

STDMETHODIMP PageControl::SetMoniker(DWORD /*which*/, IMoniker* /*moniker*/) { return E_NOTIMPL; }

STDMETHODIMP PageControl::GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** moniker) {
  if (moniker == nullptr) return E_POINTER;
  *moniker = nullptr;
  return E_NOTIMPL;
}

STDMETHODIMP PageControl::InitFromData(IDataObject* /*data*/, BOOL /*creation*/, DWORD /*reserved*/) {
  return E_NOTIMPL;
}

STDMETHODIMP PageControl::GetClipboardData(DWORD /*reserved*/, IDataObject** data) {
  if (data == nullptr) return E_POINTER;
  *data = nullptr;
  return E_NOTIMPL;
}

STDMETHODIMP PageControl::DoVerb(LONG verb, LPMSG /*message*/, IOleClientSite* /*activeSite*/, LONG /*index*/,
                                 HWND /*parent*/, LPCRECT /*position*/) {
  HRESULT outcome = S_OK;
  const HRESULT called = Call(IID_IOleObject, [&] {
    switch (verb) {
      case OLEIVERB_PRIMARY:
      case OLEIVERB_SHOW:
      case OLEIVERB_OPEN:
      case OLEIVERB_UIACTIVATE:
        outcome = Activate(true);
        break;
      case OLEIVERB_INPLACEACTIVATE:
        outcome = Activate(false);
        break;
      case OLEIVERB_HIDE:
        GiveUpFocus();
        if (IsInPlaceActive()) window_->Show(false);
        HidePage();
        break;
      default:
        outcome = verb > 0 ? OLEOBJ_S_INVALIDVERB : E_NOTIMPL;
    }
  });
  return FAILED(called) ? called : outcome;
}

STDMETHODIMP PageControl::EnumVerbs(IEnumOLEVERB** verbs) {
  if (verbs == nullptr) return E_POINTER;
  *verbs = nullptr;
  return OLEOBJ_E_NOVERBS;
}

STDMETHODIMP PageControl::Update() { return S_OK; }
STDMETHODIMP PageControl::IsUpToDate() { return S_OK; }
STDMETHODIMP PageControl::GetUserClassID(CLSID* classId) { return GetClassID(classId); }

STDMETHODIMP PageControl::GetUserType(DWORD form, LPOLESTR* userType) {
  if (userType == nullptr) return E_POINTER;
  return OleRegGetUserType(CLSID_OutlookPropertiesPage, form, userType);
}

STDMETHODIMP PageControl::SetExtent(DWORD aspect, SIZEL* size) {
  if (size == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  extent_ = *size;
  return S_OK;
}

STDMETHODIMP PageControl::GetExtent(DWORD aspect, SIZEL* size) {
  if (size == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  return Call(IID_IOleObject, [&] {
    if (extent_.cx == 0 && extent_.cy == 0) {
      extent_ = ScreenResolution().ToHimetric(IsInPlaceActive() ? window_->PreferredSize()
                                                                : PageWindow::PreferredSize(Page()));
    }
    *size = extent_;
  });
}

STDMETHODIMP PageControl::GetExtent(DWORD aspect, LONG /*index*/, DVTARGETDEVICE* /*device*/, LPSIZEL size) {
  return GetExtent(aspect, size);
}

STDMETHODIMP PageControl::Advise(IAdviseSink* sink, DWORD* connection) {
  if (connection == nullptr) return E_POINTER;
  if (!adviseHolder_) {
    const HRESULT created = CreateOleAdviseHolder(adviseHolder_.Receive());
    if (FAILED(created)) return created;
  }
  return ComPtr(adviseHolder_)->Advise(sink, connection);
}

STDMETHODIMP PageControl::Unadvise(DWORD connection) {
  // The sink, as it is released, may release the page.
  return adviseHolder_ ? ComPtr(adviseHolder_)->Unadvise(connection) : OLE_E_NOCONNECTION;
}

STDMETHODIMP PageControl::EnumAdvise(IEnumSTATDATA** connections) {
  if (connections == nullptr) return E_POINTER;
  *connections = nullptr;
  return adviseHolder_ ? adviseHolder_->EnumAdvise(connections) : S_OK;
}

STDMETHODIMP PageControl::GetMiscStatus(DWORD aspect, DWORD* status) {
  if (status == nullptr) return E_POINTER;
  *status = 0;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  *status = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
            OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST;
  return S_OK;
}

STDMETHODIMP PageControl::SetColorScheme(LOGPALETTE* /*palette*/) { return E_NOTIMPL; }

// --- looks while there is no window

STDMETHODIMP PageControl::Draw(DWORD aspect, LONG /*index*/, void* /*aspectInfo*/, DVTARGETDEVICE* /*device*/,
                               HDC /*targetDevice*/, HDC draw, LPCRECTL bounds, LPCRECTL /*windowBounds*/,
                               BOOL(STDMETHODCALLTYPE* /*goOn*/)(ULONG_PTR), ULONG_PTR /*argument*/) {
  if (draw == nullptr || bounds == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  // An options page that is not active is its empty background: its controls are windows.
  const RECT area{bounds->left, bounds->top, bounds->right, bounds->bottom};
  FillRect(draw, &area, GetSysColorBrush(COLOR_BTNFACE));
  return S_OK;
}

STDMETHODIMP PageControl::GetColorSet(DWORD /*aspect*/, LONG /*index*/, void* /*aspectInfo*/,
                                      DVTARGETDEVICE* /*device*/, HDC /*targetDevice*/, LOGPALETTE** colors) {
  if (colors == nullptr) return E_POINTER;
  *colors = nullptr;
  return S_FALSE;
}

STDMETHODIMP PageControl::Freeze(DWORD /*aspect*/, LONG /*index*/, void* /*aspectInfo*/, DWORD* /*frozen*/) {
  return E_NOTIMPL;
}
STDMETHODIMP PageControl::Unfreeze(DWORD /*frozen*/) { return E_NOTIMPL; }

STDMETHODIMP PageControl::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  viewSinkAspects_ = aspects;
  viewSinkFlags_ = flags;
  viewSink_ = ComPtr<IAdviseSink>(sink);
  return S_OK;
}

STDMETHODIMP PageControl::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
  if (aspects != nullptr) *aspects = viewSinkAspects_;
  if (flags != nullptr) *flags = viewSinkFlags_;
  if (sink != nullptr) *sink = ComPtr<IAdviseSink>(viewSink_).Detach();
  return S_OK;
}

}  // namespace vexa::windows
