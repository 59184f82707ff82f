// The tree of nodes named by keys, and the collection of records under the same keys, at the sizes that they
// are made for. Beside each stands the floor: the bytes that have to be copied, the cache line that has to be
// fetched.
#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

#include "core/KeyedCollection.h"
#include "display/Form.h"
#include "display/Tree.h"

namespace vexa {
namespace {

constexpr size_t LongKey = 312;  // two long ids and what splits them
constexpr size_t ShortKey = 50;

std::string KeyOf(uint32_t number, size_t length) {
  std::string key = std::to_string(number);
  // What differs stands in the middle, as in the ids of folders of one store.
  const std::string half((length - key.size()) / 2, '0');
  key = half + key + half;
  return key.append(length - key.size(), 'F');
}

std::vector<std::string> Keys(uint32_t count, size_t length) {
  std::vector<std::string> keys;
  for (uint32_t i = 0; i < count; ++i) keys.push_back(KeyOf(i, length));
  return keys;
}

const std::vector<uint32_t>& RandomOrder(uint32_t count) {
  static std::vector<uint32_t> order;
  order.resize(count);
  std::mt19937 random(4711);
  for (uint32_t& number : order) number = static_cast<uint32_t>(random() % count);
  return order;
}

void FillTree(Tree& tree, const std::vector<std::string>& keys) {
  const Tree::Node root = tree.Add(Tree::NoNode, "root", "root");
  for (const std::string& key : keys) tree.Add(root, key, "Some Folder", "@129");
}

void AppendChildren(benchmark::State& state) {
  const std::vector<std::string> keys = Keys(10'000, LongKey);
  for (auto _ : state) {
    Form form("f");
    Tree tree(form, "t");
    FillTree(tree, keys);
    benchmark::DoNotOptimize(tree.NodeCount());
  }
  state.counters["a node"] =
      benchmark::Counter(10'000, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(AppendChildren)->Unit(benchmark::kMicrosecond);

/// The floor of the same: key and text copied into fresh memory.
void CopyKeysOfChildren(benchmark::State& state) {
  const std::vector<std::string> keys = Keys(10'000, LongKey);
  constexpr std::string_view text = "Some Folder";
  for (auto _ : state) {
    TextArena arena;
    for (const std::string& key : keys) {
      char* const kept = arena.Take(key.size() + text.size());
      std::memcpy(kept, key.data(), key.size());
      std::memcpy(kept + key.size(), text.data(), text.size());
      benchmark::DoNotOptimize(kept);
    }
  }
  state.counters["a node"] =
      benchmark::Counter(10'000, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(CopyKeysOfChildren)->Unit(benchmark::kMicrosecond);

/// A tree of a million nodes, made once.
struct Million {
  static constexpr uint32_t Count = 1'000'000;
  std::vector<std::string> keys = Keys(Count, ShortKey);
  Form form{"f"};
  Tree tree{form, "t"};
  Million() { FillTree(tree, keys); }
};
Million& TheMillion() {
  static Million million;
  return million;
}

void FindByKey(benchmark::State& state) {
  Million& million = TheMillion();
  const std::vector<uint32_t>& order = RandomOrder(Million::Count);
  size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(million.tree.Find(million.keys[order[next]]));
    if (++next == order.size()) next = 0;
  }
  state.counters["bytes a node"] =
      static_cast<double>(million.tree.MemoryInUse()) / static_cast<double>(million.tree.NodeCount());
}
BENCHMARK(FindByKey);

/// The floor of the same: the key that is looked for is itself read from a random place.
void ReadKeyAtRandom(benchmark::State& state) {
  const Million& million = TheMillion();
  const std::vector<uint32_t>& order = RandomOrder(Million::Count);
  size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(HashOfKey(million.keys[order[next]]));
    if (++next == order.size()) next = 0;
  }
}
BENCHMARK(ReadKeyAtRandom);

void ClearChecks(benchmark::State& state) {
  Million& million = TheMillion();
  million.tree.KeepChanges(state.range(0) != 0);  // with a view that has to uncheck what it shows, or without
  for (auto _ : state) {
    state.PauseTiming();
    for (const uint32_t number : RandomOrder(10'000)) million.tree.SetChecked(1 + number * 100, true);
    million.tree.TakeChanges();
    state.ResumeTiming();
    million.tree.ClearChecks();
    benchmark::DoNotOptimize(million.tree.TakeChanges());
  }
  million.tree.KeepChanges(false);
}
BENCHMARK(ClearChecks)->ArgName("view")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// --- the collection of records

void AddRecords(benchmark::State& state) {
  const std::vector<std::string> keys = Keys(10'000, LongKey);
  for (auto _ : state) {
    KeyedCollection<int> records;
    for (const std::string& key : keys) records.Add(key, 1);
    benchmark::DoNotOptimize(records.Size());
  }
  state.SetItemsProcessed(state.iterations() * 10'000);
}
BENCHMARK(AddRecords)->Unit(benchmark::kMicrosecond);

void FindRecords(benchmark::State& state) {
  const std::vector<std::string> keys = Keys(10'000, LongKey);
  KeyedCollection<int> records;
  for (const std::string& key : keys) records.Add(key, 1);
  for (auto _ : state) {
    for (const std::string& key : keys) benchmark::DoNotOptimize(records.Find(key));
  }
  state.SetItemsProcessed(state.iterations() * 10'000);
}
BENCHMARK(FindRecords)->Unit(benchmark::kMicrosecond);

void RemoveRecords(benchmark::State& state) {
  const std::vector<std::string> keys = Keys(10'000, LongKey);
  for (auto _ : state) {
    state.PauseTiming();
    KeyedCollection<int> records;
    for (const std::string& key : keys) records.Add(key, 1);
    state.ResumeTiming();
    for (const std::string& key : keys) records.Remove(key);
  }
  state.SetItemsProcessed(state.iterations() * 10'000);
}
BENCHMARK(RemoveRecords)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vexa
