// Where the tests find the module that they test: VexaControls.dll, beside the test program.
#pragma once

#include <windows.h>

#include <array>
#include <string>

namespace vexa::windows {

inline std::wstring TestedModulePath() {
  std::array<wchar_t, 32768> path{};
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  const std::wstring program(path.data(), length);
  return program.substr(0, program.rfind(L'\\') + 1) + L"VexaControls.dll";
}

}  // namespace vexa::windows
