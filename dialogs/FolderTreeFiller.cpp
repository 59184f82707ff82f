#include "dialogs/FolderTreeFiller.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

namespace vexa {
namespace {

constexpr std::array MailDefaults{StringId::InboxFolder, StringId::SentItemsFolder, StringId::DraftsFolder,
                                  StringId::DeletedItemsFolder, StringId::OutboxFolder};
constexpr std::array CalendarDefault{StringId::CalendarFolder};
constexpr std::array ContactsDefault{StringId::ContactsFolder};
constexpr std::array TasksDefault{StringId::TasksFolder};
constexpr std::array JournalDefault{StringId::JournalFolder};
constexpr std::array NotesDefault{StringId::NotesFolder};

/// The picture of a folder goes by what it holds, unless it is one of the default folders for that.
struct FolderKind {
  ItemType itemType;
  std::span<const StringId> defaults;  // in the order in which they are asked for
  StringId picture;
};
constexpr std::array<FolderKind, 8> FolderKinds{{
    {ItemType::Mail, MailDefaults, StringId::MailFolderKind},
    {ItemType::Appointment, CalendarDefault, StringId::CalendarFolderKind},
    {ItemType::Contact, ContactsDefault, StringId::ContactFolderKind},
    {ItemType::DistributionList, ContactsDefault, StringId::ContactFolderKind},
    {ItemType::Task, TasksDefault, StringId::TaskFolderKind},
    {ItemType::Journal, JournalDefault, StringId::JournalFolderKind},
    {ItemType::Note, NotesDefault, StringId::NoteFolderKind},
    {ItemType::Post, {}, StringId::PostFolderKind},
}};

}  // namespace

void FolderTreeFiller::AddFolders(const std::shared_ptr<Folders>& folders, Tree::Node parent) {
  const int32_t count = Require(folders).Count();
  if (count > 0) tree_.Reserve(static_cast<size_t>(count));
  for (int32_t i = 1; i <= count; ++i) AddFolder(folders->Item(i), parent);
}

void FolderTreeFiller::AddFolder(const FolderRef& folder, Tree::Node parent, bool allLevels) {
  struct Level {
    std::shared_ptr<Folders> folders;
    int32_t count;
    int32_t done;
    Tree::Node parent;
  };
  std::vector<Level> levels;  // a hierarchy may be deeper than the machine's stack would bear
  const auto add = [&](const FolderRef& added, Tree::Node above) {
    const Tree::Node node = AddNode(Require(added), above);
    if (node == Tree::NoNode) return;
    std::shared_ptr<Folders> below = added->Folders();
    const int32_t count = Require(below).Count();
    if (count <= 0) return;
    if (allLevels) {
      levels.push_back({std::move(below), count, 0, node});
    } else {
      tree_.Add(node, {}, ChildPlaceholder);
    }
  };
  add(folder, parent);
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.done == level.count) {
      levels.pop_back();
    } else {
      const FolderRef next = level.folders->Item(++level.done);
      add(next, level.parent);
    }
  }
}

/// NoNode for a folder that is left out.
Tree::Node FolderTreeFiller::AddNode(Folder& folder, Tree::Node parent) {
  std::string entryID;
  if (!IgnoreErrors([&] { entryID = folder.EntryID(); }) || entryID.empty()) return Tree::NoNode;
  const std::string key = FolderKey(entryID, folder.StoreID());
  const std::string text = folder.Name();
  const StringId picture =
      parent == Tree::NoNode ? StringId::RootStoreKind : PictureOf(folder.DefaultItemType(), entryID);
  const Tree::Node node = tree_.Add(parent, key, text, NumberKey(static_cast<int32_t>(picture)));
  if (selection_.Find(key) != nullptr) tree_.SetChecked(node, true);
  return node;
}

StringId FolderTreeFiller::PictureOf(ItemType itemType, const std::string& entryID) {
  const auto* const kind = std::ranges::find(FolderKinds, itemType, &FolderKind::itemType);
  if (kind == FolderKinds.end()) return StringId::OtherFolderKind;
  for (const StringId folder : kind->defaults) {
    if (EntryIdOf(folder) == entryID) return folder;
  }
  return kind->picture;
}

/// Empty, as no folder's in the tree is, for one that cannot be found.
const std::string& FolderTreeFiller::EntryIdOf(StringId defaultFolder) {
  const auto [known, isNew] = defaults_.try_emplace(defaultFolder);
  std::string& entryID = known->second;
  if (isNew) {
    IgnoreErrors([&] {
      const int32_t number = RSIndexToDefFolderIndex(static_cast<int32_t>(defaultFolder));
      const FolderRef found = Require(session_).GetDefaultFolder(number);
      entryID = Require(found).EntryID();
    });
  }
  return entryID;
}

}  // namespace vexa
