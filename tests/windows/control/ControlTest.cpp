// The control as a container that nobody here wrote might treat it: loaded from the module by its class, in
// any order, with nothing where something is due.
#include <gtest/gtest.h>
#include <olectl.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Outlook.h"
#include "VexaControls.h"
#include "tests/windows/control/Module.h"
#include "windows/com/Com.h"
#include "windows/com/LateBound.h"

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
         {__uuidof(PropertyPage), IID_IDispatch, IID_IOleObject, IID_IOleWindow, IID_IViewObject,
          IID_IPersist, IID_IOleInPlaceObject, IID_IOleInPlaceActiveObject, IID_IOleControl, IID_IViewObject2,
          IID_IPersistStreamInit, IID_IProvideClassInfo, IID_IObjectWithSite, IID_ISupportErrorInfo}) {
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

int FreeThreadLocalSlots() {
  std::vector<DWORD> slots;
  for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc()) slots.push_back(slot);
  for (const DWORD slot : slots) TlsFree(slot);
  return static_cast<int>(slots.size());
}

TEST(ModuleInMemory, TakesNothingMoreEachTimeThatItIsLoadedAndUsed) {
  const Apartment apartment;
  const auto use = [] {
    const Module module;
    const ComPtr<IOutlookPropertiesPage> page = module.CreatePage();
    EXPECT_EQ(LastError(page, page->FillTrackedContacts()).substr(0, 26), "91 Object variable not set");
  };
  use();
  const int before = FreeThreadLocalSlots();
  for (int i = 0; i < 3; ++i) use();
  EXPECT_GT(before, 0);
  EXPECT_EQ(FreeThreadLocalSlots(), before);
}

TEST_F(ControlTest, RefusesWhatMakesNoSenseWithADescription) {
  const ComPtr<IOutlookPropertiesPage> page = module_.CreatePage();
  VARIANT_BOOL again = VARIANT_FALSE;
  const std::string origin = ", VexaControls\r\n-->OutlookPropertiesPage.Initialize";
  EXPECT_EQ(LastError(page, page->Initialize(nullptr, &again)), "91 Object variable not set" + origin);
  EXPECT_EQ(LastError(page, page->Initialize(page.Get(), nullptr)), "13 Type mismatch" + origin);
  again = VARIANT_TRUE;
  EXPECT_EQ(LastError(page, page->Initialize(nullptr, &again)), "91 Object variable not set" + origin)
      << "there is none from before";
  EXPECT_EQ(LastError(page, page->get_Name(nullptr)), "5 Invalid procedure call or argument, VexaControls");
  // By name: an argument of another kind is refused before the member is called, the missing add-in by it.
  LateBound named(page.As<IUnknown>());
  const std::vector<std::pair<Variant, int32_t>> refused = {{"word", DISP_E_TYPEMISMATCH}, {ObjectRef(), 91}};
  for (const auto& [argument, number] : refused) {
    try {
      named.Call(L"Initialize", {argument});
      ADD_FAILURE() << "no error";
    } catch (const Error& error) {
      EXPECT_EQ(error.Number, number);
      EXPECT_GT(error.Description.size(), 12U) << error.Description;
    }
  }
}

TEST_F(ControlTest, BelongsToItsThread) {
  const ComPtr<IOutlookPropertiesPage> page = module_.CreatePage();
  const ComPtr<IOleObject> object = page.As<IOleObject>();
  const ComPtr<IOleInPlaceObject> inPlace = page.As<IOleInPlaceObject>();
  VARIANT_BOOL flag = VARIANT_FALSE;
  BSTR text = nullptr;
  LONG number = 0;
  const RECT area{0, 0, 10, 10};
  const std::vector<std::function<HRESULT()>> calls = {
      [&] { return page->Initialize(nullptr, &flag); },
      [&] { return page->PropertyPage_GetPageInfo(&text, &number); },
      [&] { return page->get_PropertyPage_Dirty(&flag); },
      [&] { return page->PropertyPage_Apply(); },
      [&] { return page->get_Name(&text); },
      [&] { return page->SetDirty(); },
      [&] { return page->get_SearchNowPending(&flag); },
      [&] { return page->put_SearchNowPending(flag); },
      [&] { return page->get_SearchStopAtScanned(&flag); },
      [&] { return page->put_SearchStopAtScanned(flag); },
      [&] { return page->Refresh(); },
      [&] { return page->FillTrackedContacts(); },
      [&] { return object->SetClientSite(nullptr); },
      [&] { return object->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, nullptr, &area); },
      [&] { return object->Close(OLECLOSE_NOSAVE); },
      [&] { return inPlace->InPlaceDeactivate(); },
      [&] { return inPlace->UIDeactivate(); },
      [&] { return inPlace->SetObjectRects(&area, &area); },
  };
  std::thread([&] {
    for (size_t call = 0; call < calls.size(); ++call) {
      const HRESULT result = calls[call]();
      EXPECT_EQ(result, RPC_E_WRONG_THREAD) << call;
      EXPECT_NE(LastError(page, result).find("was called from a thread that it does not belong to"),
                std::string::npos)
          << call;
    }
  }).join();
  EXPECT_EQ(page->SetDirty(), S_OK) << "on its own thread";
}

TEST_F(ControlTest, NullPointersAreRefused) {
  const ComPtr<IOutlookPropertiesPage> page = module_.CreatePage();
  const auto object = page.As<IOleObject>();
  const auto inPlace = page.As<IOleInPlaceObject>();
  const auto active = page.As<IOleInPlaceActiveObject>();
  const auto control = page.As<IOleControl>();
  const auto view = page.As<IViewObject2>();
  const auto state = page.As<IPersistStreamInit>();
  const auto sited = page.As<IObjectWithSite>();
  BSTR text = nullptr;
  int number = 0;
  for (const HRESULT result :
       {page->QueryInterface(IID_IUnknown, nullptr),
        page->GetTypeInfoCount(nullptr),
        page->GetTypeInfo(0, 0, nullptr),
        page->GetIDsOfNames(IID_NULL, nullptr, 1, 0, nullptr),
        page->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
        page->PropertyPage_GetPageInfo(nullptr, nullptr),
        page->PropertyPage_GetPageInfo(&text, nullptr),
        page->get_PropertyPage_Dirty(nullptr),
        page->get_Name(nullptr),
        page->get_SearchNowPending(nullptr),
        page->get_SearchStopAtScanned(nullptr),
        object->GetClientSite(nullptr),
        object->GetMoniker(0, 0, nullptr),
        object->GetClipboardData(0, nullptr),
        object->EnumVerbs(nullptr),
        object->GetUserClassID(nullptr),
        object->GetUserType(0, nullptr),
        object->SetExtent(DVASPECT_CONTENT, nullptr),
        object->GetExtent(DVASPECT_CONTENT, nullptr),
        object->Advise(nullptr, nullptr),
        object->EnumAdvise(nullptr),
        object->GetMiscStatus(DVASPECT_CONTENT, nullptr),
        inPlace->GetWindow(nullptr),
        inPlace->SetObjectRects(nullptr, nullptr),
        active->TranslateAccelerator(nullptr),
        control->GetControlInfo(nullptr),
        control->OnMnemonic(nullptr),
        view->Draw(DVASPECT_CONTENT, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0),
        view->GetColorSet(DVASPECT_CONTENT, 0, nullptr, nullptr, nullptr, nullptr),
        view->GetExtent(DVASPECT_CONTENT, 0, nullptr, nullptr),
        state->GetClassID(nullptr),
        state->Load(nullptr),
        state->Save(nullptr, FALSE),
        state->GetSizeMax(nullptr),
        sited->GetSite(IID_IUnknown, nullptr),
        page.As<IProvideClassInfo>()->GetClassInfo(nullptr),
        module_.Factory()->CreateInstance(nullptr, IID_IUnknown, nullptr)}) {
    EXPECT_TRUE(FAILED(result)) << "call " << number;
    ++number;
  }
  void* aggregated = nullptr;
  EXPECT_EQ(module_.Factory()->CreateInstance(page.Get(), IID_IUnknown, &aggregated), CLASS_E_NOAGGREGATION);
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
  ComPtr<IErrorInfo> why;
  EXPECT_EQ(GetErrorInfo(0, why.Receive()), S_OK);
  for (std::wstring name : {L"propertypage_apply", L"apply"}) {
    LPOLESTR names = name.data();
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

}  // namespace
}  // namespace vexa::windows
