#include "workbench/import/Import.h"

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <unordered_map>

#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

using FolderNumber = size_t;  // position in DataFile::folders

constexpr std::string_view SubtreeName = "IPM_SUBTREE";

struct DefaultFolder {
  int32_t number;  // Outlook's OlDefaultFolders
  uint16_t link;   // 0: none leads there
  ItemType itemType;
  std::array<std::string_view, 2> names;  // as Outlook creates it, in English and French
};
constexpr int32_t InboxNumber = 6;
constexpr std::array DefaultFolders{
    DefaultFolder{3, WastebasketLink, ItemType::Mail, {"Deleted Items", "Éléments supprimés"}},
    DefaultFolder{4, OutboxLink, ItemType::Mail, {"Outbox", "Boîte d'envoi"}},
    DefaultFolder{5, SentMailLink, ItemType::Mail, {"Sent Items", "Éléments envoyés"}},
    DefaultFolder{InboxNumber, 0, ItemType::Mail, {"Inbox", "Boîte de réception"}},
    DefaultFolder{9, AppointmentLink, ItemType::Appointment, {"Calendar", "Calendrier"}},
    DefaultFolder{10, ContactLink, ItemType::Contact, {"Contacts", "Contacts"}},
    DefaultFolder{11, JournalLink, ItemType::Journal, {"Journal", "Journal"}},
    DefaultFolder{12, NoteLink, ItemType::Note, {"Notes", "Notes"}},
    DefaultFolder{13, TaskLink, ItemType::Task, {"Tasks", "Tâches"}},
    DefaultFolder{16, DraftsLink, ItemType::Mail, {"Drafts", "Brouillons"}},
};

// --- ids

void AppendLittleEndian(Bytes& bytes, uint32_t value, int size) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

std::string Hexadecimal(const Bytes& bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const uint8_t byte : bytes) {
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
}

/// Entry id of a folder in a data file: flags, the store's record key, the node ([MS-PST] 2.4.3.2).
Bytes EntryId(const Bytes& recordKey, uint32_t node) {
  Bytes id;
  AppendLittleEndian(id, 0, 4);  // flags
  std::ranges::copy(recordKey, std::back_inserter(id));
  AppendLittleEndian(id, node, 4);
  return id;
}

std::u16string BaseName(const std::string& path) try {
  return std::filesystem::path(path).filename().u16string();
} catch (const std::filesystem::filesystem_error&) {
  throw std::runtime_error("has a name that is not valid UTF-8");
}

/// The store's entry id inside the wrapper that Outlook puts around those of all providers ([MS-OXCDATA]
/// 2.2.4.3). Where Outlook writes the file's full path there is its base name, for a profile must not depend
/// on the place of the import; the record key keeps files of the same name apart.
std::string StoreId(const Bytes& recordKey, const std::string& path, StoreKind kind) {
  static constexpr std::array<uint8_t, 16> wrapper{0x38, 0xA1, 0xBB, 0x10, 0x05, 0xE5, 0x10, 0x1A,
                                                   0xA1, 0xBB, 0x08, 0x00, 0x2B, 0x2A, 0x56, 0xC2};
  static constexpr std::array<uint8_t, 16> personalFolders{0x4E, 0x49, 0x54, 0x41, 0xF9, 0xBF, 0xB8, 0x01,
                                                           0x00, 0xAA, 0x00, 0x37, 0xD9, 0x6E, 0x00, 0x00};
  static constexpr std::string_view library("mspst.dll\0", 10);
  Bytes id;
  AppendLittleEndian(id, 0, 4);  // flags
  std::ranges::copy(wrapper, std::back_inserter(id));
  AppendLittleEndian(id, 0, 2);  // version and flag
  std::ranges::copy(library, std::back_inserter(id));
  AppendLittleEndian(id, 0, 4);
  std::ranges::copy(personalFolders, std::back_inserter(id));
  AppendLittleEndian(id, kind == StoreKind::PublicFolders ? 1 : 0, 2);
  for (const char16_t unit : BaseName(path)) AppendLittleEndian(id, unit, 2);
  AppendLittleEndian(id, 0, 2);
  std::ranges::copy(recordKey, std::back_inserter(id));
  return Hexadecimal(id);
}

// --- the hierarchy

class Importer {
 public:
  Importer(const DataFile& file, const std::string& path) : file_(file), path_(path) {
    for (FolderNumber i = 0; i < file.folders.size(); ++i) children_[file.folders[i].parent].push_back(i);
  }

  Profile Run() {
    if (!file_.offline && file_.passwordChecksum != 0) throw std::runtime_error("is protected by a password");
    if (file_.recordKey.size() != 16) throw std::runtime_error("is damaged: its store has no record key");
    if (file_.folders.empty()) throw std::runtime_error("is damaged: it has no folders");
    AddMailbox();
    AddPublicFolders();
    return std::move(profile_);
  }

 private:
  std::string Stem() const { return std::filesystem::path(path_).stem().string(); }

  void AddMailbox() {
    if (const auto mailbox = Subtree("Root - Mailbox")) {
      const std::string& owner = file_.owner.empty() ? Stem() : file_.owner;
      AddStore(*mailbox, StoreKind::Mailbox, "Mailbox - " + owner);
      FindDefaultFolders(*mailbox);
      return;
    }
    std::optional<FolderNumber> top = Linked(file_.links, SubtreeLink);
    for (const char* name : {"Top of Personal Folders", "Top of Outlook data file"}) {
      if (!top) top = ChildNamed(0, name);
    }
    if (!top) throw std::runtime_error("has no mailbox: the folder at the top of one is missing");
    AddStore(*top, StoreKind::PersonalFolders, file_.displayName.empty() ? Stem() : file_.displayName);
    FindDefaultFolders(*top);
  }

  /// Each .ost has the frame of the public folders, also where the account has none; Outlook shows them only
  /// when there are some.
  void AddPublicFolders() {
    const auto top = Subtree("Root - Public");
    if (top && !ChildrenOf(*top).empty()) AddStore(*top, StoreKind::PublicFolders, "Public Folders");
  }

  const std::vector<FolderNumber>& ChildrenOf(FolderNumber folder) const {
    static const std::vector<FolderNumber> none;
    const auto found = children_.find(file_.folders[folder].node);
    return found == children_.end() ? none : found->second;
  }

  std::optional<FolderNumber> ChildNamed(FolderNumber folder, std::string_view name) const {
    for (const FolderNumber child : ChildrenOf(folder)) {
      if (SameName(file_.folders[child].name, name)) return child;
    }
    return std::nullopt;
  }

  std::optional<FolderNumber> Subtree(std::string_view rootName) const {
    const auto root = ChildNamed(0, rootName);
    return root ? ChildNamed(*root, SubtreeName) : std::nullopt;
  }

  void AddStore(FolderNumber top, StoreKind kind, const std::string& rootName) {
    World& world = profile_.world;
    const uint32_t store = world.AddStore(StoreId(file_.recordKey, path_, kind), kind);
    std::vector<std::pair<FolderNumber, FolderIndex>> pending{{top, NoFolder}};  // folder, its parent
    while (!pending.empty()) {
      const auto [number, parent] = pending.back();
      pending.pop_back();
      const DataFileFolder& folder = file_.folders[number];
      const FolderIndex index = world.AddFolder(store, parent, number == top ? rootName : folder.name,
                                                Hexadecimal(EntryId(file_.recordKey, folder.node)),
                                                ItemTypeOf(folder.containerClass));
      if (index == NoFolder) throw std::runtime_error("is damaged: two folders have the same entry id");
      placed_[number] = index;
      const std::vector<FolderNumber>& children = ChildrenOf(number);
      for (auto child = children.rbegin(); child != children.rend(); ++child)
        pending.emplace_back(*child, index);
    }
  }

  // --- default folders

  /// A link is an entry id of this file or, in an .ost, one that the server gave the folder.
  std::optional<FolderNumber> Linked(const FolderLinks& links, uint16_t link) const {
    const auto found = links.find(link);
    if (found == links.end()) return std::nullopt;
    const Bytes& id = found->second;
    const auto linked = std::ranges::find_if(file_.folders, [&](const DataFileFolder& folder) {
      return IsEntryIdOf(folder, id) || IsServerIdOf(folder, id);
    });
    if (linked == file_.folders.end()) return std::nullopt;
    return static_cast<FolderNumber>(linked - file_.folders.begin());
  }

  bool IsEntryIdOf(const DataFileFolder& folder, const Bytes& id) const {
    return id == EntryId(file_.recordKey, folder.node);
  }

  /// Folder entry ids of a server ([MS-OXCDATA] 2.2.4.1): 46 bytes, of which the 6 from byte 38 on count the
  /// mailbox's folders. A folder's own id has the number of the mailbox (0: made here, unknown to the server)
  /// before that count.
  static bool IsServerIdOf(const DataFileFolder& folder, const Bytes& id) {
    return id.size() == 46 && folder.serverId.size() == 8 && (folder.serverId[0] | folder.serverId[1]) != 0 &&
           std::equal(folder.serverId.begin() + 2, folder.serverId.end(), id.begin() + 38);
  }

  void FindDefaultFolders(FolderNumber top) {
    for (const DefaultFolder& kind : DefaultFolders) {
      for (const std::string_view name : kind.names) {
        const auto named = ChildNamed(top, name);
        if (named && ItemTypeOf(file_.folders[*named].containerClass) == kind.itemType)
          Choose(kind.number, *named);
      }
    }
    // Links stand in the store, in the root folder or in the Inbox, and say more than a name does.
    std::vector<const FolderLinks*> sources{&file_.links, &file_.folders.front().links,
                                            &file_.folders[top].links};
    if (inbox_) sources.push_back(&file_.folders[*inbox_].links);
    for (const FolderLinks* links : sources) {
      for (const DefaultFolder& kind : DefaultFolders) {
        if (const auto linked = Linked(*links, kind.link)) Choose(kind.number, *linked);
      }
    }
  }

  void Choose(int32_t defaultFolder, FolderNumber folder) {
    const auto placed = placed_.find(folder);
    if (placed == placed_.end()) return;  // outside of what Outlook shows
    profile_.world.defaultFolders[defaultFolder] = placed->second;
    if (defaultFolder == InboxNumber) inbox_ = folder;
  }

  const DataFile& file_;
  const std::string& path_;
  std::unordered_map<uint32_t, std::vector<FolderNumber>> children_;  // by the parent's node
  std::unordered_map<FolderNumber, FolderIndex> placed_;
  std::optional<FolderNumber> inbox_;
  Profile profile_;
};

std::string OneLine(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
  return text;
}

}  // namespace

ItemType ItemTypeOf(std::string_view containerClass) {
  static constexpr std::array<std::pair<std::string_view, ItemType>, 6> classes{
      {{"IPF.Appointment", ItemType::Appointment},
       {"IPF.Contact", ItemType::Contact},
       {"IPF.Task", ItemType::Task},
       {"IPF.Journal", ItemType::Journal},
       {"IPF.StickyNote", ItemType::Note},
       {"IPF.Post", ItemType::Post}}};
  for (const auto& [name, itemType] : classes) {
    const bool ends = containerClass.size() <= name.size() || containerClass[name.size()] == '.';
    if (ends && SameName(containerClass.substr(0, name.size()), name)) return itemType;
  }
  return ItemType::Mail;
}

Profile ProfileOf(const DataFile& file, const std::string& path) try {
  return Importer(file, path).Run();
} catch (const std::exception& failure) {
  throw ProfileError(OneLine(path + ": " + failure.what()));
}

Profile ImportDataFile(const std::string& path) {
  const DataFile file = [&] {
    try {
      return ReadDataFile(path);
    } catch (const std::exception& failure) {
      throw ProfileError(OneLine(path + ": " + failure.what()));
    }
  }();
  return ProfileOf(file, path);
}

}  // namespace vexa::workbench
