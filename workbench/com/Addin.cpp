// The running add-in and the objects that it hands out.
#include "workbench/Workbench.h"
#include "workbench/com/DualObject.h"
#include "workbench/com/Export.h"

namespace vexa::workbench {
namespace {

using windows::Bstr;
using windows::RequirePointer;
using windows::TextOf;
using windows::ToVariantBool;

/// An object of the add-in: what all of them do to answer a call.
template <typename Interface, typename Contract>
class AddinObject : public DualObject<Interface> {
 public:
  AddinObject(ExportsRef exports, std::shared_ptr<Contract> contract)
      : DualObject<Interface>(contract, exports->Library()),
        exports_(std::move(exports)),
        contract_(std::move(contract)) {}

 protected:
  Exports& TheExports() { return *exports_; }
  Contract& Behind() { return *contract_; }

  /// Calls a member of the contract and passes what it answers; an object as a COM object.
  template <typename Wire, typename Ask>
  HRESULT Answer(Wire* place, Ask&& ask) noexcept {
    return this->Run([&] {
      RequirePointer(place);
      *place = {};
      *place = ask();
    });
  }

 private:
  ExportsRef exports_;
  std::shared_ptr<Contract> contract_;
};

class ApplicationObject final : public AddinObject<IVexaApplication, AddinApplication> {
 public:
  using AddinObject::AddinObject;
  STDMETHODIMP get_Path(BSTR* value) override {
    return Answer(value, [&] { return Bstr(Behind().Path()).Detach(); });
  }
};

class UtilitiesObject final : public AddinObject<IVexaUtilities, Utilities> {
 public:
  using AddinObject::AddinObject;
  STDMETHODIMP get_BypassBlocked(VARIANT_BOOL* value) override {
    return Answer(value, [&] { return ToVariantBool(Behind().BypassBlocked()); });
  }
  STDMETHODIMP get_DelayAvailable(VARIANT_BOOL* value) override {
    return Answer(value, [&] { return ToVariantBool(Behind().DelayAvailable()); });
  }
  STDMETHODIMP GetFolderPath(IDispatch* folder, BSTR* path) override {
    return Answer(path,
                  [&] { return Bstr(Behind().GetFolderPath(ContractBehind<Folder>(folder))).Detach(); });
  }
  STDMETHODIMP IsPublicFolder(IDispatch* folder, VARIANT_BOOL* answer) override {
    return Answer(answer,
                  [&] { return ToVariantBool(Behind().IsPublicFolder(ContractBehind<Folder>(folder))); });
  }
  STDMETHODIMP get_App(IVexaApplication** value) override {
    return Answer(value, [&] { return TheExports().Export(Behind().App()).Detach(); });
  }
  STDMETHODIMP SetUserProperty(IDispatch* item, BSTR name, VARIANT value, LONG type,
                               VARIANT_BOOL flag) override {
    return Run([&] {
      Behind().SetUserProperty(ObjectBehind(item), TextOf(name), windows::FromVariant(value), type,
                               flag != VARIANT_FALSE);
    });
  }
  STDMETHODIMP get_AboutInfo(VARIANT* value) override {
    return Answer(value, [&] {
      VARIANT info{};
      windows::ToVariant(Behind().AboutInfo(), info);
      return info;
    });
  }
};

class ScannerObject final : public AddinObject<IVexaScanner, Scanner> {
 public:
  using AddinObject::AddinObject;
  STDMETHODIMP StartSearch(VARIANT_BOOL stopAtScanned) override {
    return Run([&] { Behind().StartSearch(stopAtScanned != VARIANT_FALSE); });
  }
  STDMETHODIMP get_IsScanning(VARIANT_BOOL* value) override {
    return Answer(value, [&] { return ToVariantBool(Behind().IsScanning()); });
  }
};

class MonitoredFolderObject final : public AddinObject<IMonitoredFolder, MonitoredFolder> {
 public:
  using AddinObject::AddinObject;
  STDMETHODIMP get_EntryID(BSTR* value) override {
    return Answer(value, [&] { return Bstr(Behind().GetEntryID()).Detach(); });
  }
  STDMETHODIMP put_EntryID(BSTR value) override {
    return Run([&] { Behind().LetEntryID(TextOf(value)); });
  }
  STDMETHODIMP get_StoreID(BSTR* value) override {
    return Answer(value, [&] { return Bstr(Behind().GetStoreID()).Detach(); });
  }
  STDMETHODIMP put_StoreID(BSTR value) override {
    return Run([&] { Behind().LetStoreID(TextOf(value)); });
  }
  STDMETHODIMP get_ItemTypes(LONG* value) override {
    return Answer(value, [&] { return LONG{Behind().GetItemTypes()}; });
  }
  STDMETHODIMP put_ItemTypes(LONG value) override {
    return Run([&] { Behind().LetItemTypes(value); });
  }
  STDMETHODIMP SetMailDefaults(VARIANT_BOOL flag) override {
    return Run([&] { Behind().SetMailDefaults(flag != VARIANT_FALSE); });
  }
  STDMETHODIMP get_Flag(LONG mask, VARIANT_BOOL* value) override {
    return Answer(value, [&] { return ToVariantBool(Behind().GetFlag(mask)); });
  }
  STDMETHODIMP put_Flag(LONG mask, VARIANT_BOOL value) override {
    return Run([&] { Behind().LetFlag(mask, value != VARIANT_FALSE); });
  }
  STDMETHODIMP MaskFromResId(SHORT resId, LONG* mask) override {
    return Answer(mask, [&] { return LONG{Behind().MaskFromResId(resId)}; });
  }
  STDMETHODIMP ResIdFromMask(LONG mask, SHORT* resId) override {
    return Answer(resId, [&] { return SHORT{Behind().ResIdFromMask(mask)}; });
  }
  STDMETHODIMP MaskFromOlItemType(LONG itemType, LONG* mask) override {
    return Answer(mask, [&] { return LONG{Behind().MaskFromOlItemType(static_cast<ItemType>(itemType))}; });
  }
  STDMETHODIMP get_Excluded(VARIANT_BOOL* value) override {
    return Answer(value, [&] { return ToVariantBool(Behind().Excluded()); });
  }
};

class ConnectObject final : public AddinObject<IVexaAddin, AddinApp> {
 public:
  using AddinObject::AddinObject;
  STDMETHODIMP get_Utilities(IVexaUtilities** value) override {
    return Answer(value, [&] { return TheExports().Export(Behind().Utilities()).Detach(); });
  }
  STDMETHODIMP get_Scanner(IVexaScanner** value) override {
    return Answer(value, [&] { return TheExports().Export(Behind().Scanner()).Detach(); });
  }
  STDMETHODIMP get_Session(IDispatch** value) override {
    return Answer(value, [&] { return TheExports().Export(Behind().Session()).Detach(); });
  }
  STDMETHODIMP get_FolderSetContext(IDispatch** value) override {
    return Answer(value, [&] { return TheExports().ExportOpaque(Behind().FolderSetContext()).Detach(); });
  }
  STDMETHODIMP SetOptionsPageOpen(VARIANT_BOOL* open) override {
    return Run([&] {
      RequirePointer(open);
      bool passed = *open != VARIANT_FALSE;
      Behind().SetOptionsPageOpen(passed);
      *open = ToVariantBool(passed);
    });
  }
  STDMETHODIMP ApplySettings(IRegSettings** settings) override {
    return Run([&] {
      RequirePointer(settings);
      const auto given = ContractBehind<RegSettings>(*settings);
      RegSettingsRef passed = given;
      Behind().ApplySettings(passed);
      if (passed == given) return;
      // By reference: another object stands in its place now.
      const auto former = windows::ComPtr<IRegSettings>::Attach(*settings);
      *settings = TheExports().Export(passed).Detach();
    });
  }
};

}  // namespace

windows::ComPtr<IVexaAddin> Exports::Addin() {
  return MakeObject<IVexaAddin, ConnectObject>(shared_from_this(), workbench_.Addin());
}

windows::ComPtr<IVexaUtilities> Exports::Export(const std::shared_ptr<Utilities>& utilities) {
  if (utilities == nullptr) return nullptr;
  return MakeObject<IVexaUtilities, UtilitiesObject>(shared_from_this(), utilities);
}

windows::ComPtr<IVexaScanner> Exports::Export(const std::shared_ptr<Scanner>& scanner) {
  if (scanner == nullptr) return nullptr;
  return MakeObject<IVexaScanner, ScannerObject>(shared_from_this(), scanner);
}

windows::ComPtr<IVexaApplication> Exports::Export(const std::shared_ptr<AddinApplication>& application) {
  if (application == nullptr) return nullptr;
  return MakeObject<IVexaApplication, ApplicationObject>(shared_from_this(), application);
}

windows::ComPtr<IMonitoredFolder> Exports::Export(const std::shared_ptr<MonitoredFolder>& folder) {
  if (folder == nullptr) return nullptr;
  return MakeObject<IMonitoredFolder, MonitoredFolderObject>(shared_from_this(), folder);
}

windows::ComPtr<IMonitoredFolder> Exports::NewMonitoredFolder() {
  return Export(workbench_.Objects().CreateMonitoredFolder());
}

}  // namespace vexa::workbench
