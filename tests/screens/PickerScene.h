// A scene with a mailbox that has all ten default folders, public folders and a personal store, and the
// folder picker over it, opened by a parent that counts how often it is told of changes.
#pragma once

#include <memory>
#include <string>

#include "dialogs/frmFolders.h"
#include "tests/screens/Scene.h"
#include "workbench/Names.h"

namespace vexa::workbench {

class PickerScene final : public DialogParent {
 public:
  explicit PickerScene(Profile profile = MakeProfile()) : scene(1033, "", std::move(profile)) {
    settings = scene.stage.services.objects.CreateRegSettings();
    bool blocked = false;
    bool available = false;
    settings->Load(0, blocked, available);
    scene.stage.calls.Clear();
  }

  /// \\Mailbox - Ann with a folder for each default folder and "Projects" in its Inbox;
  /// \\Public Folders with "Sales" (contacts) and "News" (posts); \\Archive, a personal store.
  static Profile MakeProfile() {
    Profile profile;
    World& world = profile.world;
    const uint32_t mailbox = world.AddStore("AA", StoreKind::Mailbox);
    const FolderIndex top = world.AddFolder(mailbox, NoFolder, "Mailbox - Ann", "A0", ItemType::Mail);
    const auto add = [&](int32_t number, const char* name, const char* id, ItemType itemType) {
      return world.defaultFolders[number] = world.AddFolder(mailbox, top, name, id, itemType);
    };
    const FolderIndex inbox = add(6, "Inbox", "A6", ItemType::Mail);
    add(5, "Sent", "A5", ItemType::Mail);
    add(16, "Drafts", "A16", ItemType::Mail);
    add(3, "Deleted", "A3", ItemType::Mail);
    add(4, "Outbox", "A4", ItemType::Mail);
    add(9, "Calendar", "A9", ItemType::Appointment);
    add(10, "Contacts", "A10", ItemType::Contact);
    add(13, "Tasks", "A13", ItemType::Task);
    add(11, "Journal", "A11", ItemType::Journal);
    add(12, "Notes", "A12", ItemType::Note);
    world.AddFolder(mailbox, inbox, "Projects", "A20", ItemType::Task);
    const uint32_t open = world.AddStore("BB", StoreKind::PublicFolders);
    const FolderIndex shared = world.AddFolder(open, NoFolder, "Public Folders", "B0", ItemType::Mail);
    world.AddFolder(open, shared, "Sales", "B1", ItemType::Contact);
    world.AddFolder(open, shared, "News", "B2", ItemType::Post);
    const uint32_t archive = world.AddStore("CC", StoreKind::PersonalFolders);
    const FolderIndex kept = world.AddFolder(archive, NoFolder, "Archive", "C0", ItemType::Mail);
    world.AddFolder(archive, kept, "Old", "C1", ItemType::Mail);
    return profile;
  }

  void SetDirty() override { ++timesDirty; }

  void AddFolder(const char* parent, const std::string& name, ItemType itemType = ItemType::Mail) {
    World& world = scene.stage.workbench.profile.world;
    const FolderIndex above = world.FindPath(parent);
    world.AddFolder(world.At(above).store, above, name, "N" + name, itemType);
  }
  /// Adds a stored entry to what the picker will load.
  void Store(const std::string& entryID, const std::string& storeID, int32_t itemTypes) {
    SettingsData& data = scene.Working();
    ++data.MonitoredFolderCount;
    data.MonitoredFolderEntryIDs.push_back(entryID);
    data.MonitoredFolderStoreIDs.push_back(storeID);
    data.MonitoredFolderItemTypes.push_back(itemTypes);
  }
  /// What is stored: the count, then entry id/store id:item types of each.
  std::string Stored() {
    const SettingsData& data = scene.Working();
    std::string text = std::to_string(data.MonitoredFolderCount) + ":";
    for (size_t i = 0; i < data.MonitoredFolderEntryIDs.size(); ++i) {
      text += " " + data.MonitoredFolderEntryIDs[i] + "/" + data.MonitoredFolderStoreIDs[i] + ":" +
              std::to_string(data.MonitoredFolderItemTypes[i]);
    }
    return text;
  }

  frmFolders& Open() {
    picker = std::make_unique<frmFolders>(scene.stage.services);
    picker->Initialize(scene.stage.workbench.Addin(), settings, *this);
    picker->Show();
    return *picker;
  }
  UserActions User() { return UserActions(*picker); }

  /// The node at a path of texts; it must be there.
  Tree::Node At(std::string_view path) const {
    Tree::Node here = Tree::NoNode;
    for (const std::string_view part : SplitPath(path)) {
      Tree::Node found = Tree::NoNode;
      for (const Tree::Node child : picker->tvFolders.Children(here)) {
        if (picker->tvFolders.Text(child) == part) found = child;
      }
      if (found == Tree::NoNode) throw std::runtime_error("no node " + std::string(path));
      here = found;
    }
    return here;
  }
  void Expand(std::string_view path) { User().Expand(picker->tvFolders, At(path), true); }
  void Select(std::string_view path) { User().ClickNode(picker->tvFolders, At(path)); }
  void Check(std::string_view path, bool checked = true) {
    User().CheckNode(picker->tvFolders, At(path), checked);
  }
  void CheckItem(int32_t id) { User().CheckNode(picker->tvItems, picker->tvItems.Find(NumberKey(id)), true); }
  void Click(Button& button) { User().Click(button); }

  Scene scene;
  RegSettingsRef settings;
  std::unique_ptr<frmFolders> picker;
  int timesDirty = 0;
};

}  // namespace vexa::workbench
