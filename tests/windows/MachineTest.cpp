// The machine's part of the desktop on a real file system and a real registry.
#include <gtest/gtest.h>
#include <ole2.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "tests/ScratchFolder.h"
#include "tests/windows/Modals.h"
#include "tests/windows/TestModule.h"
#include "windows/com/Text.h"
#include "windows/desktop/WindowsDesktop.h"

namespace vexa::windows {
namespace {

constexpr const char* Key = "Software\\VexaMachineTest\\Deep";

class Machine : public testing::Test {
 protected:
  /// The path of a file or folder of the test.
  std::string In(const std::string& name) const {
    return ToUtf8(scratch_.Path().wstring()) + "\\\xC3\xA9t\xC3\xA9 " + name;
  }
  static uintmax_t SizeOf(const std::string& path) { return std::filesystem::file_size(ToUtf16(path)); }

  ScratchFolder scratch_;
  WindowsDesktop desktop_;
  WindowsFileAppender files_;
};

TEST_F(Machine, FilesExistUnderTheirNamesInAnyCaseAndNothingElseDoes) {
  const std::string log = In("VexaErrors.mdb");
  EXPECT_FALSE(desktop_.FileExists(log));
  files_.Append(log, "half a rec");  // and the writer dies
  files_.Append(log, "one record\n");
  EXPECT_EQ(SizeOf(log), std::string("half a rec\none record\n").size());
  for (const char* same : {"VexaErrors.mdb", "VEXAERRORS.MDB", "vexaerrors.mdb"}) {
    EXPECT_TRUE(desktop_.FileExists(In(same))) << same;
  }
  for (const char* none : {"*", "VexaErrors.md?", "VexaErrors.mdb.", "VexaErrors.mdb\\", "VexaErrors"}) {
    EXPECT_FALSE(desktop_.FileExists(In(none))) << none;
  }
  for (const char* none : {"", "C:\\windows", "Q:\\no such drive\\x"}) {
    EXPECT_FALSE(desktop_.FileExists(none)) << none;
  }
  for (const auto& failing : {std::function<void()>([&] { desktop_.RemoveFile(In("none")); }),
                              std::function<void()>([&] { desktop_.CopyFileTo(In("none"), In("copy")); })}) {
    try {
      failing();
      ADD_FAILURE() << "no error";
    } catch (const Error& error) {
      EXPECT_EQ(error.Number, 75);
      EXPECT_EQ(error.LastDLLError, ERROR_FILE_NOT_FOUND);
    }
  }
}

TEST_F(Machine, FilesMayHaveLongPaths) {
  const std::string folder = In(std::string(150, 'a'));
  const std::wstring outer = L"\\\\?\\" + ToUtf16(folder);
  const std::wstring deep = outer + L"\\" + std::wstring(150, L'b');
  ASSERT_TRUE(CreateDirectoryW(outer.c_str(), nullptr));
  ASSERT_TRUE(CreateDirectoryW(deep.c_str(), nullptr));
  files_.Append(In("x"), "x");
  const std::string longPath = folder + "/" + std::string(150, 'b') + "/log.mdb";
  files_.Append(longPath, "log");
  EXPECT_TRUE(desktop_.FileExists(longPath));
  desktop_.CopyFileTo(In("x"), longPath);
  EXPECT_TRUE(desktop_.FileExists(longPath));
  desktop_.RemoveFile(longPath);
  EXPECT_FALSE(desktop_.FileExists(longPath));
  RemoveDirectoryW(deep.c_str());
}

TEST_F(Machine, CopiesAreNeverWrittenIntoWhatLiesInTheirPlace) {
  const std::string log = In("log");
  const std::string victim = In("victim");
  const std::string copy = In("copy");
  files_.Append(log, "the log");
  files_.Append(victim, "of somebody else");
  ASSERT_TRUE(CreateHardLinkW(ToUtf16(copy).c_str(), ToUtf16(victim).c_str(), nullptr));
  desktop_.CopyFileTo(log, copy);
  EXPECT_EQ(SizeOf(copy), 7U);
  EXPECT_EQ(SizeOf(victim), 16U) << "the link has gone, and nothing went through it";
}

TEST_F(Machine, TheFolderBrowserChoosesOrIsCancelledOrCannotBeCreated) {
  ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
  Modals modals;
  const std::string folder = In("folder");
  CreateDirectoryW(ToUtf16(folder).c_str(), nullptr);
  std::string start = folder + "/";
  std::ranges::replace(start, '\\', '/');
  for (const std::string& from : {folder, start}) {
    std::string chosen;
    // Wine's dialog at times misses the folder that it is to begin at when it comes up for the first time.
    for (int attempt = 0; attempt < 5 && chosen != folder; ++attempt) {
      modals.Then([](HWND dialog) { SendMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0); });
      chosen = desktop_.BrowseForFolder("Where?", from).value_or("cancelled");
    }
    EXPECT_EQ(chosen, folder);
  }
  modals.Then(Modals::SendAway);
  EXPECT_FALSE(desktop_.BrowseForFolder("Where?", folder));
  const auto refuse = [](int code, WPARAM, LPARAM) -> LRESULT { return code == HCBT_CREATEWND ? 1 : 0; };
  const HHOOK noWindows = SetWindowsHookExW(WH_CBT, refuse, nullptr, GetCurrentThreadId());
  EXPECT_THROW(desktop_.BrowseForFolder("Where?", folder), Error);
  UnhookWindowsHookEx(noWindows);
  OleUninitialize();
}

TEST_F(Machine, RegistryKeepsTextsAndNumbers) {
  const auto read = [&](const char* name) {
    return desktop_.ReadRegistry(RegistryRoot::CurrentUser, Key, name);
  };
  const auto write = [&](const char* name, const Variant& value) {
    desktop_.WriteRegistry(RegistryRoot::CurrentUser, Key, name, value);
  };
  EXPECT_FALSE(read("Text")) << "no key yet";
  EXPECT_TRUE(desktop_.CanWriteRegistry(RegistryRoot::CurrentUser, Key));
  EXPECT_FALSE(read("Text")) << "asking made nothing";
  const std::string longText(5000, 'x');
  for (const std::string& text : {std::string("drei \u20AC"), std::string(), longText}) {
    write("Text", text);
    ASSERT_TRUE(read("Text"));
    EXPECT_EQ(read("Text")->ToText(), text);
  }
  for (const int32_t number : {0, -1, INT32_MIN, INT32_MAX}) {
    write("Number", number);
    ASSERT_TRUE(read("Number"));
    EXPECT_EQ(read("Number")->ToText(), std::to_string(number));
  }
  EXPECT_FALSE(read("Other"));
  EXPECT_THROW(write("Flag", true), Error);
  EXPECT_THROW(write("Great", int64_t{1} << 40), Error);
  const BYTE binary[]{1, 2, 3};
  RegSetKeyValueW(HKEY_CURRENT_USER, ToUtf16(Key).c_str(), L"Binary", REG_BINARY, binary, sizeof(binary));
  EXPECT_THROW(read("Binary"), Error);
  RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\VexaMachineTest");
}

TEST_F(Machine, KnowsWhatVersionsFilesHave) {
  EXPECT_EQ(desktop_.FileVersion(ToUtf8(TestedModulePath())), VEXA_VERSION ".0");
  EXPECT_FALSE(desktop_.FileVersion("C:\\none.dll"));
}

TEST_F(Machine, FindsTheFileBehindAClass) {
  const std::wstring name = L"VexaMachineTest.Class";
  const std::wstring id = L"{5B0E2A31-77C4-4D0F-9B3A-2F6E1D8C4A90}";
  EXPECT_EQ(ServerFileOf(name), L"");
  const auto write = [](const std::wstring& key, const std::wstring& value) {
    const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + key).c_str(), nullptr, REG_EXPAND_SZ,
                    value.c_str(), size);
  };
  write(name + L"\\CLSID", id);
  for (const auto& [command, file] : {std::pair(L"C:\\A B\\x.EXE /y", L"C:\\A B\\x.EXE"),
                                      std::pair(L"\"%SystemDrive%\\A B\\x\" /y", L"C:\\A B\\x"),
                                      std::pair(L"C:\\A B\\x.exe", L"C:\\A B\\x.exe")}) {
    write(L"CLSID\\" + id + L"\\LocalServer32", command);
    EXPECT_EQ(ServerFileOf(name), file);
  }
  write(L"CLSID\\" + id + L"\\InprocServer32", L"C:\\x.dll");
  EXPECT_EQ(ServerFileOf(name), L"C:\\x.dll") << "what COM takes first";
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + name).c_str());
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\CLSID\\" + id).c_str());
}

TEST_F(Machine, PendingMessagesAreWorkedOffAndTheEndOfTheLoopIsKept) {
  MSG message{};
  PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);  // the thread gets its queue
  PostThreadMessageW(GetCurrentThreadId(), WM_APP, 0, 0);
  desktop_.ProcessPendingMessages();
  EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
  PostQuitMessage(7);
  desktop_.ProcessPendingMessages();
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 7U);
}

}  // namespace
}  // namespace vexa::windows
