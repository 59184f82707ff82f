#include "windows/views/Handles.h"

#include <string>

#include "core/Error.h"
#include "windows/com/Text.h"

namespace vexa::windows {

void ThrowSystemError(DWORD code, const char* call) {
  wchar_t* message = nullptr;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
      code, 0, reinterpret_cast<wchar_t*>(&message), 0, nullptr);
  std::wstring text(message == nullptr ? L"" : message, length);
  LocalFree(message);
  while (!text.empty() && text.back() <= L' ') text.pop_back();
  Error error = MakeError(ErrorNumber::InternalError);
  error.Description = std::string(call) + " failed: " + ToUtf8(text) + " (" + std::to_string(code) + ")";
  error.LastDLLError = static_cast<int32_t>(code);
  throw error;
}

}  // namespace vexa::windows
