#include "workbench/World.h"

#include <algorithm>

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
  stores_.push_back({std::move(storeID), kind, NoFolder});
  return static_cast<uint32_t>(stores_.size() - 1);
}

FolderIndex World::AddFolder(uint32_t store, FolderIndex parent, std::string name, std::string entryID,
                             ItemType itemType) {
  const auto index = static_cast<FolderIndex>(folders_.size());
  if (!byKey_.emplace(KeyOf(entryID, store), index).second) return NoFolder;
  FolderNode& folder = folders_.emplace_back();
  folder.name = std::move(name);
  folder.entryID = std::move(entryID);
  folder.itemType = itemType;
  folder.store = store;
  folder.parent = parent;
  if (parent == NoFolder) {
    stores_[store].root = index;
  } else {
    folders_[parent].children.push_back(index);
  }
  return index;
}

FolderIndex World::FindInStore(std::string_view entryID, uint32_t store) const {
  const auto found = byKey_.find(KeyOf(entryID, store));
  return found == byKey_.end() || folders_[found->second].deleted ? NoFolder : found->second;
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
  const auto isNamed = [&](FolderIndex folder, std::string_view part) {
    return folder != NoFolder && !folders_[folder].deleted && EncodedName(folders_[folder].name) == part;
  };
  FolderIndex here = NoFolder;
  for (const Store& store : stores_) {
    if (here == NoFolder && isNamed(store.root, parts.front())) here = store.root;
  }
  for (size_t i = 1; i < parts.size() && here != NoFolder; ++i) {
    const std::vector<FolderIndex>& children = folders_[here].children;
    const auto found = std::ranges::find_if(children, [&](FolderIndex c) { return isNamed(c, parts[i]); });
    here = found == children.end() ? NoFolder : *found;
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
  std::vector<FolderIndex> pending{folder};
  while (!pending.empty()) {
    FolderNode& node = folders_[pending.back()];
    pending.pop_back();
    node.deleted = true;
    pending.insert(pending.end(), node.children.begin(), node.children.end());
  }
  std::erase_if(defaultFolders, [&](const auto& entry) { return folders_[entry.second].deleted; });
}

std::vector<FolderIndex> World::ChildrenOf(FolderIndex folder) const {
  std::vector<FolderIndex> children = folders_[folder].children;
  std::erase_if(children, [&](FolderIndex child) { return folders_[child].deleted; });
  return children;
}

}  // namespace vexa::workbench
