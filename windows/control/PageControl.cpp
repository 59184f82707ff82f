#include "windows/control/PageControl.h"

#include "windows/control/PageControlCall.h"

namespace vexa::windows {
namespace {

constexpr DISPID OnStatusChangeId = 0x2100;
// Outlook's IID of PropertyPageSite.
constexpr GUID PropertyPageSiteId{0x0006307F, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/// Outlook's page site. Its member is called by number through IDispatch: its place in the interface is
/// nowhere written down.
class ComPageSite final : public PropertyPageSite {
 public:
  explicit ComPageSite(ComPtr<IDispatch> site) : site_(std::move(site)) {}
  void OnStatusChange() override {
    DISPPARAMS none{};
    EXCEPINFO exception{};
    const HRESULT outcome = site_->Invoke(OnStatusChangeId, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                          &none, nullptr, &exception, nullptr);
    CheckInvoke(outcome, exception);
  }

 private:
  ComPtr<IDispatch> site_;
};

ComPtr<ITypeInfo> TypeInfoOf(int library, const GUID& id) {
  ComPtr<ITypeInfo> info;
  Check(LoadModuleTypeLib(library)->GetTypeInfoOfGuid(id, info.Receive()));
  return info;
}

}  // namespace

ComPtr<IUnknown> PageControl::Create() {
  return ComPtr<IUnknown>::Attach(static_cast<IOutlookPropertiesPage*>(new PageControl()));
}

PageControl::PageControl()
    : pageInfo_(TypeInfoOf(1, __uuidof(IOutlookPropertiesPage))),
      propertyPageInfo_(TypeInfoOf(2, __uuidof(PropertyPage))),
      classInfo_(TypeInfoOf(1, CLSID_OutlookPropertiesPage)),
      hosted_([this] { return Site(); }) {}

PageControl::~PageControl() {
  IgnoreErrors([&] { Deactivate(); });
}

// --- automation

STDMETHODIMP PageControl::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

STDMETHODIMP PageControl::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  *info = ComPtr<ITypeInfo>(pageInfo_).Detach();
  return S_OK;
}

STDMETHODIMP PageControl::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                                        DISPID* ids) {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  const HRESULT own = DispGetIDsOfNames(pageInfo_.Get(), names, count, ids);
  return SUCCEEDED(own) ? own : DispGetIDsOfNames(propertyPageInfo_.Get(), names, count, ids);
}

STDMETHODIMP PageControl::Invoke(DISPID member, REFIID /*reserved*/, LCID /*locale*/, WORD flags,
                                 DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                 UINT* wrongArgument) {
  if (parameters == nullptr) return E_POINTER;
  SetErrorInfo(0, nullptr);  // a stale error object would become this call's
  // The two dual interfaces share this function; Outlook's numbers are its own.
  const bool outlooks = member >= 0x2100 && member <= 0x2102;
  const HRESULT outcome = outlooks ? DispInvoke(static_cast<PropertyPage*>(this), propertyPageInfo_.Get(),
                                                member, flags, parameters, result, exception, wrongArgument)
                                   : DispInvoke(static_cast<IOutlookPropertiesPage*>(this), pageInfo_.Get(),
                                                member, flags, parameters, result, exception, wrongArgument);
  if (outcome == DISP_E_EXCEPTION) return outcome;
  // Refused before a member was called: nobody has said why yet.
  return Guarded(__uuidof(IOutlookPropertiesPage), [&] { Check(outcome); });
}

STDMETHODIMP PageControl::Initialize(IDispatch* addinApp, VARIANT_BOOL* reinitialize) {
  return Call(__uuidof(IOutlookPropertiesPage), [&] {
    const bool again = reinitialize != nullptr && *reinitialize != VARIANT_FALSE;
    Page().Initialize(AdaptAddin(addinApp), again);
  });
}

STDMETHODIMP PageControl::PropertyPage_GetPageInfo(BSTR* helpFile, LONG* helpContext) {
  return Call(__uuidof(IOutlookPropertiesPage), [&] {
    RequirePointer(helpFile);
    RequirePointer(helpContext);
    // Both stay as the host passed them.
  });
}

STDMETHODIMP PageControl::get_PropertyPage_Dirty(VARIANT_BOOL* dirty) {
  return Call(__uuidof(IOutlookPropertiesPage), [&] {
    RequirePointer(dirty);
    *dirty = ToVariantBool(Page().PropertyPage_Dirty());
  });
}

STDMETHODIMP PageControl::PropertyPage_Apply() {
  return Call(__uuidof(IOutlookPropertiesPage), [&] { Page().PropertyPage_Apply(); });
}

STDMETHODIMP PageControl::get_Name(BSTR* name) {
  return Call(__uuidof(IOutlookPropertiesPage), [&] {
    RequirePointer(name);
    *name = Bstr(Page().TabTitle()).Detach();
  });
}

STDMETHODIMP PageControl::SetDirty() {
  return Call(__uuidof(IOutlookPropertiesPage), [&] { Page().SetDirty(); });
}

STDMETHODIMP PageControl::get_SearchNowPending(VARIANT_BOOL* value) {
  return Call(__uuidof(IOutlookPropertiesPage), [&] {
    RequirePointer(value);
    *value = ToVariantBool(Page().SearchNowPending);
  });
}

STDMETHODIMP PageControl::put_SearchNowPending(VARIANT_BOOL value) {
  return Call(__uuidof(IOutlookPropertiesPage), [&] { Page().SearchNowPending = value != VARIANT_FALSE; });
}

STDMETHODIMP PageControl::get_SearchStopAtScanned(VARIANT_BOOL* value) {
  return Call(__uuidof(IOutlookPropertiesPage), [&] {
    RequirePointer(value);
    *value = ToVariantBool(Page().SearchStopAtScanned);
  });
}

STDMETHODIMP PageControl::put_SearchStopAtScanned(VARIANT_BOOL value) {
  return Call(__uuidof(IOutlookPropertiesPage), [&] { Page().SearchStopAtScanned = value != VARIANT_FALSE; });
}

STDMETHODIMP PageControl::Refresh() {
  return Call(__uuidof(IOutlookPropertiesPage), [&] { Page().Refresh(); });
}

STDMETHODIMP PageControl::FillTrackedContacts() {
  return Call(__uuidof(IOutlookPropertiesPage), [&] { Page().FillTrackedContacts(); });
}

STDMETHODIMP PageControl::GetPageInfo(BSTR* helpFile, LONG* helpContext) {
  return PropertyPage_GetPageInfo(helpFile, helpContext);
}

STDMETHODIMP PageControl::get_Dirty(VARIANT_BOOL* dirty) { return get_PropertyPage_Dirty(dirty); }

STDMETHODIMP PageControl::Apply() { return PropertyPage_Apply(); }

// --- sites and the rest

std::shared_ptr<PropertyPageSite> PageControl::Site() {
  for (const ComPtr<IUnknown>& candidate : {clientSite_.As<IUnknown>(), site_}) {
    if (!candidate) continue;
    void* found = nullptr;
    if (SUCCEEDED(candidate->QueryInterface(PropertyPageSiteId, &found)) && found != nullptr) {
      return std::make_shared<ComPageSite>(ComPtr<IDispatch>::Attach(static_cast<IDispatch*>(found)));
    }
  }
  return nullptr;
}

STDMETHODIMP PageControl::GetClassInfo(ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = ComPtr<ITypeInfo>(classInfo_).Detach();
  return S_OK;
}

STDMETHODIMP PageControl::SetSite(IUnknown* site) {
  site_ = ComPtr<IUnknown>(site);
  return S_OK;
}

STDMETHODIMP PageControl::GetSite(REFIID interfaceId, void** site) {
  if (site == nullptr) return E_POINTER;
  *site = nullptr;
  return site_ ? site_->QueryInterface(interfaceId, site) : E_FAIL;
}

STDMETHODIMP PageControl::InterfaceSupportsErrorInfo(REFIID interfaceId) {
  const bool supported =
      interfaceId == __uuidof(IOutlookPropertiesPage) || interfaceId == __uuidof(PropertyPage);
  return supported ? S_OK : S_FALSE;
}

STDMETHODIMP PageControl::GetClassID(CLSID* classId) {
  if (classId == nullptr) return E_POINTER;
  *classId = CLSID_OutlookPropertiesPage;
  return S_OK;
}

// The page keeps nothing in its container's file.
STDMETHODIMP PageControl::IsDirty() { return S_FALSE; }
STDMETHODIMP PageControl::Load(IStream* stream) { return stream == nullptr ? E_POINTER : S_OK; }
STDMETHODIMP PageControl::Save(IStream* stream, BOOL /*clearDirty*/) {
  return stream == nullptr ? E_POINTER : S_OK;
}
STDMETHODIMP PageControl::GetSizeMax(ULARGE_INTEGER* size) {
  if (size == nullptr) return E_POINTER;
  size->QuadPart = 0;
  return S_OK;
}
STDMETHODIMP PageControl::InitNew() { return S_OK; }

}  // namespace vexa::windows
