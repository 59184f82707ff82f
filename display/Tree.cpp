#include "display/Tree.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/Error.h"

namespace vexa {
namespace {

constexpr int32_t KeyIsNotUnique = 35602;  // the number that Windows' tree control uses for it

/// Texts that are gone may take this much room before the others are moved together.
constexpr size_t UnusedTextAllowed = size_t{64} * 1024;

}  // namespace

Tree::Tree(Form& form, std::string name) : Control(form, std::move(name), ControlKind::Tree) {}

// --- nodes

/// The number at the head of the free list, which is left as it is.
inline Tree::Node Tree::FreshNumber() {
  if (free_ == NoNode) {
    if (numbers_ == NoNode) throw MakeError(ErrorNumber::Overflow);
    if (numbers_ % BlockSize == 0) {
      blocks_.push_back(std::make_unique_for_overwrite<std::array<NodeData, BlockSize>>());
    }
    free_ = numbers_++;
    At(free_).next = NoNode;
  }
  return free_;
}

inline uint16_t Tree::ImageNumber(std::string_view image) {
  if (image.empty()) return 0;
  return images_[lastImage_] == image ? lastImage_ : AnotherImageNumber(image);
}

uint16_t Tree::AnotherImageNumber(std::string_view image) {
  auto known = imageNumbers_.find(image);
  if (known == imageNumbers_.end()) {
    if (images_.size() > UINT16_MAX) throw MakeError(ErrorNumber::Overflow);
    images_.emplace_back(image);
    known = imageNumbers_.emplace(image, static_cast<uint16_t>(images_.size() - 1)).first;
  }
  return lastImage_ = known->second;
}

Tree::Node Tree::Add(Node parent, std::string_view key, std::string_view text, std::string_view image) {
  const uint32_t hash = key.empty() ? 0 : HashOfKey(key);
  const KeyIndex::Place place =
      key.empty() ? KeyIndex::Place{0, NoNode} : byKey_.FindPlace(hash, HasThisKey(key));
  if (place.number != NoNode) {
    throw Error(KeyIsNotUnique, "Key is not unique in collection",
                MakeError(ErrorNumber::InternalError).Source);
  }
  // What can fail comes first.
  const uint16_t imageNumber = ImageNumber(image);
  const KeyFrames::Number frame = frames_.FrameFor(key);
  const std::string_view ownPart = frames_.OwnPart(frame, key);
  const char* const kept = Keep(ownPart, text, key.empty());
  const Node node = FreshNumber();
  NodeData& data = At(node);
  free_ = data.next;
  if (!key.empty()) byKey_.Insert(place, hash, node);
  data.text = kept;
  data.ownLength = static_cast<uint32_t>(ownPart.size());
  if (!ownPart.empty() && IsUsual(ownPart)) std::memcpy(data.ownPart.data(), ownPart.data(), ownPart.size());
  data.textLength = static_cast<uint32_t>(text.size());
  data.keyHash = hash;
  data.frame = frame;
  data.image = imageNumber;
  data.flags = IsLive;
  data.parent = parent;
  Branch& siblings = ChildrenOf(parent);
  data.previous = siblings.last;
  data.next = NoNode;
  data.children = Childless;
  data.checkEra = 0;
  (siblings.last == NoNode ? siblings.first : At(siblings.last).next) = node;
  siblings.last = node;
  ++count_;

  if (keeping_) {
    data.flags |= IsNew;
    // A new parent, or one that has grown already, speaks for this one.
    if (parent == NoNode) {
      if (!std::exchange(rootsHaveGrown_, true)) grown_.push_back(NoNode);
    } else if ((At(parent).flags & (IsNew | HasGrown)) == 0) {
      At(parent).flags |= HasGrown;
      grown_.push_back(parent);
    }
  }
  Touch();
  return node;
}

const char* Tree::Keep(std::string_view ownPart, std::string_view text, bool keyless) {
  if (keyless && !keylessText_.empty() && text == keylessText_) return keylessText_.data();
  const size_t inFront = IsUsual(ownPart) ? 0 : ownPart.size();
  char* const kept = texts_.Take(inFront + text.size());
  if (inFront != 0) std::memcpy(kept, ownPart.data(), inFront);
  if (!text.empty()) std::memcpy(kept + inFront, text.data(), text.size());
  if (keyless) keylessText_ = {kept, text.size()};
  return kept + inFront;
}

void Tree::Remove(Node node) {
  if (keeping_ && (At(node).flags & IsNew) == 0) changes_.removed.push_back(node);
  if (selected_ != NoNode && (selected_ == node || IsBelow(selected_, node))) {
    selected_ = NoNode;
    changes_.selection = true;
  }
  Unlink(node);
  // From the leaves up, each node when it has lost its children.
  Node at = node;
  for (;;) {
    while (At(at).children.first != NoNode) at = At(at).children.first;
    const Node next = At(at).next;
    const Node parent = At(at).parent;
    Free(at);
    if (at == node) break;
    ChildrenOf(parent).first = next;
    at = next == NoNode ? parent : next;
  }
  if (unusedText_ > UnusedTextAllowed && unusedText_ > texts_.Used() / 2) CompactTexts();
  Touch();
}

void Tree::Unlink(Node node) {
  NodeData& data = At(node);
  Branch& siblings = ChildrenOf(data.parent);
  (data.previous == NoNode ? siblings.first : At(data.previous).next) = data.next;
  (data.next == NoNode ? siblings.last : At(data.next).previous) = data.previous;
  data.previous = data.next = NoNode;
}

void Tree::Free(Node node) {
  NodeData& data = At(node);
  if (Checked(node)) UnlinkCheck(data);
  if (HasKey(data)) {
    byKey_.Erase(data.keyHash, node);
    unusedText_ += (IsUsual(OwnPart(data)) ? 0 : data.ownLength) + data.textLength;
  }
  data.flags = 0;
  Node& list = keeping_ ? resting_ : free_;
  data.next = list;
  list = node;
  --count_;
}

void Tree::CompactTexts() {
  const TextArena former = std::exchange(texts_, {});
  keylessText_ = {};
  unusedText_ = 0;
  for (Node node = FirstChild(NoNode); node != NoNode; node = NextBelow(NoNode, node)) {
    NodeData& data = At(node);
    data.text = Keep(OwnPart(data), Text(node), !HasKey(data));
  }
}

Tree::Node Tree::Find(std::string_view key) const {
  if (key.empty()) return NoNode;
  return byKey_.Find(HashOfKey(key), HasThisKey(key));
}

// --- ways through the tree

Tree::Node Tree::NextBelow(Node top, Node node) const {
  if (FirstChild(node) != NoNode) return FirstChild(node);
  for (; node != top && node != NoNode; node = Parent(node)) {
    if (Next(node) != NoNode) return Next(node);
  }
  return NoNode;
}

Tree::Node Tree::NextSeenBelow(Node top, Node node) const {
  if (Expanded(node) && FirstChild(node) != NoNode) return FirstChild(node);
  for (; node != top && node != NoNode; node = Parent(node)) {
    if (Next(node) != NoNode) return Next(node);
  }
  return NoNode;
}

Tree::Node Tree::PreviousSeen(Node node) const {
  Node before = Previous(node);
  if (before == NoNode) return Parent(node);
  while (Expanded(before) && LastChild(before) != NoNode) before = LastChild(before);
  return before;
}

bool Tree::IsBelow(Node node, Node top) const {
  for (Node at = Parent(node); at != NoNode; at = Parent(at)) {
    if (at == top) return true;
  }
  return false;
}

// --- state

void Tree::SetChecked(Node node, bool checked) {
  if (Checked(node) == checked) return;
  NodeData& data = At(node);
  if (checked) {
    data.checkEra = checkEra_;
    data.previousChecked = lastChecked_;
    data.nextChecked = NoNode;
    (lastChecked_ == NoNode ? firstChecked_ : At(lastChecked_).nextChecked) = node;
    lastChecked_ = node;
    ++checkedCount_;
  } else {
    UnlinkCheck(data);
  }
  NoteState(node);
  Touch();
}

void Tree::UnlinkCheck(NodeData& data) {
  data.checkEra = 0;
  (data.previousChecked == NoNode ? firstChecked_ : At(data.previousChecked).nextChecked) = data.nextChecked;
  (data.nextChecked == NoNode ? lastChecked_ : At(data.nextChecked).previousChecked) = data.previousChecked;
  --checkedCount_;
}

void Tree::ClearChecks() {
  if (checkedCount_ == 0) return;
  // A view has something to do for each of them; the nodes themselves just belong to a former era then.
  if (keeping_) {
    for (Node node = firstChecked_; node != NoNode; node = NextChecked(node)) NoteState(node);
  }
  if (++checkEra_ == 0) {
    for (Node node = 0; node < numbers_; ++node) At(node).checkEra = 0;
    checkEra_ = 1;
  }
  firstChecked_ = lastChecked_ = NoNode;
  checkedCount_ = 0;
  Touch();
}

void Tree::SetExpanded(Node node, bool expanded) {
  if (Expanded(node) == expanded) return;
  NodeData& data = At(node);
  data.flags = static_cast<uint16_t>(expanded ? data.flags | IsExpanded : data.flags & ~IsExpanded);
  NoteState(node);
  Touch();
}

void Tree::Select(Node node) {
  if (selected_ == node) return;
  selected_ = node;
  changes_.selection = true;
  Touch();
}

void Tree::EnsureVisible(Node node) {
  for (Node above = Parent(node); above != NoNode; above = Parent(above)) SetExpanded(above, true);
  changes_.shown = node;
  Touch();
}

// --- for views

void Tree::NoteState(Node node) {
  if (!keeping_ || (At(node).flags & (IsNew | HasNewState)) != 0) return;
  At(node).flags |= HasNewState;
  changes_.states.push_back(node);
}

void Tree::Touch() {
  if (keeping_ && told_) return;
  told_ = true;
  Changed();
}

void Tree::KeepChanges(bool keep) {
  TakeChanges();
  keeping_ = keep;
}

Tree::Changes Tree::TakeChanges() {
  const auto isDead = [&](Node node) { return node != NoNode && (At(node).flags & IsLive) == 0; };
  Changes taken = std::exchange(changes_, {});
  if (taken.shown != NoNode && isDead(taken.shown)) taken.shown = NoNode;
  std::erase_if(taken.states, isDead);
  for (const Node node : taken.states) At(node).flags &= static_cast<uint16_t>(~HasNewState);

  std::erase_if(grown_, isDead);
  for (const Node parent : grown_) {
    if (parent != NoNode) At(parent).flags &= static_cast<uint16_t>(~HasGrown);
    // New ones stand behind all others. They may be gone again.
    Node first = NoNode;
    for (Node child = LastChild(parent); child != NoNode && (At(child).flags & IsNew) != 0;
         child = Previous(child)) {
      first = child;
    }
    if (first == NoNode) continue;
    taken.grown.push_back({parent, first});
    for (Node top = first; top != NoNode; top = Next(top)) {
      for (Node node = top; node != NoNode; node = NextBelow(top, node)) {
        At(node).flags &= static_cast<uint16_t>(~IsNew);
      }
    }
  }
  grown_.clear();
  rootsHaveGrown_ = false;

  while (resting_ != NoNode) {
    const Node node = resting_;
    resting_ = At(node).next;
    At(node).next = free_;
    free_ = node;
  }
  told_ = false;
  return taken;
}

size_t Tree::MemoryInUse() const {
  return blocks_.size() * BlockSize * sizeof(NodeData) + blocks_.capacity() * sizeof(blocks_[0]) +
         texts_.Capacity() + byKey_.MemoryInUse();
}

}  // namespace vexa
