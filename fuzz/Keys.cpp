// Keys of folders, and the collections that go by keys: the tree and the ordered collection hold what a plain
// map and a plain list would hold after the same steps.
#include <algorithm>
#include <map>
#include <vector>

#include "core/Error.h"
#include "core/KeyedCollection.h"
#include "dialogs/FolderSelection.h"
#include "display/Form.h"
#include "display/Tree.h"
#include "fuzz/Fuzz.h"

using vexa::Tree;
using vexa::fuzz::Input;
using vexa::fuzz::Promise;

namespace {

void CheckFormat(std::string_view entryID, std::string_view storeID) {
  const std::string key = vexa::FolderKey(entryID, storeID);
  const vexa::FolderIds ids = vexa::IdsOfKey(key);
  if (key.find(vexa::KeySplitter) == entryID.size() &&
      key.find(vexa::KeySplitter, entryID.size() + 1) == std::string::npos) {
    Promise(ids.entryID == entryID && ids.storeID == storeID, "a key holds both ids");
  }
  vexa::DefaultFolderOfKey(entryID);
  vexa::NumberOfKey(entryID);
}

class Model {
 public:
  void Step(uint8_t what, const std::string& key) {
    const Tree::Node node = tree_.Find(key);
    Promise((node != Tree::NoNode) == nodes_.contains(key), "a node is found by its key");
    switch (what % 5) {
      case 0:
        Add(key, Tree::NoNode);
        break;
      case 1:
        Add(key, tree_.Selected());
        break;
      case 2:
        if (node != Tree::NoNode) Remove(node);
        break;
      case 3:
        if (node != Tree::NoNode) tree_.SetChecked(node, !tree_.Checked(node));
        break;
      default:
        if (node != Tree::NoNode) tree_.Select(node);
        break;
    }
    StepOrdered(what, key);
  }

  void Check() {
    Promise(tree_.NodeCount() == nodes_.size(), "the tree counts its nodes");
    size_t checked = 0;
    for (const auto& [key, node] : nodes_) {
      Promise(tree_.Find(key) == node && tree_.Key(node) == key, "every node keeps its key");
      if (tree_.Checked(node)) ++checked;
    }
    Promise(tree_.CheckedCount() == checked, "the tree counts its checks");
    tree_.ClearChecks();
    Promise(tree_.CheckedCount() == 0 && tree_.FirstChecked() == Tree::NoNode, "no check is left");
    std::vector<std::string> order;
    ordered_.ForEach([&](const std::string& key, int) { order.push_back(key); });
    Promise(order == keys_, "the order is that of adding");
  }

 private:
  void Add(const std::string& key, Tree::Node parent) {
    try {
      const Tree::Node node = tree_.Add(parent, key, "text");
      if (!key.empty())
        nodes_[key] = node;
      else
        tree_.Remove(node);
    } catch (const vexa::Error&) {
      Promise(nodes_.contains(key), "only a key that is taken is refused");
    }
  }
  void Remove(Tree::Node top) {
    std::vector<Tree::Node> gone;
    for (Tree::Node node = top; node != Tree::NoNode; node = tree_.NextBelow(top, node)) gone.push_back(node);
    for (const Tree::Node node : gone) nodes_.erase(std::string(tree_.Key(node)));
    tree_.Remove(top);
  }
  void StepOrdered(uint8_t what, const std::string& key) {
    const auto known = std::find(keys_.begin(), keys_.end(), key);
    Promise((ordered_.Find(key) != nullptr) == (known != keys_.end()), "an entry is found by its key");
    if (what % 2 == 0 && known == keys_.end()) {
      ordered_.Add(key, 1);
      keys_.push_back(key);
    } else if (what % 2 == 1) {
      ordered_.Remove(key);
      if (known != keys_.end()) keys_.erase(known);
    }
  }

  vexa::Form form_{"form"};
  Tree tree_{form_, "tree"};
  std::map<std::string, Tree::Node> nodes_;
  vexa::KeyedCollection<int> ordered_;
  std::vector<std::string> keys_;
};

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input input(data, size);
  Model model;
  CheckFormat(input.Text(), input.Text());
  while (!input.IsUsedUp()) {
    const uint8_t what = input.Byte();
    model.Step(what, std::string(input.Byte() % 24, static_cast<char>('a' + what % 3)) +
                         std::string(input.Text().substr(0, 4)));
  }
  model.Check();
  return 0;
}
