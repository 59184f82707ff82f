#include <windows.h>
// windows.h first
#include <gtest/gtest.h>
#include <oleauto.h>

#include <cstdint>
#include <map>
#include <string>

#include "Outlook.h"
#include "VexaControls.h"
#include "resources/CompiledResources.h"
#include "tests/windows/TestModule.h"
#include "windows/com/Com.h"
#include "windows/com/Text.h"
#include "windows/desktop/WindowsDesktop.h"

namespace vexa::windows {
namespace {

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

  HMODULE module_;
};

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

TEST_F(ModuleFile, HoldsEveryPictureAndNoOther) {
  std::map<int32_t, UINT> expected;
#define ICON(id, shows) expected[id] = IMAGE_ICON;
#define CURSOR(id, shows) expected[id] = IMAGE_CURSOR;
#include "resources/pictures.inc"
#undef ICON
#undef CURSOR
  const ModuleResources resources(module_, 0x40C);
  for (int32_t id = -1; id < 4000; ++id) {
    const auto picture = expected.find(id);
    const bool isPicture = picture != expected.end();
    ASSERT_EQ(resources.HasIcon(id), isPicture && picture->second == IMAGE_ICON) << id;
    ASSERT_EQ(resources.HasCursor(id), isPicture && picture->second == IMAGE_CURSOR) << id;
    if (!isPicture) continue;
    const HANDLE loaded = LoadImageW(module_, MAKEINTRESOURCEW(id), picture->second, 16, 16, LR_DEFAULTCOLOR);
    EXPECT_NE(loaded, nullptr) << id;
    DestroyIcon(static_cast<HICON>(loaded));
  }
}

struct Library {
  GUID id{};
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
  library.types->ReleaseTLibAttr(attributes);
  return library;
}

/// What is registered must not name Outlook's interfaces: registering would overwrite Outlook's entries, and
/// unregistering delete them.
TEST(ModuleTypeLibraries, OutlooksInterfacesStandInALibraryOfTheirOwn) {
  const Library own = LoadLibraryOfTypes(1);
  EXPECT_EQ(own.id, LIBID_VexaControls);
  EXPECT_TRUE(own.Describes(CLSID_OutlookPropertiesPage));
  EXPECT_TRUE(own.Describes(__uuidof(IRegSettings)));
  EXPECT_FALSE(own.Describes(__uuidof(PropertyPage)));

  const Library outlooks = LoadLibraryOfTypes(2);
  EXPECT_EQ(outlooks.id, LIBID_OutlookPageInterfaces);
  EXPECT_TRUE(outlooks.Describes(__uuidof(PropertyPage)));
  EXPECT_FALSE(outlooks.Describes(CLSID_OutlookPropertiesPage));
}

}  // namespace
}  // namespace vexa::windows
