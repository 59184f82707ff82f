// A page of the module in a container, with an add-in behind it: what the tests of its life stand on. Each of
// them ends with everything released.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "tests/windows/Bench.h"
#include "tests/windows/control/Container.h"
#include "tests/windows/control/Module.h"

namespace vexa::windows {

class PageTest : public testing::Test {
 protected:
  void TearDown() override {
    classes_.reset();
    bench_.reset();
    EXPECT_EQ(LivingObjects::Count(), 0) << "an object of the add-in was not released";
    EXPECT_TRUE(module_.CanUnload()) << "an object of the module lives on";
  }

  ComPtr<IOutlookPropertiesPage> CreatePage() const { return module_.CreatePage(); }
  HRESULT Initialize(IOutlookPropertiesPage& page) {
    VARIANT_BOOL again = VARIANT_FALSE;
    return page.Initialize(bench_->exports->Addin().Get(), &again);
  }
  /// A page in a container, initialised by the add-in.
  void Open(Container& container) {
    container.Embed(CreatePage());
    ASSERT_EQ(Initialize(container.Page()), S_OK);
    container.Pump();
  }
  workbench::SettingsData* WorkingCopy() const { return bench_->workbench.WorkingCopy(); }
  workbench::SettingsData& Stored() { return bench_->workbench.profile.settings; }
  static bool Contains(const std::vector<std::string>& calls, const std::string& call) {
    return std::ranges::find(calls, call) != calls.end();
  }
  /// How often the add-in was told that the page is closed.
  int TimesClosed() const {
    return static_cast<int>(std::ranges::count(bench_->calls.Lines(), "App.SetOptionsPageOpen(False)"));
  }

  Apartment apartment_;
  Module module_;
  std::optional<workbench::Bench> bench_{std::in_place, workbench::ProfileWithFolderSet()};
  std::optional<workbench::ClassRegistration> classes_{std::in_place, bench_->exports};
};

}  // namespace vexa::windows
