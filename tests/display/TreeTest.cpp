#include <gtest/gtest.h>

#include <algorithm>
#include <list>
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

/// The same tree in the plainest way, and what its nodes are called in the tree under test.
struct Plain {
  Tree::Node node = Tree::NoNode;
  std::string key, text, image;
  bool expanded = false;
  Plain* parent = nullptr;
  std::list<Plain> children;
};

struct PlainTree {
  Plain root;
  std::map<Tree::Node, Plain*> nodes;
  std::map<std::string, Plain*> byKey;
  std::vector<Plain*> checked;
  Plain* selected = nullptr;

  Plain* Any(std::mt19937& random) {
    return nodes.empty() ? nullptr
                         : std::next(nodes.begin(), static_cast<long>(random() % nodes.size()))->second;
  }
  void Forget(Plain& plain) {
    for (Plain& child : plain.children) Forget(child);
    nodes.erase(plain.node);
    byKey.erase(plain.key);
    std::erase(checked, &plain);
    if (selected == &plain) selected = nullptr;
  }
  void Remove(Plain& plain) {
    Forget(plain);
    plain.parent->children.remove_if([&](const Plain& child) { return &child == &plain; });
  }
  std::string Print(const Plain& plain, const std::string& indent = "") const {
    std::string text;
    for (const Plain& child : plain.children) {
      const bool isChecked = std::ranges::find(checked, &child) != checked.end();
      text += indent + std::to_string(child.node) + " " + child.text + " " + child.image +
              (isChecked ? " x" : "") + (child.expanded ? " -" : "") + (selected == &child ? " >" : "") +
              "\n" + Print(child, indent + " ");
    }
    return text;
  }
};

std::string Line(const Tree& tree, Tree::Node node) {
  return std::to_string(node) + " " + std::string(tree.Text(node)) + " " + tree.Image(node) +
         (tree.Checked(node) ? " x" : "") + (tree.Expanded(node) ? " -" : "") +
         (tree.Selected() == node ? " >" : "") + "\n";
}

std::string Print(const Tree& tree) {
  std::string text;
  for (Tree::Node node = tree.FirstChild(Tree::NoNode); node != Tree::NoNode;
       node = tree.NextBelow(Tree::NoNode, node)) {
    for (Tree::Node above = tree.Parent(node); above != Tree::NoNode; above = tree.Parent(above)) text += " ";
    text += Line(tree, node);
  }
  return text;
}

/// A view as a window would keep it: it knows what it has shown and does what the changes say.
struct ShownTree {
  struct Item {
    std::string text;
    bool checked = false, expanded = false;
    Tree::Node parent = Tree::NoNode;
    std::vector<Tree::Node> children;
  };
  std::map<Tree::Node, Item> items{{Tree::NoNode, {}}};
  Tree::Node selected = Tree::NoNode;
  size_t inserted = 0;

  void Show(const Tree& tree, Tree::Node node, Tree::Node parent) {
    ASSERT_EQ(tree.Parent(node), parent);
    ASSERT_TRUE(items.contains(parent)) << "below a node that is not shown";
    ASSERT_FALSE(items.contains(node)) << "shown twice";
    items[node] = {std::string(tree.Text(node)) + " " + tree.Image(node),
                   tree.Checked(node),
                   tree.Expanded(node),
                   parent,
                   {}};
    items[parent].children.push_back(node);
    ++inserted;
    for (const Tree::Node child : tree.Children(node)) Show(tree, child, node);
  }
  void Drop(Tree::Node node) {
    for (const Tree::Node child : items.at(node).children) Drop(child);
    items.erase(node);
  }
  void Sync(Tree& tree) {
    const Tree::Changes changes = tree.TakeChanges();
    for (const Tree::Node node : changes.removed) {
      ASSERT_TRUE(items.contains(node)) << node << " was never shown";
      std::erase(items.at(items.at(node).parent).children, node);
      Drop(node);
    }
    for (const auto& [parent, first] : changes.grown) {
      for (Tree::Node node = first; node != Tree::NoNode; node = tree.Next(node)) Show(tree, node, parent);
    }
    for (const Tree::Node node : changes.states) {
      items.at(node).checked = tree.Checked(node);
      items.at(node).expanded = tree.Expanded(node);
    }
    if (changes.selection) selected = tree.Selected();
  }
  std::string Print(Tree::Node parent = Tree::NoNode, const std::string& indent = "") const {
    std::string text;
    for (const Tree::Node node : items.at(parent).children) {
      const Item& item = items.at(node);
      text += indent + std::to_string(node) + " " + item.text + (item.checked ? " x" : "") +
              (item.expanded ? " -" : "") + (selected == node ? " >" : "") + "\n" + Print(node, indent + " ");
    }
    return text;
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
  ShownTree shown;
  tree.KeepChanges(true);
  const int keys = 1 + static_cast<int>(random() % 300);
  const auto removals = 1 + random() % 12;
  const auto patience = 1 + random() % 40;  // of the view
  bool untaken = false;

  for (int step = 0; step < 300; ++step) {
    formView.Take();
    Plain* const any = plain.Any(random);
    switch (random() % 16) {
      case 0:
      case 1:
        if (any != nullptr && random() % 12 < removals) {
          tree.Remove(any->node);
          plain.Remove(*any);
        }
        break;
      case 2:
      case 3:
        if (any != nullptr) {
          const bool check = random() % 3 != 0;
          tree.SetChecked(any->node, check);
          const bool was = std::erase(plain.checked, any) != 0;
          if (check) plain.checked.push_back(any);
          if (check && was) {  // no change: it keeps its place
            plain.checked.pop_back();
            std::vector<Plain*> order;
            for (Tree::Node node = tree.FirstChecked(); node != Tree::NoNode; node = tree.NextChecked(node))
              order.push_back(plain.nodes.at(node));
            plain.checked = order;
          }
        }
        break;
      case 4:
        if (any != nullptr) tree.SetExpanded(any->node, any->expanded = random() % 2 == 0);
        break;
      case 5:
        if (any != nullptr) {
          tree.Select(any->node);
          plain.selected = any;
        }
        break;
      case 6:
        if (any != nullptr) {
          tree.EnsureVisible(any->node);
          for (Plain* above = any->parent; above != &plain.root; above = above->parent)
            above->expanded = true;
        }
        break;
      case 7:
        if (random() % 4 == 0) {
          tree.ClearChecks();
          plain.checked.clear();
        }
        break;
      default: {
        Plain* const parent = any == nullptr || random() % 8 == 0 ? &plain.root : any;
        const Tree::Node above = parent == &plain.root ? Tree::NoNode : parent->node;
        const std::string key =
            random() % 4 == 0 ? "" : KeyOf(static_cast<int>(random() % static_cast<unsigned>(keys)));
        const std::string text = key.empty() && random() % 2 == 0 ? "..." : "text" + std::to_string(step);
        const std::string image = random() % 3 == 0 ? "" : "@" + std::to_string(random() % 7);
        if (plain.byKey.contains(key)) {
          EXPECT_THROW(tree.Add(above, key, text, image), Error);
          break;
        }
        Plain& added = parent->children.emplace_back();
        added.node = tree.Add(above, key, text, image);
        added.key = key;
        added.text = text;
        added.image = image;
        added.parent = parent;
        EXPECT_FALSE(plain.nodes.contains(added.node));
        plain.nodes[added.node] = &added;
        if (!key.empty()) plain.byKey[key] = &added;
      }
    }
    ASSERT_EQ(Print(tree), plain.Print(plain.root)) << "step " << step;
    ASSERT_EQ(tree.NodeCount(), plain.nodes.size());
    ASSERT_EQ(tree.CheckedCount(), plain.checked.size());
    const std::string asked = KeyOf(static_cast<int>(random() % static_cast<unsigned>(keys)));
    const auto known = plain.byKey.find(asked);
    ASSERT_EQ(tree.Find(asked), known == plain.byKey.end() ? Tree::NoNode : known->second->node);

    ASSERT_LE(formView.changes, untaken ? 0 : 1) << "a view is told once until it has taken the changes";
    untaken = untaken || formView.changes != 0;
    if (random() % patience == 0) {
      shown.Sync(tree);
      untaken = false;
      ASSERT_EQ(shown.Print(), Print(tree)) << "step " << step;
    }
  }
  std::vector<Tree::Node> order;
  for (Tree::Node node = tree.FirstChecked(); node != Tree::NoNode; node = tree.NextChecked(node)) {
    order.push_back(node);
  }
  std::vector<Tree::Node> expected;
  for (const Plain* node : plain.checked) expected.push_back(node->node);
  EXPECT_EQ(order, expected);
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

  // Gone before it was ever shown.
  tree.Remove(tree.Add(top, "short-lived", "short-lived"));
  changes = tree.TakeChanges();
  EXPECT_TRUE(changes.removed.empty() && changes.grown.empty() && changes.states.empty());
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

TEST(TreeModel, GivesTheRoomOfWhatIsGoneToWhatComes) {
  Form form("f");
  Tree tree(form, "t");
  const auto fill = [&] {
    const Tree::Node top = tree.Add(Tree::NoNode, "top", "top");
    for (int i = 0; i < 2000; ++i) tree.Add(tree.Add(top, KeyOf(i), "child"), "", "the same for all of them");
  };
  fill();
  const size_t once = tree.MemoryInUse();
  const std::string kept = Print(tree);
  for (int i = 0; i < 20; ++i) {
    tree.Remove(tree.FirstChild(Tree::NoNode));
    fill();
  }
  EXPECT_LT(tree.MemoryInUse(), once * 3);
  EXPECT_EQ(std::ranges::count(Print(tree), '\n'), std::ranges::count(kept, '\n'));
  for (int i = 0; i < 2000; ++i) ASSERT_NE(tree.Find(KeyOf(i)), Tree::NoNode);
}

TEST(TreeModel, KeepsOnceWhatKeysOfAStoreHaveInCommon) {
  Form form("f");
  Tree tree(form, "t");
  constexpr size_t count = 20'000;
  for (size_t i = 0; i < count; ++i) {
    const std::string counter = std::to_string(0x100000000000 + i * 0x1234567);
    tree.Add(Tree::NoNode, std::string(72, '0') + counter + std::string(225, 'F'), "Some Folder");
  }
  EXPECT_LT(tree.MemoryInUse() / count, 150U);
}

/// A tree that makes its nodes as it is opened, three levels deep, and writes down its events.
class LazyForm final : public Dialog {
 public:
  LazyForm() : Dialog("LazyForm") {
    AddTo(Tree::NoNode, "a");
    AddTo(Tree::NoNode, "b");
    tree.OnExpand = [this](Tree::Node node) {
      Log("expand", node);
      const Tree::Node first = tree.FirstChild(node);
      if (tree.Text(first) != "...") return;
      tree.Remove(first);
      const std::string key(tree.Key(node));
      for (const char* letter : {"a", "b"}) AddTo(node, key + letter);
    };
    tree.OnNodeClick = [this](Tree::Node node) { Log("click", node); };
    tree.OnNodeCheck = [this](Tree::Node node) { Log("check", node); };
    Show();
  }
  void AddTo(Tree::Node parent, const std::string& key) {
    const Tree::Node node = tree.Add(parent, key, key);
    if (key.size() < 3) tree.Add(node, "", "...");
  }
  void Log(const char* event, Tree::Node node) {
    events.append(events.empty() ? "" : " ").append(event).append(":").append(tree.Key(node));
  }
  std::string Take() { return std::exchange(events, {}); }

  Tree tree{*this, "tree"};
  std::string events;
};

TEST(TreeByKeyboard, GoesThroughWhatIsToBeSeen) {
  LazyForm form;
  UserActions user(form);
  const auto press = [&](std::initializer_list<int> keys) {
    for (const int key : keys) EXPECT_EQ(user.Press(key), Outcome::Done);
    return form.Take();
  };
  EXPECT_EQ(press({KeyDown}), "click:a") << "nothing was selected";
  EXPECT_EQ(press({KeyUp, KeyDown, KeyDown, KeyUp}), "click:b click:a") << "the ends hold";
  EXPECT_EQ(press({KeyRight, KeyRight, KeyDown}), "expand:a click:aa click:ab");
  EXPECT_EQ(press({KeyDown, KeyUp}), "click:b click:ab") << "up goes into the open branch";
  EXPECT_EQ(press({KeyLeft, KeyLeft, KeyRight}), "click:a expand:a") << "expanding again is told again";
  EXPECT_EQ(press({KeySpace, KeySpace}), "check:a check:a");
  EXPECT_EQ(press({KeySubtract, KeyAdd, KeyAdd}), "expand:a");
}

TEST(TreeByKeyboard, MultiplyOpensEveryLevelBelow) {
  LazyForm form;
  UserActions user(form);
  user.ClickNode(form.tree, form.tree.Find("a"));
  form.Take();
  user.Press(KeyMultiply);
  EXPECT_EQ(form.Take(), "expand:a expand:aa expand:ab");
  EXPECT_NE(form.tree.Find("abb"), Tree::NoNode);
  EXPECT_FALSE(form.tree.Expanded(form.tree.Find("b"))) << "only what is below the selected node";
  user.Press(KeyMultiply);
  EXPECT_EQ(form.Take(), "") << "it is open already";
  user.ClickNode(form.tree, form.tree.Find("abb"));
  user.Expand(form.tree, form.tree.Find("a"), false);
  EXPECT_EQ(form.Take(), "click:abb click:a") << "a closed branch gives its selection to its top";
}

}  // namespace
}  // namespace vexa
