#include "windows/desktop/WindowsDesktop.h"

#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>

#include "core/Error.h"
#include "windows/com/Com.h"
#include "windows/com/Text.h"
#include "windows/desktop/FocusKeeper.h"

namespace vexa::windows {
namespace {

UINT IconStyle(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::None:
      return 0;
    case MessageIcon::Critical:
      return MB_ICONERROR;
    case MessageIcon::Question:
      return MB_ICONQUESTION;
    case MessageIcon::Exclamation:
      return MB_ICONWARNING;
    case MessageIcon::Information:
      return MB_ICONINFORMATION;
  }
  return 0;
}

UINT ButtonStyle(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok:
      return MB_OK;
    case MessageButtons::OkCancel:
      return MB_OKCANCEL;
    case MessageButtons::YesNo:
      return MB_YESNO;
    case MessageButtons::YesNoCancel:
      return MB_YESNOCANCEL;
  }
  return MB_OK;
}

/// The answer that changes least.
MessageAnswer Refusal(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok:
      return MessageAnswer::Ok;
    case MessageButtons::YesNo:
      return MessageAnswer::No;
    case MessageButtons::OkCancel:
    case MessageButtons::YesNoCancel:
      break;
  }
  return MessageAnswer::Cancel;
}

/// Error 5 for what the system did not do, with its reason.
[[noreturn]] void ThrowRefused() {
  Error error = MakeError(ErrorNumber::InvalidProcedureCall);
  error.LastDLLError = static_cast<int32_t>(GetLastError());
  throw error;
}

/// What the shell hands over to be freed.
template <typename Memory>
class ShellMemory {
 public:
  explicit ShellMemory(Memory* memory) : memory_(memory) {}
  ShellMemory(const ShellMemory&) = delete;
  ShellMemory& operator=(const ShellMemory&) = delete;
  ~ShellMemory() { CoTaskMemFree(memory_); }
  Memory* Get() const { return memory_; }

 private:
  Memory* memory_;
};

/// One opening of the folder browser.
struct Browsing {
  std::wstring startFolder;
  bool shown = false;
};

int CALLBACK OnBrowsing(HWND window, UINT message, LPARAM, LPARAM data) {
  if (message != BFFM_INITIALIZED) return 0;
  auto& browsing = *reinterpret_cast<Browsing*>(data);
  browsing.shown = true;
  SendMessageW(window, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(browsing.startFolder.c_str()));
  return 0;
}

class FileHandle {
 public:
  explicit FileHandle(HANDLE handle) : handle_(handle) {}
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;
  ~FileHandle() {
    if (IsOpen()) CloseHandle(handle_);
  }
  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle_; }

 private:
  HANDLE handle_;
};

}  // namespace

MessageAnswer WindowsDesktop::Show(const std::string& text, MessageIcon icon, MessageButtons buttons,
                                   const std::string& title) {
  const FocusKeeper focus;
  const HWND owner = GetActiveWindow();
  const int pressed = MessageBoxW(owner, ToUtf16(text).c_str(), ToUtf16(title).c_str(),
                                  IconStyle(icon) | ButtonStyle(buttons));
  switch (pressed) {
    case IDOK:
      return MessageAnswer::Ok;
    case IDCANCEL:
      return buttons == MessageButtons::Ok ? MessageAnswer::Ok : MessageAnswer::Cancel;
    case IDYES:
      return MessageAnswer::Yes;
    case IDNO:
      return MessageAnswer::No;
    default:
      // The box has gone with the window that it belonged to: nobody has agreed to anything.
      if (owner != nullptr && IsWindow(owner) == FALSE) return Refusal(buttons);
      ThrowRefused();
  }
}

int32_t WindowsDesktop::ShellExecuteOpen(const std::string& path) {
  std::wstring place = ToUtf16(path);
  if (path.find_first_of("\\/:") == std::string::npos) {
    // One of the system's programs. The shell would take one of that name from the current folder, too.
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetSystemDirectoryW(folder.data(), MAX_PATH));
    place = folder + L"\\" + place;
  }
  const HINSTANCE code =
      ShellExecuteW(GetDesktopWindow(), L"Open", place.c_str(), L"", L"C:\\", SW_SHOWNORMAL);
  return static_cast<int32_t>(reinterpret_cast<INT_PTR>(code));
}

std::optional<std::string> WindowsDesktop::BrowseForFolder(const std::string& prompt,
                                                           const std::string& startFolder) {
  const std::wstring title = ToUtf16(prompt);
  Browsing browsing{ToUtf16(startFolder)};
  std::ranges::replace(browsing.startFolder, L'/', L'\\');  // the shell knows no other separator
  BROWSEINFOW info{};
  info.hwndOwner = GetActiveWindow();
  info.lpszTitle = title.c_str();
  info.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
  info.lpfn = OnBrowsing;
  info.lParam = reinterpret_cast<LPARAM>(&browsing);
  const FocusKeeper focus;
  const ShellMemory chosen(SHBrowseForFolderW(&info));
  if (chosen.Get() == nullptr) {
    // The same comes back from a dialog that was cancelled and from one that never came up.
    if (!browsing.shown) ThrowRefused();
    return std::nullopt;
  }
  wchar_t* path = nullptr;
  Check(SHGetNameFromIDList(chosen.Get(), SIGDN_FILESYSPATH, &path));
  const ShellMemory owned(path);
  return ToUtf8(owned.Get());
}

std::string WindowsDesktop::LowerCase(const std::string& text) {
  const std::wstring source = ToUtf16(text);
  if (source.empty()) return {};
  const auto length = static_cast<int>(source.size());
  std::wstring lower(source.size(), L'\0');  // simple mappings: as long as the text
  if (LCMapStringEx(LOCALE_NAME_USER_DEFAULT, LCMAP_LOWERCASE, source.c_str(), length, lower.data(), length,
                    nullptr, nullptr, 0) == 0) {
    ThrowRefused();
  }
  return ToUtf8(lower);
}

ModuleResources::ModuleResources(HMODULE module, LANGID language) : module_(module) {
  constexpr LANGID english = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
  const auto has = [&](LANGID candidate) {
    return FindResourceExW(module_, MAKEINTRESOURCEW(6) /* RT_STRING */, MAKEINTRESOURCEW(1), candidate) !=
           nullptr;
  };
  language_ = english;
  // A neutral language would be taken for the user's by the look-up.
  if (PRIMARYLANGID(language) == LANG_NEUTRAL) return;
  if (has(language)) {
    language_ = language;
    return;
  }
  for (WORD sublanguage = 1; sublanguage < 64; ++sublanguage) {
    const LANGID related = MAKELANGID(PRIMARYLANGID(language), sublanguage);
    if (has(related)) {
      language_ = related;
      return;
    }
  }
}

const TableText* ModuleResources::FindString(int32_t id, MadeText& made) const {
  constexpr int32_t blockSize = 16;
  if (id < 0 || id > 0xFFFF) return nullptr;
  const HRSRC block = FindResourceExW(module_, MAKEINTRESOURCEW(6) /* RT_STRING */,
                                      MAKEINTRESOURCEW(id / blockSize + 1), language_);
  if (block == nullptr) return nullptr;
  const HGLOBAL loaded = LoadResource(module_, block);
  const auto* entry = static_cast<const wchar_t*>(LockResource(loaded));
  if (entry == nullptr) return nullptr;
  // Sixteen texts one behind the other, each after its length.
  for (int32_t skipped = 0; skipped < id % blockSize; ++skipped) entry += 1 + *entry;
  if (*entry == 0) return nullptr;
  return made.Make(ToUtf8({entry + 1, *entry}));
}

bool ModuleResources::HasIcon(int32_t id) const { return Has(14 /* RT_GROUP_ICON */, id); }

bool ModuleResources::HasCursor(int32_t id) const { return Has(12 /* RT_GROUP_CURSOR */, id); }

bool ModuleResources::Has(WORD type, int32_t id) const {
  if (id <= 0 || id > UINT16_MAX) return false;  // MAKEINTRESOURCE would make another number of it
  return FindResourceW(module_, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(type)) != nullptr;
}

namespace {

/// Whether a file is empty or its last line is whole; so is one that cannot be read.
bool EndsWithLine(HANDLE file) {
  LARGE_INTEGER size{};
  if (GetFileSizeEx(file, &size) == FALSE || size.QuadPart == 0) return true;
  OVERLAPPED at{};
  at.Offset = static_cast<DWORD>((size.QuadPart - 1) & 0xFFFFFFFF);
  at.OffsetHigh = static_cast<DWORD>((size.QuadPart - 1) >> 32);
  char last = '\n';
  DWORD count = 0;
  return ReadFile(file, &last, 1, &count, &at) == FALSE || count == 0 || last == '\n';
}

}  // namespace

void WindowsFileAppender::Append(const std::string& path, std::string_view text) {
  const FileHandle file(CreateFileW(FilePath(path).c_str(), FILE_APPEND_DATA | FILE_READ_DATA | SYNCHRONIZE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  const auto fail = [&] {
    Error error = MakeError(ErrorNumber::PathFileAccess);
    error.LastDLLError = static_cast<int32_t>(GetLastError());
    throw error;
  };
  if (!file.IsOpen()) fail();
  OVERLAPPED range{};
  if (LockFileEx(file.Get(), LOCKFILE_EXCLUSIVE_LOCK, 0, MAXDWORD, MAXDWORD, &range) == FALSE) fail();
  const std::string line = (EndsWithLine(file.Get()) ? "" : "\n") + std::string(text);
  DWORD written = 0;
  const bool whole =
      WriteFile(file.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr) != FALSE &&
      written == line.size() && FlushFileBuffers(file.Get()) != FALSE;
  UnlockFileEx(file.Get(), 0, MAXDWORD, MAXDWORD, &range);
  if (!whole) fail();
}

std::string UtcNow() {
  SYSTEMTIME now{};
  GetSystemTime(&now);
  const auto twoDigits = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return std::to_string(now.wYear) + "-" + twoDigits(now.wMonth) + "-" + twoDigits(now.wDay) + "T" +
         twoDigits(now.wHour) + ":" + twoDigits(now.wMinute) + ":" + twoDigits(now.wSecond) + "Z";
}

}  // namespace vexa::windows
