// A container that nobody of this system wrote: the ActiveX host window of atl.dll makes the control by its
// name, from the registry, where an installer has put it.
#include <gtest/gtest.h>

#include "tests/windows/Bench.h"
#include "tests/windows/Modals.h"
#include "tests/windows/control/Module.h"

namespace vexa::windows {
namespace {

void Pump(HWND top) {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    if (IsDialogMessageW(top, &message) != FALSE) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

TEST(Atl, HostsTheInstalledControlByItsName) {
  if (InstalledModulePath().empty()) GTEST_SKIP() << "none is installed";
  const Apartment apartment;
  const Module module;
  const HMODULE atl = LoadLibraryW(L"atl.dll");
  const auto function = [&](const char* name) { return reinterpret_cast<void*>(GetProcAddress(atl, name)); };
  reinterpret_cast<BOOL(WINAPI*)()>(function("AtlAxWinInit"))();
  const auto getControl = reinterpret_cast<HRESULT(WINAPI*)(HWND, IUnknown**)>(function("AtlAxGetControl"));
  {
    workbench::Bench bench(workbench::ProfileWithFolderSet());
    const workbench::ClassRegistration classes(bench.exports);
    const HWND top =
        CreateWindowExW(WS_EX_CONTROLPARENT, L"STATIC", L"Container", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                        560, 520, nullptr, nullptr, nullptr, nullptr);
    const HWND host = CreateWindowExW(WS_EX_CONTROLPARENT, L"AtlAxWin", L"VexaControls.OutlookPropertiesPage",
                                      WS_CHILD | WS_VISIBLE, 0, 0, 540, 440, top, nullptr, nullptr, nullptr);
    ASSERT_NE(host, nullptr);
    const HWND behind = CreateWindowExW(0, L"BUTTON", L"Behind", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 450,
                                        80, 24, top, nullptr, nullptr, nullptr);
    ASSERT_NE(FindNamed(host, "cmdAbout"), nullptr) << "the page is shown";
    EXPECT_FALSE(module.CanUnload()) << "and comes out of this very module";
    EXPECT_NE(IsWindowVisible(FindNamed(host, "cmdAbout")), FALSE);

    {
      ComPtr<IUnknown> unknown;
      ASSERT_EQ(getControl(host, unknown.Receive()), S_OK);
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
      order.push_back(ControlNameOf(GetFocus()));
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
  }
  EXPECT_TRUE(module.CanUnload());
  FreeLibrary(atl);
}

}  // namespace
}  // namespace vexa::windows
