#include "dialogs/frmFolders.h"

#include <algorithm>
#include <array>
#include <exception>
#include <map>
#include <span>
#include <utility>
#include <vector>

namespace vexa {
namespace {

constexpr int32_t Number(StringId id) { return static_cast<int32_t>(id); }

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

StringId TipForDefaultFolder(int32_t rsIndex) {
  switch (static_cast<StringId>(rsIndex)) {
    case StringId::DeletedItemsFolder:
      return StringId::DeletedItemsTip;
    case StringId::DraftsFolder:
      return StringId::DraftsTip;
    case StringId::OutboxFolder:
      return StringId::OutboxTip;
    case StringId::NotesFolder:
      return StringId::NotesTip;
    default:
      return StringId::DefaultFolderTip;
  }
}

/// Sets a flag for as long as it lives.
class Guard {
 public:
  explicit Guard(bool& flag) : flag_(flag) { flag_ = true; }
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;
  ~Guard() { flag_ = false; }

 private:
  bool& flag_;
};

}  // namespace

/// The default folders while folders are added in one go: each is asked for when a folder of its kind comes
/// by, and once. Nothing is remembered from one time to the next: they may be others then.
class frmFolders::DefaultFolderIds {
 public:
  explicit DefaultFolderIds(NameSpace& session) : session_(session) {}

  StringId PictureOf(ItemType itemType, const std::string& entryID) {
    const auto* const kind = std::ranges::find(FolderKinds, itemType, &FolderKind::itemType);
    if (kind == FolderKinds.end()) return StringId::OtherFolderKind;
    for (const StringId folder : kind->defaults) {
      if (EntryIdOf(folder) == entryID) return folder;
    }
    return kind->picture;
  }

 private:
  /// Empty, as no folder's in the tree is, for one that cannot be found.
  const std::string& EntryIdOf(StringId folder) {
    const auto [known, isNew] = known_.try_emplace(folder);
    std::string& entryID = known->second;
    if (isNew) {
      IgnoreErrors([&] {
        const FolderRef found = session_.GetDefaultFolder(RSIndexToDefFolderIndex(Number(folder)));
        entryID = Require(found).EntryID();
      });
    }
    return entryID;
  }

  NameSpace& session_;
  std::map<StringId, std::string> known_;
};

frmFolders::frmFolders(const Services& services) : Dialog("frmFolders"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::FolderPickerTitle));
  LoadCaptions(services.resources);
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);
  tvItems.SetFrame(&fraItems);
  FillTrees();

  const auto on = [&](Event& event, std::string_view procedure, void (frmFolders::*handler)()) {
    event = Handler(services_, *this, procedure, [this, handler] { (this->*handler)(); });
  };
  const auto onNode = [&](Tree::NodeEvent& event, std::string_view procedure,
                          void (frmFolders::*handler)(Tree::Node)) {
    event = [this, procedure, handler](Tree::Node node) {
      Handler(services_, *this, procedure, [this, handler, node] { (this->*handler)(node); })();
    };
  };
  onNode(tvFolders.OnNodeCheck, "tvFolders_NodeCheck", &frmFolders::CheckFolder);
  onNode(tvFolders.OnNodeClick, "tvFolders_NodeClick", &frmFolders::ClickFolder);
  onNode(tvFolders.OnExpand, "tvFolders_Expand", &frmFolders::ExpandFolder);
  onNode(tvItems.OnNodeCheck, "tvItems_NodeCheck", &frmFolders::CheckItem);
  lblHotTip.OnClick = [this](const ExtLabel::WordClick& click) {
    Handler(services_, *this, "lblHotTip_Click", [this, &click] { ClickHotSpot(click); })();
  };
  on(cmdAll.OnClick, "cmdAll_Click", &frmFolders::CheckAllItems);
  on(cmdNone.OnClick, "cmdNone_Click", &frmFolders::CheckNoItems);
  on(cmdClear.OnClick, "cmdClear_Click", &frmFolders::ClearAll);
  on(cmdOk.OnClick, "cmdOk_Click", &frmFolders::Ok);
  cmdCancel.OnClick = [this] { End(true); };
}

void frmFolders::FillTrees() {
  const auto text = [&](int32_t id) { return services_.resources.LoadString(id); };
  const Tree::Node root =
      tvFolders.Add(Tree::NoNode, DefaultFoldersRoot, text(Number(StringId::DefaultFolders)),
                    NumberKey(Number(StringId::DefaultFolders)));
  for (int32_t id = Number(StringId::CalendarFolder); id <= Number(StringId::TasksFolder); ++id) {
    tvFolders.Add(root, DefaultFolderKey(id), text(id), NumberKey(id));
  }
  for (int32_t id = Number(StringId::AppointmentItems); id <= Number(StringId::TaskUpdateItems); ++id) {
    tvItems.Add(Tree::NoNode, NumberKey(id), text(id), NumberKey(id));
  }
}

void frmFolders::Initialize(AddinAppRef vexaAddinApp, RegSettingsRef tempRegSettings,
                            DialogParent& myParent) {
  PassOn(Name(), "Initialize", [&] {
    addin_ = std::move(vexaAddinApp);
    settings_ = std::move(tempRegSettings);
    parent_ = &myParent;
    Load();
  });
}

void frmFolders::Load() {
  const RegSettingsRef own = Share(settings_);
  RegSettings& settings = *own;
  lblInstructions.SetCaption(services_.resources.LoadString(
      settings.GetAllUsersMode() ? StringId::FolderPickerHelpAllUsers : StringId::FolderPickerHelp));
  const NameSpaceRef session = Share(addin_)->Session();
  const std::shared_ptr<Folders> stores = Require(session).Folders();
  const int32_t count = Require(stores).Count();
  DefaultFolderIds defaults(*session);
  for (int32_t i = 1; i <= count; ++i) AddFolder(defaults, stores->Item(i), Tree::NoNode, false);

  selection_.Load(settings, services_.objects);
  selection_.ForEachKey([&](const std::string& key) {
    const Tree::Node node = tvFolders.Find(key);
    if (node != Tree::NoNode) tvFolders.SetChecked(node, true);
  });

  const Tree::Node first = tvFolders.FirstChild(Tree::NoNode);
  tvFolders.Select(first);
  ClickFolder(first);
  if (!CanWrite(settings)) {
    for (Button* button : {&cmdOk, &cmdAll, &cmdNone, &cmdClear}) button->SetEnabled(false);
  }
}

// --- the tree of folders

void frmFolders::AddFolder(const FolderRef& folder, Tree::Node parent, bool allLevels) {
  const NameSpaceRef session = Share(addin_)->Session();
  DefaultFolderIds defaults(Require(session));
  AddFolder(defaults, folder, parent, allLevels);
}

void frmFolders::AddFolder(DefaultFolderIds& defaults, const FolderRef& folder, Tree::Node parent,
                           bool allLevels) {
  struct Level {
    std::shared_ptr<Folders> folders;
    int32_t count;
    int32_t done;
    Tree::Node parent;
  };
  std::vector<Level> levels;  // a hierarchy may be deeper than the machine's stack would bear
  const auto add = [&](const FolderRef& added, Tree::Node above) {
    const Tree::Node node = AddNode(defaults, Require(added), above);
    if (node == Tree::NoNode) return;
    std::shared_ptr<Folders> below = added->Folders();
    const int32_t count = Require(below).Count();
    if (count <= 0) return;
    if (allLevels) {
      levels.push_back({std::move(below), count, 0, node});
    } else {
      tvFolders.Add(node, {}, ChildPlaceholder);
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
Tree::Node frmFolders::AddNode(DefaultFolderIds& defaults, Folder& folder, Tree::Node parent) {
  std::string entryID;
  if (!IgnoreErrors([&] { entryID = folder.EntryID(); }) || entryID.empty()) return Tree::NoNode;
  const std::string key = FolderKey(entryID, folder.StoreID());
  const std::string text = folder.Name();
  const StringId picture = parent == Tree::NoNode ? StringId::RootStoreKind
                                                  : defaults.PictureOf(folder.DefaultItemType(), entryID);
  const Tree::Node node = tvFolders.Add(parent, key, text, NumberKey(Number(picture)));
  if (selection_.Find(key) != nullptr) tvFolders.SetChecked(node, true);
  return node;
}

void frmFolders::ExpandFolder(Tree::Node node) {
  const Tree::Node child = tvFolders.FirstChild(node);
  if (child == Tree::NoNode || child != tvFolders.LastChild(node) ||
      tvFolders.Text(child) != ChildPlaceholder)
    return;
  tvFolders.Remove(child);
  const FolderIds ids = IdsOfKey(tvFolders.Key(node));
  const NameSpaceRef session = Share(addin_)->Session();
  const FolderRef folder = Require(session).GetFolderFromID(ids.entryID, ids.storeID);
  const std::shared_ptr<Folders> folders = Require(folder).Folders();
  const int32_t count = Require(folders).Count();
  if (count > 0) tvFolders.Reserve(static_cast<size_t>(count));
  DefaultFolderIds defaults(*session);
  for (int32_t i = 1; i <= count; ++i) AddFolder(defaults, folders->Item(i), node, false);
}

// --- the selected folder

void frmFolders::ClickFolder(Tree::Node node) {
  fraItems.SetEnabled(!IsRoot(node));
  // A folder that is gone has no tip, but still the item types of its record: never those of another.
  ShowTip(StringId::None);
  std::exception_ptr failure;
  try {
    ShowTip(TipFor(node));
  } catch (...) {
    failure = std::current_exception();
  }
  if (failure == nullptr) {
    SettingToForm(RecordOf(node));
  } else {
    IgnoreErrors([&] { SettingToForm(RecordOf(node)); });
    std::rethrow_exception(failure);
  }
}

StringId frmFolders::TipFor(Tree::Node node) {
  if (IsRoot(node)) return StringId::RootStoreTip;
  const std::string key(tvFolders.Key(node));
  if (IsDefaultFolderKey(key)) return TipForDefaultFolder(DefaultFolderOfKey(key));
  const FolderIds ids = IdsOfKey(key);
  const FolderRef folder = Require(Share(addin_)->Session()).GetFolderFromID(ids.entryID, ids.storeID);
  if (Require(Share(addin_)->Utilities()).IsPublicFolder(folder)) return StringId::PublicFolderTip;
  if (IsAPersonalFolder(folder)) return StringId::PersonalFolderTip;
  return StringId::None;
}

bool frmFolders::IsAPersonalFolder(FolderRef folder) const {
  return PassOn(Name(), "IsAPersonalFolder", [&] {
    const std::string mailbox = services_.resources.LoadString(StringId::MailboxNameStart);
    for (; folder != nullptr; folder = folder->Parent()) {
      if (folder->Name().starts_with(mailbox)) return true;
    }
    return false;
  });
}

void frmFolders::ShowTip(StringId tip) {
  tip_ = tip;
  lblHotTip.SetCaption(tip == StringId::None ? std::string() : services_.resources.LoadString(tip));
}

void frmFolders::SettingToForm(const MonitoredFolderRef& record) {
  PassOn(Name(), "SettingToForm", [&] {
    tvItems.ClearChecks();
    if (record == nullptr) return;
    for (const Tree::Node item : tvItems.Children(Tree::NoNode)) {
      const int32_t id = NumberOfKey(tvItems.Key(item));
      tvItems.SetChecked(item, record->GetFlag(record->MaskFromResId(static_cast<int16_t>(id))));
    }
  });
}

// --- checks

void frmFolders::CheckFolder(Tree::Node node) {
  const bool checked = tvFolders.Checked(node);
  const bool root = IsRoot(node);
  if (checked && root) tvFolders.SetChecked(node, false);
  if (checked && node != tvFolders.Selected()) {
    tvFolders.Select(node);
    ClickFolder(node);
  }
  if (!checked) {
    selection_.Remove(tvFolders.Key(node));
    SettingToForm(nullptr);
  } else if (!root) {
    if (RecordOf(node) == nullptr) CreateRecord(node);
    if (!checkedByItem_) SettingToForm(RecordOf(node));
  }
}

void frmFolders::CreateRecord(Tree::Node node) {
  const std::string key(tvFolders.Key(node));
  const MonitoredFolderRef added = selection_.Add(key, services_.objects);
  MonitoredFolder& record = *added;
  ItemType itemType{};
  if (IsDefaultFolderKey(key)) {
    const int32_t number = RSIndexToDefFolderIndex(DefaultFolderOfKey(key));
    record.LetEntryID(std::to_string(number));
    record.LetStoreID("");
    record.LetFlag(DefaultFolderFlag, true);
    if (checkedByItem_) return;
    itemType = Require(Require(Share(addin_)->Session()).GetDefaultFolder(number)).DefaultItemType();
    const bool mail = number == RSIndexToDefFolderIndex(Number(StringId::SentItemsFolder)) ||
                      number == RSIndexToDefFolderIndex(Number(StringId::InboxFolder));
    if (mail) record.SetMailDefaults(true);
  } else {
    const FolderIds ids = IdsOfKey(key);
    record.LetEntryID(ids.entryID);
    record.LetStoreID(ids.storeID);
    if (checkedByItem_) return;
    itemType = Require(Require(Share(addin_)->Session()).GetFolderFromID(ids.entryID, ids.storeID))
                   .DefaultItemType();
  }
  const int32_t mask = record.MaskFromOlItemType(itemType);
  record.LetFlag(mask, true);
  const Tree::Node item = tvItems.Find(NumberKey(record.ResIdFromMask(mask)));
  if (item != Tree::NoNode) tvItems.EnsureVisible(item);
}

void frmFolders::CheckItem(Tree::Node item) {
  const Tree::Node folder = tvFolders.Selected();
  tvFolders.EnsureVisible(folder);
  const bool checked = tvItems.Checked(item);
  if (checked && !tvFolders.Checked(folder)) {
    const Guard guard(checkedByItem_);
    tvFolders.SetChecked(folder, true);
    CheckFolder(folder);
  }
  if (!checked && tvItems.CheckedCount() == 0) {
    tvFolders.SetChecked(folder, false);
    selection_.Remove(tvFolders.Key(folder));
  }
  const MonitoredFolderRef found = RecordOf(folder);
  if (found == nullptr && !checked) return;
  MonitoredFolder& record = Require(found);
  record.LetFlag(record.MaskFromResId(static_cast<int16_t>(NumberOfKey(tvItems.Key(item)))), checked);
}

// --- buttons

void frmFolders::CheckAllItems() {
  if (IsRoot(tvFolders.Selected())) return;
  for (const Tree::Node item : tvItems.Children(Tree::NoNode)) {
    tvItems.SetChecked(item, true);
    CheckItem(item);
  }
}

void frmFolders::CheckNoItems() {
  const Tree::Node folder = tvFolders.Selected();
  if (IsRoot(folder)) return;
  tvFolders.SetChecked(folder, false);
  CheckFolder(folder);
}

void frmFolders::ClearAll() {
  tvFolders.ClearChecks();
  selection_.Clear();
  SettingToForm(nullptr);
}

void frmFolders::ClickHotSpot(const ExtLabel::WordClick& click) {
  if (!click.isLink || tip_ != StringId::PublicFolderTip) return;
  services_.desktop.Show(
      services_.resources.LoadString(StringId::PublicFolderContact, {services_.supportAddress}),
      MessageIcon::Information, MessageButtons::Ok,
      services_.resources.LoadString(StringId::ShortProductName));
}

void frmFolders::Ok() {
  DialogParent& parent = Require(parent_);
  selection_.Save(*Share(settings_));
  parent.SetDirty();
  End(false);
}

void frmFolders::DropReferences() {
  addin_.reset();
  settings_.reset();
  parent_ = nullptr;
}

}  // namespace vexa
