#include "benchmarks/windows/EmptyControl.h"

namespace vexa::windows {
namespace {

class EmptyControl final : public IOleObject, public IOleInPlaceObject {
 public:
  EmptyControl() = default;
  EmptyControl(const EmptyControl&) = delete;
  EmptyControl& operator=(const EmptyControl&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (id == IID_IUnknown || id == IID_IOleObject) *object = static_cast<IOleObject*>(this);
    if (id == IID_IOleWindow || id == IID_IOleInPlaceObject) *object = static_cast<IOleInPlaceObject*>(this);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  // IOleObject
  STDMETHODIMP SetClientSite(IOleClientSite* site) override {
    if (site != nullptr) site->AddRef();
    if (site_ != nullptr) site_->Release();
    site_ = site;
    return S_OK;
  }
  STDMETHODIMP GetClientSite(IOleClientSite**) override { return E_NOTIMPL; }
  STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
  STDMETHODIMP Close(DWORD) override { return InPlaceDeactivate(); }
  STDMETHODIMP SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP GetClipboardData(DWORD, IDataObject**) override { return E_NOTIMPL; }
  STDMETHODIMP DoVerb(LONG, LPMSG, IOleClientSite*, LONG, HWND parent, LPCRECT place) override {
    if (window_ == nullptr) {
      window_ = CreateWindowExW(0, L"STATIC", nullptr, WS_CHILD | WS_VISIBLE, place->left, place->top,
                                place->right - place->left, place->bottom - place->top, parent, nullptr,
                                nullptr, nullptr);
    }
    return window_ == nullptr ? E_FAIL : S_OK;
  }
  STDMETHODIMP EnumVerbs(IEnumOLEVERB**) override { return E_NOTIMPL; }
  STDMETHODIMP Update() override { return S_OK; }
  STDMETHODIMP IsUpToDate() override { return S_OK; }
  STDMETHODIMP GetUserClassID(CLSID*) override { return E_NOTIMPL; }
  STDMETHODIMP GetUserType(DWORD, LPOLESTR*) override { return E_NOTIMPL; }
  STDMETHODIMP SetExtent(DWORD, SIZEL*) override { return S_OK; }
  STDMETHODIMP GetExtent(DWORD, SIZEL*) override { return E_NOTIMPL; }
  STDMETHODIMP Advise(IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
  STDMETHODIMP Unadvise(DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP EnumAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }
  STDMETHODIMP GetMiscStatus(DWORD, DWORD* status) override {
    *status = OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE;
    return S_OK;
  }
  STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

  // IOleInPlaceObject
  STDMETHODIMP GetWindow(HWND* window) override {
    *window = window_;
    return S_OK;
  }
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP InPlaceDeactivate() override {
    if (window_ != nullptr) DestroyWindow(window_);
    window_ = nullptr;
    return S_OK;
  }
  STDMETHODIMP UIDeactivate() override { return S_OK; }
  STDMETHODIMP SetObjectRects(LPCRECT, LPCRECT) override { return S_OK; }
  STDMETHODIMP ReactivateAndUndo() override { return E_NOTIMPL; }

 private:
  ~EmptyControl() {
    InPlaceDeactivate();
    SetClientSite(nullptr);
  }

  ULONG references_ = 1;
  IOleClientSite* site_ = nullptr;
  HWND window_ = nullptr;
};

}  // namespace
}  // namespace vexa::windows

extern "C" __declspec(dllexport) IUnknown* MakeEmptyControl() {
  return static_cast<IOleObject*>(new vexa::windows::EmptyControl);
}
