// The interfaces that the add-in is bound by are bound by position: the compiled type library and the calls
// of the adapters must both agree with the contract's order.
#include <gtest/gtest.h>

#include <array>
#include <utility>

#include "contracts/RegSettings.h"
#include "tests/windows/TestModule.h"
#include "windows/adapters/Adapters.h"
#include "windows/com/Text.h"

namespace vexa::windows {
namespace {

constexpr int32_t DispatchSlots = 7;  // those that every dual interface has

std::string Slot(const std::string& name, INVOKEKIND kind) {
  switch (kind) {
    case INVOKE_PROPERTYGET:
      return name + " get";
    case INVOKE_PROPERTYPUT:
      return name + " put";
    case INVOKE_PROPERTYPUTREF:
      return name + " putref";
    default:
      return name + " call";
  }
}

/// The contract's slots, in order.
std::vector<std::string> ContractSlots() {
  std::vector<std::string> slots;
  for (const RegSettingsMember& member : RegSettingsMembers) {
    const std::string name =
        member.name.empty() ? "Unused" + std::to_string(member.place) : std::string(member.name);
    const bool calls = member.kind == MemberKind::Method || member.kind == MemberKind::UnusedMember;
    for (int32_t i = 0; i < member.SlotCount(); ++i) {
      slots.push_back(Slot(name, calls    ? INVOKE_FUNC
                                 : i == 0 ? INVOKE_PROPERTYGET
                                 : i == 1 ? INVOKE_PROPERTYPUT
                                          : INVOKE_PROPERTYPUTREF));
    }
  }
  return slots;
}

TEST(Positions, TheTypeLibraryHasTheContractsOrder) {
  ComPtr<ITypeLib> library;
  ASSERT_EQ(LoadTypeLibEx(TestedModulePath().c_str(), REGKIND_NONE, library.Receive()), S_OK);
  ComPtr<ITypeInfo> dispatch;
  ASSERT_EQ(library->GetTypeInfoOfGuid(__uuidof(IRegSettings), dispatch.Receive()), S_OK);
  // A dual interface shows its vtable through the interface that stands behind it.
  HREFTYPE behind = 0;
  ASSERT_EQ(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &behind), S_OK);
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(dispatch->GetRefTypeInfo(behind, info.Receive()), S_OK);
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
  const UINT count = attributes->cFuncs;
  info->ReleaseTypeAttr(attributes);

  const std::vector<std::string> expected = ContractSlots();
  std::vector<std::string> found(expected.size());
  for (UINT i = 0; i < count; ++i) {
    FUNCDESC* function = nullptr;
    ASSERT_EQ(info->GetFuncDesc(i, &function), S_OK);
    Bstr name;
    EXPECT_EQ(info->GetDocumentation(function->memid, name.Receive(), nullptr, nullptr, nullptr), S_OK);
    const std::string slot = Slot(name.Text(), function->invkind);
    const auto offset = static_cast<size_t>(function->oVft) / sizeof(void*);
    info->ReleaseFuncDesc(function);
    ASSERT_GE(offset, static_cast<size_t>(DispatchSlots)) << slot;
    ASSERT_LT(offset - DispatchSlots, expected.size()) << slot;
    found[offset - DispatchSlots] = slot;
  }
  EXPECT_EQ(count, expected.size());
  EXPECT_EQ(found, expected);
}

// --- an object that consists of nothing but a table of functions

int32_t lastSlot = -1;

/// Takes any call; what it would answer through pointers stays as the caller prepared it.
template <size_t Number>
HRESULT STDMETHODCALLTYPE Answer(void* /*self*/) {
  lastSlot = static_cast<int32_t>(Number) - DispatchSlots;
  return S_OK;
}
ULONG STDMETHODCALLTYPE CountReferences(void* /*self*/) { return 1; }

template <size_t... Numbers>
std::array<const void*, sizeof...(Numbers)> MakeTable(std::index_sequence<Numbers...>) {
  std::array<const void*, sizeof...(Numbers)> table{reinterpret_cast<const void*>(&Answer<Numbers>)...};
  table[1] = table[2] = reinterpret_cast<const void*>(&CountReferences);
  return table;
}

TEST(Positions, TheAdapterCallsEveryMemberAtItsPlace) {
  constexpr size_t size = 7 + 200;
  const std::array<const void*, size> table = MakeTable(std::make_index_sequence<size>());
  const void* const object = table.data();
  const RegSettingsRef settings = AdaptSettings(ComPtr<IRegSettings>(
      reinterpret_cast<IRegSettings*>(const_cast<const void**>(static_cast<const void* const*>(&object)))));

  const auto expect = [](std::string_view name, int32_t accessor) {
    EXPECT_EQ(lastSlot, FirstSlotOf(name) + accessor) << name;
    lastSlot = -1;
  };
#define VEXA_READ(place, Name, Type) \
  settings->Get##Name();             \
  expect(#Name, 0);
#define VEXA_READ_ONLY(place, Name, Type) VEXA_READ(place, Name, Type)
#define VEXA_PROPERTY(place, Name, Type) \
  VEXA_READ(place, Name, Type)           \
  settings->Let##Name(Type{});           \
  expect(#Name, 1);
#define VEXA_COLLECTION(place, Name, Type) \
  VEXA_READ(place, Name, Type)             \
  settings->Let##Name(nullptr);            \
  expect(#Name, 1);                        \
  settings->Set##Name(nullptr);            \
  expect(#Name, 2);
#include "contracts/RegSettings.members.inc"
  settings->RestoreHiddenDialogs();
  expect("RestoreHiddenDialogs", 0);
  bool flag = false;
  settings->Load(0, flag, flag);
  expect("Load", 0);
  CanWrite(*settings);
  expect("CanWrite", 0);
  settings->FindFolderSet("", "", nullptr);
  expect("FindFolderSet", 0);
}

}  // namespace
}  // namespace vexa::windows
