// Add-ins that are not what they should be: their objects fail, answer with nothing, or do something else in
// the middle of a call before they answer as they should. The user is told, nothing crashes, and everything
// is released.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <optional>
#include <set>

#include "tests/windows/Modals.h"
#include "tests/windows/control/Handles.h"
#include "tests/windows/control/PageTest.h"

namespace vexa::windows {
namespace {

using workbench::CallLog;
using workbench::Fault;

/// What the user presses in each dialog, one after the other, before it is closed: controls or keys.
const std::map<std::string, std::vector<std::string>>& Presses() {
  static const std::map<std::string, std::vector<std::string>> presses = {
      {"frmEditFolderset", {"cmdSelContact", "cmdShared", "cmdOk"}},
      {"frmSharedFolders", {"chkSCal", "chkLog", "cmdOk"}},
      {"frmTrackingOptions", {"cmdFolders", "chkAudit", "chkSearchNow", "cmdOk"}},
      {"frmFolders", {"Right", "Down", "Space", "cmdAll", "cmdOk"}},
      {"frmAdvanced", {"chkAssume", "cmdAdjCache", "cmdAdjBackground", "cmdOk"}},
      {"frmCacheAdjust", {"chkSync", "cmdOk"}},
      {"frmBackgroundAdjust", {"chkDelay", "cmdOk"}},
  };
  return presses;
}

class HostileAddin : public PageTest {
 protected:
  /// What a member does at its next call: what the host, the add-in or the user does meanwhile, and how the
  /// call then fails, if it does.
  struct MemberFault {
    std::string name;
    std::function<void()> operation = {};
    std::optional<Fault> fault = {};
    bool drops = false;  // everything that the page holds
  };

  std::vector<MemberFault> Faults() {
    const auto page = [this] { return container_->PageAs<IOutlookPropertiesPage>(); };
    const auto code = [](HRESULT result) { return Fault(Error(static_cast<int32_t>(result), {}, {})); };
    std::vector<MemberFault> all = {
        {"hides the page", [this] { container_->DoVerb(OLEIVERB_HIDE); }, {}, true},
        {"closes the page", [this] { container_->PageAs<IOleObject>()->Close(OLECLOSE_NOSAVE); }, {}, true},
        {"drops the page", [this] { container_->Forget(); }},
        {"initialises again", [this, page] { Initialize(*page().Get()); }},
        {"applies", [page] { page()->SetDirty(), page()->PropertyPage_Apply(); }},
        {"destroys the windows", [this] { container_->DestroyWindows(); }},
        {"closes the dialog", [] { SendMessageW(Modals::Front(), WM_CLOSE, 0, 0); }},
        {"lets the user press again", [this] {
           if (Modals::Front() == nullptr) Press(action_);
           container_->Pump();
         }}};
    for (size_t operation = 0, count = all.size(); operation < count; ++operation) {
      MemberFault& failing = all.emplace_back(all[operation]);
      failing.name += " and fails";
      failing.fault = code(E_ABORT);
    }
    all.push_back({"is gone", {}, code(RPC_E_DISCONNECTED)});
    all.push_back({"gives a code that nobody knows", {}, code(static_cast<HRESULT>(0x8BADF00D))});
    all.push_back({"answers with nothing", {}, Fault(Fault::Kind::Nothing)});
    return all;
  }

  void Plan(const std::string& member, const MemberFault& what) {
    if (what.operation) {
      bench_->calls.PlanInterruption(member, 1, [&] {
        what.operation();
        dropped_ = what.drops;
      });
    }
    if (!what.fault) return;
    const bool possible = what.fault->kind != Fault::Kind::Nothing || CallLog::AnswersWithObject(member);
    if (possible) bench_->calls.PlanFault(member, 1, *what.fault);
  }

  void Press(const std::string& button) {
    const HWND page = container_->PageWindow();
    const HWND found = page == nullptr ? nullptr : FindNamed(page, button);
    if (found != nullptr && IsWindowEnabled(found) != FALSE) Modals::PostClick(found);
  }

  /// The user does what there is to do in the dialog in front, then closes it.
  static void GoOn(HWND front, std::map<HWND, size_t>& done) {
    static const std::map<std::string, int> keys = {
        {"Right", VK_RIGHT}, {"Down", VK_DOWN}, {"Space", VK_SPACE}};
    const auto presses = Presses().find(workbench::FormNameOf(front));
    const size_t next = done[front]++;
    if (presses == Presses().end() || next >= presses->second.size()) return Modals::SendAway(front);
    const std::string& what = presses->second[next];
    if (const auto key = keys.find(what); key != keys.end()) return Modals::PostKey(key->second);
    const HWND control = FindNamed(front, what);
    if (control != nullptr && IsWindowEnabled(control) != FALSE) Modals::PostClick(control);
  }

  /// A page from its beginning to its end, with one thing done on it that `plan` is made for: a call of the
  /// host, or a press of a button.
  void Visit(const std::string& action, const std::function<void()>& plan) {
    action_ = action;
    dropped_ = false;
    Stored() = stored_;
    bench_->user.picked = 4;
    std::map<HWND, size_t> done;
    const Modals user([&](HWND front) { GoOn(front, done); });
    {
      Container container;
      container_ = &container;
      container.Embed(CreatePage());
      const ComPtr<IOutlookPropertiesPage> page = container.PageAs<IOutlookPropertiesPage>();
      if (action == "Initialize") plan();
      Initialize(*page.Get());
      container.Pump();
      if (action == "Apply") {
        page->SetDirty();
        page->put_SearchNowPending(VARIANT_TRUE);
        plan();
        page->PropertyPage_Apply();
      } else if (action != "Initialize") {
        plan();
        Press(action);
      }
      container.Pump();
      EXPECT_TRUE(container.Top() == nullptr || IsWindowEnabled(container.Top()) != FALSE);
      EXPECT_TRUE(!dropped_ || WorkingCopy() == nullptr) << "what was dropped came back";
      bench_->calls.SetObserver({});
      EXPECT_EQ(bench_->calls.FaultsPlanned() + bench_->calls.InterruptionsPlanned(), 0U) << "never called";
      Stored() = stored_;  // half of a change may have been applied
      EXPECT_EQ(Initialize(*page.Get()), S_OK) << "it cannot be used any more";
    }
    EXPECT_EQ(WorkingCopy(), nullptr) << "the settings are still held";
    EXPECT_TRUE(module_.CanUnload());
  }

  Container* container_ = nullptr;
  std::string action_;
  bool dropped_ = false;
  const workbench::SettingsData stored_ = [this] {
    workbench::SettingsData& settings = Stored();
    settings.MonitoredFolderCount = 2;
    settings.MonitoredFolderEntryIDs = {"6", "M3"};
    settings.MonitoredFolderStoreIDs = {"", "AA01"};
    settings.MonitoredFolderItemTypes = {0x40000001, 2};
    settings.LoggingMethod = 3;
    return settings;
  }();
};

/// Members take turns in misbehaving, the settings more than others: they are many and alike. With
/// VEXA_ALL_FAULTS every member does everything.
TEST_F(HostileAddin, NothingThatItDoesHurtsThePage) {
  const auto faults = Faults();
  const bool all = std::getenv("VEXA_ALL_FAULTS") != nullptr;
  size_t turn = 0;
  for (const std::string action : {"Initialize", "cmdAdd", "cmdChange", "cmdRemove", "cmdTracking",
                                   "cmdAdvanced", "cmdAbout", "Apply"}) {
    std::set<std::string> members;
    Visit(action,
          [&] { bench_->calls.SetObserver([&](std::string_view member) { members.emplace(member); }); });
    for (const std::string& member : members) {
      const size_t turns = all ? faults.size() : member.starts_with("RS.") ? 1 : 4;
      for (size_t i = 0; i < turns; ++i, ++turn) {
        const MemberFault& what = faults[turn % faults.size()];
        SCOPED_TRACE(action + ": " + member + " " + what.name);
        Visit(action, [&] { Plan(member, what); });
      }
    }
  }
  EXPECT_GT(turn, 300U);
}

/// The page takes nothing from an object that is no add-in, and nothing happens on it any more.
TEST_F(HostileAddin, OneThatIsNoneLeavesThePageInactive) {
  for (const bool none : {true, false}) {
    Container container;
    Open(container);
    const auto page = container.PageAs<IOutlookPropertiesPage>();
    VARIANT_BOOL again = VARIANT_FALSE;
    EXPECT_TRUE(FAILED(page->Initialize(none ? nullptr : page.Get(), &again)));
    EXPECT_EQ(page->SetDirty(), S_OK);
    EXPECT_EQ(page->PropertyPage_Apply(), S_OK);
    EXPECT_FALSE(Contains(bench_->calls.Lines(), "App.ApplySettings(RS)"));
  }
}

TEST_F(HostileAddin, SixteenPagesAtOnceKeepOutOfEachOthersWay) {
  const auto liveTogether = [&] {
    const Modals user(Modals::SendAway);
    std::vector<std::unique_ptr<Container>> containers;
    for (int i = 0; i < 16; ++i) {
      containers.push_back(std::make_unique<Container>());
      Open(*containers.back());
    }
    for (size_t i = 0; i < containers.size(); i += 3) {
      container_ = containers[i].get();
      ASSERT_EQ(container_->DoVerb(OLEIVERB_UIACTIVATE), S_OK);
      for (const char* const button : {"cmdChange", "cmdTracking", "cmdAbout", "cmdRemove"}) {
        Press(button);
        container_->Pump();
      }
    }
    for (size_t i = 0; i < containers.size(); i += 2) containers[i].reset();
    for (size_t i = 1; i < containers.size(); i += 2) {
      EXPECT_NE(IsWindowEnabled(containers[i]->Control("cmdAdd")), FALSE)
          << "page " << i << " is as usable as before";
    }
  };
  liveTogether();  // what is kept for the whole process is there now
  const HandleCounts before = CountHandles();
  liveTogether();
  EXPECT_EQ(CountHandles(), before);
}

}  // namespace
}  // namespace vexa::windows
