#include "dialogs/frmFolders.h"

#include <exception>
#include <utility>

#include "dialogs/FolderTreeFiller.h"

namespace vexa {
namespace {

constexpr int32_t Number(StringId id) { return static_cast<int32_t>(id); }

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

}  // namespace

frmFolders::frmFolders(const Services& services) : Dialog("frmFolders"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::FolderPickerTitle));
  LoadCaptions(services.resources);
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);
  tvItems.SetFrame(&fraItems);
  FillTrees();

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
  cmdAll.OnClick = Handler(services_, *this, "cmdAll_Click", &frmFolders::CheckAllItems);
  cmdNone.OnClick = Handler(services_, *this, "cmdNone_Click", &frmFolders::CheckNoItems);
  cmdClear.OnClick = Handler(services_, *this, "cmdClear_Click", &frmFolders::ClearAll);
  cmdOk.OnClick = Handler(services_, *this, "cmdOk_Click", &frmFolders::Ok);
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
  FolderTreeFiller(tvFolders, selection_, session).AddFolders(Require(session).Folders(), Tree::NoNode);

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
  FolderTreeFiller(tvFolders, selection_, Share(addin_)->Session()).AddFolder(folder, parent, allLevels);
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
  FolderTreeFiller(tvFolders, selection_, session).AddFolders(Require(folder).Folders(), node);
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
    const ScopedFlag guard(checkedByItem_);
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
  services_.Tell(services_.resources.LoadString(StringId::PublicFolderContact, {services_.supportAddress}),
                 MessageIcon::Information);
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
