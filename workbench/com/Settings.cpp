// The settings object, member by member in the interface's order: the order is the type library's, which the
// compiler holds this class to.
#include <type_traits>

#include "windows/adapters/Adapters.h"
#include "workbench/Workbench.h"
#include "workbench/com/DualObject.h"
#include "workbench/com/Export.h"

namespace vexa::workbench {
namespace {

// How a value of each type crosses the interface.
VARIANT_BOOL ToWire(bool value) { return windows::ToVariantBool(value); }
SHORT ToWire(int16_t value) { return value; }
LONG ToWire(int32_t value) { return value; }
BSTR ToWire(const std::string& value) { return windows::Bstr(value).Detach(); }

template <typename Type>
Type FromWire(std::conditional_t<std::is_same_v<Type, bool>, VARIANT_BOOL, Type> value) {
  if constexpr (std::is_same_v<Type, bool>) {
    return value != VARIANT_FALSE;
  } else {
    return value;
  }
}
template <typename Type>
Type FromWire(BSTR value) {
  return windows::TextOf(value);
}

template <typename Type>
using Wire = decltype(ToWire(std::declval<Type>()));

/// One of the workbench's own lists, or whatever collection somebody else made.
template <typename Type>
CollectionRef<Type> CollectionBehind(IDispatch* collection) {
  const ObjectRef object = ObjectBehind(collection);
  if (auto own = std::dynamic_pointer_cast<Collection<Type>>(object)) return own;
  return windows::AdaptCollection<Type>(windows::ComPtr<IUnknown>(collection));
}

class SettingsObject final : public DualObject<IRegSettings> {
 public:
  SettingsObject(ExportsRef exports, RegSettingsRef settings)
      : DualObject(settings, exports->Library()),
        exports_(std::move(exports)),
        settings_(std::move(settings)) {}

  // NOLINTBEGIN(bugprone-macro-parentheses): a type cannot stand in parentheses.
#define VEXA_READ_ONLY(place, Name, Type)               \
  STDMETHODIMP get_##Name(Wire<Type>* value) override { \
    return Run([&] {                                    \
      windows::RequirePointer(value);                   \
      *value = ToWire(settings_->Get##Name());          \
    });                                                 \
  }
#define VEXA_READ(place, Name, Type) \
  VEXA_READ_ONLY(place, Name, Type)  \
  STDMETHODIMP put_##Name(Wire<Type> /*value*/) override { return E_NOTIMPL; }
#define VEXA_PROPERTY(place, Name, Type)                              \
  VEXA_READ_ONLY(place, Name, Type)                                   \
  STDMETHODIMP put_##Name(Wire<Type> value) override {                \
    return Run([&] { settings_->Let##Name(FromWire<Type>(value)); }); \
  }
#define VEXA_COLLECTION(place, Name, Type)                                    \
  STDMETHODIMP get_##Name(IDispatch** value) override {                       \
    return Run([&] {                                                          \
      windows::RequirePointer(value);                                         \
      *value = windows::ExportCollection(settings_->Get##Name()).Detach();    \
    });                                                                       \
  }                                                                           \
  STDMETHODIMP put_##Name(IDispatch* value) override {                        \
    return Run([&] { settings_->Let##Name(CollectionBehind<Type>(value)); }); \
  }                                                                           \
  STDMETHODIMP putref_##Name(IDispatch* value) override {                     \
    return Run([&] { settings_->Set##Name(CollectionBehind<Type>(value)); }); \
  }
#define VEXA_UNUSED_PROPERTY(place)                                                 \
  STDMETHODIMP get_Unused##place(VARIANT* /*value*/) override { return E_NOTIMPL; } \
  STDMETHODIMP put_Unused##place(VARIANT /*value*/) override { return E_NOTIMPL; }
#define VEXA_UNUSED_MEMBER(place) \
  STDMETHODIMP Unused##place() override { return E_NOTIMPL; }
#include "contracts/RegSettings.members.inc"
  // NOLINTEND(bugprone-macro-parentheses)

  STDMETHODIMP RestoreHiddenDialogs() override {
    return Run([&] { settings_->RestoreHiddenDialogs(); });
  }

  STDMETHODIMP Load(LONG first, VARIANT_BOOL* bypassBlocked, VARIANT_BOOL* delayAvailable) override {
    return Run([&] {
      windows::RequirePointer(bypassBlocked);
      windows::RequirePointer(delayAvailable);
      bool blocked = *bypassBlocked != VARIANT_FALSE;
      bool available = *delayAvailable != VARIANT_FALSE;
      settings_->Load(first, blocked, available);
      *bypassBlocked = windows::ToVariantBool(blocked);
      *delayAvailable = windows::ToVariantBool(available);
    });
  }

  STDMETHODIMP CanWrite(LONG* argument, VARIANT_BOOL* answer) override {
    return Run([&] {
      windows::RequirePointer(argument);
      windows::RequirePointer(answer);
      int32_t passed = *argument;
      *answer = windows::ToVariantBool(settings_->CanWrite(passed));
      *argument = passed;
    });
  }

  STDMETHODIMP FindFolderSet(BSTR entryID, BSTR storeID, IDispatch* context, VARIANT* answer) override {
    return Run([&] {
      windows::RequirePointer(answer);
      VariantInit(answer);
      windows::ToVariant(
          settings_->FindFolderSet(windows::TextOf(entryID), windows::TextOf(storeID), ObjectBehind(context)),
          *answer);
    });
  }

 private:
  ExportsRef exports_;
  RegSettingsRef settings_;
};

}  // namespace

windows::ComPtr<IRegSettings> Exports::Export(const RegSettingsRef& settings) {
  if (settings == nullptr) return nullptr;
  return MakeObject<IRegSettings, SettingsObject>(shared_from_this(), settings);
}

windows::ComPtr<IRegSettings> Exports::NewRegSettings() {
  return Export(workbench_.Objects().CreateRegSettings());
}

}  // namespace vexa::workbench
