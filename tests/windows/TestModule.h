// Where the tests find the module that they test: VexaControls.dll, beside the test program; or the one that
// an installer has put elsewhere and registered, which VEXA_INSTALLED_MODULE names.
#pragma once

#include <windows.h>

#include <array>
#include <cstdlib>
#include <string>

namespace vexa::windows {

/// Empty when none is installed.
inline std::wstring InstalledModulePath() {
  const wchar_t* const path = _wgetenv(L"VEXA_INSTALLED_MODULE");
  return path == nullptr ? L"" : path;
}

inline std::wstring TestedModulePath() {
  if (const std::wstring installed = InstalledModulePath(); !installed.empty()) return installed;
  std::array<wchar_t, 32768> path{};
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  const std::wstring program(path.data(), length);
  return program.substr(0, program.rfind(L'\\') + 1) + L"VexaControls.dll";
}

}  // namespace vexa::windows
