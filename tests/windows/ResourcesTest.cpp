#include <windows.h>
// windows.h first
#include <gtest/gtest.h>
#include <oleauto.h>

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Outlook.h"
#include "VexaControls.h"
#include "resources/CompiledResources.h"
#include "tests/windows/TestModule.h"
#include "windows/com/Com.h"
#include "windows/com/Text.h"
#include "windows/desktop/WindowsDesktop.h"

namespace vexa::windows {
namespace {

const LPCWSTR StringType = MAKEINTRESOURCEW(6);
const LPCWSTR CursorType = MAKEINTRESOURCEW(12);
const LPCWSTR IconType = MAKEINTRESOURCEW(14);

/// The module's file, mapped without running any of its code.
class ModuleFile : public testing::Test {
 protected:
  ModuleFile()
      : module_(LoadLibraryExW(TestedModulePath().c_str(), nullptr,
                               LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE)) {}
  ~ModuleFile() override {
    if (module_ != nullptr) FreeLibrary(module_);
  }
  void SetUp() override { ASSERT_NE(module_, nullptr) << GetLastError(); }

  std::set<int32_t> NumbersOf(LPCWSTR type) const {
    std::set<int32_t> numbers;
    EnumResourceNamesW(module_, type, AddNumber, reinterpret_cast<LONG_PTR>(&numbers));
    return numbers;
  }
  std::set<int32_t> LanguagesOf(LPCWSTR type, int32_t number) const {
    std::set<int32_t> languages;
    EnumResourceLanguagesW(module_, type, MAKEINTRESOURCEW(number), AddLanguage,
                           reinterpret_cast<LONG_PTR>(&languages));
    return languages;
  }
  /// Every text of the module, by language and id.
  std::map<int32_t, std::map<int32_t, std::string>> Texts() const {
    std::map<int32_t, std::map<int32_t, std::string>> texts;
    for (const int32_t block : NumbersOf(StringType)) {
      for (const int32_t language : LanguagesOf(StringType, block))
        AddBlock(block, language, texts[language]);
    }
    return texts;
  }

  HMODULE module_;

 private:
  static BOOL CALLBACK AddNumber(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR numbers) {
    const bool isNumber = IS_INTRESOURCE(name);
    const auto number = static_cast<int32_t>(reinterpret_cast<uintptr_t>(name));
    reinterpret_cast<std::set<int32_t>*>(numbers)->insert(isNumber ? number : -1);
    return TRUE;
  }
  static BOOL CALLBACK AddLanguage(HMODULE, LPCWSTR, LPCWSTR, WORD language, LONG_PTR languages) {
    reinterpret_cast<std::set<int32_t>*>(languages)->insert(language);
    return TRUE;
  }
  void AddBlock(int32_t block, int32_t language, std::map<int32_t, std::string>& texts) const {
    const HRSRC found =
        FindResourceExW(module_, StringType, MAKEINTRESOURCEW(block), static_cast<WORD>(language));
    const auto* entry = static_cast<const wchar_t*>(LockResource(LoadResource(module_, found)));
    for (int32_t i = 0; i < 16; ++i) {
      if (*entry != 0) texts[(block - 1) * 16 + i] = ToUtf8({entry + 1, *entry});
      entry += 1 + *entry;
    }
  }
};

std::set<int32_t> NumbersInSource(bool icons) {
  std::set<int32_t> numbers;
#define ICON(id, shows) \
  if (icons) numbers.insert(id);
#define CURSOR(id, shows) \
  if (!icons) numbers.insert(id);
#include "resources/pictures.inc"
#undef ICON
#undef CURSOR
  return numbers;
}

TEST_F(ModuleFile, HoldsExactlyTheCompiledTexts) {
  std::map<int32_t, std::map<int32_t, std::string>> expected;
  for (const LanguageTable& table : LanguageTables()) {
    for (const StringEntry& entry : table.entries) expected[table.language][entry.id] = entry.text;
  }
  const auto texts = Texts();
  ASSERT_EQ(texts.size(), expected.size());
  for (const auto& [language, entries] : expected) {
    ASSERT_TRUE(texts.contains(language)) << language;
    EXPECT_EQ(texts.at(language), entries) << language;
  }
}

/// The module and the compiled tables answer alike, for languages that they have and for others.
TEST_F(ModuleFile, FindsTheSameLanguageAsTheCompiledTables) {
  constexpr int32_t english = 0x409;
  constexpr int32_t frenchOfFrance = 0x40C;
  constexpr int32_t frenchOfCanada = 0xC0C;
  const std::map<int32_t, int32_t> foundFor = {
      {0x409, english},        {0x809, english},        {0x1009, english},        {0x009, english},
      {0x40C, frenchOfFrance}, {0x80C, frenchOfFrance}, {0x100C, frenchOfFrance}, {0x00C, frenchOfFrance},
      {0xC0C, frenchOfCanada}, {0x407, english},        {0x411, english},         {0x40A, english},
      {0x000, english},        {0x400, english},        {0x800, english},
  };
  for (const auto& [wanted, language] : foundFor) {
    SCOPED_TRACE(wanted);
    const CompiledResources compiled(wanted);
    const ModuleResources resources(module_, static_cast<LANGID>(wanted));
    EXPECT_EQ(compiled.Language(), language);
    EXPECT_EQ(resources.Language(), language);
    std::map<int32_t, std::string> expected;
    std::map<int32_t, std::string> actual;
    for (int32_t id = -1; id < 4000; ++id) {
      MadeText made;
      if (const TableText* const text = compiled.FindString(id, made)) expected[id] = text->text;
      if (const TableText* const text = resources.FindString(id, made)) actual[id] = text->text;
    }
    EXPECT_EQ(actual, expected);
  }
}

TEST_F(ModuleFile, HoldsEveryPicture) {
  EXPECT_EQ(NumbersOf(IconType), NumbersInSource(true));
  EXPECT_EQ(NumbersOf(CursorType), NumbersInSource(false));

  const ModuleResources resources(module_, 0x40C);
  for (int32_t id = -1; id < 4000; ++id) {
    ASSERT_EQ(resources.HasIcon(id), NumbersInSource(true).contains(id)) << id;
    ASSERT_EQ(resources.HasCursor(id), NumbersInSource(false).contains(id)) << id;
  }
}

TEST_F(ModuleFile, PicturesLoadAtEverySize) {
  const auto isLoaded = [&](int32_t id, UINT type, int size) {
    const HANDLE handle = LoadImageW(module_, MAKEINTRESOURCEW(id), type, size, size, LR_DEFAULTCOLOR);
    ICONINFO info{};
    if (handle == nullptr || GetIconInfo(static_cast<HICON>(handle), &info) == FALSE) return false;
    BITMAP colours{};
    const bool isWhole = GetObjectW(info.hbmColor, sizeof colours, &colours) != 0 &&
                         colours.bmWidth == size && colours.bmHeight == size &&
                         (info.fIcon != FALSE) == (type == IMAGE_ICON);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    DestroyIcon(static_cast<HICON>(handle));
    return isWhole;
  };
  for (const int32_t id : NumbersInSource(true)) {
    for (const int size : {16, 24, 32}) EXPECT_TRUE(isLoaded(id, IMAGE_ICON, size)) << id << " " << size;
  }
  for (const int32_t id : NumbersInSource(false)) EXPECT_TRUE(isLoaded(id, IMAGE_CURSOR, 32)) << id;
}

TEST(ModuleManifest, GivesTheThemedCommonControls) {
  ACTCTXW description{};
  description.cbSize = sizeof description;
  const std::wstring path = TestedModulePath();
  description.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID;
  description.lpSource = path.c_str();
  description.lpResourceName = MAKEINTRESOURCEW(2);
  const HANDLE context = CreateActCtxW(&description);
  ASSERT_NE(context, INVALID_HANDLE_VALUE) << GetLastError();
  ULONG_PTR cookie = 0;
  ASSERT_NE(ActivateActCtx(context, &cookie), FALSE);
  const HMODULE controls = LoadLibraryW(L"comctl32.dll");
  std::array<wchar_t, MAX_PATH> loaded{};
  GetModuleFileNameW(controls, loaded.data(), MAX_PATH);
  DeactivateActCtx(0, cookie);
  ReleaseActCtx(context);
  EXPECT_NE(std::wstring(loaded.data()).find(L"winsxs"), std::wstring::npos) << ToUtf8(loaded.data());
  FreeLibrary(controls);
}

struct Library {
  GUID id{};
  SYSKIND system{};
  ComPtr<ITypeLib> types;

  bool Describes(const GUID& type) const {
    ComPtr<ITypeInfo> info;
    return SUCCEEDED(types->GetTypeInfoOfGuid(type, info.Receive()));
  }
};

Library LoadLibraryOfTypes(int number) {
  Library library;
  const std::wstring place = TestedModulePath() + L"\\" + std::to_wstring(number);
  Check(LoadTypeLibEx(place.c_str(), REGKIND_NONE, library.types.Receive()));
  TLIBATTR* attributes = nullptr;
  Check(library.types->GetLibAttr(&attributes));
  library.id = attributes->guid;
  library.system = attributes->syskind;
  library.types->ReleaseTLibAttr(attributes);
  return library;
}

/// What is registered must not name Outlook's interfaces: registering would overwrite Outlook's entries, and
/// unregistering delete them.
TEST(ModuleTypeLibraries, OutlooksInterfacesStandInALibraryOfTheirOwn) {
  const Library own = LoadLibraryOfTypes(1);
  EXPECT_EQ(own.id, LIBID_VexaControls);
  EXPECT_EQ(own.system, SYS_WIN64);
  EXPECT_TRUE(own.Describes(CLSID_OutlookPropertiesPage));
  EXPECT_TRUE(own.Describes(__uuidof(IRegSettings)));
  EXPECT_FALSE(own.Describes(__uuidof(PropertyPage)));

  const Library outlooks = LoadLibraryOfTypes(2);
  EXPECT_EQ(outlooks.id, LIBID_OutlookPageInterfaces);
  EXPECT_EQ(outlooks.system, SYS_WIN64);
  EXPECT_TRUE(outlooks.Describes(__uuidof(PropertyPage)));
  EXPECT_FALSE(outlooks.Describes(CLSID_OutlookPropertiesPage));
}

TEST(ModuleVersion, IsTheProjects) {
  const std::wstring path = TestedModulePath();
  DWORD unused = 0;
  std::vector<BYTE> block(GetFileVersionInfoSizeW(path.c_str(), &unused));
  ASSERT_FALSE(block.empty()) << GetLastError();
  ASSERT_NE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()), FALSE);

  void* found = nullptr;
  UINT size = 0;
  ASSERT_NE(VerQueryValueW(block.data(), L"\\", &found, &size), FALSE);
  const auto& numbers = *static_cast<const VS_FIXEDFILEINFO*>(found);
  EXPECT_EQ(numbers.dwFileVersionMS, DWORD{MAKELONG(VEXA_VERSION_MINOR, VEXA_VERSION_MAJOR)});
  EXPECT_EQ(numbers.dwFileVersionLS, DWORD{MAKELONG(0, VEXA_VERSION_PATCH)});

  ASSERT_NE(VerQueryValueW(block.data(), L"\\StringFileInfo\\040904B0\\ProductVersion", &found, &size),
            FALSE);
  const std::string expected = std::to_string(VEXA_VERSION_MAJOR) + "." + std::to_string(VEXA_VERSION_MINOR) +
                               "." + std::to_string(VEXA_VERSION_PATCH);
  EXPECT_EQ(ToUtf8(static_cast<const wchar_t*>(found)), expected);
}

}  // namespace
}  // namespace vexa::windows
