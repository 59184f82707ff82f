// The running add-in and the objects it hands out, bound by the positions of their members.
#include "windows/adapters/Adapters.h"

namespace vexa::windows {
namespace {

/// Calls a member that answers an interface pointer.
template <typename Owner, typename Answer>
ComPtr<Answer> GetObjectOf(const ComPtr<Owner>& owner, HRESULT (STDMETHODCALLTYPE Owner::*getter)(Answer**)) {
  ComPtr<Answer> answer;
  Call(owner, getter, answer.Receive());
  return answer;
}

template <typename Owner>
bool GetFlag(const ComPtr<Owner>& owner, HRESULT (STDMETHODCALLTYPE Owner::*getter)(VARIANT_BOOL*)) {
  VARIANT_BOOL value = VARIANT_FALSE;
  Call(owner, getter, &value);
  return value != VARIANT_FALSE;
}

class ComApplication final : public AddinApplication {
 public:
  explicit ComApplication(ComPtr<IVexaApplication> application) : application_(std::move(application)) {}
  std::string Path() override {
    Bstr path;
    Call(application_, &IVexaApplication::get_Path, path.Receive());
    return path.Text();
  }

 private:
  ComPtr<IVexaApplication> application_;
};

class ComUtilities final : public Utilities {
 public:
  explicit ComUtilities(ComPtr<IVexaUtilities> utilities) : utilities_(std::move(utilities)) {}

  bool BypassBlocked() override { return GetFlag(utilities_, &IVexaUtilities::get_BypassBlocked); }
  bool DelayAvailable() override { return GetFlag(utilities_, &IVexaUtilities::get_DelayAvailable); }
  std::string GetFolderPath(const FolderRef& folder) override {
    Bstr path;
    Call(utilities_, &IVexaUtilities::GetFolderPath, DispatchBehind(folder).Get(), path.Receive());
    return path.Text();
  }
  bool IsPublicFolder(const FolderRef& folder) override {
    VARIANT_BOOL answer = VARIANT_FALSE;
    Call(utilities_, &IVexaUtilities::IsPublicFolder, DispatchBehind(folder).Get(), &answer);
    return answer != VARIANT_FALSE;
  }
  std::shared_ptr<AddinApplication> App() override {
    auto application = GetObjectOf(utilities_, &IVexaUtilities::get_App);
    return application ? std::make_shared<ComApplication>(std::move(application)) : nullptr;
  }
  void SetUserProperty(const ObjectRef& item, const std::string& name, const Variant& value, int32_t type,
                       bool flag) override {
    OwnedVariant passed;
    ToVariant(value, passed.Get());
    Call(utilities_, &IVexaUtilities::SetUserProperty, DispatchBehind(item).Get(), Bstr(name).Get(),
         passed.Get(), type, ToVariantBool(flag));
  }
  Variant AboutInfo() override {
    OwnedVariant info;
    Call(utilities_, &IVexaUtilities::get_AboutInfo, info.Receive());
    return FromVariant(info.Get());
  }

 private:
  ComPtr<IVexaUtilities> utilities_;
};

class ComScanner final : public Scanner {
 public:
  explicit ComScanner(ComPtr<IVexaScanner> scanner) : scanner_(std::move(scanner)) {}
  void StartSearch(bool stopAtScanned) override {
    Call(scanner_, &IVexaScanner::StartSearch, ToVariantBool(stopAtScanned));
  }
  bool IsScanning() override { return GetFlag(scanner_, &IVexaScanner::get_IsScanning); }

 private:
  ComPtr<IVexaScanner> scanner_;
};

class ComMonitoredFolder final : public MonitoredFolder {
 public:
  explicit ComMonitoredFolder(ComPtr<IMonitoredFolder> folder) : folder_(std::move(folder)) {}

  std::string GetEntryID() override {
    Bstr id;
    Call(folder_, &IMonitoredFolder::get_EntryID, id.Receive());
    return id.Text();
  }
  void LetEntryID(const std::string& value) override {
    Call(folder_, &IMonitoredFolder::put_EntryID, Bstr(value).Get());
  }
  std::string GetStoreID() override {
    Bstr id;
    Call(folder_, &IMonitoredFolder::get_StoreID, id.Receive());
    return id.Text();
  }
  void LetStoreID(const std::string& value) override {
    Call(folder_, &IMonitoredFolder::put_StoreID, Bstr(value).Get());
  }
  int32_t GetItemTypes() override {
    LONG types = 0;
    Call(folder_, &IMonitoredFolder::get_ItemTypes, &types);
    return types;
  }
  void LetItemTypes(int32_t value) override { Call(folder_, &IMonitoredFolder::put_ItemTypes, value); }
  void SetMailDefaults(bool flag) override {
    Call(folder_, &IMonitoredFolder::SetMailDefaults, ToVariantBool(flag));
  }
  bool GetFlag(int32_t mask) override {
    VARIANT_BOOL value = VARIANT_FALSE;
    Call(folder_, &IMonitoredFolder::get_Flag, mask, &value);
    return value != VARIANT_FALSE;
  }
  void LetFlag(int32_t mask, bool value) override {
    Call(folder_, &IMonitoredFolder::put_Flag, mask, ToVariantBool(value));
  }
  int32_t MaskFromResId(int16_t resId) override {
    LONG mask = 0;
    Call(folder_, &IMonitoredFolder::MaskFromResId, resId, &mask);
    return mask;
  }
  int16_t ResIdFromMask(int32_t mask) override {
    SHORT resId = 0;
    Call(folder_, &IMonitoredFolder::ResIdFromMask, mask, &resId);
    return resId;
  }
  int32_t MaskFromOlItemType(ItemType itemType) override {
    LONG mask = 0;
    Call(folder_, &IMonitoredFolder::MaskFromOlItemType, static_cast<LONG>(itemType), &mask);
    return mask;
  }
  bool Excluded() override { return windows::GetFlag(folder_, &IMonitoredFolder::get_Excluded); }

 private:
  ComPtr<IMonitoredFolder> folder_;
};

class ComAddin final : public AddinApp {
 public:
  explicit ComAddin(ComPtr<IVexaAddin> addin) : addin_(std::move(addin)) {}

  std::shared_ptr<vexa::Utilities> Utilities() override {
    auto utilities = GetObjectOf(Addin(), &IVexaAddin::get_Utilities);
    return utilities ? std::make_shared<ComUtilities>(std::move(utilities)) : nullptr;
  }
  std::shared_ptr<vexa::Scanner> Scanner() override {
    auto scanner = GetObjectOf(Addin(), &IVexaAddin::get_Scanner);
    return scanner ? std::make_shared<ComScanner>(std::move(scanner)) : nullptr;
  }
  NameSpaceRef Session() override {
    return AdaptSession(GetObjectOf(Addin(), &IVexaAddin::get_Session).As<IUnknown>());
  }
  ObjectRef FolderSetContext() override {
    const auto context = GetObjectOf(Addin(), &IVexaAddin::get_FolderSetContext);
    return context ? std::make_shared<ComObject>(context.As<IUnknown>()) : nullptr;
  }
  void SetOptionsPageOpen(bool& open) override {
    VARIANT_BOOL passed = ToVariantBool(open);
    Call(Addin(), &IVexaAddin::SetOptionsPageOpen, &passed);
    open = passed != VARIANT_FALSE;
  }
  void ApplySettings(RegSettingsRef& settings) override {
    // By reference: the add-in may put another object in its place.
    const ComPtr<IVexaAddin> addin = Addin();
    const ComPtr<IRegSettings> ours = SettingsBehind(settings);
    IRegSettings* passed = ComPtr<IRegSettings>(ours).Detach();
    const HRESULT outcome = addin->ApplySettings(&passed);
    ComPtr<IRegSettings> returned = ComPtr<IRegSettings>::Attach(passed);
    Check(outcome, addin);
    if (returned.Get() != ours.Get()) settings = AdaptSettings(std::move(returned));
  }

 private:
  const ComPtr<IVexaAddin>& Addin() const {
    if (!addin_) throw MakeError(ErrorNumber::TypeMismatch);
    return addin_;
  }

  ComPtr<IVexaAddin> addin_;  // null: the object is no add-in
};

/// An object of a class that the add-in has registered; null when its class factory makes none.
template <typename Interface>
ComPtr<Interface> Create(const wchar_t* progId) {
  CLSID classId{};
  Check(CLSIDFromProgID(progId, &classId));
  void* found = nullptr;
  Check(CoGetClassObject(classId, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, nullptr, IID_IClassFactory,
                         &found));
  // Not by CoCreateInstance: when the factory fails, it is the object that is asked why.
  const auto factory = ComPtr<IClassFactory>::Attach(static_cast<IClassFactory*>(found));
  void* object = nullptr;
  Call(factory, &IClassFactory::CreateInstance, nullptr, __uuidof(Interface), &object);
  return ComPtr<Interface>::Attach(static_cast<Interface*>(object));
}

class ComObjectFactory final : public AddinObjectFactory {
 public:
  RegSettingsRef CreateRegSettings() override {
    return AdaptSettings(Create<IRegSettings>(L"VexaAddin.RegSettings"));
  }
  std::shared_ptr<MonitoredFolder> CreateMonitoredFolder() override {
    auto folder = Create<IMonitoredFolder>(L"VexaAddin.MonitoredFolder");
    return folder ? std::make_shared<ComMonitoredFolder>(std::move(folder)) : nullptr;
  }
};

}  // namespace

AddinAppRef AdaptAddin(IDispatch* addin) {
  if (addin == nullptr) return nullptr;
  return std::make_shared<ComAddin>(ComPtr<IDispatch>(addin).As<IVexaAddin>());
}

ComPtr<IDispatch> DispatchBehind(const ObjectRef& object) {
  if (object == nullptr) return nullptr;
  if (const auto* wrapper = dynamic_cast<const Wrapper*>(object.get()))
    return wrapper->Wrapped().As<IDispatch>();
  if (const auto* plain = dynamic_cast<const ComObject*>(object.get()))
    return plain->Unknown().As<IDispatch>();
  throw MakeError(ErrorNumber::TypeMismatch);
}

std::unique_ptr<AddinObjectFactory> MakeObjectFactory() { return std::make_unique<ComObjectFactory>(); }

}  // namespace vexa::windows
