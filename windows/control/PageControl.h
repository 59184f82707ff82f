// The ActiveX control that Outlook loads: one COM object around the options page. It is created by the
// class factory, sited and activated by its container, initialised by the add-in, in any order. The members
// are split by interface: automation, OLE embedding, in-place window, persistence.
#pragma once

#include <memory>

#include "Outlook.h"
#include "VexaControls.h"
#include "windows/com/CountedObject.h"
#include "windows/control/HostedPage.h"
#include "windows/control/Module.h"
#include "windows/control/PageWindow.h"

namespace vexa::windows {

class PageControl final
    : public CountedObject<IOutlookPropertiesPage, PropertyPage, IOleObject, IOleInPlaceObject,
                           IOleInPlaceActiveObject, IOleControl, IViewObject2, IPersistStreamInit,
                           IProvideClassInfo, IObjectWithSite, ISupportErrorInfo> {
 public:
  static ComPtr<IUnknown> Create();

  // IDispatch of both dual interfaces
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

  // IOutlookPropertiesPage
  STDMETHODIMP Initialize(IDispatch* addinApp, VARIANT_BOOL* reinitialize) override;
  STDMETHODIMP PropertyPage_GetPageInfo(BSTR* helpFile, LONG* helpContext) override;
  STDMETHODIMP get_PropertyPage_Dirty(VARIANT_BOOL* dirty) override;
  STDMETHODIMP PropertyPage_Apply() override;
  STDMETHODIMP get_Name(BSTR* name) override;
  STDMETHODIMP SetDirty() override;
  STDMETHODIMP get_SearchNowPending(VARIANT_BOOL* value) override;
  STDMETHODIMP put_SearchNowPending(VARIANT_BOOL value) override;
  STDMETHODIMP get_SearchStopAtScanned(VARIANT_BOOL* value) override;
  STDMETHODIMP put_SearchStopAtScanned(VARIANT_BOOL value) override;
  STDMETHODIMP Refresh() override;
  STDMETHODIMP FillTrackedContacts() override;

  // PropertyPage, Outlook's view of the same members
  STDMETHODIMP GetPageInfo(BSTR* helpFile, LONG* helpContext) override;
  STDMETHODIMP get_Dirty(VARIANT_BOOL* dirty) override;
  STDMETHODIMP Apply() override;

  // IOleObject
  STDMETHODIMP SetClientSite(IOleClientSite* site) override;
  STDMETHODIMP GetClientSite(IOleClientSite** site) override;
  STDMETHODIMP SetHostNames(LPCOLESTR application, LPCOLESTR object) override;
  STDMETHODIMP Close(DWORD saveOption) override;
  STDMETHODIMP SetMoniker(DWORD which, IMoniker* moniker) override;
  STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
  STDMETHODIMP InitFromData(IDataObject* data, BOOL creation, DWORD reserved) override;
  STDMETHODIMP GetClipboardData(DWORD reserved, IDataObject** data) override;
  STDMETHODIMP DoVerb(LONG verb, LPMSG message, IOleClientSite* activeSite, LONG index, HWND parent,
                      LPCRECT position) override;
  STDMETHODIMP EnumVerbs(IEnumOLEVERB** verbs) override;
  STDMETHODIMP Update() override;
  STDMETHODIMP IsUpToDate() override;
  STDMETHODIMP GetUserClassID(CLSID* classId) override;
  STDMETHODIMP GetUserType(DWORD form, LPOLESTR* userType) override;
  STDMETHODIMP SetExtent(DWORD aspect, SIZEL* size) override;
  STDMETHODIMP GetExtent(DWORD aspect, SIZEL* size) override;
  STDMETHODIMP Advise(IAdviseSink* sink, DWORD* connection) override;
  STDMETHODIMP Unadvise(DWORD connection) override;
  STDMETHODIMP EnumAdvise(IEnumSTATDATA** connections) override;
  STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* status) override;
  STDMETHODIMP SetColorScheme(LOGPALETTE* palette) override;

  // IOleWindow, IOleInPlaceObject
  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL enter) override;
  STDMETHODIMP InPlaceDeactivate() override;
  STDMETHODIMP UIDeactivate() override;
  STDMETHODIMP SetObjectRects(LPCRECT position, LPCRECT clip) override;
  STDMETHODIMP ReactivateAndUndo() override;

  // IOleInPlaceActiveObject
  STDMETHODIMP TranslateAccelerator(LPMSG message) override;
  STDMETHODIMP OnFrameWindowActivate(BOOL activate) override;
  STDMETHODIMP OnDocWindowActivate(BOOL activate) override;
  STDMETHODIMP ResizeBorder(LPCRECT border, IOleInPlaceUIWindow* window, BOOL frame) override;
  STDMETHODIMP EnableModeless(BOOL enable) override;

  // IOleControl
  STDMETHODIMP GetControlInfo(CONTROLINFO* info) override;
  STDMETHODIMP OnMnemonic(LPMSG message) override;
  STDMETHODIMP OnAmbientPropertyChange(DISPID property) override;
  STDMETHODIMP FreezeEvents(BOOL freeze) override;

  // IViewObject2
  STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device, HDC targetDevice,
                    HDC draw, LPCRECTL bounds, LPCRECTL windowBounds,
                    BOOL(STDMETHODCALLTYPE* goOn)(ULONG_PTR), ULONG_PTR argument) override;
  STDMETHODIMP GetColorSet(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device,
                           HDC targetDevice, LOGPALETTE** colors) override;
  STDMETHODIMP Freeze(DWORD aspect, LONG index, void* aspectInfo, DWORD* frozen) override;
  STDMETHODIMP Unfreeze(DWORD frozen) override;
  STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
  STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
  STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, LPSIZEL size) override;

  // IPersistStreamInit
  STDMETHODIMP GetClassID(CLSID* classId) override;
  STDMETHODIMP IsDirty() override;
  STDMETHODIMP Load(IStream* stream) override;
  STDMETHODIMP Save(IStream* stream, BOOL clearDirty) override;
  STDMETHODIMP GetSizeMax(ULARGE_INTEGER* size) override;
  STDMETHODIMP InitNew() override;

  // IProvideClassInfo, IObjectWithSite, ISupportErrorInfo
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
  STDMETHODIMP SetSite(IUnknown* site) override;
  STDMETHODIMP GetSite(REFIID interfaceId, void** site) override;
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID interfaceId) override;

 private:
  PageControl();
  ~PageControl() override;

  /// Runs a member of the page: refused from a thread that the control does not belong to.
  template <typename Body>
  HRESULT Call(const IID& interfaceId, Body&& body) noexcept;
  OutlookPropertiesPage& Page() { return hosted_.Page(); }
  /// Outlook's page site, or null where the container is none.
  std::shared_ptr<PropertyPageSite> Site();

  HRESULT Activate(bool takeFocus);
  HRESULT ActivateInPlace();
  HRESULT TakeFocus();
  void GiveUpFocus();
  /// Takes the window down. The page itself is not told.
  void Deactivate();
  /// What the host means by hiding: the add-in is told and the page drops everything.
  void HidePage();
  bool IsInPlaceActive() const { return window_ != nullptr && window_->Handle() != nullptr; }

  DWORD thread_ = GetCurrentThreadId();

  ComPtr<ITypeInfo> pageInfo_;
  ComPtr<ITypeInfo> propertyPageInfo_;
  ComPtr<ITypeInfo> classInfo_;

  ComPtr<IOleClientSite> clientSite_;
  ComPtr<IUnknown> site_;                // of a container that uses IObjectWithSite
  ComPtr<IOleInPlaceSite> inPlaceSite_;  // while an activation lasts
  ComPtr<IOleInPlaceFrame> frame_;
  ComPtr<IOleInPlaceUIWindow> uiWindow_;
  ComPtr<IOleAdviseHolder> adviseHolder_;
  ComPtr<IAdviseSink> viewSink_;
  DWORD viewSinkAspects_ = 0;
  DWORD viewSinkFlags_ = 0;
  SIZEL extent_{};
  bool uiActive_ = false;

  HostedPage hosted_;
  std::unique_ptr<PageWindow> window_;

  struct DestroyTable {
    void operator()(HACCEL table) const { DestroyAcceleratorTable(table); }
  };
  // What the container was told last; it uses the table until it asks again.
  std::unique_ptr<std::remove_pointer_t<HACCEL>, DestroyTable> accelerators_;
};

}  // namespace vexa::windows
