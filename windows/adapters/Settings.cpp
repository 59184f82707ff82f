// The add-in's settings object, bound by the positions of its members.
#include <type_traits>

#include "windows/adapters/Adapters.h"

namespace vexa::windows {
namespace {

// How a value of each type crosses the interface: what a Get receives, and what a Let passes.

template <typename Type>
struct Wire {  // numbers cross as they are
  using Raw = Type;
  Raw received{};
  Type Value() const { return received; }
  Raw* Receive() { return &received; }
  static Raw Pass(const Type& value) { return value; }
};

template <>
struct Wire<int32_t> {
  using Raw = LONG;
  Raw received = 0;
  int32_t Value() const { return received; }
  Raw* Receive() { return &received; }
  static Raw Pass(int32_t value) { return value; }
};

template <>
struct Wire<bool> {
  using Raw = VARIANT_BOOL;
  Raw received = VARIANT_FALSE;
  bool Value() const { return received != VARIANT_FALSE; }
  Raw* Receive() { return &received; }
  static Raw Pass(bool value) { return ToVariantBool(value); }
};

template <>
struct Wire<std::string> {
  using Raw = BSTR;
  Bstr received;
  std::string Value() const { return received.Text(); }
  Raw* Receive() { return received.Receive(); }
};

class ComSettings final : public RegSettings, public Wrapper {
 public:
  explicit ComSettings(ComPtr<IRegSettings> settings) : settings_(std::move(settings)) {}

  const ComPtr<IRegSettings>& Settings() const { return settings_; }
  ComPtr<IUnknown> Wrapped() const override { return settings_.As<IUnknown>(); }

#define VEXA_READ(place, Name, Type) \
  Type Get##Name() override { return Get<Type>(&IRegSettings::get_##Name); }
#define VEXA_READ_ONLY(place, Name, Type) VEXA_READ(place, Name, Type)
#define VEXA_PROPERTY(place, Name, Type) \
  VEXA_READ(place, Name, Type)           \
  void Let##Name(const Type& value) override { Let<Type>(&IRegSettings::put_##Name, value); }
#define VEXA_COLLECTION(place, Name, Type)                                                                \
  CollectionRef<Type> Get##Name() override { return GetCollection<Type>(&IRegSettings::get_##Name); }     \
  void Let##Name(const CollectionRef<Type>& value) override { Assign(&IRegSettings::put_##Name, value); } \
  void Set##Name(const CollectionRef<Type>& value) override { Assign(&IRegSettings::putref_##Name, value); }
#include "contracts/RegSettings.members.inc"

  void RestoreHiddenDialogs() override { Call(settings_, &IRegSettings::RestoreHiddenDialogs); }

  void Load(int32_t first, bool& bypassBlocked, bool& delayAvailable) override {
    VARIANT_BOOL blocked = ToVariantBool(bypassBlocked);
    VARIANT_BOOL available = ToVariantBool(delayAvailable);
    Call(settings_, &IRegSettings::Load, first, &blocked, &available);
    bypassBlocked = blocked != VARIANT_FALSE;
    delayAvailable = available != VARIANT_FALSE;
  }

  bool CanWrite(int32_t& argument) override {
    LONG passed = argument;
    VARIANT_BOOL answer = VARIANT_FALSE;
    Call(settings_, &IRegSettings::CanWrite, &passed, &answer);
    argument = passed;
    return answer != VARIANT_FALSE;
  }

  Variant FindFolderSet(const std::string& entryId, const std::string& storeId,
                        const ObjectRef& context) override {
    OwnedVariant answer;
    const ComPtr<IDispatch> passed = DispatchBehind(context);
    Call(settings_, &IRegSettings::FindFolderSet, Bstr(entryId).Get(), Bstr(storeId).Get(), passed.Get(),
         answer.Receive());
    return FromVariant(answer.Get());
  }

 private:
  template <typename Type>
  using Getter = HRESULT (STDMETHODCALLTYPE IRegSettings::*)(typename Wire<Type>::Raw*);
  template <typename Type>
  using Letter = HRESULT (STDMETHODCALLTYPE IRegSettings::*)(typename Wire<Type>::Raw);

  template <typename Type>
  Type Get(Getter<Type> getter) {
    Wire<Type> wire;
    Call(settings_, getter, wire.Receive());
    return wire.Value();
  }
  template <typename Type>
  void Let(Letter<Type> letter, const Type& value) {
    if constexpr (std::is_same_v<Type, std::string>) {
      Call(settings_, letter, Bstr(value).Get());
    } else {
      Call(settings_, letter, Wire<Type>::Pass(value));
    }
  }
  template <typename Type>
  CollectionRef<Type> GetCollection(HRESULT (STDMETHODCALLTYPE IRegSettings::*getter)(IDispatch**)) {
    ComPtr<IDispatch> collection;
    Call(settings_, getter, collection.Receive());
    return AdaptCollection<Type>(collection.As<IUnknown>());
  }
  template <typename Type>
  void Assign(HRESULT (STDMETHODCALLTYPE IRegSettings::*assign)(IDispatch*),
              const CollectionRef<Type>& value) {
    Call(settings_, assign, ExportCollection(value).Get());
  }

  ComPtr<IRegSettings> settings_;
};

}  // namespace

RegSettingsRef AdaptSettings(ComPtr<IRegSettings> settings) {
  return settings ? std::make_shared<ComSettings>(std::move(settings)) : nullptr;
}

ComPtr<IRegSettings> SettingsBehind(const RegSettingsRef& settings) {
  const auto* ours = dynamic_cast<const ComSettings*>(settings.get());
  if (ours == nullptr) throw MakeError(ErrorNumber::TypeMismatch);
  return ours->Settings();
}

}  // namespace vexa::windows
