// What the module writes into the registry, per machine or per user, as one table of keys: registering
// writes it, unregistering deletes it again and nothing else. Outlook's own interfaces never appear here.
#include <array>
#include <string>
#include <vector>

#include "VexaControls.h"
#include "windows/com/Text.h"
#include "windows/control/Module.h"

namespace vexa::windows {
namespace {

constexpr const wchar_t* ProgId = L"VexaControls.OutlookPropertiesPage";
constexpr const wchar_t* ControlName = L"Vexa options page";
constexpr const wchar_t* TypeLibName = L"VexaControls 3.0";
constexpr const wchar_t* TypeLibVersion = L"3.0";
// Recomposes on resize, cannot link inside, inside out, activates when visible, sets its client site first.
constexpr const wchar_t* MiscStatus = L"131473";
constexpr const wchar_t* AutomationMarshaler = L"{00020424-0000-0000-C000-000000000046}";

std::wstring GuidText(const GUID& guid) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
  return text.data();
}

struct Value {
  std::wstring key;  // below Software\Classes
  const wchar_t* name;
  std::wstring text;
};

GUID TypeLibId() {
  const ComPtr<ITypeLib> library = LoadModuleTypeLib(1);
  TLIBATTR* attributes = nullptr;
  Check(library->GetLibAttr(&attributes));
  const GUID id = attributes->guid;
  library->ReleaseTLibAttr(attributes);
  return id;
}

struct Interface {
  const wchar_t* name;
  GUID id;
};

std::vector<Interface> OwnInterfaces() {
  return {{L"IOutlookPropertiesPage", __uuidof(IOutlookPropertiesPage)},
          {L"IRegSettings", __uuidof(IRegSettings)},
          {L"IVexaAddin", __uuidof(IVexaAddin)},
          {L"IVexaApplication", __uuidof(IVexaApplication)},
          {L"IVexaUtilities", __uuidof(IVexaUtilities)},
          {L"IVexaScanner", __uuidof(IVexaScanner)},
          {L"IMonitoredFolder", __uuidof(IMonitoredFolder)}};
}

/// Every value, and the keys that go with them when they are deleted: a root stands for all below it.
struct Registration {
  std::vector<Value> values;
  std::vector<std::wstring> roots;
};

Registration MakeRegistration() {
  const std::wstring module = ModulePath();
  const std::wstring classId = GuidText(CLSID_OutlookPropertiesPage);
  const std::wstring libraryId = GuidText(TypeLibId());
  const std::wstring classKey = L"CLSID\\" + classId;
  const std::wstring libraryKey = L"TypeLib\\" + libraryId;
  const std::wstring versionKey = libraryKey + L"\\" + TypeLibVersion;
  const std::wstring folder = module.substr(0, module.rfind(L'\\'));
  Registration registration{
      {{ProgId, nullptr, ControlName},
       {std::wstring(ProgId) + L"\\CLSID", nullptr, classId},
       {classKey, nullptr, ControlName},
       {classKey + L"\\InprocServer32", nullptr, module},
       {classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
       {classKey + L"\\ProgID", nullptr, ProgId},
       {classKey + L"\\TypeLib", nullptr, libraryId},
       {classKey + L"\\Version", nullptr, TypeLibVersion},
       {classKey + L"\\Control", nullptr, L""},
       {classKey + L"\\MiscStatus", nullptr, L"0"},
       {classKey + L"\\MiscStatus\\1", nullptr, MiscStatus},
       {versionKey, nullptr, TypeLibName},
       {versionKey + (sizeof(void*) == 8 ? L"\\0\\win64" : L"\\0\\win32"), nullptr, module},
       {versionKey + L"\\FLAGS", nullptr, L"0"},
       {versionKey + L"\\HELPDIR", nullptr, folder}},
      {ProgId, classKey, libraryKey}};
  for (const Interface& own : OwnInterfaces()) {
    const std::wstring key = L"Interface\\" + GuidText(own.id);
    registration.values.push_back({key, nullptr, own.name});
    registration.values.push_back({key + L"\\ProxyStubClsid32", nullptr, AutomationMarshaler});
    registration.values.push_back({key + L"\\TypeLib", nullptr, libraryId});
    registration.values.push_back({key + L"\\TypeLib", L"Version", TypeLibVersion});
    registration.roots.push_back(key);
  }
  return registration;
}

HKEY RootOf(RegistrationScope scope) {
  return scope == RegistrationScope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring ClassesKey(const std::wstring& key) { return L"Software\\Classes\\" + key; }

void CheckRegistry(LSTATUS status) { Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status))); }

}  // namespace

void RegisterModule(RegistrationScope scope) {
  for (const Value& value : MakeRegistration().values) {
    const auto size = static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t));
    CheckRegistry(RegSetKeyValueW(RootOf(scope), ClassesKey(value.key).c_str(), value.name, REG_SZ,
                                  value.text.c_str(), size));
  }
}

void UnregisterModule(RegistrationScope scope) {
  for (const std::wstring& root : MakeRegistration().roots) {
    const LSTATUS status = RegDeleteTreeW(RootOf(scope), ClassesKey(root).c_str());
    if (status != ERROR_FILE_NOT_FOUND) CheckRegistry(status);
  }
}

}  // namespace vexa::windows
