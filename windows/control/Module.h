// The module as a COM server: its handle, its type libraries, its registration.
#pragma once

#include <windows.h>

#include <string>

#include "windows/com/Com.h"

namespace vexa::windows {

HMODULE ModuleHandle();
/// Whether an object lives or a client has locked the server.
bool IsModuleUsed();
std::wstring ModulePath();

/// A type library in the module's resources, by its number: 1 the library's own, 2 Outlook's interfaces.
ComPtr<ITypeLib> LoadModuleTypeLib(int number);

enum class RegistrationScope { Machine, User };
/// Errors carry the code of the registry call that failed.
void RegisterModule(RegistrationScope scope);
void UnregisterModule(RegistrationScope scope);

}  // namespace vexa::windows
