#include <algorithm>
#include <charconv>
#include <concepts>
#include <limits>
#include <unordered_map>

#include "workbench/AtomicFile.h"
#include "workbench/CallLog.h"
#include "workbench/LocatedJson.h"
#include "workbench/Names.h"
#include "workbench/Profile.h"

namespace vexa::workbench {
namespace {

[[noreturn]] void Refuse(int line, const std::string& message) { throw JsonError(line, message); }

void Require(const JsonNode& node, JsonNode::Kind kind, std::string_view name, const char* right) {
  if (node.kind != kind) Refuse(node.line, QuotedText(name) + " must be " + right);
}

// --- one overload a type of value; `name` is the member's name in messages

void Read(const JsonNode& node, std::string_view name, bool& value) {
  Require(node, JsonNode::Kind::Boolean, name, "true or false");
  value = node.boolean;
}

void Read(const JsonNode& node, std::string_view name, std::string& value) {
  Require(node, JsonNode::Kind::String, name, "a text in double quotes");
  value = node.text;
}

template <typename Integer>
requires std::same_as<Integer, int16_t> || std::same_as<Integer, int32_t>
void Read(const JsonNode& node, std::string_view name, Integer& value) {
  using Limits = std::numeric_limits<Integer>;
  if (node.kind != JsonNode::Kind::Integer || node.integer < Limits::min() || node.integer > Limits::max()) {
    Refuse(node.line, QuotedText(name) + " must be a whole number from " + std::to_string(Limits::min()) +
                          " to " + std::to_string(Limits::max()));
  }
  value = static_cast<Integer>(node.integer);
}

template <typename Value>
void Read(const JsonNode& node, std::string_view name, std::vector<Value>& values) {
  Require(node, JsonNode::Kind::Array, name, "a list in square brackets");
  values.clear();
  for (const JsonNode& item : node.items) Read(item, name, values.emplace_back());
}

void Read(const JsonNode& node, std::string_view name, StoreKind& kind) {
  std::string word;
  Read(node, name, word);
  const std::optional<StoreKind> known = StoreKindNamed(word);
  if (!known) Refuse(node.line, QuotedText(name) + " must be \"mailbox\", \"public\" or \"personal\"");
  kind = *known;
}

/// Reads the members of an object by name; every member must be asked for, or the object is refused.
class ObjectReader {
 public:
  ObjectReader(const JsonNode& node, std::string_view name) : node_(node), name_(name) {
    Require(node, JsonNode::Kind::Object, name, "an object in braces");
  }

  template <typename Value>
  bool Optional(std::string_view member, Value& value) {
    const JsonNode* node = Find(member);
    if (node != nullptr) Read(*node, member, value);
    return node != nullptr;
  }
  template <typename Value>
  void Required(std::string_view member, Value& value) {
    if (!Optional(member, value)) {
      Refuse(node_.line, "the " + std::string(name_) + " needs a " + QuotedText(member));
    }
  }
  const JsonNode* Find(std::string_view member) {
    known_.push_back(member);
    const auto found = std::ranges::find(node_.members, member, &JsonMember::name);
    return found == node_.members.end() ? nullptr : &found->value;
  }
  void RefuseUnknown(const char* kind) const {
    for (const auto& [member, value] : node_.members) {
      if (std::ranges::find(known_, member) == known_.end()) {
        Refuse(value.line,
               std::string("unknown ") + kind + " " + QuotedText(member) + SuggestName(member, known_));
      }
    }
  }

 private:
  const JsonNode& node_;
  std::string_view name_;
  std::vector<std::string_view> known_;
};

struct FolderRecord {
  std::string name;
  std::string entryID;
  std::string parent;
  int32_t itemType = 0;
  bool unreadable = false;
  bool excluded = false;
  int line = 0;
};

FolderRecord ReadFolder(const JsonNode& node) {
  FolderRecord folder;
  ObjectReader reader(node, "folder");
  reader.Required("name", folder.name);
  reader.Required("entryID", folder.entryID);
  reader.Optional("parent", folder.parent);
  reader.Optional("itemType", folder.itemType);
  reader.Optional("unreadable", folder.unreadable);
  reader.Optional("excluded", folder.excluded);
  reader.RefuseUnknown("member of a folder");
  if (folder.entryID.empty()) Refuse(node.line, "a folder's \"entryID\" must not be empty");
  folder.line = node.line;
  return folder;
}

/// Puts a store's folders, which stand in any order, into the world from the root down.
class StoreBuilder {
 public:
  StoreBuilder(World& world, uint32_t store, std::vector<FolderRecord> records, int line)
      : world_(world), store_(store), records_(std::move(records)), line_(line) {}

  void Build() {
    IndexByEntryID();
    FindChildren();
    std::vector<std::pair<size_t, FolderIndex>> pending{{root_, NoFolder}};  // record, its parent folder
    size_t placed = 0;
    while (!pending.empty()) {
      const auto [record, parent] = pending.back();
      pending.pop_back();
      const FolderIndex folder = Place(record, parent);
      ++placed;
      const std::vector<size_t>& children = children_[record];
      for (auto child = children.rbegin(); child != children.rend(); ++child)
        pending.emplace_back(*child, folder);
    }
    if (placed < records_.size()) RefuseCycle();
  }

 private:
  void IndexByEntryID() {
    byEntryID_.reserve(records_.size());
    for (size_t i = 0; i < records_.size(); ++i) {
      const auto [found, added] = byEntryID_.emplace(records_[i].entryID, i);
      if (!added) RefuseDuplicate(records_[i], records_[found->second]);
    }
  }

  void FindChildren() {
    children_.resize(records_.size());
    root_ = records_.size();
    for (size_t i = 0; i < records_.size(); ++i) {
      const FolderRecord& record = records_[i];
      if (record.parent.empty()) {
        if (root_ != records_.size()) {
          Refuse(record.line, "a store has one folder without \"parent\", its root, and that is " +
                                  QuotedText(records_[root_].name) + " on line " +
                                  std::to_string(records_[root_].line));
        }
        root_ = i;
        continue;
      }
      const auto parent = byEntryID_.find(record.parent);
      if (parent == byEntryID_.end()) {
        Refuse(record.line, "\"parent\" must be the entry id of a folder of the same store; " +
                                QuotedText(record.parent) + " is none");
      }
      children_[parent->second].push_back(i);
    }
    if (root_ == records_.size()) {
      Refuse(records_.empty() ? line_ : records_.front().line,
             "the store needs a root folder, the one without \"parent\"");
    }
  }

  FolderIndex Place(size_t record, FolderIndex parent) {
    FolderRecord& from = records_[record];
    const FolderIndex folder =
        world_.AddFolder(store_, parent, from.name, from.entryID, static_cast<ItemType>(from.itemType));
    // Ids that differ in the case of letters only are the same id.
    if (folder == NoFolder)
      Refuse(from.line, "entry id " + QuotedText(from.entryID) + " is used twice in the store");
    world_.At(folder).unreadable = from.unreadable;
    world_.At(folder).excluded = from.excluded;
    return folder;
  }

  [[noreturn]] static void RefuseDuplicate(const FolderRecord& second, const FolderRecord& first) {
    Refuse(second.line, "entry id " + QuotedText(second.entryID) + " is that of folder " +
                            QuotedText(first.name) + " on line " + std::to_string(first.line) +
                            "; each folder of a store needs its own");
  }

  [[noreturn]] void RefuseCycle() const {
    for (const FolderRecord& record : records_) {
      if (world_.FindInStore(record.entryID, store_) == NoFolder) {
        Refuse(record.line, "folder " + QuotedText(record.name) +
                                " lies below itself: its \"parent\" must lead up to the store's root");
      }
    }
    Refuse(line_, "the folders of the store do not form a tree");
  }

  World& world_;
  uint32_t store_;
  std::vector<FolderRecord> records_;
  int line_;
  std::unordered_map<std::string_view, size_t> byEntryID_;
  std::vector<std::vector<size_t>> children_;
  size_t root_ = 0;
};

void ReadDefaultFolders(const JsonNode& node, uint32_t store, World& world) {
  Require(node, JsonNode::Kind::Object, "defaultFolders", "an object in braces");
  for (const auto& [number, value] : node.members) {
    int32_t folderNumber = 0;
    const char* const end = number.data() + number.size();
    const auto [stop, failure] = std::from_chars(number.data(), end, folderNumber);
    if (failure != std::errc() || stop != end) {
      Refuse(value.line, "a default folder is named by its number, such as \"6\" for the Inbox; " +
                             QuotedText(number) + " is none");
    }
    std::string entryID;
    Read(value, number, entryID);
    const FolderIndex folder = world.FindInStore(entryID, store);
    if (folder == NoFolder) {
      Refuse(value.line, "default folder " + number + " must be the entry id of a folder of the same store");
    }
    if (!world.defaultFolders.emplace(folderNumber, folder).second) {
      Refuse(value.line, "default folder " + number + " is named by another store already");
    }
  }
}

GeneratedFolders ReadGenerated(const JsonNode& node) {
  ObjectReader reader(node, "generated");
  GeneratedFolders rule;
  int32_t count = 0;
  int32_t breadth = 0;
  int32_t seed = 0;
  reader.Required("name", rule.name);
  reader.Required("count", count);
  reader.Required("breadth", breadth);
  reader.Optional("seed", seed);
  reader.Optional("itemTypes", rule.itemTypes);
  reader.RefuseUnknown("member of \"generated\"");
  if (count < 1 || breadth < 1) Refuse(node.line, "\"count\" and \"breadth\" must be at least 1");
  if (seed < 0) Refuse(node.line, "\"seed\" must be at least 0");
  rule.count = static_cast<uint32_t>(count);
  rule.breadth = static_cast<uint32_t>(breadth);
  rule.seed = static_cast<uint32_t>(seed);
  return rule;
}

void ReadStore(const JsonNode& node, std::vector<FolderRecord> records, World& world) {
  ObjectReader reader(node, "store");
  std::string storeID;
  StoreKind kind = StoreKind::PersonalFolders;
  reader.Required("storeID", storeID);
  reader.Required("kind", kind);
  const JsonNode* const defaultFolders = reader.Find("defaultFolders");
  const JsonNode* const folders = reader.Find("folders");
  const JsonNode* const generated = reader.Find("generated");
  reader.RefuseUnknown("member of a store");
  if (storeID.empty()) Refuse(node.line, "a store's \"storeID\" must not be empty");
  if (folders == nullptr && generated == nullptr) Refuse(node.line, "the store needs \"folders\"");
  if (folders != nullptr && generated != nullptr)
    Refuse(node.line, "a store has \"folders\" or they are \"generated\", not both");
  if (folders != nullptr) Require(*folders, JsonNode::Kind::Array, "folders", "a list in square brackets");
  for (const Store& other : world.Stores()) {
    if (SameName(other.storeID, storeID)) Refuse(node.line, "each store needs a \"storeID\" of its own");
  }
  uint32_t store = 0;
  if (generated != nullptr) {
    store = world.AddGeneratedStore(std::move(storeID), kind, ReadGenerated(*generated));
  } else {
    store = world.AddStore(std::move(storeID), kind);
    StoreBuilder(world, store, std::move(records), node.line).Build();
  }
  if (defaultFolders != nullptr) ReadDefaultFolders(*defaultFolders, store, world);
}

void ReadAddin(const JsonNode& node, AddinState& addin) {
  ObjectReader reader(node, "addin");
  reader.Optional("path", addin.path);
  reader.Optional("aboutInfo", addin.aboutInfo);
  reader.Optional("bypassBlocked", addin.bypassBlocked);
  reader.Optional("delayAvailable", addin.delayAvailable);
  reader.Optional("scanning", addin.scanning);
  reader.Optional("canWrite", addin.canWrite);
  reader.RefuseUnknown("member of \"addin\"");
}

/// Calls read(member) for each member of an object, whose names are free.
template <typename ReadMember>
void ReadMembers(const JsonNode& node, std::string_view name, ReadMember&& read) {
  Require(node, JsonNode::Kind::Object, name, "an object in braces");
  for (const JsonMember& member : node.members) read(member);
}

void ReadRegistryKey(const JsonMember& key, MachineState& machine) {
  if (!key.name.starts_with("HKEY_LOCAL_MACHINE\\") && !key.name.starts_with("HKEY_CURRENT_USER\\")) {
    Refuse(key.value.line, "a registry key begins with HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER; " +
                               QuotedText(key.name) + " does not");
  }
  MachineState::RegistryKey& values = machine.registry[key.name];
  ReadMembers(key.value, key.name, [&](const JsonMember& value) {
    if (value.value.kind == JsonNode::Kind::String) {
      values[value.name] = value.value.text;
    } else {
      int32_t number = 0;
      Read(value.value, value.name, number);
      values[value.name] = number;
    }
  });
}

void ReadMachine(const JsonNode& node, MachineState& machine) {
  ObjectReader reader(node, "machine");
  reader.Optional("userName", machine.userName);
  reader.Optional("computerName", machine.computerName);
  reader.Optional("profileName", machine.profileName);
  reader.Optional("outlookUser", machine.outlookUser);
  reader.Optional("supportAddress", machine.supportAddress);
  reader.Optional("canWriteMachine", machine.canWriteMachine);
  if (const JsonNode* versions = reader.Find("fileVersions")) {
    ReadMembers(*versions, "fileVersions", [&](const JsonMember& file) {
      Read(file.value, file.name, machine.fileVersions[file.name]);
    });
  }
  if (const JsonNode* registry = reader.Find("registry")) {
    ReadMembers(*registry, "registry", [&](const JsonMember& key) { ReadRegistryKey(key, machine); });
  }
  reader.RefuseUnknown("member of \"machine\"");
}

void ReadSettings(const JsonNode& node, SettingsData& settings) {
  ObjectReader reader(node, "settings");
  VisitSettings(settings, [&](std::string_view name, auto& value) { reader.Optional(name, value); });
  reader.RefuseUnknown("setting");
}

Profile BuildProfile(const JsonNode& root, std::vector<std::vector<FolderRecord>> folders) {
  constexpr int32_t formatVersion = 1;
  Profile profile;
  ObjectReader reader(root, "profile");
  std::string format;
  int32_t version = 0;
  if (!reader.Optional("format", format) || format != "vexa-profile") {
    Refuse(root.line, "this is no profile: \"format\": \"vexa-profile\" is missing");
  }
  reader.Required("version", version);
  if (version != formatVersion) Refuse(root.line, "\"version\" must be " + std::to_string(formatVersion));
  if (reader.Optional("language", profile.language) && (profile.language < 1 || profile.language > 0xFFFF)) {
    Refuse(reader.Find("language")->line, "\"language\" must be a Windows language number, such as 1033");
  }
  if (const JsonNode* node = reader.Find("addin")) ReadAddin(*node, profile.addin);
  if (const JsonNode* node = reader.Find("machine")) ReadMachine(*node, profile.machine);
  if (const JsonNode* node = reader.Find("settings")) ReadSettings(*node, profile.settings);
  const JsonNode* const stores = reader.Find("stores");
  reader.RefuseUnknown("member of the profile");
  if (stores == nullptr) Refuse(root.line, "the profile needs \"stores\"");
  Require(*stores, JsonNode::Kind::Array, "stores", "a list in square brackets");
  folders.resize(stores->items.size());
  for (size_t i = 0; i < stores->items.size(); ++i) {
    ReadStore(stores->items[i], std::move(folders[i]), profile.world);
  }
  return profile;
}

}  // namespace

Profile ParseProfile(std::string_view text, const std::string& nameForMessages) {
  try {
    std::vector<std::vector<FolderRecord>> folders;  // by store
    const JsonStream stream{"folders", [&](size_t store, JsonNode&& element) {
                              if (folders.size() <= store) folders.resize(store + 1);
                              folders[store].push_back(ReadFolder(element));
                            }};
    const JsonNode root = ReadJson(text, stream);
    return BuildProfile(root, std::move(folders));
  } catch (const JsonError& error) {
    throw ProfileError(nameForMessages + ":" + std::to_string(error.Line()) + ": " + error.what());
  }
}

Profile ReadProfile(const std::string& path) {
  std::string text;
  try {
    text = ReadWholeFile(path);
  } catch (const std::system_error& failure) {
    throw ProfileError(path + ": cannot be read: " + failure.code().message() +
                       "; right would be a profile such as vexa-profile makes");
  }
  return ParseProfile(text, path);
}

}  // namespace vexa::workbench
