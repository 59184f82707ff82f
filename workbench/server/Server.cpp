// VexaWorkbench.dll: the workbench's add-in as a COM server, for clients that create it by name. All of a
// process work on one workbench, over the profile that the environment variable VEXA_PROFILE names; Apply
// saves it there. It registers itself per machine with regsvr32.
#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "windows/com/Text.h"
#include "workbench/Workbench.h"
#include "workbench/com/Export.h"

namespace vexa::workbench {
namespace {

using windows::Check;
using windows::ComPtr;
using windows::Guarded;

HMODULE serverModule = nullptr;

std::wstring ServerPath() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(serverModule, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

std::string ProfilePath() {
  std::wstring path(32768, L'\0');
  path.resize(GetEnvironmentVariableW(L"VEXA_PROFILE", path.data(), static_cast<DWORD>(path.size())));
  if (path.empty()) {
    throw Error(static_cast<int32_t>(ErrorNumber::PathFileAccess),
                "VEXA_PROFILE names no profile; right would be the path of one", "VexaWorkbench");
  }
  return windows::ToUtf8(path);
}

/// Nobody sits in front of a server: what would be asked is cancelled.
class NobodysAnswers final : public UserAnswers {
 public:
  std::optional<FolderIndex> PickFolder() override { return std::nullopt; }
  MessageAnswer AnswerMessage(const std::string&, MessageButtons) override { return MessageAnswer::Ok; }
  BrowseAnswer BrowseForFolder(const std::string&, const std::string&) override { return {}; }
  int32_t OpenDocument(const std::string&) override { return 0; }
  void Seen(const std::string&) override {}
};

struct Server {
  explicit Server(const std::string& path)
      : workbench(ReadProfile(path), path, calls, user),
        exports(Exports::Make(workbench,
                              ServerPath().substr(0, ServerPath().rfind(L'\\') + 1) + L"VexaControls.dll")) {
    calls.SetRecording(false);
  }

  CallLog calls;
  NobodysAnswers user;
  Workbench workbench;
  ExportsRef exports;
};

/// Ended with the last object, when the module is about to be unloaded; not by the end of the process, when
/// COM has gone already.
Server* server = nullptr;

Exports& TheExports() {
  if (server == nullptr) {
    try {
      server = new Server(ProfilePath());
    } catch (const ProfileError& error) {
      throw Error(static_cast<int32_t>(ErrorNumber::PathFileAccess), error.what(), "VexaWorkbench");
    }
  }
  return *server->exports;
}

struct ServedClass {
  const wchar_t* progId;
  const wchar_t* classId;
  ComPtr<IUnknown> (*make)();
};

constexpr auto Classes = std::to_array<ServedClass>({
    {L"VexaAddin.Connect", L"{7A0C3B62-5C1E-4E55-8A5F-1B7B8C1A6310}",
     [] { return TheExports().Addin().As<IUnknown>(); }},
    {L"VexaAddin.RegSettings", L"{7A0C3B63-5C1E-4E55-8A5F-1B7B8C1A6310}",
     [] { return TheExports().NewRegSettings().As<IUnknown>(); }},
    {L"VexaAddin.MonitoredFolder", L"{7A0C3B64-5C1E-4E55-8A5F-1B7B8C1A6310}",
     [] { return TheExports().NewMonitoredFolder().As<IUnknown>(); }},
});

void SetKey(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  Check(HRESULT_FROM_WIN32(static_cast<DWORD>(RegSetKeyValueW(
      HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + key).c_str(), name, REG_SZ, value.c_str(), size))));
}

void DeleteKey(const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + key).c_str());
  if (status != ERROR_FILE_NOT_FOUND) Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

void Register() {
  for (const ServedClass& served : Classes) {
    const std::wstring key = std::wstring(L"CLSID\\") + served.classId;
    SetKey(std::wstring(served.progId) + L"\\CLSID", nullptr, served.classId);
    SetKey(key, nullptr, served.progId);
    SetKey(key + L"\\ProgID", nullptr, served.progId);
    SetKey(key + L"\\InprocServer32", nullptr, ServerPath());
    SetKey(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  }
}

void Unregister() {
  for (const ServedClass& served : Classes) {
    DeleteKey(served.progId);
    DeleteKey(std::wstring(L"CLSID\\") + served.classId);
  }
}

}  // namespace
}  // namespace vexa::workbench

using namespace vexa::workbench;

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    serverModule = module;
    DisableThreadLibraryCalls(module);
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  HRESULT found = CLASS_E_CLASSNOTAVAILABLE;
  const HRESULT made = Guarded(IID_IClassFactory, [&] {
    for (const ServedClass& served : Classes) {
      CLSID id{};
      Check(CLSIDFromString(served.classId, &id));
      if (id == classId) found = MakeClassFactory(served.make)->QueryInterface(interfaceId, object);
    }
  });
  return FAILED(made) ? made : found;
}

STDAPI DllCanUnloadNow() {
  if (LivingObjects::Count() != 0) return S_FALSE;
  delete std::exchange(server, nullptr);
  return S_OK;
}

STDAPI DllRegisterServer() { return Guarded(IID_NULL, Register); }
STDAPI DllUnregisterServer() { return Guarded(IID_NULL, Unregister); }
