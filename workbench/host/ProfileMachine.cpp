#include "workbench/host/ProfileMachine.h"

#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <filesystem>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "windows/com/Text.h"
#include "windows/views/Handles.h"
#include "workbench/host/UiThread.h"

namespace vexa::workbench {
namespace {

using windows::ToUtf16;
using windows::ToUtf8;

/// The scene of the one machine there is.
Stage* stage = nullptr;

/// Notes a call, which fails with `code` when a failure of it is planned.
template <typename MakeLine>
bool Enters(const char* member, CallLog::Kind kind, DWORD code, MakeLine makeLine) {
  try {
    stage->calls.Enter(member, kind, makeLine);
    return true;
  } catch (...) {
    SetLastError(code);
    return false;
  }
}

/// A path as it was before the prefix for long ones.
std::string ProfilePathOf(std::wstring_view path) {
  constexpr std::wstring_view share = L"\\\\?\\UNC\\";
  constexpr std::wstring_view drive = L"\\\\?\\";
  if (path.starts_with(share)) return "\\\\" + ToUtf8(path.substr(share.size()));
  return ToUtf8(path.starts_with(drive) ? path.substr(drive.size()) : path);
}

/// Where the profile keeps a path; empty when it is nowhere.
std::wstring PlaceOf(const std::string& path) { return ToUtf16(stage->files.PlaceOf(path)); }

// --- files

HANDLE WINAPI FindFirst(LPCWSTR path, WIN32_FIND_DATAW* found) {
  const std::string wanted = ProfilePathOf(path);
  const auto line = [&] { return "Files.Exists(" + QuotedText(wanted) + ")"; };
  if (!Enters("Files.Exists", CallLog::Kind::Read, ERROR_NOT_READY, line)) return INVALID_HANDLE_VALUE;
  return FindFirstFileW(PlaceOf(wanted).c_str(), found);
}

BOOL WINAPI Copy(LPCWSTR from, LPCWSTR to, BOOL keepExisting) {
  const std::string source = ProfilePathOf(from);
  const std::string target = ProfilePathOf(to);
  const auto line = [&] { return "Files.Copy(" + QuotedText(source) + ", " + QuotedText(target) + ")"; };
  if (!Enters("Files.Copy", CallLog::Kind::Action, ERROR_ACCESS_DENIED, line)) return FALSE;
  return CopyFileW(PlaceOf(source).c_str(), PlaceOf(target).c_str(), keepExisting);
}

BOOL WINAPI Remove(LPCWSTR path) {
  const std::string file = ProfilePathOf(path);
  const auto line = [&] { return "Files.Remove(" + QuotedText(file) + ")"; };
  if (!Enters("Files.Remove", CallLog::Kind::Action, ERROR_ACCESS_DENIED, line)) return FALSE;
  return DeleteFileW(PlaceOf(file).c_str());
}

HANDLE WINAPI Create(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD creation,
                     DWORD flags, HANDLE pattern) {
  const std::filesystem::path place(PlaceOf(ProfilePathOf(path)));
  std::error_code ignored;
  std::filesystem::create_directories(place.parent_path(),
                                      ignored);  // the profile's drives have every folder
  return CreateFileW(place.c_str(), access, share, security, creation, flags, pattern);
}

// --- names and rights

BOOL Answer(const char* member, const std::string& name, LPWSTR buffer, DWORD* size, DWORD sizeGiven) {
  if (!Enters(member, CallLog::Kind::Read, ERROR_ACCESS_DENIED, [&] { return std::string(member); }))
    return FALSE;
  const std::wstring wide = ToUtf16(name);
  if (*size <= wide.size()) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return FALSE;
  }
  std::ranges::copy(wide, buffer);
  buffer[wide.size()] = L'\0';
  *size = static_cast<DWORD>(wide.size()) + sizeGiven;
  return TRUE;
}

// What they say of the size counts the terminating zero for a user and not for a computer.
BOOL WINAPI UserName(LPWSTR buffer, DWORD* size) {
  return Answer("Sys.UserName", stage->workbench.profile.machine.userName, buffer, size, 1);
}

BOOL WINAPI MachineName(LPWSTR buffer, DWORD* size) {
  return Answer("Sys.ComputerName", stage->workbench.profile.machine.computerName, buffer, size, 0);
}

/// The key that configures the module, as the profile has it: one of the user's that goes with the session.
LSTATUS OpenConfiguration(HKEY* opened) {
  const std::wstring address = ToUtf16(stage->workbench.profile.machine.supportAddress);
  const auto size = static_cast<DWORD>((address.size() + 1) * sizeof(wchar_t));
  const LSTATUS code =
      RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\VexaHost", 0, nullptr, REG_OPTION_VOLATILE,
                      KEY_QUERY_VALUE | KEY_SET_VALUE, nullptr, opened, nullptr);
  if (code != ERROR_SUCCESS) return code;
  return RegSetValueExW(*opened, L"SupportAddress", 0, REG_SZ, reinterpret_cast<const BYTE*>(address.c_str()),
                        size);
}

LSTATUS WINAPI OpenKey(HKEY root, LPCWSTR key, DWORD options, REGSAM access, HKEY* opened) {
  const bool ofMachine = root == HKEY_LOCAL_MACHINE;
  if (std::wstring_view(key) == L"SOFTWARE\\Tolvane\\Vexa") return OpenConfiguration(opened);
  if ((access & KEY_SET_VALUE) != 0) {
    const std::string path =
        std::string(RegistryRootName(ofMachine ? RegistryRoot::LocalMachine : RegistryRoot::CurrentUser)) +
        "\\" + ToUtf8(key);
    const auto line = [&] { return "Reg.CanWrite(" + QuotedText(path) + ")"; };
    if (!Enters("Reg.CanWrite", CallLog::Kind::Read, ERROR_ACCESS_DENIED, line)) return ERROR_ACCESS_DENIED;
  }
  const bool writes = (access & (KEY_SET_VALUE | KEY_CREATE_SUB_KEY)) != 0;
  if (ofMachine && writes && !stage->workbench.profile.machine.canWriteMachine) return ERROR_ACCESS_DENIED;
  return RegOpenKeyExW(root, key, options, access, opened);
}

LANGID WINAPI Language() { return static_cast<LANGID>(stage->resourceSource.Language()); }

/// A loop over what waits must not take its driver's question whether the windows are quiet: they are not,
/// their thread is still at work.
BOOL WINAPI Peek(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
  std::optional<MSG> question;
  BOOL got = FALSE;
  for (;;) {
    got = PeekMessageW(message, window, first, last, remove);
    if (got == FALSE || !UiThread::IsQuestion(*message)) break;
    question = *message;
  }
  if (question) PostMessageW(question->hwnd, question->message, question->wParam, question->lParam);
  if (got == FALSE) {
    Enters("Sys.ProcessMessages", CallLog::Kind::Action, ERROR_SUCCESS,
           [] { return std::string("Sys.ProcessMessages()"); });
  }
  return got;
}

// --- the shell

/// A program in the system's folder by its name; what comes without a folder is shown to be sought in the
/// current one.
std::string DocumentOf(std::wstring_view file) {
  std::wstring system(MAX_PATH, L'\0');
  system.resize(GetSystemDirectoryW(system.data(), MAX_PATH));
  if (file.starts_with(system + L"\\")) return ToUtf8(file.substr(system.size() + 1));
  return (file.find_first_of(L"\\/:") == std::wstring_view::npos ? ".\\" : "") + ToUtf8(file);
}

HINSTANCE WINAPI OpenDocument(HWND, LPCWSTR, LPCWSTR file, LPCWSTR, LPCWSTR, INT) {
  const std::string path = DocumentOf(file);
  int32_t code = SE_ERR_ACCESSDENIED;
  if (Enters("Shell.Open", CallLog::Kind::Action, ERROR_ACCESS_DENIED,
             [&] { return "Shell.Open(" + QuotedText(path) + ")"; })) {
    code = stage->workbench.User().OpenDocument(path);
  }
  return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(code));
}

/// What a dialog of the system's was told to begin with.
LRESULT CALLBACK TakeSelection(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != BFFM_SETSELECTIONW) return DefWindowProcW(window, message, wParam, lParam);
  *reinterpret_cast<std::string*>(GetWindowLongPtrW(window, GWLP_USERDATA)) =
      ToUtf8(reinterpret_cast<LPCWSTR>(lParam));
  return 0;
}

/// Where a folder browser is to start, as its opener tells it once it is there.
std::string StartFolderOf(const BROWSEINFOW& info) {
  std::string start;
  const HWND dialog = windows::Verified(
      CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr),
      "CreateWindowExW");
  SetWindowLongPtrW(dialog, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&start));
  SetWindowLongPtrW(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TakeSelection));
  info.lpfn(dialog, BFFM_INITIALIZED, 0, info.lParam);
  DestroyWindow(dialog);
  return start;
}

/// What the folder browser hands out is known to nobody but the function that names it below: the shell has
/// items for folders that are there only.
LPITEMIDLIST ItemListOf(const std::wstring& folder) {
  const size_t size = (folder.size() + 1) * sizeof(wchar_t);
  auto* const list = static_cast<ITEMIDLIST*>(CoTaskMemAlloc(sizeof(USHORT) + size));
  if (list == nullptr) throw std::bad_alloc();
  list->mkid.cb = static_cast<USHORT>(sizeof(USHORT) + size);
  memcpy(list->mkid.abID, folder.c_str(), size);
  return list;
}

HRESULT WINAPI NameOfItemList(LPCITEMIDLIST list, SIGDN, LPWSTR* name) {
  const size_t size = list->mkid.cb - sizeof(USHORT);
  *name = static_cast<LPWSTR>(CoTaskMemAlloc(size));
  if (*name == nullptr) return E_OUTOFMEMORY;
  memcpy(*name, list->mkid.abID, size);
  return S_OK;
}

LPITEMIDLIST WINAPI BrowseForFolder(BROWSEINFOW* info) {
  const std::string prompt = ToUtf8(info->lpszTitle);
  // One that cannot be created never hears where it is to start: so this is asked first.
  const BrowseAnswer answer = stage->workbench.User().BrowseForFolder(prompt, "");
  std::string line = "Shell.BrowseForFolder(" + QuotedText(prompt);
  if (answer.kind != BrowseAnswer::Kind::CannotBeCreated) line += ", " + QuotedText(StartFolderOf(*info));
  line += ")";
  if (!Enters("Shell.BrowseForFolder", CallLog::Kind::Action, ERROR_ACCESS_DENIED, [&] { return line; }) ||
      answer.kind != BrowseAnswer::Kind::Chosen) {
    return nullptr;
  }
  return ItemListOf(ToUtf16(answer.folder));
}

template <typename Content>
Content* At(HMODULE module, ULONG_PTR offset) {
  return reinterpret_cast<Content*>(reinterpret_cast<BYTE*>(module) + offset);
}

/// Where a module keeps the address of a function that it imports.
void** PlaceOfImport(HMODULE module, std::string_view function) {
  const auto offset = static_cast<ULONG_PTR>(At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew);
  const auto& directories = At<IMAGE_NT_HEADERS>(module, offset)->OptionalHeader.DataDirectory;
  const DWORD imports = directories[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (auto* from = At<IMAGE_IMPORT_DESCRIPTOR>(module, imports); from->Name != 0; ++from) {
    auto* named = At<IMAGE_THUNK_DATA>(module, from->OriginalFirstThunk);
    auto* bound = At<IMAGE_THUNK_DATA>(module, from->FirstThunk);
    for (; named->u1.AddressOfData != 0; ++named, ++bound) {
      if (IMAGE_SNAP_BY_ORDINAL(named->u1.Ordinal)) continue;
      const auto* const name = At<IMAGE_IMPORT_BY_NAME>(module, named->u1.AddressOfData)->Name;
      if (function == reinterpret_cast<const char*>(name))
        return reinterpret_cast<void**>(&bound->u1.Function);
    }
  }
  throw std::runtime_error("the module does not import " + std::string(function));
}

/// The former content of a place in a module's table, which is for reading only.
void* Exchange(void** place, void* content) {
  DWORD former = 0;
  windows::Verified(VirtualProtect(place, sizeof(*place), PAGE_READWRITE, &former), "VirtualProtect");
  std::swap(*place, content);
  VirtualProtect(place, sizeof(*place), former, &former);
  return content;
}

}  // namespace

ProfileMachine::ProfileMachine(Stage& theStage, const std::wstring& module)
    : module_(windows::Verified(LoadLibraryW(module.c_str()), "LoadLibraryW")) {
  stage = &theStage;
  try {
    const auto replaceIn = [this](HMODULE importer, const char* function, auto* standIn) {
      void** const place = PlaceOfImport(importer, function);
      replaced_.push_back({place, Exchange(place, reinterpret_cast<void*>(standIn))});
    };
    const auto replace = [&](const char* function, auto* standIn) { replaceIn(module_, function, standIn); };
    replace("FindFirstFileW", FindFirst);
    replace("CopyFileW", Copy);
    replace("DeleteFileW", Remove);
    replace("CreateFileW", Create);
    replace("GetUserNameW", UserName);
    replace("GetComputerNameW", MachineName);
    replace("RegOpenKeyExW", OpenKey);
    replace("GetThreadUILanguage", Language);
    replace("PeekMessageW", Peek);
    replace("ShellExecuteW", OpenDocument);
    // The gallery's, too, which is this program's own.
    for (const HMODULE importer : {module_, GetModuleHandleW(nullptr)}) {
      replaceIn(importer, "SHBrowseForFolderW", BrowseForFolder);
      replaceIn(importer, "SHGetNameFromIDList", NameOfItemList);
    }
  } catch (...) {
    Restore();
    throw;
  }
}

ProfileMachine::~ProfileMachine() { Restore(); }

void ProfileMachine::Restore() {
  for (const Import& import : replaced_) Exchange(import.place, import.real);
  stage = nullptr;
  FreeLibrary(module_);
}

}  // namespace vexa::workbench
