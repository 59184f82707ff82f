// Keeps the items of a tree window like the nodes of a Tree. It remembers what it has shown, compares that
// with the tree, and touches only the items that differ. Texts and images stay in the tree; the window asks
// for those that it draws.
#pragma once

#include <windows.h>
// windows.h first
#include <commctrl.h>

#include <map>
#include <string>
#include <vector>

#include "display/Tree.h"
#include "windows/views/Handles.h"
#include "windows/views/IconCache.h"

namespace vexa::windows {

class TreeMirror {
 public:
  TreeMirror(HWND window, const Tree& tree, IconCache& icons);

  void Sync();
  /// Icons of another size.
  void UseIcons(IconCache& icons);

  /// The text, image and button that the window asks for.
  void FillIn(TVITEMW& item);
  Tree::Node NodeOf(HTREEITEM item) const;
  /// Whether the present notifications come from Sync, not from the user.
  bool IsWorking() const { return working_; }

 private:
  struct Item {
    Tree::Node node;
    HTREEITEM handle;
    bool checked = false;
    bool expanded = false;
    std::string text;  // to notice another node under a number that was free again
    std::string image;
    std::vector<Item> children;
  };

  void SyncChildren(Tree::Node parent, HTREEITEM parentHandle, std::vector<Item>& items);
  Item Insert(Tree::Node node, HTREEITEM parent, HTREEITEM after);
  void SyncState(Item& item);
  void SyncExpanded(std::vector<Item>& items);
  HTREEITEM HandleOf(Tree::Node node) const;
  int ImageOf(const std::string& image);

  HWND window_;
  const Tree& tree_;
  IconCache* icons_;
  ImageListHandle images_;
  std::map<std::string, int> imageNumbers_;
  std::vector<Item> roots_;
  Tree::Node selected_ = Tree::NoNode;
  std::wstring text_;  // lent to the window until it asks again
  bool working_ = false;
};

}  // namespace vexa::windows
