#include <windows.h>
// windows.h first
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

#include "resources/CompiledResources.h"
#include "tests/windows/TestModule.h"
#include "windows/desktop/WindowsDesktop.h"

namespace vexa::windows {
namespace {

/// The module and the compiled tables answer alike, for languages that they have and for others.
TEST(ModuleFile, HoldsTheTextsAndPicturesOfTheCompiledTables) {
  // Mapped without running any of its code.
  const HMODULE module = LoadLibraryExW(TestedModulePath().c_str(), nullptr,
                                        LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
  ASSERT_NE(module, nullptr) << GetLastError();
  for (const int32_t wanted : {0x409, 0x809, 0x1009, 0x009, 0x40C, 0x80C, 0x100C, 0x00C, 0xC0C, 0x407, 0x411,
                               0x40A, 0x000, 0x400, 0x800}) {
    SCOPED_TRACE(wanted);
    const CompiledResources compiled(wanted);
    const ModuleResources resources(module, static_cast<LANGID>(wanted));
    EXPECT_EQ(resources.Language(), compiled.Language());
    std::map<int32_t, std::string> expected;
    std::map<int32_t, std::string> actual;
    for (int32_t id = -1; id < 0x10000 + 4000; id = id == 4000 ? 0xFFFF : id + 1) {
      MadeText made;
      if (const TableText* const text = compiled.FindString(id, made)) expected[id] = text->text;
      if (const TableText* const text = resources.FindString(id, made)) actual[id] = text->text;
      ASSERT_EQ(resources.HasIcon(id), compiled.HasIcon(id)) << id;
      ASSERT_EQ(resources.HasCursor(id), compiled.HasCursor(id)) << id;
      if (!compiled.HasIcon(id) && !compiled.HasCursor(id)) continue;
      const UINT kind = compiled.HasIcon(id) ? IMAGE_ICON : IMAGE_CURSOR;
      const HANDLE loaded = LoadImageW(module, MAKEINTRESOURCEW(id), kind, 16, 16, LR_DEFAULTCOLOR);
      EXPECT_NE(loaded, nullptr) << id;
      DestroyIcon(static_cast<HICON>(loaded));
    }
    EXPECT_EQ(actual, expected);
  }
  FreeLibrary(module);
}

}  // namespace
}  // namespace vexa::windows
