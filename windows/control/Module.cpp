// The five functions that the module exports, and its class factory.
#include "windows/control/Module.h"

#include <atomic>

#include "VexaControls.h"
#include "windows/com/ServerObject.h"
#include "windows/control/PageControl.h"
#include "windows/desktop/WindowsDesktop.h"

namespace vexa::windows {
namespace {

HMODULE moduleHandle = nullptr;
std::atomic<LONG> serverLocks = 0;

class PageFactory final : public ServerObject<IClassFactory> {
 public:
  PageFactory() : ServerObject(nullptr) {}

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    HRESULT found = E_FAIL;
    const HRESULT made = Guarded(IID_IClassFactory, [&] {
      const ComPtr<IUnknown> page = PageControl::Create();
      found = page->QueryInterface(interfaceId, object);
    });
    return FAILED(made) ? made : found;
  }
  STDMETHODIMP LockServer(BOOL lock) override {
    serverLocks += lock != FALSE ? 1 : -1;
    return S_OK;
  }
};

/// Once used, the module stays for as long as the process: the compiler's runtime takes a thread-local slot
/// when the first error is thrown and gives it back never, and a process has little more than a thousand of
/// them.
void StayLoaded() {
  HMODULE self = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<LPCWSTR>(&StayLoaded), &self);
}

}  // namespace

HMODULE ModuleHandle() { return moduleHandle; }

std::wstring ModulePath() {
  std::wstring path = FileOf(moduleHandle);
  if (path.empty()) Check(HRESULT_FROM_WIN32(GetLastError()));
  return path;
}

bool IsModuleUsed() { return LivingObjects::Count() != 0 || serverLocks != 0; }

ComPtr<ITypeLib> LoadModuleTypeLib(int number) {
  ComPtr<ITypeLib> library;
  const std::wstring place = ModulePath() + L"\\" + std::to_wstring(number);
  Check(LoadTypeLibEx(place.c_str(), REGKIND_NONE, library.Receive()));
  return library;
}

}  // namespace vexa::windows

using vexa::windows::Guarded;
using vexa::windows::RegistrationScope;

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    vexa::windows::moduleHandle = module;
    DisableThreadLibraryCalls(module);
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (classId != CLSID_OutlookPropertiesPage) return CLASS_E_CLASSNOTAVAILABLE;
  vexa::windows::StayLoaded();
  HRESULT found = E_FAIL;
  const HRESULT made = Guarded(IID_IClassFactory, [&] {
    const auto factory = vexa::windows::MakeObject<IClassFactory, vexa::windows::PageFactory>();
    found = factory->QueryInterface(interfaceId, object);
  });
  return FAILED(made) ? made : found;
}

STDAPI DllCanUnloadNow() { return vexa::windows::IsModuleUsed() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() {
  return Guarded(IID_NULL, [] { vexa::windows::RegisterModule(RegistrationScope::Machine); });
}

STDAPI DllUnregisterServer() {
  return Guarded(IID_NULL, [] { vexa::windows::UnregisterModule(RegistrationScope::Machine); });
}

/// regsvr32 /n /i:user registers for the current user, /i alone per machine.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
  const bool user = commandLine != nullptr && _wcsicmp(commandLine, L"user") == 0;
  if (!user && commandLine != nullptr && *commandLine != L'\0') return E_INVALIDARG;
  const RegistrationScope scope = user ? RegistrationScope::User : RegistrationScope::Machine;
  return Guarded(IID_NULL, [&] {
    if (install != FALSE) {
      vexa::windows::RegisterModule(scope);
    } else {
      vexa::windows::UnregisterModule(scope);
    }
  });
}
