// The interfaces that the add-in is bound by are bound by position. The header that the adapters are compiled
// with and the type library come out of one description, which must agree with the contract's order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "contracts/RegSettings.h"
#include "tests/windows/TestModule.h"
#include "windows/adapters/Adapters.h"
#include "windows/com/Text.h"

namespace vexa::windows {
namespace {

constexpr int32_t DispatchSlots = 7;  // those that every dual interface has

std::string Slot(const std::string& name, INVOKEKIND kind) { return name + " " + std::to_string(kind); }

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

}  // namespace
}  // namespace vexa::windows
