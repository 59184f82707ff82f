// The control as a container that nobody here wrote might treat it: loaded from the module by its class, in
// any order, with nothing where something is due.
#include <gtest/gtest.h>
#include <olectl.h>

#include <thread>

#include "Outlook.h"
#include "VexaControls.h"
#include "tests/windows/control/Module.h"
#include "windows/com/Com.h"

namespace vexa::windows {
namespace {

class ControlTest : public testing::Test {
 protected:
  Apartment apartment_;
  Module module_;
};

TEST_F(ControlTest, AnswersEveryInterfaceAndLeavesNothingBehind) {
  {
    const ComPtr<IOutlookPropertiesPage> page = module_.CreatePage();
    const ComPtr<IUnknown> identity = page.As<IUnknown>();
    for (const IID& id :
         {__uuidof(PropertyPage), IID_IDispatch, IID_IOleObject, IID_IOleInPlaceObject,
          IID_IOleInPlaceActiveObject, IID_IOleControl, IID_IViewObject2, IID_IPersistStreamInit,
          IID_IProvideClassInfo, IID_IObjectWithSite, IID_ISupportErrorInfo}) {
      void* found = nullptr;
      ASSERT_EQ(page->QueryInterface(id, &found), S_OK);
      const auto other = ComPtr<IUnknown>::Attach(static_cast<IUnknown*>(found));
      EXPECT_EQ(other.As<IUnknown>().Get(), identity.Get()) << "one object, one identity";
    }
    EXPECT_FALSE(module_.CanUnload());
    void* found = &module_;
    EXPECT_EQ(page->QueryInterface(IID_IMarshal, &found), E_NOINTERFACE);
    EXPECT_EQ(found, nullptr);
  }
  EXPECT_TRUE(module_.CanUnload());
}

TEST_F(ControlTest, RefusesWhatMakesNoSenseWithADescription) {
  const ComPtr<IOutlookPropertiesPage> page = module_.CreatePage();
  VARIANT_BOOL again = VARIANT_FALSE;
  EXPECT_EQ(LastError(page->Initialize(nullptr, &again)), "91 Object variable not set");
  EXPECT_EQ(LastError(page->Initialize(page.Get(), nullptr)), "13 Type mismatch") << "the page is no add-in";
  again = VARIANT_TRUE;
  EXPECT_EQ(LastError(page->Initialize(nullptr, &again)).substr(0, 1), "-")
      << "no settings class is registered";
  EXPECT_EQ(LastError(page->FillTrackedContacts()), "91 Object variable not set");
  EXPECT_EQ(LastError(page->get_Name(nullptr)), "5 Invalid procedure call or argument");
  EXPECT_EQ(LastError(page->get_PropertyPage_Dirty(nullptr)), "5 Invalid procedure call or argument");
  EXPECT_EQ(page->PropertyPage_Apply(), S_OK) << "a page that is not active does nothing";
  EXPECT_EQ(page->SetDirty(), S_OK) << "without a site there is nobody to tell";
  VARIANT_BOOL dirty = VARIANT_FALSE;
  EXPECT_EQ(page.As<PropertyPage>()->get_Dirty(&dirty), S_OK);
  EXPECT_EQ(dirty, VARIANT_TRUE);
}

TEST_F(ControlTest, BelongsToItsThread) {
  const ComPtr<IOutlookPropertiesPage> page = module_.CreatePage();
  HRESULT result = S_OK;
  std::thread([&] { result = page->SetDirty(); }).join();
  EXPECT_EQ(result, RPC_E_WRONG_THREAD);
}

TEST_F(ControlTest, ServesBothDualInterfacesByNumberAndName) {
  const ComPtr<IOutlookPropertiesPage> page = module_.CreatePage();
  const auto invoke = [&](DISPID member, WORD flags, VARIANT* result) {
    DISPPARAMS none{};
    return page->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &none, result, nullptr, nullptr);
  };
  OwnedVariant caption;
  ASSERT_EQ(invoke(DISPID_CAPTION, DISPATCH_PROPERTYGET, caption.Receive()), S_OK);
  EXPECT_EQ(FromVariant(caption.Get()).ToText(), "Vexa");
  OwnedVariant dirty;
  ASSERT_EQ(invoke(0x2101, DISPATCH_PROPERTYGET, dirty.Receive()), S_OK);
  EXPECT_EQ(FromVariant(dirty.Get()).ToText(), "False");
  EXPECT_EQ(invoke(0x2102, DISPATCH_METHOD, nullptr), S_OK);
  EXPECT_EQ(invoke(4711, DISPATCH_METHOD, nullptr), DISP_E_MEMBERNOTFOUND);
  for (const wchar_t* name : {L"Initialize", L"PropertyPage_Apply", L"Apply", L"searchnowpending"}) {
    std::wstring text = name;
    LPOLESTR names = text.data();
    DISPID id = 0;
    EXPECT_EQ(page->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  }
}

TEST_F(ControlTest, CanBeTreatedInAnyOrderBeforeItIsSited) {
  const ComPtr<IOutlookPropertiesPage> page = module_.CreatePage();
  const ComPtr<IOleObject> object = page.As<IOleObject>();
  const ComPtr<IOleInPlaceObject> inPlace = page.As<IOleInPlaceObject>();
  EXPECT_TRUE(FAILED(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, nullptr, nullptr)));
  EXPECT_EQ(object->DoVerb(OLEIVERB_HIDE, nullptr, nullptr, 0, nullptr, nullptr), S_OK);
  EXPECT_EQ(object->DoVerb(17, nullptr, nullptr, 0, nullptr, nullptr), OLEOBJ_S_INVALIDVERB);
  HWND window = reinterpret_cast<HWND>(1);
  EXPECT_TRUE(FAILED(inPlace->GetWindow(&window)));
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(inPlace->InPlaceDeactivate(), S_OK);
  EXPECT_EQ(inPlace->UIDeactivate(), S_OK);
  const RECT area{0, 0, 10, 10};
  EXPECT_EQ(inPlace->SetObjectRects(&area, nullptr), S_OK);
  MSG message{};
  EXPECT_EQ(page.As<IOleInPlaceActiveObject>()->TranslateAccelerator(&message), S_FALSE);
  SIZEL size{};
  EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &size), S_OK);
  EXPECT_GT(size.cx, 0);
  EXPECT_EQ(page.As<IPersistStreamInit>()->InitNew(), S_OK);
  EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
  EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK) << "twice";
  EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
}

TEST_F(ControlTest, ThousandLivesLeaveHandlesAndObjectsWhereTheyWere) {
  const auto live = [&] {
    const ComPtr<IOutlookPropertiesPage> page = module_.CreatePage();
    page->SetDirty();
  };
  for (int i = 0; i < 10; ++i) live();
  const DWORD gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  const DWORD user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  for (int i = 0; i < 1000; ++i) live();
  EXPECT_EQ(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdi);
  EXPECT_EQ(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), user);
  EXPECT_TRUE(module_.CanUnload());
}

// --- registration

bool KeyExists(HKEY root, const std::wstring& key) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, (L"Software\\Classes\\" + key).c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS)
    return false;
  RegCloseKey(opened);
  return true;
}

TEST_F(ControlTest, RegistersPerMachineAndPerUserAndLeavesNothing) {
  const std::wstring classKey = L"CLSID\\{F5EC52ED-0108-4475-92E1-BC7656670B14}";
  const std::wstring outlooks = L"Interface\\{0006307E-0000-0000-C000-000000000046}";
  const auto install = module_.Export<HRESULT STDMETHODCALLTYPE(BOOL, LPCWSTR)>("DllInstall");
  for (const auto& [root, argument] : {std::pair<HKEY, const wchar_t*>{HKEY_CURRENT_USER, L"user"},
                                       std::pair<HKEY, const wchar_t*>{HKEY_LOCAL_MACHINE, nullptr}}) {
    const bool outlookWasThere = KeyExists(root, outlooks);
    ASSERT_EQ(install(TRUE, argument), S_OK);
    EXPECT_TRUE(KeyExists(root, classKey + L"\\InprocServer32"));
    EXPECT_TRUE(KeyExists(root, L"VexaControls.OutlookPropertiesPage\\CLSID"));
    EXPECT_EQ(KeyExists(root, outlooks), outlookWasThere);
    ASSERT_EQ(install(FALSE, argument), S_OK);
    EXPECT_FALSE(KeyExists(root, classKey));
    EXPECT_FALSE(KeyExists(root, L"VexaControls.OutlookPropertiesPage"));
    EXPECT_EQ(KeyExists(root, outlooks), outlookWasThere);
    EXPECT_EQ(install(FALSE, argument), S_OK) << "once more: nothing is there to remove";
  }
  EXPECT_EQ(install(TRUE, L"nonsense"), E_INVALIDARG);
}

TEST_F(ControlTest, IsCreatedByItsNameOnceRegistered) {
  ASSERT_EQ(module_.Export<HRESULT STDMETHODCALLTYPE()>("DllRegisterServer")(), S_OK);
  CLSID classId{};
  ASSERT_EQ(CLSIDFromProgID(L"VexaControls.OutlookPropertiesPage", &classId), S_OK);
  void* page = nullptr;
  EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &page), S_OK);
  ComPtr<IDispatch>::Attach(static_cast<IDispatch*>(page)).Reset();
  EXPECT_EQ(module_.Export<HRESULT STDMETHODCALLTYPE()>("DllUnregisterServer")(), S_OK);
  EXPECT_TRUE(FAILED(CLSIDFromProgID(L"VexaControls.OutlookPropertiesPage", &classId)));
}

}  // namespace
}  // namespace vexa::windows
