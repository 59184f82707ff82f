// The add-in's classes, made creatable by name.
#include "windows/com/Text.h"
#include "workbench/com/Export.h"

namespace vexa::workbench {
namespace {

using windows::Check;
using windows::ComPtr;

constexpr CLSID RegSettingsClass{
    0x7A0C3B63, 0x5C1E, 0x4E55, {0x8A, 0x5F, 0x1B, 0x7B, 0x8C, 0x1A, 0x63, 0x10}};
constexpr CLSID MonitoredFolderClass{
    0x7A0C3B64, 0x5C1E, 0x4E55, {0x8A, 0x5F, 0x1B, 0x7B, 0x8C, 0x1A, 0x63, 0x10}};

class ClassFactory final : public ServerObject<IClassFactory> {
 public:
  explicit ClassFactory(Maker maker) : ServerObject(nullptr), maker_(std::move(maker)) {}

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    HRESULT found = E_FAIL;
    const HRESULT made = Run([&] {
      const ComPtr<IUnknown> instance = maker_();
      found = instance ? instance->QueryInterface(interfaceId, object) : S_OK;  // as told: no object
    });
    return FAILED(made) ? made : found;
  }
  STDMETHODIMP LockServer(BOOL /*lock*/) override { return S_OK; }

 private:
  Maker maker_;
};

constexpr const wchar_t* ClassesRoot = L"Software\\Classes";

/// Names a class, for as long as somebody is logged on at most: a key of another kind would outlive a crash.
bool NameClass(HKEY root, const std::wstring& name, const CLSID& id) {
  // Made by itself if need be: below a key that goes with the session none could stay.
  HKEY classes = nullptr;
  if (RegCreateKeyExW(root, ClassesRoot, 0, nullptr, 0, KEY_CREATE_SUB_KEY, nullptr, &classes, nullptr) !=
      ERROR_SUCCESS) {
    return false;
  }
  HKEY key = nullptr;
  const LSTATUS made = RegCreateKeyExW(classes, (name + L"\\CLSID").c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                                       KEY_SET_VALUE, nullptr, &key, nullptr);
  RegCloseKey(classes);
  if (made != ERROR_SUCCESS) return false;
  std::wstring text(39, L'\0');
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  const auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  const LSTATUS written =
      RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), size);
  RegCloseKey(key);
  return written == ERROR_SUCCESS;
}

void UnnameClass(HKEY root, const std::wstring& name) {
  RegDeleteTreeW(root, (std::wstring(ClassesRoot) + L"\\" + name).c_str());
}

}  // namespace

ComPtr<IUnknown> MakeClassFactory(const Maker& maker) {
  return MakeObject<IClassFactory, ClassFactory>(maker).As<IUnknown>();
}

std::shared_ptr<Exports> Exports::Make(Workbench& workbench, const std::wstring& module) {
  ComPtr<ITypeLib> library;
  Check(LoadTypeLibEx(module.c_str(), REGKIND_NONE, library.Receive()));
  return std::shared_ptr<Exports>(new Exports(workbench, std::move(library)));
}

ClassRegistration::ClassRegistration(const ExportsRef& exports) {
  try {
    Add(L"VexaAddin.RegSettings", RegSettingsClass,
        MakeClassFactory([exports] { return exports->NewRegSettings().As<IUnknown>(); }));
    Add(L"VexaAddin.MonitoredFolder", MonitoredFolderClass,
        MakeClassFactory([exports] { return exports->NewMonitoredFolder().As<IUnknown>(); }));
  } catch (...) {
    Revoke();
    throw;
  }
}

ClassRegistration::~ClassRegistration() { Revoke(); }

void ClassRegistration::Add(const wchar_t* name, const CLSID& ownId, const ComPtr<IUnknown>& factory) {
  DWORD number = 0;
  Check(CoRegisterClassObject(FindOrName(name, ownId), factory.Get(), CLSCTX_INPROC_SERVER,
                              REGCLS_MULTIPLEUSE, &number));
  registered_.push_back(number);
}

CLSID ClassRegistration::FindOrName(const wchar_t* name, const CLSID& ownId) {
  CLSID id{};
  if (SUCCEEDED(CLSIDFromProgID(name, &id))) return id;
  // Not every system looks at the user's classes when asked for all of them.
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    if (!NameClass(root, name, ownId)) continue;
    if (SUCCEEDED(CLSIDFromProgID(name, &id))) {
      named_.push_back({root, name});
      return id;
    }
    UnnameClass(root, name);
  }
  Check(CLSIDFromProgID(name, &id));
  return id;
}

void ClassRegistration::Revoke() {
  for (const DWORD number : registered_) CoRevokeClassObject(number);
  registered_.clear();
  for (const Named& own : named_) UnnameClass(own.root, own.name);
  named_.clear();
}

}  // namespace vexa::workbench
