// The calls that each action of a user makes on Outlook and the add-in, counted, beside the fewest that what
// it has to do allows; docs/performance.md says why these are the fewest. The test holds them equal, the
// benchmarks print them.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "dialogs/frmAdvanced.h"
#include "dialogs/frmBackgroundAdjust.h"
#include "dialogs/frmCacheAdjust.h"
#include "dialogs/frmSharedFolders.h"
#include "dialogs/frmTrackingOptions.h"
#include "tests/screens/PickerScene.h"

namespace vexa::workbench {

struct ActionCalls {
  std::string action;
  int64_t calls = 0;
  int64_t fewest = 0;
};

/// How large the world of the actions is.
struct WorldSize {
  int32_t folderSets = 2;  // N, every other one with a separate folder for mail
  int32_t entries = 3;     // M, stored for the picker
  int32_t children = 7;    // C, below the folder that is expanded, of all kinds in turn
};

class OutsideCalls {
 public:
  explicit OutsideCalls(const WorldSize& size) : size_(size) {}

  std::vector<ActionCalls> Count() {
    CountPage();
    CountEditor();
    CountOtherDialogs();
    CountPicker();
    return std::move(counted_);
  }

 private:
  int64_t Calls() const { return scene_->stage.calls.CallCount(); }
  /// What is counted from now on.
  void Watch(Scene& scene) {
    scene_ = &scene;
    scene.stage.calls.SetRecording(false);
  }
  template <typename Act>
  void Add(const std::string& action, int64_t fewest, Act&& act) {
    const int64_t before = Calls();
    act();
    counted_.push_back({action, Calls() - before, fewest});
  }
  void AddClick(const std::string& action, int64_t fewest, Form& form, Button& button) {
    Add(action, fewest, [&] { scene_->Click(form, button); });
  }
  void AddSince(int64_t before, const std::string& action, int64_t fewest) {
    counted_.push_back({action, Calls() - before, fewest});
  }

  Profile PageProfile() const {
    Profile profile;
    World& world = profile.world;
    const uint32_t store = world.AddStore("S", StoreKind::PublicFolders);
    const FolderIndex root = world.AddFolder(store, NoFolder, "P", "R", ItemType::Mail);
    const auto add = [&](const std::string& id, ItemType itemType) {
      world.AddFolder(store, root, id, id, itemType);
      return id;
    };
    add("free", ItemType::Contact);
    add("journal", ItemType::Journal);
    profile.settings.LoggingMethod = 3;
    profile.settings.QuickscanHours = 1;  // ticks a box whose rule asks for the access when the user ticks it
    for (int32_t i = 1; i <= size_.folderSets; ++i) {
      const std::string number = std::to_string(i);
      Scene::AddFolderSet(profile.settings, add("c" + number, ItemType::Contact),
                          add("j" + number, ItemType::Journal),
                          i % 2 == 0 ? add("e" + number, ItemType::Post) : "", "");
    }
    return profile;
  }

  /// F = 1 + [N>0] 8 + [E>0] 1 + 9 N + 3 E
  int64_t Fill() const {
    const int64_t withMail = size_.folderSets / 2;
    const int64_t lists = size_.folderSets > 0 ? 7 + (withMail > 0 ? 1 : 0) : 0;
    return 1 + lists + 9 * int64_t{size_.folderSets} + 3 * withMail + (size_.folderSets > 0 ? 1 : 0);
  }

  void CountPage() {
    Scene scene(1033, "", PageProfile());
    Watch(scene);
    OutlookPropertiesPage& page = scene.stage.CreatePage();
    Add("open the page", 7 + Fill() + 4, [&] { page.Initialize(scene.stage.workbench.Addin()); });
    // Each control is drawn.
    Add("F5", 1 + static_cast<int64_t>(page.Controls().size()), [&] {
      page.SetView(&scene.stage.View());
      page.KeyDown(KeyF5);
    });
    page.SetView(nullptr);
    page.SetDirty();
    Add("Apply", 1 + 6 + Fill() + 4, [&] { page.PropertyPage_Apply(); });
    page.SearchNowPending = true;
    Add("Apply, a search waiting", 3 + 6 + Fill() + 4, [&] { page.PropertyPage_Apply(); });
    Add("close the page", 1, [&] { page.UserControl_Hide(); });
  }

  void CountEditor() {
    Scene scene(1033, "", PageProfile());
    OutlookPropertiesPage& page = scene.Open();
    Watch(scene);
    int64_t inEditor = 0;
    scene.InNextDialog([&](Dialog& dialog) {
      auto& editor = static_cast<frmEditFolderset&>(dialog);
      scene.Pick({"P/free", "P/journal"});
      const int64_t before = Calls();
      AddClick("editor: Select... of the contacts", 9 + 1, editor, editor.cmdSelContact);
      AddClick("editor: Select... of the journal", 7 + 4, editor, editor.cmdSelJourn);
      // Thirteen lists, two calls a change; three for the count.
      AddClick("editor: OK, new folder set", 1 + 26 + 2, editor, editor.cmdOk);
      inEditor = Calls() - before;
    });
    const int64_t atAdd = Calls();
    scene.Click(page, page.cmdAdd);
    // The count for the index; what the editor asks when it opens; the row, the buttons, the host.
    AddSince(atAdd + inEditor, "Add...: the rest", 1 + 2 + 7 + 9 + 1 + 1);

    if (size_.folderSets == 0) return;
    page.gd.SetCurrent(1, 0);
    const int64_t atChange = Calls();
    scene.InNextDialog([&](Dialog& dialog) {
      auto& editor = static_cast<frmEditFolderset&>(dialog);
      // Thirteen values from lists, two paths, the update, and whether anything may be written.
      AddSince(atChange, "Change...: open the editor", 26 + 2 * 4 + 4 + 1);
      editor.Record.SharedCalEntryID = "free";
      editor.Record.SharedCalStoreID = "S";
      const int64_t atShared = Calls();
      scene.InNextDialog([&](Dialog& inner) {
        auto& shared = static_cast<frmSharedFolders&>(inner);
        AddSince(atShared, "shared folders: open", 4 + 4);
        shared.cmdOk.SetEnabled(true);
        AddClick("shared folders: OK", 4, shared, shared.cmdOk);
      });
      scene.Click(editor, editor.cmdShared);
      editor.cmdOk.SetEnabled(true);
      AddClick("editor: OK, changed folder set", 2 + 26 + 1 + 26 + 2, editor, editor.cmdOk);
    });
    scene.Click(page, page.cmdChange);
    AddClick("Remove", 2 + 12 + 1 + 1, page, page.cmdRemove);
  }

  void CountOtherDialogs() {
    Scene scene(1033, "", PageProfile());
    OutlookPropertiesPage& page = scene.Open();
    Watch(scene);
    AddinAppRef addin = scene.stage.workbench.Addin();
    RegSettingsRef settings = scene.stage.services.objects.CreateRegSettings();
    bool no = false;
    settings->Load(0, no, no);
    const Services& services = scene.stage.services;

    const auto count = [&]<typename Shown, typename... More>(const std::string& name, Shown dialog,
                                                             int64_t open, int64_t ok, More&... more) {
      Add(name + ": open", open, [&] { dialog.Initialize(addin, settings, more...); });
      dialog.cmdOk.SetEnabled(true);
      AddClick(name + ": OK", ok, dialog, dialog.cmdOk);
    };
    count("tracking options", frmTrackingOptions(services), 13, 10, page);
    count("advanced settings", frmAdvanced(services), 22, 1 + 16 + 1, page);
    count("cache", frmCacheAdjust(services), 4, 3);
    count("background", frmBackgroundAdjust(services), 4, 3);
    scene.InNextDialog([](Dialog& /*about*/) {});
    AddClick("about: open", 3, page, page.cmdAbout);
  }

  void CountPicker() {
    PickerScene picker;
    constexpr int kinds = 7;
    for (int32_t i = 1; i < size_.children; ++i) {  // one is there already
      picker.AddFolder("Archive", std::to_string(i), static_cast<ItemType>(i % kinds));
    }
    for (int32_t i = 0; i < size_.entries; ++i) picker.Store("X" + std::to_string(i), "CC", 1);
    Watch(picker.scene);

    const int64_t entries = size_.entries;
    constexpr int64_t stores = 3;
    Add("picker: open", 6 + 6 * stores + (entries > 0 ? 6 : 0) + 11 * entries, [&] { picker.Open(); });
    // Which of the ten default folders are asked for, by the kinds that come by: mail has five.
    const int64_t asked = 5 + std::min(size_.children - 1, 5);
    Add("picker: expand", 4 + 7 * int64_t{size_.children} + 2 * asked, [&] { picker.Expand("Archive"); });
    Add("picker: click a default folder", 0, [&] { picker.Select("(Default Folders)/Inbox"); });
    picker.Expand("Public Folders");
    Add("picker: click a public folder", 4, [&] { picker.Select("Public Folders/Sales"); });
    Add("picker: check it", 7 + 2 + 32, [&] { picker.Check("Public Folders/Sales"); });
    Add("picker: check another item type", 2, [&] { picker.CheckItem(139); });
    Add("picker: click a folder of a store", 4 + 2 + 2, [&] { picker.Select("Archive/Old"); });
    Add("picker: OK", 4 + 3 + 7 * (entries + 1), [&] { picker.Click(picker.picker->cmdOk); });
    picker.Open();
    Add("picker: Clear All", 0, [&] { picker.Click(picker.picker->cmdClear); });
    Add("picker: OK, nothing chosen", 4, [&] { picker.Click(picker.picker->cmdOk); });
  }

  WorldSize size_;
  Scene* scene_ = nullptr;
  std::vector<ActionCalls> counted_;
};

}  // namespace vexa::workbench
