#include "windows/views/TreeMirror.h"

#include <algorithm>
#include <charconv>

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

TreeMirror::TreeMirror(HWND window, const Tree& tree, IconCache& icons) : window_(window), tree_(tree) {
  UseIcons(icons);
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
  working_ = true;
  // Painting and scrolling once, at the end.
  Send(window_, WM_SETREDRAW, FALSE);
  SyncChildren(Tree::NoNode, TVI_ROOT, roots_);
  SyncExpanded(roots_);
  if (selected_ != tree_.Selected()) {
    selected_ = tree_.Selected();
    Send(window_, TVM_SELECTITEM, TVGN_CARET, HandleOf(selected_));
  }
  Send(window_, WM_SETREDRAW, TRUE);
  InvalidateRect(window_, nullptr, TRUE);
  working_ = false;
}

void TreeMirror::SyncChildren(Tree::Node parent, HTREEITEM parentHandle, std::vector<Item>& items) {
  const Tree::NodeRange children = tree_.Children(parent);
  const std::vector<Tree::Node> nodes(children.begin(), children.end());
  const auto same = [&](const Item& item, Tree::Node node) {
    return item.node == node && item.text == tree_.Text(node) && item.image == tree_.Image(node);
  };
  size_t kept = 0;
  while (kept < items.size() && kept < nodes.size() && same(items[kept], nodes[kept])) ++kept;
  // Behind the first difference: what is still wanted is found again while the order holds.
  std::vector<Item> former(std::make_move_iterator(items.begin() + static_cast<std::ptrdiff_t>(kept)),
                           std::make_move_iterator(items.end()));
  items.resize(kept);
  items.reserve(nodes.size());
  size_t next = 0;
  HTREEITEM after = items.empty() ? TVI_FIRST : items.back().handle;
  for (size_t index = kept; index < nodes.size(); ++index) {
    size_t match = next;
    while (match < former.size() && !same(former[match], nodes[index])) ++match;
    if (match < former.size()) {
      for (; next < match; ++next) Send(window_, TVM_DELETEITEM, 0, former[next].handle);
      items.push_back(std::move(former[next++]));
    } else {
      items.push_back(Insert(nodes[index], parentHandle, after));
    }
    after = items.back().handle;
  }
  for (; next < former.size(); ++next) Send(window_, TVM_DELETEITEM, 0, former[next].handle);
  for (Item& item : items) {
    SyncState(item);
    SyncChildren(item.node, item.handle, item.children);
  }
}

TreeMirror::Item TreeMirror::Insert(Tree::Node node, HTREEITEM parent, HTREEITEM after) {
  TVINSERTSTRUCTW insert{};
  insert.hParent = parent;
  insert.hInsertAfter = after;
  insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_CHILDREN | TVIF_PARAM | TVIF_STATE;
  insert.item.pszText = LPSTR_TEXTCALLBACKW;
  insert.item.iImage = I_IMAGECALLBACK;
  insert.item.iSelectedImage = I_IMAGECALLBACK;
  insert.item.cChildren = I_CHILDRENCALLBACK;
  insert.item.lParam = static_cast<LPARAM>(node);
  insert.item.stateMask = TVIS_STATEIMAGEMASK;
  insert.item.state = tree_.Checked(node) ? StateOn : StateOff;
  const auto handle = reinterpret_cast<HTREEITEM>(Send(window_, TVM_INSERTITEMW, 0, &insert));
  return {node,  Verified(handle, "TVM_INSERTITEM"), tree_.Checked(node),
          false, std::string(tree_.Text(node)),      tree_.Image(node),
          {}};
}

void TreeMirror::SyncState(Item& item) {
  if (item.checked == tree_.Checked(item.node)) return;
  item.checked = tree_.Checked(item.node);
  TVITEMW change{};
  change.mask = TVIF_HANDLE | TVIF_STATE;
  change.hItem = item.handle;
  change.stateMask = TVIS_STATEIMAGEMASK;
  change.state = item.checked ? StateOn : StateOff;
  Send(window_, TVM_SETITEMW, 0, &change);
}

void TreeMirror::SyncExpanded(std::vector<Item>& items) {
  for (Item& item : items) {
    SyncExpanded(item.children);
    // Without children the window would refuse to open the item, and it must open once there are some.
    const bool expanded = tree_.Expanded(item.node) && !item.children.empty();
    if (item.expanded == expanded) continue;
    item.expanded = expanded;
    Send(window_, TVM_EXPAND, expanded ? TVE_EXPAND : TVE_COLLAPSE, item.handle);
  }
}

Tree::Node TreeMirror::NodeOf(HTREEITEM handle) const {
  TVITEMW item{};
  item.mask = TVIF_HANDLE | TVIF_PARAM;
  item.hItem = handle;
  if (Send(window_, TVM_GETITEMW, 0, &item) == FALSE) return Tree::NoNode;
  return static_cast<Tree::Node>(item.lParam);
}

HTREEITEM TreeMirror::HandleOf(Tree::Node node) const {
  if (node == Tree::NoNode) return nullptr;
  std::vector<Tree::Node> path;
  for (Tree::Node at = node; at != Tree::NoNode; at = tree_.Parent(at)) path.push_back(at);
  const std::vector<Item>* items = &roots_;
  HTREEITEM handle = nullptr;
  for (auto at = path.rbegin(); at != path.rend(); ++at) {
    const auto found = std::ranges::find(*items, *at, &Item::node);
    if (found == items->end()) return nullptr;
    handle = found->handle;
    items = &found->children;
  }
  return handle;
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
