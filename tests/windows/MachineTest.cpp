// The machine's part of the desktop on a real file system and a real registry.
#include <gtest/gtest.h>
#include <ole2.h>

#include <algorithm>
#include <fstream>
#include <functional>

#include "tests/windows/Modals.h"
#include "tests/windows/TestModule.h"
#include "windows/com/Text.h"
#include "windows/desktop/WindowsDesktop.h"

namespace vexa::windows {
namespace {

constexpr const char* Key = "Software\\VexaMachineTest\\Deep";

/// A folder for one test; gone with it.
class Scratch {
 public:
  Scratch() {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetTempPathW(MAX_PATH, path.data()));
    path_ = path + L"vexa " + std::to_wstring(GetCurrentProcessId()) + L" \u00e9t\u00e9";
    CreateDirectoryW(path_.c_str(), nullptr);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() { RemoveDirectoryW(path_.c_str()); }
  std::string operator/(const char* name) const { return ToUtf8(path_) + "\\" + name; }

 private:
  std::wstring path_;
};

TEST(Machine, FilesExistUnderTheirNamesInAnyCaseAndNothingElseDoes) {
  const Scratch scratch;
  WindowsDesktop desktop;
  WindowsFileAppender files;
  const std::string log = scratch / "VexaErrors.mdb";
  EXPECT_FALSE(desktop.FileExists(log));
  files.Append(log, "half a rec");  // and the writer dies
  files.Append(log, "one record\n");
  std::ifstream lines(ToUtf16(log).c_str());
  std::string first;
  std::string second;
  std::getline(lines, first);
  std::getline(lines, second);
  EXPECT_EQ(first + "|" + second, "half a rec|one record");
  lines.close();
  for (const char* same : {"VexaErrors.mdb", "VEXAERRORS.MDB", "vexaerrors.mdb"}) {
    EXPECT_TRUE(desktop.FileExists(scratch / same)) << same;
  }
  for (const char* none : {"*", "VexaErrors.md?", "VexaErrors.mdb.", "VexaErrors.mdb\\", "VexaErrors"}) {
    EXPECT_FALSE(desktop.FileExists(scratch / none)) << none;
  }
  for (const char* none : {"", "C:\\windows", "Q:\\no such drive\\x"}) {
    EXPECT_FALSE(desktop.FileExists(none)) << none;
  }

  desktop.CopyFileTo(log, scratch / "copy");
  desktop.CopyFileTo(log, scratch / "copy");  // replaces
  EXPECT_TRUE(desktop.FileExists(scratch / "copy"));
  desktop.RemoveFile(scratch / "copy");
  EXPECT_FALSE(desktop.FileExists(scratch / "copy"));
  for (const auto& failing : {std::function<void()>([&] { desktop.RemoveFile(scratch / "copy"); }),
                              std::function<void()>([&] { desktop.CopyFileTo(scratch / "none", log); })}) {
    try {
      failing();
      ADD_FAILURE() << "no error";
    } catch (const Error& error) {
      EXPECT_EQ(error.Number, 75);
      EXPECT_EQ(error.LastDLLError, ERROR_FILE_NOT_FOUND);
    }
  }
  desktop.RemoveFile(log);
}

TEST(Machine, FilesMayHaveLongPaths) {
  const Scratch scratch;
  WindowsDesktop desktop;
  WindowsFileAppender files;
  const std::string folder = scratch / std::string(150, 'a').c_str();
  const std::wstring deep = L"\\\\?\\" + ToUtf16(folder) + L"\\" + std::wstring(150, L'b');
  ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + ToUtf16(folder)).c_str(), nullptr));
  ASSERT_TRUE(CreateDirectoryW(deep.c_str(), nullptr));
  files.Append(scratch / "x", "x");
  const std::string longPath = folder + "/" + std::string(150, 'b') + "/log.mdb";
  files.Append(longPath, "log");
  EXPECT_TRUE(desktop.FileExists(longPath));
  desktop.CopyFileTo(scratch / "x", longPath);
  EXPECT_TRUE(desktop.FileExists(longPath));
  desktop.RemoveFile(longPath);
  EXPECT_FALSE(desktop.FileExists(longPath));
  desktop.RemoveFile(scratch / "x");
  RemoveDirectoryW(deep.c_str());
  RemoveDirectoryW((L"\\\\?\\" + ToUtf16(folder)).c_str());
}

TEST(Machine, CopiesAreNeverWrittenIntoWhatLiesInTheirPlace) {
  const Scratch scratch;
  WindowsDesktop desktop;
  WindowsFileAppender files;
  const std::string log = scratch / "log";
  const std::string victim = scratch / "victim";
  const std::string copy = scratch / "copy";
  files.Append(log, "the log");
  files.Append(victim, "of somebody else");
  ASSERT_TRUE(CreateHardLinkW(ToUtf16(copy).c_str(), ToUtf16(victim).c_str(), nullptr));
  desktop.CopyFileTo(log, copy);
  const auto sizeOf = [](const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    GetFileAttributesExW(ToUtf16(path).c_str(), GetFileExInfoStandard, &data);
    return data.nFileSizeLow;
  };
  EXPECT_EQ(sizeOf(copy), 7U);
  EXPECT_EQ(sizeOf(victim), 16U) << "the link has gone, and nothing went through it";
  for (const std::string& path : {log, victim, copy}) desktop.RemoveFile(path);
}

/// No window can be made while it lives.
class NoWindows {
 public:
  NoWindows() : hook_(SetWindowsHookExW(WH_CBT, Refuse, nullptr, GetCurrentThreadId())) {}
  NoWindows(const NoWindows&) = delete;
  NoWindows& operator=(const NoWindows&) = delete;
  ~NoWindows() { UnhookWindowsHookEx(hook_); }

 private:
  static LRESULT CALLBACK Refuse(int code, WPARAM, LPARAM) { return code == HCBT_CREATEWND ? 1 : 0; }
  HHOOK hook_;
};

TEST(Machine, TheFolderBrowserChoosesOrIsCancelledOrCannotBeCreated) {
  ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
  const Scratch scratch;
  WindowsDesktop desktop;
  Modals modals;
  const std::string folder = scratch / "";
  std::string start = folder;
  std::ranges::replace(start, '\\', '/');
  const auto press = [](int button) {
    return [button](HWND dialog) { SendMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0); };
  };
  for (const std::string& from : {folder, start}) {
    modals.Then(press(IDOK));
    EXPECT_EQ(desktop.BrowseForFolder("Where?", from).value_or("cancelled") + "\\", folder);
  }
  modals.Then(press(IDCANCEL));
  EXPECT_FALSE(desktop.BrowseForFolder("Where?", folder));
  const NoWindows none;
  EXPECT_THROW(desktop.BrowseForFolder("Where?", folder), Error);
  OleUninitialize();
}

TEST(Machine, RegistryKeepsTextsAndNumbers) {
  WindowsDesktop desktop;
  const auto read = [&](const char* name) {
    return desktop.ReadRegistry(RegistryRoot::CurrentUser, Key, name);
  };
  const auto write = [&](const char* name, const Variant& value) {
    desktop.WriteRegistry(RegistryRoot::CurrentUser, Key, name, value);
  };
  EXPECT_FALSE(read("Text")) << "no key yet";
  EXPECT_TRUE(desktop.CanWriteRegistry(RegistryRoot::CurrentUser, Key));
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

TEST(Machine, KnowsWhatVersionsFilesHave) {
  WindowsDesktop desktop;
  const auto version = desktop.FileVersion(ToUtf8(TestedModulePath()));
  ASSERT_TRUE(version);
  EXPECT_EQ(*version, std::to_string(VEXA_VERSION_MAJOR) + "." + std::to_string(VEXA_VERSION_MINOR) + "." +
                          std::to_string(VEXA_VERSION_PATCH) + ".0");
  EXPECT_FALSE(desktop.FileVersion("C:\\none.dll"));
}

TEST(Machine, PendingMessagesAreWorkedOffAndTheEndOfTheLoopIsKept) {
  WindowsDesktop desktop;
  MSG message{};
  PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);  // the thread gets its queue
  PostThreadMessageW(GetCurrentThreadId(), WM_APP, 0, 0);
  desktop.ProcessPendingMessages();
  EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
  PostQuitMessage(7);
  desktop.ProcessPendingMessages();
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 7U);
}

}  // namespace
}  // namespace vexa::windows
