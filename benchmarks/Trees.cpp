// The tree of folders at the sizes that it is made for: children appended, nodes found by their keys, checks
// cleared, and the memory for it. The peers have the same texts, check boxes and keys, and an index from keys
// to nodes; their signals are blocked and what can be reserved is.
#include <absl/container/flat_hash_map.h>
#include <gtk/gtk.h>
#include <malloc.h>

#include <QHash>
#include <QStandardItemModel>
#include <QString>
#include <QTreeWidget>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "benchmarks/Contest.h"
#include "benchmarks/Keys.h"
#include "display/Form.h"
#include "display/Tree.h"

namespace vexa::bench {
namespace {

constexpr uint32_t Children = 10'000;
constexpr uint32_t Million = 1'000'000;
constexpr uint32_t FewChecks = 10'000;
constexpr std::string_view Text = "Some Folder";
constexpr int KeyRole = ::Qt::UserRole + 1;

const std::vector<std::string>& FewKeys() {
  static const std::vector<std::string> keys = Keys(Children);
  return keys;
}
const std::vector<std::string>& MillionKeys() {
  static const std::vector<std::string> keys = Keys(Million);
  return keys;
}

std::vector<QString> QtKeys(const std::vector<std::string>& keys) {
  std::vector<QString> converted;
  for (const std::string& key : keys) converted.push_back(QString::fromStdString(key));
  return converted;
}
const std::vector<QString>& QtFewKeys() {
  static const std::vector<QString> keys = QtKeys(FewKeys());
  return keys;
}

// --- the least

/// A node with its key and text, links to its neighbours and parent, and a bit for its check.
class LeastTree {
 public:
  explicit LeastTree(const std::vector<std::string>& keys)
      : index_(keys.size(), keys.size() * (KeyLength + Text.size())),
        nodes_(std::make_unique_for_overwrite<Node[]>(keys.size())),
        checks_(keys.size() / 64 + 1) {
    for (const std::string& key : keys) {
      const uint32_t node = index_.Add(key, Text);
      nodes_[node] = {{last_, UINT32_MAX}, 0, UINT32_MAX, UINT32_MAX, static_cast<uint32_t>(Text.size())};
      if (last_ != UINT32_MAX) nodes_[last_].links.next = node;
      last_ = node;
    }
  }
  uint32_t Find(std::string_view key) const { return index_.Find(key); }
  void ClearChecks() { std::ranges::fill(checks_, 0); }

 private:
  struct Node {
    Links links;
    uint32_t parent;
    uint32_t firstChild;
    uint32_t lastChild;
    uint32_t textLength;
  };
  LeastIndex index_;
  std::unique_ptr<Node[]> nodes_;
  std::vector<uint64_t> checks_;
  uint32_t last_ = UINT32_MAX;
};

// --- the library

/// Counts what a view would hear of.
class CountingView final : public FormView {
 public:
  int notifications = 0;

 private:
  void Changed(Control& /*control*/) override { ++notifications; }
  void FocusMoved(Form& /*form*/) override {}
  void Refresh(Form& /*form*/) override {}
  void Refresh(Control& /*control*/) override {}
};

struct OurTree {
  explicit OurTree(const std::vector<std::string>& keys) {
    const Tree::Node root = tree.Add(Tree::NoNode, "root", "root");
    tree.Reserve(keys.size());
    for (const std::string& key : keys) tree.Add(root, key, Text, "@129");
  }
  Form form{"f"};
  Tree tree{form, "t"};
  CountingView view;
};

// --- Qt

struct QtItemTree {
  template <typename KeyAt>
  QtItemTree(uint32_t count, KeyAt&& keyAt) {
    model.blockSignals(true);
    root = new QStandardItem(QStringLiteral("root"));
    model.appendRow(root);
    const QString text = QString::fromLatin1(Text.data(), static_cast<qsizetype>(Text.size()));
    QList<QStandardItem*> items;
    items.reserve(count);
    byKey.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
      auto* const item = new QStandardItem(text);
      const QString key = keyAt(i);
      item->setCheckable(true);
      item->setData(key, KeyRole);
      byKey.insert(key, item);
      items.append(item);
    }
    root->appendRows(items);
  }
  QStandardItemModel model;
  QStandardItem* root;
  QHash<QString, QStandardItem*> byKey;
};

struct QtWidgetTree {
  explicit QtWidgetTree(const std::vector<QString>& keys) {
    widget.blockSignals(true);
    auto* const root = new QTreeWidgetItem(&widget);
    const QString text = QString::fromLatin1(Text.data(), static_cast<qsizetype>(Text.size()));
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<qsizetype>(keys.size()));
    byKey.reserve(static_cast<qsizetype>(keys.size()));
    for (const QString& key : keys) {
      auto* const item = new QTreeWidgetItem;
      item->setText(0, text);
      item->setCheckState(0, ::Qt::Unchecked);
      item->setData(0, KeyRole, key);
      byKey.insert(key, item);
      items.append(item);
    }
    root->addChildren(items);
  }
  QTreeWidget widget;
  QHash<QString, QTreeWidgetItem*> byKey;
};

// --- GTK: a child is put before the others, the last one first; behind them would be a walk along all of
// them

struct GtkTree {
  explicit GtkTree(const std::vector<std::string>& keys)
      : store(gtk_tree_store_new(3, G_TYPE_BOOLEAN, G_TYPE_STRING, G_TYPE_STRING)),
        byKey(g_hash_table_new_full(g_str_hash, g_str_equal, g_free, [](gpointer iter) {
          gtk_tree_iter_free(static_cast<GtkTreeIter*>(iter));
        })) {
    GtkTreeIter root;
    gtk_tree_store_insert_with_values(store, &root, nullptr, 0, 1, "root", -1);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
      GtkTreeIter child;
      gtk_tree_store_insert_with_values(store, &child, &root, 0, 0, FALSE, 1, Text.data(), 2, key->c_str(),
                                        -1);
      g_hash_table_insert(byKey, g_strdup(key->c_str()), gtk_tree_iter_copy(&child));
    }
  }
  ~GtkTree() {
    g_hash_table_unref(byKey);
    g_object_unref(store);
  }
  GtkTree(const GtkTree&) = delete;
  GtkTree& operator=(const GtkTree&) = delete;
  GtkTreeStore* store;
  GHashTable* byKey;
};

// --- children

/// The tree is made in the time that counts and dropped outside of it.
template <typename Made, typename Make>
std::function<double()> Making(Make make) {
  return [make] {
    std::unique_ptr<Made> made;
    return PerUnit(
        Children, [&] { made.reset(); }, [&] { made = make(); });
  };
}

Contest AppendChildren() {
  using enum Goal::Kind;
  return {
      "append 10,000 checkable children, indexed by 312-character keys",
      "ns a node",
      {{Role::Limit, "hash, copy, table slot, links",
        Making<LeastTree>([] { return std::make_unique<LeastTree>(FewKeys()); })},
       {Role::Ours, "Tree", Making<OurTree>([] { return std::make_unique<OurTree>(FewKeys()); })},
       {Role::Peer, "Qt standard items", Making<QtItemTree>([] {
          return std::make_unique<QtItemTree>(Children, [](uint32_t i) { return QtFewKeys()[i]; });
        })},
       {Role::Peer, "Qt tree widget",
        Making<QtWidgetTree>([] { return std::make_unique<QtWidgetTree>(QtFewKeys()); })},
       {Role::Peer, "GTK tree store", Making<GtkTree>([] { return std::make_unique<GtkTree>(FewKeys()); })}},
      {{TimesLimit, 1.25}, {FasterThan, 5.0, "Qt standard items"}, {FasterThan, 5.0, "Qt tree widget"}}};
}

// --- a million nodes, made once and measured while they are made

size_t MemoryInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

template <typename Made>
struct Measured {
  template <typename Make>
  explicit Measured(Make make) {
    Keep(MillionKeys());
    const size_t before = MemoryInUse();
    made = make();
    bytesPerNode = static_cast<double>(MemoryInUse() - before) / Million;
  }
  std::unique_ptr<Made> made;
  double bytesPerNode;
};

const Measured<LeastTree>& LeastMillion() {
  static const Measured<LeastTree> measured([] { return std::make_unique<LeastTree>(MillionKeys()); });
  return measured;
}
const Measured<OurTree>& OurMillion() {
  static const Measured<OurTree> measured([] { return std::make_unique<OurTree>(MillionKeys()); });
  return measured;
}
const Measured<QtItemTree>& QtMillion() {
  static const Measured<QtItemTree> measured([] {
    return std::make_unique<QtItemTree>(Million,
                                        [](uint32_t i) { return QString::fromStdString(MillionKeys()[i]); });
  });
  return measured;
}
double GtkBytes() {
  static const double bytes =
      Measured<GtkTree>([] { return std::make_unique<GtkTree>(MillionKeys()); }).bytesPerNode;
  return bytes;
}
using FlatMap = absl::flat_hash_map<std::string, uint32_t>;
const FlatMap& FlatMillion() {
  static const FlatMap map = [] {
    FlatMap made;
    made.reserve(Million);
    for (uint32_t i = 0; i < Million; ++i) made.emplace(MillionKeys()[i], i);
    return made;
  }();
  return map;
}

Contest Memory() {
  using enum Goal::Kind;
  return {"memory of 1,000,000 nodes with 312-character key, text and index",
          "bytes a node",
          {{Role::Limit, "key, text, table slot, links", [] { return LeastMillion().bytesPerNode; }},
           {Role::Ours, "Tree", [] { return OurMillion().bytesPerNode; }},
           {Role::Peer, "Qt standard items and QHash", [] { return QtMillion().bytesPerNode; }},
           {Role::Peer, "GTK tree store and GHashTable", GtkBytes}},
          {{AtMost, 150}}};
}

// --- finding

constexpr uint32_t Searches = 100'000;

/// What is looked for lies in the order in which it is looked for: fetching it costs nobody anything.
const std::vector<std::string>& Wanted() {
  static const std::vector<std::string> wanted = [] {
    std::vector<std::string> keys;
    const std::vector<uint32_t> order = Shuffled(Million);
    for (uint32_t i = 0; i < Searches; ++i) keys.push_back(MillionKeys()[order[i]]);
    return keys;
  }();
  return wanted;
}

template <typename Key, typename Find>
double FindAll(const std::vector<Key>& keys, Find&& find) {
  return PerUnit(Searches, [&] {
    for (const Key& key : keys) Keep(find(key));
  });
}

/// Each line's number says where the next one is.
double OneCacheLine() {
  struct alignas(64) Line {
    uint32_t next;
  };
  static const std::vector<Line> lines = [] {
    std::vector<Line> made(Million);
    const std::vector<uint32_t> order = Shuffled(Million);
    for (uint32_t i = 0; i < Million; ++i) made[order[i]].next = order[(i + 1) % Million];
    return made;
  }();
  return PerUnit(Searches, [] {
    uint32_t at = 0;
    for (uint32_t i = 0; i < Searches; ++i) at = lines[at].next;
    Keep(at);
  });
}

Contest FindByKey() {
  using enum Goal::Kind;
  return {
      "find by 312-character key among 1,000,000",
      "ns",
      {{Role::Limit, "hash, table slot, key",
        [] {
          return FindAll(Wanted(), [](const std::string& key) { return LeastMillion().made->Find(key); });
        }},
       {Role::Limit, "one random cache line", OneCacheLine},
       {Role::Ours, "Tree",
        [] {
          return FindAll(Wanted(), [](const std::string& key) { return OurMillion().made->tree.Find(key); });
        }},
       {Role::Peer, "absl::flat_hash_map",
        [] {
          return FindAll(Wanted(), [](const std::string& key) { return FlatMillion().find(key)->second; });
        }},
       {Role::Peer, "Qt standard items and QHash",
        [] {
          static const std::vector<QString> wanted = QtKeys(Wanted());
          return FindAll(wanted, [](const QString& key) { return QtMillion().made->byKey.value(key); });
        }}},
      {{FasterThan, 2.0, "Qt standard items and QHash"}}};
}

// --- clearing

double ClearOurs(uint32_t step, bool kept) {
  OurTree& ours = *OurMillion().made;
  ours.tree.KeepChanges(kept);
  for (uint32_t i = 0; i < Million; i += step) ours.tree.SetChecked(1 + i, true);
  ours.tree.TakeChanges();
  ours.form.SetView(&ours.view);
  ours.view.notifications = 0;
  const double spent = Timed([&] {
    ours.tree.ClearChecks();
    if (kept) Keep(ours.tree.TakeChanges());
  });
  if (ours.view.notifications != 1 || ours.tree.CheckedCount() != 0) std::abort();
  ours.form.SetView(nullptr);
  ours.tree.KeepChanges(false);
  return spent / 1e3;
}

double ClearQt(int step) {
  QStandardItem* const root = QtMillion().made->root;
  const int count = root->rowCount();
  for (int i = 0; i < count; i += step) root->child(i)->setCheckState(::Qt::Checked);
  return Timed([&] {
           for (int i = 0; i < count; ++i) root->child(i)->setCheckState(::Qt::Unchecked);
         }) /
         1e3;
}

Contest ClearChecks(const std::string& checks, uint32_t step, double goal) {
  using enum Goal::Kind;
  return {
      "clear " + checks + " checks of 1,000,000 nodes, one notification",
      "us",
      {{Role::Limit, "a bit a node", [] { return Timed([] { LeastMillion().made->ClearChecks(); }) / 1e3; }},
       {Role::Ours, "Tree", [step] { return ClearOurs(step, false); }},
       {Role::Also, "Tree, every one of them shown by a view", [step] { return ClearOurs(step, true); }},
       {Role::Peer, "Qt standard items", [step] { return ClearQt(static_cast<int>(step)); }}},
      {{AtMost, goal}}};
}

}  // namespace

std::vector<Contest> TreeContests() { return {AppendChildren()}; }

std::vector<Contest> LargeTreeContests() {
  return {FindByKey(), ClearChecks("10,000", Million / FewChecks, 100), ClearChecks("1,000,000", 1, 1000),
          Memory()};
}

}  // namespace vexa::bench
