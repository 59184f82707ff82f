#include "windows/views/TreeMirror.h"

#include <charconv>
#include <utility>

#include "windows/com/Text.h"

namespace vexa::windows {
namespace {

constexpr UINT StateOff = INDEXTOSTATEIMAGEMASK(1);
constexpr UINT StateOn = INDEXTOSTATEIMAGEMASK(2);

ImageListHandle CreateImages(int size) {
  return ImageListHandle(
      Verified(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 16, 16), "ImageList_Create"));
}

}  // namespace

TreeMirror::TreeMirror(HWND window, Tree& tree, IconCache& icons) : window_(window), tree_(tree) {
  UseIcons(icons);
  tree_.KeepChanges(true);
  for (const Tree::Node root : tree_.Children(Tree::NoNode)) InsertBranch(root);
  ShowSelection();
}

void TreeMirror::ShowSelection() {
  const Tree::Node node = tree_.Selected();
  if (node != Tree::NoNode && node >= handles_.size()) return;  // Sync inserts it first
  const bool former = std::exchange(working_, true);
  Send(window_, TVM_SELECTITEM, TVGN_CARET, HandleOf(node));
  working_ = former;
}

void TreeMirror::UseIcons(IconCache& icons) {
  icons_ = &icons;
  ImageListHandle former = std::move(images_);
  imageNumbers_.clear();
  images_ = CreateImages(icons.Size());
  Send(window_, TVM_SETIMAGELIST, TVSIL_NORMAL, images_.Get());
  InvalidateRect(window_, nullptr, TRUE);
}

void TreeMirror::Sync() {
  constexpr size_t aFew = 8;
  if (working_) return;  // what is going on shows it all
  const Tree::Changes changes = tree_.TakeChanges();
  working_ = true;
  // When much is different the window paints and scrolls once, at the end.
  const bool atOnce = !changes.removed.empty() || !changes.grown.empty() || changes.states.size() > aFew;
  if (atOnce) Send(window_, WM_SETREDRAW, FALSE);
  for (const Tree::Node node : changes.removed) Send(window_, TVM_DELETEITEM, 0, HandleOf(node));
  for (const Tree::Changes::Growth& growth : changes.grown) {
    for (Tree::Node node = growth.first; node != Tree::NoNode; node = tree_.Next(node)) InsertBranch(node);
    // Without children the window has refused to open the item.
    if (growth.parent != Tree::NoNode) ShowExpanded(growth.parent);
  }
  for (const Tree::Node node : changes.states) ShowState(node);
  if (changes.selection) ShowSelection();
  if (changes.shown != Tree::NoNode) Send(window_, TVM_ENSUREVISIBLE, 0, HandleOf(changes.shown));
  if (atOnce) {
    Send(window_, WM_SETREDRAW, TRUE);
    InvalidateRect(window_, nullptr, TRUE);
  }
  working_ = false;
}

void TreeMirror::InsertBranch(Tree::Node top) {
  for (Tree::Node node = top; node != Tree::NoNode; node = tree_.NextBelow(top, node)) Insert(node);
  for (Tree::Node node = top; node != Tree::NoNode; node = tree_.NextBelow(top, node)) {
    if (tree_.Expanded(node)) ShowExpanded(node);
  }
}

void TreeMirror::Insert(Tree::Node node) {
  const Tree::Node before = tree_.Previous(node);
  TVINSERTSTRUCTW insert{};
  insert.hParent = HandleOf(tree_.Parent(node));
  // Behind a named item: to find the last one, the window would walk through them all.
  insert.hInsertAfter = before == Tree::NoNode ? TVI_FIRST : HandleOf(before);
  insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_CHILDREN | TVIF_PARAM | TVIF_STATE;
  insert.item.pszText = LPSTR_TEXTCALLBACKW;
  insert.item.iImage = I_IMAGECALLBACK;
  insert.item.iSelectedImage = I_IMAGECALLBACK;
  insert.item.cChildren = I_CHILDRENCALLBACK;
  insert.item.lParam = static_cast<LPARAM>(node);
  insert.item.stateMask = TVIS_STATEIMAGEMASK;
  insert.item.state = tree_.Checked(node) ? StateOn : StateOff;
  const auto handle = reinterpret_cast<HTREEITEM>(Send(window_, TVM_INSERTITEMW, 0, &insert));
  if (handles_.size() <= node) handles_.resize(size_t{node} + 1);
  handles_[node] = Verified(handle, "TVM_INSERTITEM");
}

void TreeMirror::ShowState(Tree::Node node) {
  TVITEMW change{};
  change.mask = TVIF_HANDLE | TVIF_STATE;
  change.hItem = HandleOf(node);
  change.stateMask = TVIS_STATEIMAGEMASK;
  change.state = tree_.Checked(node) ? StateOn : StateOff;
  Send(window_, TVM_SETITEMW, 0, &change);
  ShowExpanded(node);
}

void TreeMirror::ShowExpanded(Tree::Node node) {
  const HTREEITEM item = HandleOf(node);
  const bool shown = (Send(window_, TVM_GETITEMSTATE, item, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
  if (shown != tree_.Expanded(node)) Send(window_, TVM_EXPAND, shown ? TVE_COLLAPSE : TVE_EXPAND, item);
}

Tree::Node TreeMirror::NodeOf(HTREEITEM handle) const {
  TVITEMW item{};
  item.mask = TVIF_HANDLE | TVIF_PARAM;
  item.hItem = handle;
  if (Send(window_, TVM_GETITEMW, 0, &item) == FALSE) return Tree::NoNode;
  return static_cast<Tree::Node>(item.lParam);
}

int TreeMirror::ImageOf(const std::string& image) {
  const auto known = imageNumbers_.find(image);
  if (known != imageNumbers_.end()) return known->second;
  // Images are named after their icons' numbers, with a sign before them.
  int32_t id = 0;
  if (image.size() > 1) std::from_chars(image.data() + 1, image.data() + image.size(), id);
  const HICON icon = icons_->Find(id);
  const int number = icon == nullptr ? I_IMAGENONE : ImageList_ReplaceIcon(images_.Get(), -1, icon);
  imageNumbers_[image] = number;
  return number;
}

void TreeMirror::FillIn(TVITEMW& item) {
  const auto node = static_cast<Tree::Node>(item.lParam);
  if ((item.mask & TVIF_TEXT) != 0) {
    text_ = ToUtf16(tree_.Text(node));
    item.pszText = text_.data();
  }
  if ((item.mask & TVIF_IMAGE) != 0) item.iImage = ImageOf(tree_.Image(node));
  if ((item.mask & TVIF_SELECTEDIMAGE) != 0) item.iSelectedImage = ImageOf(tree_.Image(node));
  if ((item.mask & TVIF_CHILDREN) != 0) item.cChildren = tree_.Children(node).empty() ? 0 : 1;
}

}  // namespace vexa::windows
