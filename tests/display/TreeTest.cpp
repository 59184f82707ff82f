#include <gtest/gtest.h>

#include <map>
#include <random>

#include "core/Error.h"
#include "display/Tree.h"
#include "display/UserActions.h"

namespace vexa {
namespace {

/// Counts what the form's view is told.
class CountingView final : public FormView {
 public:
  void Changed(Control& /*control*/) override { ++changes; }
  void FocusMoved(Form& /*form*/) override {}
  void Refresh(Form& /*form*/) override {}
  void Refresh(Control& /*control*/) override {}
  int Take() { return std::exchange(changes, 0); }
  int changes = 0;
};

/// Keys that share what hashes and comparisons might look at: length, beginning and end.
std::string KeyOf(int number) {
  std::string key(static_cast<size_t>(20 + number % 5 * 70), 'A');
  key += std::to_string(number);
  if (number % 3 == 0) key.append(30, static_cast<char>('a' + number % 7));
  return key + std::string(40, 'F');
}

/// A tree in the plainest way: what the one under test should be, and what a window that does as its changes
/// say has come to show.
struct PlainTree {
  struct Item {
    std::string text, image;
    bool checked = false, expanded = false;
    Tree::Node parent = Tree::NoNode;
    std::vector<Tree::Node> children;
  };
  std::map<Tree::Node, Item> items{{Tree::NoNode, {}}};
  Tree::Node selected = Tree::NoNode;

  void Add(Tree::Node node, Item item) {
    ASSERT_TRUE(items.contains(item.parent)) << "below a node that is not there";
    ASSERT_FALSE(items.contains(node)) << "there twice";
    items[item.parent].children.push_back(node);
    items[node] = std::move(item);
  }
  void Remove(Tree::Node node) {
    ASSERT_TRUE(items.contains(node)) << node << " was never there";
    std::erase(items.at(items.at(node).parent).children, node);
    Drop(node);
  }
  void Drop(Tree::Node node) {
    for (const Tree::Node child : items.at(node).children) Drop(child);
    items.erase(node);
  }
  std::string Print(Tree::Node parent = Tree::NoNode, const std::string& indent = "") const {
    std::string text;
    for (const Tree::Node node : items.at(parent).children) {
      const Item& item = items.at(node);
      text += indent + std::to_string(node) + " " + item.text + " " + item.image +
              (item.checked ? " x" : "") + (item.expanded ? " -" : "") + (selected == node ? " >" : "") +
              "\n" + Print(node, indent + " ");
    }
    return text;
  }

  void Take(const Tree& tree, Tree::Node node) {
    Add(node, {std::string(tree.Text(node)),
               tree.Image(node),
               tree.Checked(node),
               tree.Expanded(node),
               tree.Parent(node),
               {}});
  }
  static PlainTree Of(const Tree& tree) {
    PlainTree plain;
    for (Tree::Node node = tree.FirstChild(Tree::NoNode); node != Tree::NoNode;
         node = tree.NextBelow(Tree::NoNode, node))
      plain.Take(tree, node);
    plain.selected = tree.Selected();
    return plain;
  }
  void Follow(Tree& tree) {
    const Tree::Changes changes = tree.TakeChanges();
    for (const Tree::Node node : changes.removed) Remove(node);
    for (const auto& [parent, first] : changes.grown) {
      for (Tree::Node node = first; node != Tree::NoNode; node = tree.Next(node)) {
        ASSERT_EQ(tree.Parent(node), parent);
        Take(tree, node);
        for (Tree::Node below = tree.NextBelow(node, node); below != Tree::NoNode;
             below = tree.NextBelow(node, below))
          Take(tree, below);
      }
    }
    for (const Tree::Node node : changes.states) {
      items.at(node).checked = tree.Checked(node);
      items.at(node).expanded = tree.Expanded(node);
    }
    if (changes.selection) selected = tree.Selected();
  }
};

/// One run: random changes to both trees, compared after each of them; the view follows now and then.
void RunAgainstPlainTree(unsigned seed) {
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  Form form("f");
  CountingView formView;
  form.SetView(&formView);
  Tree tree(form, "t");
  PlainTree plain;
  std::map<std::string, Tree::Node> byKey;
  std::vector<Tree::Node> checked;
  PlainTree shown;
  tree.KeepChanges(true);
  const int keys = 1 + static_cast<int>(random() % 300);
  const auto anyKey = [&] { return KeyOf(static_cast<int>(random() % static_cast<unsigned>(keys))); };
  const auto removals = 1 + random() % 12;
  const auto patience = 1 + random() % 40;  // of the view
  bool untaken = false;

  for (int step = 0; step < 300; ++step) {
    formView.Take();
    const auto any = std::next(plain.items.begin(), static_cast<long>(random() % plain.items.size()));
    const Tree::Node node = any->first;
    const bool isNode = node != Tree::NoNode;
    PlainTree::Item& item = any->second;
    const auto what = random() % 16;
    if (what < 2 && isNode && random() % 12 < removals) {
      tree.Remove(node);
      plain.Remove(node);
      std::erase_if(byKey, [&](const auto& known) { return !plain.items.contains(known.second); });
      std::erase_if(checked, [&](Tree::Node known) { return !plain.items.contains(known); });
      if (!plain.items.contains(plain.selected)) plain.selected = Tree::NoNode;
    } else if ((what == 2 || what == 3) && isNode) {
      const bool check = random() % 3 != 0;
      tree.SetChecked(node, check);
      if (check && !item.checked) checked.push_back(node);
      if (!check) std::erase(checked, node);
      item.checked = check;
    } else if (what == 4 && isNode) {
      tree.SetExpanded(node, item.expanded = random() % 2 == 0);
    } else if (what == 5 && isNode) {
      tree.Select(plain.selected = node);
    } else if (what == 6 && isNode) {
      tree.EnsureVisible(node);
      for (Tree::Node above = item.parent; above != Tree::NoNode; above = plain.items.at(above).parent)
        plain.items.at(above).expanded = true;
    } else if (what == 7 && random() % 4 == 0) {
      tree.ClearChecks();
      for (const Tree::Node known : checked) plain.items.at(known).checked = false;
      checked.clear();
    } else if (what > 7) {
      const Tree::Node parent = random() % 8 == 0 ? Tree::NoNode : node;
      const std::string key = random() % 4 == 0 ? "" : anyKey();
      const std::string text = key.empty() && random() % 2 == 0 ? "..." : "text" + std::to_string(step);
      const std::string image = random() % 3 == 0 ? "" : "@" + std::to_string(random() % 7);
      if (byKey.contains(key)) {
        EXPECT_THROW(tree.Add(parent, key, text, image), Error);
      } else {
        const Tree::Node added = tree.Add(parent, key, text, image);
        plain.Add(added, {text, image, false, false, parent, {}});
        if (!key.empty()) byKey[key] = added;
      }
    }
    ASSERT_EQ(PlainTree::Of(tree).Print(), plain.Print()) << "step " << step;
    ASSERT_EQ(tree.NodeCount(), plain.items.size() - 1);
    ASSERT_EQ(tree.CheckedCount(), checked.size());
    ASSERT_EQ(tree.Find(""), Tree::NoNode);
    const std::string asked = anyKey();
    const auto known = byKey.find(asked);
    ASSERT_EQ(tree.Find(asked), known == byKey.end() ? Tree::NoNode : known->second);

    ASSERT_LE(formView.changes, untaken ? 0 : 1) << "a view is told once until it has taken the changes";
    untaken = untaken || formView.changes != 0;
    if (random() % patience == 0) {
      shown.Follow(tree);
      untaken = false;
      ASSERT_EQ(shown.Print(), plain.Print()) << "step " << step;
    }
  }
  std::vector<Tree::Node> order;
  for (Tree::Node node = tree.FirstChecked(); node != Tree::NoNode; node = tree.NextChecked(node))
    order.push_back(node);
  EXPECT_EQ(order, checked);
}

TEST(TreeModel, IsTheSameAsAPlainTreeAndItsViewFollows) {
  const unsigned seed = std::random_device()();
  for (unsigned run = 0; run < 25 && !testing::Test::HasFailure(); ++run) RunAgainstPlainTree(seed + run);
}

TEST(TreeModel, TellsItsViewTheLeastThatHasToBeDone) {
  Form form("f");
  CountingView view;
  Tree tree(form, "t");
  const Tree::Node top = tree.Add(Tree::NoNode, "top", "top");
  const Tree::Node standIn = tree.Add(top, "", "stands in");
  tree.KeepChanges(true);
  form.SetView(&view);

  // A branch is opened: the node that stands in goes, others come, with nodes that stand in below them.
  tree.Remove(standIn);
  Tree::Node first = Tree::NoNode;
  for (int i = 0; i < 1000; ++i) {
    const Tree::Node child = tree.Add(top, KeyOf(i), "child");
    if (first == Tree::NoNode) first = child;
    tree.SetChecked(child, i % 2 == 0);
    tree.Add(child, "", "stands in");
  }
  tree.SetExpanded(top, true);
  EXPECT_EQ(view.Take(), 1);
  Tree::Changes changes = tree.TakeChanges();
  EXPECT_EQ(changes.removed, std::vector{standIn});
  ASSERT_EQ(changes.grown.size(), 1U);
  EXPECT_EQ(changes.grown[0].parent, top);
  EXPECT_EQ(changes.grown[0].first, first);
  EXPECT_EQ(changes.states, std::vector{top}) << "new nodes are shown as they are";

  tree.ClearChecks();
  EXPECT_EQ(view.Take(), 1) << "one for all of them";
  changes = tree.TakeChanges();
  EXPECT_EQ(changes.states.size(), 500U) << "those that were checked, and no other";
  EXPECT_TRUE(changes.grown.empty());

  tree.ClearChecks();
  tree.SetChecked(first, false);
  tree.SetExpanded(top, true);
  tree.Select(tree.Selected());
  EXPECT_EQ(view.Take(), 0) << "nothing has changed";
}

TEST(TreeModel, BearsAnyDepth) {
  Form form("f");
  Tree tree(form, "t");
  tree.KeepChanges(true);
  constexpr int depth = 200'000;
  Tree::Node node = Tree::NoNode;
  for (int i = 0; i < depth; ++i) node = tree.Add(node, std::to_string(i) + "@", "deep");
  tree.EnsureVisible(node);
  EXPECT_TRUE(tree.Expanded(tree.FirstChild(Tree::NoNode)));
  EXPECT_EQ(tree.TakeChanges().grown.size(), 1U);
  tree.Select(node);
  UserActions(form).Expand(tree, tree.FirstChild(Tree::NoNode), false);
  EXPECT_EQ(tree.Selected(), tree.FirstChild(Tree::NoNode)) << "the selection does not stay out of sight";
  tree.Remove(tree.FirstChild(Tree::NoNode));
  EXPECT_EQ(tree.NodeCount(), 0U);
  EXPECT_EQ(tree.Find("199999@"), Tree::NoNode);
}

TEST(TreeModel, KeepsOnceWhatKeysHaveInCommonAndGivesTheRoomOfWhatIsGoneToWhatComes) {
  Form form("f");
  Tree tree(form, "t");
  constexpr size_t count = 20'000;
  const auto fill = [&] {
    const Tree::Node top = tree.Add(Tree::NoNode, "top", "top");
    for (size_t i = 0; i < count; ++i) {
      const std::string counter = std::to_string(0x100000000000 + i * 0x1234567);
      tree.Add(top, std::string(72, '0') + counter + std::string(225, 'F'), "Some Folder");
    }
  };
  fill();
  const size_t once = tree.MemoryInUse();
  EXPECT_LT(once / count, 150U);
  for (int i = 0; i < 10; ++i) {
    tree.Remove(tree.FirstChild(Tree::NoNode));
    fill();
  }
  EXPECT_LT(tree.MemoryInUse(), once * 3);
  EXPECT_EQ(tree.NodeCount(), count + 1);
}

TEST(TreeByKeyboard, ABranchThatIsOpenIsNotOpenedAgain) {
  Dialog form("f");
  Tree tree(form, "t");
  tree.Add(tree.Add(Tree::NoNode, "top", "top"), "child", "child");
  int opened = 0;
  tree.OnExpand = [&](Tree::Node) { ++opened; };
  form.Show();
  for (const int key : {KeyAdd, KeyAdd, KeyMultiply}) UserActions(form).Press(key);
  EXPECT_EQ(opened, 1);
}

}  // namespace
}  // namespace vexa
