// A tree of texts with check boxes and images, its nodes named by string keys. A node's events are raised
// for what the user does only: setting anything by code raises nothing. Finding a node by its key takes
// constant time; keys compare exactly, and a node may have none.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "display/Control.h"

namespace vexa {

class Tree final : public Control {
 public:
  /// Names a node for as long as it is in the tree.
  using Node = uint32_t;
  static constexpr Node NoNode = UINT32_MAX;
  using NodeEvent = std::function<void(Node)>;

  Tree(Form& form, std::string name) : Control(form, std::move(name), ControlKind::Tree) {}

  /// Appends a node below `parent` (NoNode: at the root). Error 35602 when the key is taken.
  Node Add(Node parent, std::string key, std::string text, std::string image = {});
  /// Removes a node and everything below it.
  void Remove(Node node);
  /// NoNode when no node has the key.
  Node Find(std::string_view key) const;

  const std::string& Key(Node node) const { return nodes_[node].key; }
  const std::string& Text(Node node) const { return nodes_[node].text; }
  const std::string& Image(Node node) const { return nodes_[node].image; }
  Node Parent(Node node) const { return nodes_[node].parent; }
  /// In order; NoNode for those at the root.
  const std::vector<Node>& Children(Node node) const {
    return node == NoNode ? roots_ : nodes_[node].children;
  }

  bool Checked(Node node) const { return nodes_[node].checked; }
  void SetChecked(Node node, bool checked);
  bool Expanded(Node node) const { return nodes_[node].expanded; }
  void SetExpanded(Node node, bool expanded);
  Node Selected() const { return selected_; }
  void Select(Node node);

  /// The user has checked or unchecked, clicked, or is expanding the node.
  NodeEvent OnNodeCheck;
  NodeEvent OnNodeClick;
  NodeEvent OnExpand;

 private:
  struct NodeData {
    std::string key;
    std::string text;
    std::string image;
    Node parent = NoNode;
    std::vector<Node> children;
    bool checked = false;
    bool expanded = false;
  };

  std::vector<NodeData> nodes_;
  std::vector<Node> free_;
  std::vector<Node> roots_;
  std::unordered_map<std::string, Node> byKey_;
  Node selected_ = NoNode;
};

}  // namespace vexa
