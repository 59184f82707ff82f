// What the library itself costs: texts, errors, and the page on small and large lists of folder sets. The
// outside calls go to the workbench's objects with their trace switched off, so they are cheap here; inside
// Outlook they are what costs. That is why the page's benchmark counts them as well.
#include <benchmark/benchmark.h>

#include "benchmarks/NobodyThere.h"
#include "core/Handlers.h"

namespace vexa::workbench {
namespace {

void LoadEveryString(benchmark::State& state) {
  const CompiledResources source(1033);
  const Resources resources(source);
  const std::initializer_list<Variant> arguments{"first", "second", "third"};
  for (auto _ : state) {
    for (const StringEntry& entry : LanguageTables().front().entries) {
      benchmark::DoNotOptimize(resources.LoadString(entry.id, arguments));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(LanguageTables().front().entries.size()));
}
BENCHMARK(LoadEveryString);

void CopyEveryString(benchmark::State& state) {  // the limit: one allocation and one copy a text
  for (auto _ : state) {
    for (const StringEntry& entry : LanguageTables().front().entries) {
      benchmark::DoNotOptimize(std::string(entry.text));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(LanguageTables().front().entries.size()));
}
BENCHMARK(CopyEveryString);

/// A mailbox with `count` folder sets on folders of its own.
Profile ProfileWithFolderSets(int32_t count) {
  Profile profile;
  const uint32_t store = profile.world.AddStore("57F0", StoreKind::PublicFolders);
  const FolderIndex root = profile.world.AddFolder(store, NoFolder, "Public Folders", "R", ItemType::Mail);
  const auto addFolder = [&](const char* kind, int32_t number, ItemType itemType) {
    const std::string id = kind + std::to_string(number);
    profile.world.AddFolder(store, root, id, id, itemType);
    return id;
  };
  SettingsData& settings = profile.settings;
  settings.FolderSetCount = count;
  for (int32_t i = 0; i < count; ++i) {
    settings.ContactEntryIDs.push_back(addFolder("C", i, ItemType::Contact));
    settings.JournEntryIDs.push_back(addFolder("J", i, ItemType::Journal));
    settings.EmailEntryIDs.push_back(addFolder("E", i, ItemType::Post));
    for (auto* ids : {&settings.ContactStoreIDs, &settings.JournStoreIDs, &settings.EmailStoreIDs}) {
      ids->push_back("57F0");
    }
  }
  return profile;
}

void InitializePage(benchmark::State& state) {
  NoWindows windows;
  NoAnswers answers;
  const auto count = static_cast<int32_t>(state.range(0));
  Stage stage(ProfileWithFolderSets(count), "", std::nullopt, windows, answers);
  stage.calls.SetRecording(false);
  OutlookPropertiesPage& page = stage.CreatePage();
  const int64_t before = stage.calls.CallCount();
  for (auto _ : state) page.Initialize(stage.workbench.Addin());
  const int64_t calls = stage.calls.CallCount() - before;
  state.counters["outside calls"] = static_cast<double>(calls) / static_cast<double>(state.iterations());
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(InitializePage)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

template <int Level>
void PassOnLevels() {
  if constexpr (Level == 0) {
    throw Error(1001, "Something broke", "VexaAddin");
  } else {
    PassOn("Module", "Procedure", [] { PassOnLevels<Level - 1>(); });
  }
}

template <int Level>
void RethrowLevels() {
  if constexpr (Level == 0) {
    throw Error(1001, "Something broke", "VexaAddin");
  } else {
    try {
      RethrowLevels<Level - 1>();
    } catch (...) {
      throw;
    }
  }
}

template <void Raise()>
void ErrorThroughTenLevels(benchmark::State& state) {
  for (auto _ : state) {
    try {
      Raise();
    } catch (const Error& error) {
      benchmark::DoNotOptimize(&error);
    }
  }
}
BENCHMARK(ErrorThroughTenLevels<PassOnLevels<10>>)->Name("ErrorThroughTenLevels/trail");
BENCHMARK(ErrorThroughTenLevels<RethrowLevels<10>>)->Name("ErrorThroughTenLevels/plain rethrow");

}  // namespace
}  // namespace vexa::workbench

BENCHMARK_MAIN();
