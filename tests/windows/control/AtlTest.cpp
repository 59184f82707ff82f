// A container that nobody of this system wrote: the ActiveX host window of atl.dll makes the control by its
// name, from the registry.
#include <gtest/gtest.h>

#include <array>
#include <map>

#include "tests/windows/Bench.h"
#include "tests/windows/Modals.h"
#include "tests/windows/control/Module.h"

namespace vexa::windows {
namespace {

constexpr const wchar_t* ProgId = L"VexaControls.OutlookPropertiesPage";

/// Every key and value below a key, as a text.
void Dump(HKEY root, const std::wstring& path, std::map<std::wstring, std::wstring>& found) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
  found[path] = L"";
  std::array<wchar_t, 512> name{};
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(name.size());
    if (RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      break;
    Dump(root, path + L"\\" + name.data(), found);
  }
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(name.size());
    std::array<BYTE, 2048> data{};
    DWORD size = static_cast<DWORD>(data.size());
    if (RegEnumValueW(key, index, name.data(), &length, nullptr, nullptr, data.data(), &size) !=
        ERROR_SUCCESS) {
      break;
    }
    found[path + L"\\\\" + name.data()] = std::wstring(data.begin(), data.begin() + size);
  }
  RegCloseKey(key);
}

/// What classes are registered, of the machine and of the user.
std::map<std::wstring, std::wstring> RegisteredClasses() {
  std::map<std::wstring, std::wstring> found;
  Dump(HKEY_LOCAL_MACHINE, L"Software\\Classes", found);
  std::map<std::wstring, std::wstring> users;
  Dump(HKEY_CURRENT_USER, L"Software\\Classes", users);
  for (const auto& [key, value] : users) found[L"user " + key] = value;
  return found;
}

/// Registered per machine, for as long as it lives; an installed module is registered all the time.
class Registered {
 public:
  explicit Registered(const Module& module) : module_(module) { Call("DllRegisterServer"); }
  Registered(const Registered&) = delete;
  Registered& operator=(const Registered&) = delete;
  ~Registered() { Call("DllUnregisterServer"); }

 private:
  void Call(const char* name) const {
    if (!InstalledModulePath().empty()) return;
    EXPECT_EQ(module_.Export<HRESULT STDMETHODCALLTYPE()>(name)(), S_OK);
  }

  const Module& module_;
};

class Registry : public testing::Test {
 protected:
  Apartment apartment_;
  Module module_;
};

TEST_F(Registry, IsAsItWasAfterUnregistration) {
  const auto before = RegisteredClasses();
  ASSERT_GT(before.size(), 1000U);
  const auto install = module_.Export<HRESULT STDMETHODCALLTYPE(BOOL, LPCWSTR)>("DllInstall");
  for (const wchar_t* const scope : std::initializer_list<const wchar_t*>{nullptr, L"", L"user"}) {
    const std::wstring user = scope != nullptr && *scope != 0 ? L"user " : L"";
    SCOPED_TRACE(ToUtf8(user));
    ASSERT_EQ(install(TRUE, scope), S_OK);
    const auto registered = RegisteredClasses();
    const std::wstring classes = user + L"Software\\Classes\\";
    EXPECT_TRUE(
        registered.contains(classes + L"CLSID\\{F5EC52ED-0108-4475-92E1-BC7656670B14}\\InprocServer32"));
    EXPECT_TRUE(registered.contains(classes + ProgId + L"\\CLSID"));
    const std::wstring outlooks = classes + L"Interface\\{0006307E-0000-0000-C000-000000000046}";
    EXPECT_EQ(registered.contains(outlooks), before.contains(outlooks));
    for (const auto& [key, value] : before) {
      const auto found = registered.find(key);
      ASSERT_TRUE(found != registered.end() && found->second == value) << ToUtf8(key) << " was touched";
    }
    ASSERT_EQ(install(TRUE, scope), S_OK) << "once more";
    EXPECT_EQ(RegisteredClasses(), registered);
    ASSERT_EQ(install(FALSE, scope), S_OK);
    EXPECT_EQ(RegisteredClasses(), before);
    EXPECT_EQ(install(FALSE, scope), S_OK) << "nothing is there to remove";
  }
  EXPECT_EQ(install(TRUE, L"nonsense"), E_INVALIDARG);
}

class Atl : public Registry {
 protected:
  Atl() : library_(LoadLibraryW(L"atl.dll")) {
    // The functions have numbers besides their names.
    Function<BOOL WINAPI()>("AtlAxWinInit")();
  }
  ~Atl() override { FreeLibrary(library_); }

  template <typename Type>
  Type* Function(const char* name) const {
    return reinterpret_cast<Type*>(reinterpret_cast<void*>(GetProcAddress(library_, name)));
  }
  static void Pump(HWND top) {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
      if (IsDialogMessageW(top, &message) != FALSE) continue;
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }

  HMODULE library_;
};

TEST_F(Atl, HostsTheControlByItsName) {
  ASSERT_NE(library_, nullptr);
  const auto before = RegisteredClasses();
  {
    const Registered registered(module_);
    workbench::Bench bench(workbench::ProfileWithFolderSet());
    const workbench::ClassRegistration classes(bench.exports);
    const HWND top =
        CreateWindowExW(WS_EX_CONTROLPARENT, L"STATIC", L"Container", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                        560, 520, nullptr, nullptr, nullptr, nullptr);
    const HWND host = CreateWindowExW(WS_EX_CONTROLPARENT, L"AtlAxWin", ProgId, WS_CHILD | WS_VISIBLE, 0, 0,
                                      540, 440, top, nullptr, nullptr, nullptr);
    ASSERT_NE(host, nullptr);
    const HWND behind = CreateWindowExW(0, L"BUTTON", L"Behind", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 450,
                                        80, 24, top, nullptr, nullptr, nullptr);
    ASSERT_NE(FindNamed(host, "cmdAbout"), nullptr) << "the page is shown";
    EXPECT_FALSE(module_.CanUnload()) << "and comes out of this very module";
    EXPECT_NE(IsWindowVisible(FindNamed(host, "cmdAbout")), FALSE);

    {
      ComPtr<IUnknown> unknown;
      ASSERT_EQ(Function<HRESULT WINAPI(HWND, IUnknown**)>("AtlAxGetControl")(host, unknown.Receive()), S_OK);
      const auto page = unknown.As<IOutlookPropertiesPage>();
      ASSERT_TRUE(page);
      VARIANT_BOOL again = VARIANT_FALSE;
      ASSERT_EQ(page->Initialize(bench.exports->Addin().Get(), &again), S_OK);
    }
    SetActiveWindow(top);
    Pump(top);
    EXPECT_NE(IsWindowEnabled(FindNamed(host, "cmdChange")), FALSE) << "there is a folder set";

    std::vector<std::string> order;
    SetFocus(FindNamed(host, "gd"));
    while (GetFocus() != behind && order.size() < 30) {
      order.push_back(NameOf(GetFocus()));
      Modals::PostKey(VK_TAB);
      Pump(top);
    }
    EXPECT_EQ(order.front(), "gd");
    EXPECT_EQ(order.back(), "cmdHelp");
    EXPECT_EQ(GetFocus(), behind) << "and out of it";

    {
      Modals modals;
      modals.Press(VK_ESCAPE);
      Modals::PostClick(FindNamed(host, "cmdChange"));
      Pump(top);
      EXPECT_NE(IsWindowEnabled(top), FALSE);
    }
    DestroyWindow(top);
    Pump(nullptr);
    EXPECT_EQ(bench.workbench.WorkingCopy(), nullptr) << "the page let go of everything";
    EXPECT_TRUE(module_.CanUnload());
  }
  EXPECT_EQ(RegisteredClasses(), before);
}

}  // namespace
}  // namespace vexa::windows
