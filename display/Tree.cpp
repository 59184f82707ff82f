#include "display/Tree.h"

#include <algorithm>
#include <utility>

#include "core/Error.h"

namespace vexa {
namespace {

constexpr int32_t KeyIsNotUnique = 35602;  // the number that Windows' tree control uses for it

}  // namespace

Tree::Node Tree::Add(Node parent, std::string key, std::string text, std::string image) {
  if (!key.empty() && byKey_.contains(key)) {
    throw Error(KeyIsNotUnique, "Key is not unique in collection",
                MakeError(ErrorNumber::InternalError).Source);
  }
  Node node = static_cast<Node>(nodes_.size());
  if (free_.empty()) {
    nodes_.emplace_back();
  } else {
    node = free_.back();
    free_.pop_back();
    nodes_[node] = {};
  }
  NodeData& data = nodes_[node];
  data.key = std::move(key);
  data.text = std::move(text);
  data.image = std::move(image);
  data.parent = parent;
  if (!data.key.empty()) byKey_.emplace(data.key, node);
  (parent == NoNode ? roots_ : nodes_[parent].children).push_back(node);
  Changed();
  return node;
}

void Tree::Remove(Node node) {
  std::vector<Node>& siblings = Parent(node) == NoNode ? roots_ : nodes_[Parent(node)].children;
  siblings.erase(std::ranges::find(siblings, node));
  std::vector<Node> pending{node};
  while (!pending.empty()) {
    const Node gone = pending.back();
    pending.pop_back();
    NodeData& data = nodes_[gone];
    pending.insert(pending.end(), data.children.begin(), data.children.end());
    if (!data.key.empty()) byKey_.erase(data.key);
    if (selected_ == gone) selected_ = NoNode;
    free_.push_back(gone);
  }
  Changed();
}

Tree::Node Tree::Find(std::string_view key) const {
  const auto found = byKey_.find(std::string(key));
  return found == byKey_.end() ? NoNode : found->second;
}

void Tree::SetChecked(Node node, bool checked) {
  nodes_[node].checked = checked;
  Changed();
}

void Tree::SetExpanded(Node node, bool expanded) {
  nodes_[node].expanded = expanded;
  Changed();
}

void Tree::Select(Node node) {
  selected_ = node;
  Changed();
}

}  // namespace vexa
