// The folder picker on hierarchies as large as they get. What its outside calls cost inside Outlook, nobody
// can know here; how many they are is counted.
#include <benchmark/benchmark.h>

#include <array>

#include "benchmarks/NobodyThere.h"
#include "dialogs/frmFolders.h"
#include "display/UserActions.h"

namespace vexa::workbench {
namespace {

constexpr const char* StoreID = "57F0";

class NobodysParent final : public DialogParent {
 public:
  void SetDirty() override {}
};

/// A stage on one generated store, with an empty picker.
struct PickerStage {
  PickerStage(uint32_t folders, uint32_t breadth, int32_t storedEntries = 0)
      : stage(MakeProfile(folders, breadth, storedEntries), "", std::nullopt, windows, answers) {
    stage.calls.SetRecording(false);
    settings = stage.services.objects.CreateRegSettings();
    bool blocked = false;
    bool available = false;
    settings->Load(0, blocked, available);
  }

  static Profile MakeProfile(uint32_t folders, uint32_t breadth, int32_t storedEntries) {
    Profile profile;
    GeneratedFolders rule;
    rule.name = "Archive";
    rule.count = folders;
    rule.breadth = breadth;
    profile.world.AddGeneratedStore(StoreID, StoreKind::PersonalFolders, rule);
    profile.settings.MonitoredFolderCount = storedEntries;
    for (int32_t i = 1; i <= storedEntries; ++i) {
      profile.settings.MonitoredFolderEntryIDs.push_back(rule.EntryIdOf(static_cast<uint32_t>(i)));
      profile.settings.MonitoredFolderStoreIDs.emplace_back(StoreID);
      profile.settings.MonitoredFolderItemTypes.push_back(1);
    }
    return profile;
  }

  std::unique_ptr<frmFolders> Open() {
    auto picker = std::make_unique<frmFolders>(stage.services);
    picker->Initialize(stage.workbench.Addin(), settings, parent);
    return picker;
  }

  NoWindows windows;
  NoAnswers answers;
  NobodysParent parent;
  Stage stage;
  RegSettingsRef settings;
};

void CountCalls(benchmark::State& state, int64_t calls) {
  state.counters["outside calls"] = static_cast<double>(calls) / static_cast<double>(state.iterations());
}

/// On a million folders: it must cost the stores and the stored entries alone.
void OpenPicker(benchmark::State& state) {
  PickerStage stage(1'000'000, 10, static_cast<int32_t>(state.range(0)));
  const int64_t before = stage.stage.calls.CallCount();
  for (auto _ : state) benchmark::DoNotOptimize(stage.Open());
  CountCalls(state, stage.stage.calls.CallCount() - before);
}
BENCHMARK(OpenPicker)->Arg(0)->Arg(100)->Arg(10'000)->Unit(benchmark::kMicrosecond);

void ExpandFolder(benchmark::State& state) {
  const auto children = static_cast<uint32_t>(state.range(0));
  PickerStage stage(children + 1, children);
  int64_t calls = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::unique_ptr<frmFolders> picker = stage.Open();
    const Tree::Node store = picker->tvFolders.LastChild(Tree::NoNode);
    const int64_t before = stage.stage.calls.CallCount();
    state.ResumeTiming();
    UserActions(*picker).Expand(picker->tvFolders, store, true);
    state.PauseTiming();
    calls += stage.stage.calls.CallCount() - before;
    picker.reset();
    state.ResumeTiming();
  }
  CountCalls(state, calls);
}
BENCHMARK(ExpandFolder)->Arg(100)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMicrosecond);

/// The outside calls of the same, and nothing else: what the picker adds to them is the difference.
void ReadFolders(benchmark::State& state) {
  const auto children = static_cast<uint32_t>(state.range(0));
  PickerStage stage(children + 1, children);
  constexpr std::array mailDefaults{6, 5, 16, 3, 4};
  int64_t calls = 0;
  for (auto _ : state) {
    const int64_t before = stage.stage.calls.CallCount();
    const NameSpaceRef session = stage.stage.workbench.Addin()->Session();
    const FolderRef root = session->Folders()->Item(1);
    const std::shared_ptr<Folders> folders = root->Folders();
    const int32_t count = folders->Count();
    for (int32_t i = 1; i <= count; ++i) {
      const FolderRef folder = folders->Item(i);
      benchmark::DoNotOptimize(folder->EntryID());
      benchmark::DoNotOptimize(folder->StoreID());
      benchmark::DoNotOptimize(folder->Name());
      const ItemType itemType = folder->DefaultItemType();
      for (const int32_t number : mailDefaults) {
        // One for each kind but mail, none for posts; the stage's user has no default folders.
        const bool asked = itemType == ItemType::Mail || (itemType != ItemType::Post && number == 6);
        if (asked) IgnoreErrors([&] { benchmark::DoNotOptimize(session->GetDefaultFolder(number)); });
      }
      benchmark::DoNotOptimize(folder->Folders()->Count());
    }
    calls += stage.stage.calls.CallCount() - before;
  }
  CountCalls(state, calls);
}
BENCHMARK(ReadFolders)->Arg(10'000)->Unit(benchmark::kMicrosecond);

/// A million folders in the tree, ten thousand of them checked.
void ClearAll(benchmark::State& state) {
  constexpr uint32_t folders = 1'000'000;
  constexpr int32_t checked = 10'000;
  PickerStage stage(folders, 10, checked);
  std::unique_ptr<frmFolders> picker = stage.Open();
  Tree& tree = picker->tvFolders;
  const Tree::Node store = tree.LastChild(Tree::NoNode);
  tree.Remove(store);
  picker->AddFolder(stage.stage.workbench.Addin()->Session()->Folders()->Item(1), Tree::NoNode, true);
  if (tree.CheckedCount() != checked) state.SkipWithError("not every stored folder was found");
  std::vector<Tree::Node> nodes;
  for (Tree::Node node = tree.FirstChecked(); node != Tree::NoNode; node = tree.NextChecked(node)) {
    nodes.push_back(node);
  }
  const int64_t before = stage.stage.calls.CallCount();
  for (auto _ : state) {
    UserActions(*picker).Click(picker->cmdClear);
    state.PauseTiming();
    for (const Tree::Node node : nodes) tree.SetChecked(node, true);
    state.ResumeTiming();
  }
  CountCalls(state, stage.stage.calls.CallCount() - before);
  state.counters["bytes a node"] =
      static_cast<double>(tree.MemoryInUse()) / static_cast<double>(tree.NodeCount());
}
BENCHMARK(ClearAll)->Unit(benchmark::kMicrosecond)->Iterations(100);

}  // namespace
}  // namespace vexa::workbench
