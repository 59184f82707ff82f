// The module as a COM server: its handle, the count of what keeps it loaded, its registration.
#pragma once

#include <windows.h>

#include <string>

#include "windows/com/Com.h"

namespace vexa::windows {

HMODULE ModuleHandle();
std::wstring ModulePath();

/// Counted for every living object and every lock of the server.
class ModuleUse {
 public:
  ModuleUse();
  ModuleUse(const ModuleUse&) = delete;
  ModuleUse& operator=(const ModuleUse&) = delete;
  ~ModuleUse();
  static LONG Count();
};

/// A type library in the module's resources, by its number: 1 the library's own, 2 Outlook's interfaces.
ComPtr<ITypeLib> LoadModuleTypeLib(int number);

enum class RegistrationScope { Machine, User };
/// Errors carry the code of the registry call that failed.
void RegisterModule(RegistrationScope scope);
void UnregisterModule(RegistrationScope scope);

}  // namespace vexa::windows
