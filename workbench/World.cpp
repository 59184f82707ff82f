#include "workbench/World.h"

#include <algorithm>
#include <iterator>

#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

char UpperCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string KeyOf(std::string_view entryID, uint32_t store) {
  std::string key(entryID);
  std::ranges::transform(key, key.begin(), UpperCase);
  return key.append("|").append(std::to_string(store));
}

}  // namespace

uint32_t World::AddStore(std::string storeID, StoreKind kind) {
  Store& store = stores_.emplace_back();
  store.storeID = std::move(storeID);
  store.kind = kind;
  return static_cast<uint32_t>(stores_.size() - 1);
}

uint32_t World::AddGeneratedStore(std::string storeID, StoreKind kind, GeneratedFolders rule) {
  const uint32_t index = AddStore(std::move(storeID), kind);
  Store& store = stores_[index];
  store.generated = std::move(rule);
  store.folderCount = store.generated->count;
  store.root = Place(index, NoFolder, store.generated->NameOf(0), store.generated->EntryIdOf(0),
                     store.generated->ItemTypeOf(0), 0);
  return index;
}

FolderIndex World::AddFolder(uint32_t store, FolderIndex parent, std::string name, std::string entryID,
                             ItemType itemType) {
  const FolderIndex index = Place(store, parent, std::move(name), std::move(entryID), itemType, 0);
  if (index == NoFolder) return NoFolder;
  ++stores_[store].folderCount;
  if (parent == NoFolder) {
    stores_[store].root = index;
  } else {
    folders_[parent].children.push_back(index);
  }
  return index;
}

size_t World::FolderCount() const {
  size_t count = 0;
  for (const Store& store : stores_) count += store.folderCount;
  return count;
}

FolderIndex World::Place(uint32_t store, FolderIndex parent, std::string name, std::string entryID,
                         ItemType itemType, uint32_t number) const {
  const auto index = static_cast<FolderIndex>(folders_.size());
  if (!byKey_.emplace(KeyOf(entryID, store), index).second) return NoFolder;
  FolderNode& folder = folders_.emplace_back();
  folder.name = std::move(name);
  folder.entryID = std::move(entryID);
  folder.itemType = itemType;
  folder.store = store;
  folder.parent = parent;
  folder.number = number;
  if (const auto& rule = stores_[store].generated)
    folder.children.assign(rule->ChildCountOf(number), NoFolder);
  return index;
}

FolderIndex World::Generate(FolderIndex parent, size_t position) const {
  const uint32_t store = folders_[parent].store;
  const GeneratedFolders& rule = *stores_[store].generated;
  const uint32_t number = rule.ChildOf(folders_[parent].number, static_cast<uint32_t>(position));
  return folders_[parent].children[position] = Place(store, parent, rule.NameOf(number),
                                                     rule.EntryIdOf(number), rule.ItemTypeOf(number), number);
}

FolderIndex World::FindGenerated(std::string_view entryID, uint32_t store) const {
  const GeneratedFolders& rule = *stores_[store].generated;
  const std::optional<uint32_t> number = rule.NumberOf(entryID);
  if (!number) return NoFolder;
  // Up to a folder that is there, and down again.
  std::vector<uint32_t> missing;
  auto found = byKey_.end();
  for (uint32_t at = *number;; at = rule.ParentOf(at)) {
    found = byKey_.find(KeyOf(rule.EntryIdOf(at), store));
    if (found != byKey_.end()) break;
    missing.push_back(at);
  }
  FolderIndex here = found->second;
  if (folders_[here].deleted) return NoFolder;
  for (auto next = missing.rbegin(); next != missing.rend(); ++next)
    here = Generate(here, *next - rule.ChildOf(folders_[here].number, 0));
  return here;
}

FolderIndex World::FindInStore(std::string_view entryID, uint32_t store) const {
  const auto found = byKey_.find(KeyOf(entryID, store));
  if (found == byKey_.end()) return stores_[store].generated ? FindGenerated(entryID, store) : NoFolder;
  return folders_[found->second].deleted ? NoFolder : found->second;
}

FolderIndex World::Find(std::string_view entryID, std::string_view storeID) const {
  for (uint32_t store = 0; store < stores_.size(); ++store) {
    if (SameName(stores_[store].storeID, storeID)) return FindInStore(entryID, store);
  }
  return NoFolder;
}

FolderIndex World::FindPath(std::string_view path) const {
  const std::vector<std::string_view> parts = SplitPath(path);
  if (parts.empty()) return NoFolder;
  FolderIndex here = NoFolder;
  for (const std::string_view part : parts) {
    const std::vector<FolderIndex> children = ChildrenOf(here);
    const auto found = std::ranges::find_if(
        children, [&](FolderIndex child) { return EncodedName(folders_[child].name) == part; });
    if (found == children.end()) return NoFolder;
    here = *found;
  }
  return here;
}

std::string World::PathOf(FolderIndex folder) const {
  std::vector<FolderIndex> chain;
  for (; folder != NoFolder; folder = folders_[folder].parent) chain.push_back(folder);
  std::string path = "\\";
  for (auto step = chain.rbegin(); step != chain.rend(); ++step)
    path += "\\" + EncodedName(folders_[*step].name);
  return path;
}

void World::Delete(FolderIndex folder) {
  if (const FolderIndex parent = folders_[folder].parent; parent != NoFolder) {
    ChildrenOf(parent);  // a generated folder is made by its place, which the next ones are about to lose
    std::erase(folders_[parent].children, folder);
  }
  std::vector<FolderIndex> pending{folder};
  while (!pending.empty()) {
    FolderNode& node = folders_[pending.back()];
    pending.pop_back();
    node.deleted = true;
    std::ranges::copy_if(node.children, std::back_inserter(pending),
                         [](FolderIndex child) { return child != NoFolder; });
  }
  std::erase_if(defaultFolders, [&](const auto& entry) { return folders_[entry.second].deleted; });
}

std::vector<FolderIndex> World::Roots() const {
  std::vector<FolderIndex> roots;
  for (const Store& store : stores_) {
    if (store.root != NoFolder && !folders_[store.root].deleted) roots.push_back(store.root);
  }
  return roots;
}

size_t World::ChildCount(FolderIndex folder) const {
  return folder == NoFolder ? Roots().size() : folders_[folder].children.size();
}

FolderIndex World::ChildAt(FolderIndex folder, size_t position) const {
  if (folder == NoFolder) return Roots()[position];
  const FolderIndex child = folders_[folder].children[position];
  return child == NoFolder ? Generate(folder, position) : child;
}

std::vector<FolderIndex> World::ChildrenOf(FolderIndex folder) const {
  std::vector<FolderIndex> children(ChildCount(folder));
  for (size_t i = 0; i < children.size(); ++i) children[i] = ChildAt(folder, i);
  return children;
}

}  // namespace vexa::workbench
