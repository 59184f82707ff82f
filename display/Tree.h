// A tree of texts with check boxes and images, its nodes named by string keys; made for millions of nodes.
// A node's events are raised for what the user does only: setting anything by code raises nothing. Adding,
// removing a childless node, finding by key and clearing all checks take constant time. Keys compare exactly,
// and a node may have none. A view is told once that something has changed and then takes the Changes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/KeyFrames.h"
#include "core/KeyIndex.h"
#include "core/TextArena.h"
#include "display/Control.h"

namespace vexa {

class Tree final : public Control {
 public:
  /// Names a node for as long as it is in the tree.
  using Node = uint32_t;
  static constexpr Node NoNode = UINT32_MAX;
  using NodeEvent = std::function<void(Node)>;

  Tree(Form& form, std::string name);

  // --- nodes

  /// Appends a node below `parent` (NoNode: at the root). Error 35602 when the key is taken.
  Node Add(Node parent, std::string_view key, std::string_view text, std::string_view image = {});
  /// So many more nodes with keys are about to be added; a hint.
  void Reserve(size_t more) { byKey_.Reserve(more); }
  /// Removes a node and everything below it.
  void Remove(Node node);
  /// NoNode when no node has the key.
  Node Find(std::string_view key) const;
  size_t NodeCount() const { return count_; }

  std::string Key(Node node) const { return frames_.KeyOf(At(node).frame, OwnPart(At(node))); }
  /// Valid until a node is added or removed.
  std::string_view Text(Node node) const { return {At(node).text, At(node).textLength}; }
  const std::string& Image(Node node) const { return images_[At(node).image]; }

  // --- ways through the tree; NoNode stands for what is above the nodes at the root, and for none

  Node Parent(Node node) const { return At(node).parent; }
  Node FirstChild(Node node) const { return ChildrenOf(node).first; }
  Node LastChild(Node node) const { return ChildrenOf(node).last; }
  Node Next(Node node) const { return At(node).next; }
  Node Previous(Node node) const { return At(node).previous; }
  /// The node that is printed behind `node` when everything is expanded; NoNode behind the last one that is
  /// below `top`, or in the tree.
  Node NextBelow(Node top, Node node) const;
  /// The same when nodes below a collapsed one are passed over.
  Node NextSeenBelow(Node top, Node node) const;
  /// The node that NextSeenBelow has come from.
  Node PreviousSeen(Node node) const;
  bool IsBelow(Node node, Node top) const;

  /// The nodes below one, in order, for range-for. The tree must not change meanwhile.
  class NodeRange;
  NodeRange Children(Node node) const;

  // --- state

  bool Checked(Node node) const { return At(node).checkEra == checkEra_; }
  void SetChecked(Node node, bool checked);
  /// Checked nodes, in the order in which they were checked.
  size_t CheckedCount() const { return checkedCount_; }
  Node FirstChecked() const { return firstChecked_; }
  Node NextChecked(Node node) const { return At(node).nextChecked; }
  /// Takes the check off every node. One change to the view.
  void ClearChecks();
  bool Expanded(Node node) const { return (At(node).flags & IsExpanded) != 0; }
  void SetExpanded(Node node, bool expanded);
  Node Selected() const { return selected_; }
  void Select(Node node);
  /// Expands what is above the node and scrolls the view to it.
  void EnsureVisible(Node node);

  /// The user has checked or unchecked, clicked, or is expanding the node.
  NodeEvent OnNodeCheck;
  NodeEvent OnNodeClick;
  NodeEvent OnExpand;

  // --- for views

  /// What is different from what a view has shown: the least that it has to do, whatever happened in between.
  /// To be carried out in the order of the members. A node that is new is shown as it is then, with all that
  /// is below it; nothing else is said about it.
  struct Changes {
    struct Growth {
      Node parent;
      Node first;  // the first new one; those behind it are new, too
    };
    /// Tops of the branches that are gone. The numbers mean nothing to the tree any more; they, and those of
    /// the nodes below, are used again only for nodes added from now on.
    std::vector<Node> removed;
    std::vector<Growth> grown;
    /// Checked or unchecked, expanded or collapsed.
    std::vector<Node> states;
    bool selection = false;
    /// To be scrolled to; NoNode for none.
    Node shown = NoNode;
  };

  /// Starts to keep changes for a view that shows what is there by now, or stops. While they are kept the
  /// form's view hears Changed for the first one only, and for the next again when they have been taken.
  void KeepChanges(bool keep);
  Changes TakeChanges();

  /// Memory that the nodes take at present, with what is held for those to come.
  size_t MemoryInUse() const;

 private:
  enum Flags : uint16_t {
    IsLive = 1,
    IsExpanded = 2,
    // What the kept changes say about the node:
    IsNew = 4,
    HasGrown = 8,
    HasNewState = 16,
  };

  struct Branch {
    Node first;
    Node last;
  };
  static constexpr Branch Childless{NoNode, NoNode};

  /// What is looked at to find a node stands together at the beginning, usual own parts of keys included: so
  /// few cache lines have to be fetched.
  /// Nothing is set in it until it becomes a node.
  struct NodeData {  // NOLINT(cppcoreguidelines-pro-type-member-init)
    static constexpr size_t UsualOwnPart = 18;
    std::array<char, UsualOwnPart> ownPart;
    KeyFrames::Number frame;
    uint32_t ownLength;
    uint32_t textLength;
    const char* text;  // in front of it, a longer own part
    Node parent;
    Node previous;
    Node next;  // of a number that is free, the next free one
    Branch children;
    Node previousChecked;  // of a checked one
    Node nextChecked;
    uint32_t checkEra;  // it is checked while this is the tree's
    uint32_t keyHash;
    uint16_t image;
    uint16_t flags;
  };

  static constexpr size_t BlockSize = 256;

  NodeData& At(Node node) { return (*blocks_[node / BlockSize])[node % BlockSize]; }
  const NodeData& At(Node node) const { return (*blocks_[node / BlockSize])[node % BlockSize]; }
  Branch& ChildrenOf(Node node) { return node == NoNode ? roots_ : At(node).children; }
  const Branch& ChildrenOf(Node node) const { return node == NoNode ? roots_ : At(node).children; }

  Node FreshNumber();
  uint16_t ImageNumber(std::string_view image);
  uint16_t AnotherImageNumber(std::string_view image);
  static bool IsUsual(std::string_view ownPart) { return ownPart.size() <= NodeData::UsualOwnPart; }
  static std::string_view OwnPart(const NodeData& data) {
    const bool usual = data.ownLength <= NodeData::UsualOwnPart;
    return {usual ? data.ownPart.data() : data.text - data.ownLength, data.ownLength};
  }
  static bool HasKey(const NodeData& data) { return data.ownLength != 0 || data.frame != KeyFrames::Whole; }
  /// Keeps the text, and in front of it an own part that is longer than usual; returns the text.
  const char* Keep(std::string_view ownPart, std::string_view text, bool keyless);
  auto HasThisKey(std::string_view key) const {
    return [this, key](Node node) { return frames_.Make(At(node).frame, OwnPart(At(node)), key); };
  }
  void Unlink(Node node);
  void Free(Node node);
  void UnlinkCheck(NodeData& data);
  void CompactTexts();

  void NoteState(Node node);
  void Touch();

  std::vector<std::unique_ptr<std::array<NodeData, BlockSize>>> blocks_;
  Node numbers_ = 0;  // given out so far
  Node free_ = NoNode;
  size_t count_ = 0;
  Branch roots_ = Childless;
  KeyIndex byKey_;
  std::vector<std::string> images_{std::string()};
  std::map<std::string, uint16_t, std::less<>> imageNumbers_;
  uint16_t lastImage_ = 0;

  KeyFrames frames_;
  TextArena texts_;
  size_t unusedText_ = 0;
  /// Nodes without a key stand in for others and say the same, most of them: their text is kept once.
  std::string_view keylessText_;

  uint32_t checkEra_ = 1;
  Node firstChecked_ = NoNode;
  Node lastChecked_ = NoNode;
  size_t checkedCount_ = 0;
  Node selected_ = NoNode;

  bool keeping_ = false;
  bool told_ = false;
  Changes changes_;
  std::vector<Node> grown_;
  bool rootsHaveGrown_ = false;
  Node resting_ = NoNode;  // freed numbers that wait until the changes are taken
};

class Tree::NodeRange {
 public:
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Node;
    using difference_type = std::ptrdiff_t;
    using pointer = const Node*;
    using reference = const Node&;

    Iterator() = default;
    Iterator(const Tree& tree, Node node) : tree_(&tree), node_(node) {}
    const Node& operator*() const { return node_; }
    Iterator& operator++() {
      node_ = tree_->Next(node_);
      return *this;
    }
    Iterator operator++(int) {
      const Iterator former = *this;
      ++*this;
      return former;
    }
    friend bool operator==(const Iterator& left, const Iterator& right) { return left.node_ == right.node_; }

   private:
    const Tree* tree_ = nullptr;
    Node node_ = NoNode;
  };

  NodeRange(const Tree& tree, Node first) : tree_(tree), first_(first) {}
  Iterator begin() const { return {tree_, first_}; }
  Iterator end() const { return {tree_, NoNode}; }
  bool empty() const { return first_ == NoNode; }

 private:
  const Tree& tree_;
  Node first_;
};

inline Tree::NodeRange Tree::Children(Node node) const { return {*this, FirstChild(node)}; }

}  // namespace vexa
