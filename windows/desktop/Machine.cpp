// The machine's part of the desktop: files, registry, versions, who works where, pending messages.
#include <objbase.h>

#include <algorithm>
#include <array>
#include <vector>

#include "core/Error.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "windows/com/Text.h"
#include "windows/desktop/WindowsDesktop.h"

namespace vexa::windows {
namespace {

/// Error 75 for a file or key, with the system's reason.
[[noreturn]] void ThrowNoAccess(LONG code) {
  Error error = MakeError(ErrorNumber::PathFileAccess);
  error.LastDLLError = static_cast<int32_t>(code);
  throw error;
}

void CheckFile(BOOL done) {
  if (done == FALSE) ThrowNoAccess(static_cast<LONG>(GetLastError()));
}

class RegistryKey {
 public:
  RegistryKey() = default;
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;
  ~RegistryKey() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  HKEY Get() const { return key_; }
  LONG Open(RegistryRoot root, const std::wstring& key, REGSAM access) {
    return RegOpenKeyExW(HandleOf(root), key.c_str(), 0, access, &key_);
  }
  LONG Create(RegistryRoot root, const std::wstring& key, REGSAM access) {
    return RegCreateKeyExW(HandleOf(root), key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr,
                           &key_, nullptr);
  }

 private:
  static HKEY HandleOf(RegistryRoot root) {
    return root == RegistryRoot::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
  }
  HKEY key_ = nullptr;
};

/// The file that a command starts, without quotes and arguments.
std::wstring ProgramIn(const std::wstring& command) {
  if (command.starts_with(L'"')) return command.substr(1, command.find(L'"', 1) - 1);
  std::wstring lower = command;
  CharLowerW(lower.data());
  const size_t end = lower.find(L".exe ");
  return end == std::wstring::npos ? command : command.substr(0, end + 4);
}

}  // namespace

std::wstring FileOf(HMODULE module) {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::wstring ServerFileOf(const std::wstring& programId) {
  CLSID classId{};
  std::array<wchar_t, 39> text{};
  if (FAILED(CLSIDFromProgID(programId.c_str(), &classId))) return {};
  StringFromGUID2(classId, text.data(), static_cast<int>(text.size()));
  for (const wchar_t* const kind : {L"InprocServer32", L"LocalServer32"}) {
    const std::wstring key = L"CLSID\\" + std::wstring(text.data()) + L"\\" + kind;
    std::wstring command(32768, L'\0');
    auto size = static_cast<DWORD>(command.size() * sizeof(wchar_t));
    if (RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, command.data(),
                     &size) == ERROR_SUCCESS) {
      command.resize(size / sizeof(wchar_t) - 1);  // without the terminating zero
      return ProgramIn(command);
    }
  }
  return {};
}

std::wstring FilePath(const std::string& path) {
  constexpr size_t longest = MAX_PATH - 12;
  std::wstring wide = ToUtf16(path);
  if (wide.size() < longest || wide.starts_with(L"\\\\?\\")) return wide;
  std::ranges::replace(wide, L'/', L'\\');  // no longer understood behind the prefix
  if (wide.starts_with(L"\\\\")) return L"\\\\?\\UNC" + wide.substr(1);
  return wide.size() > 1 && wide[1] == L':' ? L"\\\\?\\" + wide : wide;
}

bool WindowsDesktop::FileExists(const std::string& path) {
  const std::wstring name = ToUtf16(FileNamePart(path));
  if (name.empty() || path.find_first_of("*?") != std::string::npos) return false;
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW(FilePath(path).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  FindClose(search);
  // A file is also found by its short name, and by its name with a point behind it.
  return (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
         CompareStringOrdinal(found.cFileName, -1, name.c_str(), -1, TRUE) == CSTR_EQUAL;
}

void WindowsDesktop::CopyFileTo(const std::string& from, const std::string& to) {
  const std::wstring source = FilePath(from);
  const std::wstring target = FilePath(to);
  BOOL copied = CopyFileW(source.c_str(), target.c_str(), TRUE);
  if (copied == FALSE && GetLastError() == ERROR_FILE_EXISTS) {
    // What lies there is replaced, never written into: it might be a link to somewhere else.
    DeleteFileW(target.c_str());
    copied = CopyFileW(source.c_str(), target.c_str(), TRUE);
  }
  CheckFile(copied);
}

void WindowsDesktop::RemoveFile(const std::string& path) { CheckFile(DeleteFileW(FilePath(path).c_str())); }

std::string WindowsDesktop::UserName() {
  std::array<wchar_t, 257> name{};  // UNLEN and the terminating zero
  DWORD length = name.size();
  CheckFile(GetUserNameW(name.data(), &length));
  return ToUtf8(name.data());
}

std::string WindowsDesktop::ComputerName() {
  std::array<wchar_t, 257> name{};
  DWORD length = name.size();
  CheckFile(GetComputerNameW(name.data(), &length));
  return ToUtf8(name.data());
}

void WindowsDesktop::ProcessPendingMessages() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    if (message.message == WM_QUIT) {
      // Meant for the loop outside.
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

std::optional<Variant> WindowsDesktop::ReadRegistry(RegistryRoot root, const std::string& key,
                                                    const std::string& name) {
  const auto isMissing = [](LONG code) {
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
  };
  RegistryKey opened;
  LONG code = opened.Open(root, ToUtf16(key), KEY_QUERY_VALUE);
  if (isMissing(code)) return std::nullopt;
  if (code != ERROR_SUCCESS) ThrowNoAccess(code);
  const std::wstring valueName = ToUtf16(name);
  DWORD type = 0;
  DWORD size = 0;
  std::vector<wchar_t> data;
  do {
    // The value may grow between the two questions.
    code = RegQueryValueExW(opened.Get(), valueName.c_str(), nullptr, &type, nullptr, &size);
    if (isMissing(code)) return std::nullopt;
    if (code != ERROR_SUCCESS) ThrowNoAccess(code);
    data.assign(size / sizeof(wchar_t) + 2, L'\0');  // texts need not end with a zero
    size = static_cast<DWORD>((data.size() - 1) * sizeof(wchar_t));
    code = RegQueryValueExW(opened.Get(), valueName.c_str(), nullptr, &type,
                            reinterpret_cast<BYTE*>(data.data()), &size);
  } while (code == ERROR_MORE_DATA);
  if (code != ERROR_SUCCESS) ThrowNoAccess(code);
  if (type == REG_SZ || type == REG_EXPAND_SZ) return Variant(ToUtf8(data.data()));
  if (type != REG_DWORD || size != sizeof(DWORD)) throw MakeError(ErrorNumber::TypeMismatch);
  DWORD number = 0;
  memcpy(&number, data.data(), sizeof(number));
  return Variant(static_cast<int32_t>(number));
}

void WindowsDesktop::WriteRegistry(RegistryRoot root, const std::string& key, const std::string& name,
                                   const Variant& value) {
  DWORD type = 0;
  std::vector<BYTE> data;
  const auto take = [&](DWORD valueType, const void* bytes, size_t size) {
    type = valueType;
    const auto* first = static_cast<const BYTE*>(bytes);
    data.assign(first, first + size);
  };
  value.Visit([&](const auto& held) {
    using Held = std::decay_t<decltype(held)>;
    if constexpr (std::is_same_v<Held, std::string>) {
      const std::wstring text = ToUtf16(held);
      take(REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    } else if constexpr (std::is_same_v<Held, int64_t>) {
      const int32_t number = ToInt32(static_cast<double>(held));
      take(REG_DWORD, &number, sizeof(number));
    } else {
      throw MakeError(ErrorNumber::TypeMismatch);
    }
  });
  RegistryKey opened;
  LONG code = opened.Create(root, ToUtf16(key), KEY_SET_VALUE);
  if (code == ERROR_SUCCESS) {
    code = RegSetValueExW(opened.Get(), ToUtf16(name).c_str(), 0, type, data.data(),
                          static_cast<DWORD>(data.size()));
  }
  if (code != ERROR_SUCCESS) ThrowNoAccess(code);
}

bool WindowsDesktop::CanWriteRegistry(RegistryRoot root, const std::string& key) {
  std::wstring path = ToUtf16(key);
  REGSAM access = KEY_SET_VALUE;
  for (;;) {
    RegistryKey opened;
    const LONG code = opened.Open(root, path, access);
    if (code != ERROR_FILE_NOT_FOUND || path.empty()) return code == ERROR_SUCCESS;
    // The key is missing: then the one above it must let it be made.
    const size_t end = path.rfind(L'\\');
    path.resize(end == std::wstring::npos ? 0 : end);
    access = KEY_CREATE_SUB_KEY;
  }
}

std::optional<std::string> WindowsDesktop::FileVersion(const std::string& path) {
  const std::wstring file = FilePath(path);
  DWORD unused = 0;
  const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &unused);
  if (size == 0) return std::nullopt;
  std::vector<BYTE> data(size);
  void* block = nullptr;
  UINT length = 0;
  if (GetFileVersionInfoW(file.c_str(), 0, size, data.data()) == FALSE ||
      VerQueryValueW(data.data(), L"\\", &block, &length) == FALSE || length < sizeof(VS_FIXEDFILEINFO)) {
    return std::nullopt;
  }
  const auto* info = static_cast<const VS_FIXEDFILEINFO*>(block);
  const auto part = [](DWORD value) { return std::to_string(value); };
  return part(HIWORD(info->dwFileVersionMS)) + "." + part(LOWORD(info->dwFileVersionMS)) + "." +
         part(HIWORD(info->dwFileVersionLS)) + "." + part(LOWORD(info->dwFileVersionLS));
}

}  // namespace vexa::windows
