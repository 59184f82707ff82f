// Keeps the items of a tree window like the nodes of a Tree. It takes what has changed from the tree and
// touches the items that differ, no others. Texts and images stay in the tree; the window asks for those that
// it draws.
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
  TreeMirror(HWND window, Tree& tree, IconCache& icons);
  TreeMirror(const TreeMirror&) = delete;
  TreeMirror& operator=(const TreeMirror&) = delete;
  ~TreeMirror() { tree_.KeepChanges(false); }

  /// Shows what has changed since the last time.
  void Sync();
  /// Selects what the tree has selected, whatever the window has.
  void ShowSelection();
  /// Icons of another size.
  void UseIcons(IconCache& icons);

  /// The text, image and button that the window asks for.
  void FillIn(TVITEMW& item);
  Tree::Node NodeOf(HTREEITEM handle) const;
  /// Whether the present notifications come from Sync, not from the user.
  bool IsWorking() const { return working_; }

 private:
  /// A branch with everything below it, behind its elder sibling.
  void InsertBranch(Tree::Node top);
  void Insert(Tree::Node node);
  void ShowState(Tree::Node node);
  void ShowExpanded(Tree::Node node);
  HTREEITEM HandleOf(Tree::Node node) const { return node == Tree::NoNode ? nullptr : handles_[node]; }
  int ImageOf(const std::string& image);

  HWND window_;
  Tree& tree_;
  IconCache* icons_ = nullptr;
  ImageListHandle images_;
  std::map<std::string, int> imageNumbers_;
  std::vector<HTREEITEM> handles_;  // by node
  std::wstring text_;               // lent to the window until it asks again
  bool working_ = false;
};

}  // namespace vexa::windows
