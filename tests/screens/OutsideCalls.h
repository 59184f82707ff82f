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
  std::string formula;
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
  template <typename Act>
  void Add(Scene& scene, const std::string& action, int64_t fewest, const std::string& formula, Act&& act) {
    const CallLog& log = scene.stage.calls;
    const int64_t before = log.CallCount();
    act();
    counted_.push_back({action, log.CallCount() - before, fewest, formula});
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
    SettingsData& settings = profile.settings;
    settings.FolderSetCount = size_.folderSets;
    settings.LoggingMethod = 3;
    for (int32_t i = 1; i <= size_.folderSets; ++i) {
      const std::string number = std::to_string(i);
      const bool email = i % 2 == 0;
      settings.ContactEntryIDs.push_back(add("c" + number, ItemType::Contact));
      settings.JournEntryIDs.push_back(add("j" + number, ItemType::Journal));
      settings.EmailEntryIDs.push_back(email ? add("e" + number, ItemType::Post) : "");
      settings.ContactStoreIDs.emplace_back("S");
      settings.JournStoreIDs.emplace_back("S");
      settings.EmailStoreIDs.emplace_back(email ? "S" : "");
      for (auto* routing :
           {&settings.SharedCalEntryIDs, &settings.SharedCalStoreIDs, &settings.SharedJournEntryIDs,
            &settings.SharedJournStoreIDs, &settings.SharedTaskEntryIDs, &settings.SharedTaskStoreIDs}) {
        routing->emplace_back("");
      }
      settings.FolderSetFlags.push_back(2);
    }
    return profile;
  }

  int64_t Fill() const {
    const int64_t withMail = size_.folderSets / 2;
    const int64_t lists = size_.folderSets > 0 ? 7 + (withMail > 0 ? 1 : 0) : 0;
    return 1 + lists + 9 * int64_t{size_.folderSets} + 3 * withMail + (size_.folderSets > 0 ? 1 : 0);
  }

  void CountPage() {
    Scene scene(1033, "", PageProfile());
    scene.stage.calls.SetRecording(false);
    OutlookPropertiesPage& page = scene.stage.CreatePage();
    const std::string fill = "F = 1 + [N>0] 8 + [E>0] 1 + 9 N + 3 E";
    Add(scene, "open the page", 7 + Fill() + 4, "11 + F, filling: " + fill,
        [&] { page.Initialize(scene.stage.workbench.Addin()); });
    Add(scene, "F5", 1 + static_cast<int64_t>(page.Controls().size()), "1 + one a control: redrawing", [&] {
      page.SetView(&scene.stage.View());
      page.KeyDown(KeyF5);
    });
    page.SetView(nullptr);
    page.SetDirty();
    Add(scene, "Apply", 1 + 6 + Fill() + 4, "11 + F", [&] { page.PropertyPage_Apply(); });
    page.SearchNowPending = true;
    Add(scene, "Apply, a search waiting", 3 + 6 + Fill() + 4, "13 + F", [&] { page.PropertyPage_Apply(); });
    Add(scene, "close the page", 1, "1", [&] { page.UserControl_Hide(); });
  }

  void CountEditor() {
    Scene scene(1033, "", PageProfile());
    OutlookPropertiesPage& page = scene.Open();
    scene.stage.calls.SetRecording(false);
    const std::string ok = "13 lists, 2 calls a change; 3 for the count";
    scene.InNextDialog([&](Dialog& dialog) {
      auto& editor = static_cast<frmEditFolderset&>(dialog);
      scene.Pick({"P/free", "P/journal"});
      Add(scene, "editor: Select... of the contacts", 9 + 1, "9 + update: 1",
          [&] { scene.Click(editor, editor.cmdSelContact); });
      Add(scene, "editor: Select... of the journal", 7 + 4, "7 + update: 4",
          [&] { scene.Click(editor, editor.cmdSelJourn); });
      Add(scene, "editor: OK, new folder set", 1 + 26 + 2, ok, [&] { scene.Click(editor, editor.cmdOk); });
    });
    const int64_t before = scene.stage.calls.CallCount();
    scene.Click(page, page.cmdAdd);
    int64_t inEditor = 0;
    for (size_t i = counted_.size() - 3; i < counted_.size(); ++i) inEditor += counted_[i].calls;
    // The count for the index; what the editor asks when it opens; the row, the buttons, the host.
    counted_.push_back(
        {"Add...: the rest", scene.stage.calls.CallCount() - before - inEditor, 1 + 2 + 7 + 9 + 1 + 1, "21"});

    if (size_.folderSets == 0) return;
    page.gd.SetCurrent(1, 0);
    const int64_t atChange = scene.stage.calls.CallCount();
    scene.InNextDialog([&](Dialog& dialog) {
      auto& editor = static_cast<frmEditFolderset&>(dialog);
      // Thirteen values from lists, two paths, the update, and whether anything may be written.
      counted_.push_back({"Change...: open the editor", scene.stage.calls.CallCount() - atChange,
                          26 + 2 * 4 + 4 + 1, "2 a value, 4 a path, update: 4, 1"});
      editor.SharedCalEntryID = "free";
      editor.SharedCalStoreID = "S";
      const int64_t atShared = scene.stage.calls.CallCount();
      scene.InNextDialog([&](Dialog& inner) {
        auto& shared = static_cast<frmSharedFolders&>(inner);
        counted_.push_back(
            {"shared folders: open", scene.stage.calls.CallCount() - atShared, 4 + 4, "4 + 4 a path"});
        shared.cmdOk.SetEnabled(true);
        Add(scene, "shared folders: OK", 4, "update: 4", [&] { scene.Click(shared, shared.cmdOk); });
      });
      scene.Click(editor, editor.cmdShared);
      editor.cmdOk.SetEnabled(true);
      Add(scene, "editor: OK, changed folder set", 2 + 26 + 1 + 26 + 2, ok,
          [&] { scene.Click(editor, editor.cmdOk); });
    });
    scene.Click(page, page.cmdChange);
    Add(scene, "Remove", 2 + 12 + 1 + 1, "2 for the count, 2 a list of 6, 2",
        [&] { scene.Click(page, page.cmdRemove); });
  }

  void CountOtherDialogs() {
    Scene scene(1033, "", PageProfile());
    OutlookPropertiesPage& page = scene.Open();
    scene.stage.calls.SetRecording(false);
    AddinAppRef addin = scene.stage.workbench.Addin();
    RegSettingsRef settings = scene.stage.services.objects.CreateRegSettings();
    bool no = false;
    settings->Load(0, no, no);
    const Services& services = scene.stage.services;

    const auto count = [&]<typename Shown, typename... More>(const char* name, Shown dialog, int64_t open,
                                                             int64_t ok, const char* formula, More&... more) {
      Add(scene, std::string(name) + ": open", open, "one a value",
          [&] { dialog.Initialize(addin, settings, more...); });
      dialog.cmdOk.SetEnabled(true);
      Add(scene, std::string(name) + ": OK", ok, formula, [&] { scene.Click(dialog, dialog.cmdOk); });
    };
    count("tracking options", frmTrackingOptions(services), 13, 10, "one a value", page);
    count("advanced settings", frmAdvanced(services), 22, 1 + 16 + 1, "one a value, 2", page);
    count("cache", frmCacheAdjust(services), 4, 3, "one a value");
    count("background", frmBackgroundAdjust(services), 4, 3, "one a value");

    scene.InNextDialog([](Dialog& /*about*/) {});
    Add(scene, "about: open", 3, "3", [&] { scene.Click(page, page.cmdAbout); });
  }

  void CountPicker() {
    Profile profile = PickerScene::MakeProfile();
    World& world = profile.world;
    const FolderIndex top = world.FindPath("Archive");
    constexpr int kinds = 7;
    for (int32_t i = 1; i < size_.children; ++i) {  // one is there already
      const std::string id = "K" + std::to_string(i);
      world.AddFolder(world.At(top).store, top, id, id, static_cast<ItemType>(i % kinds));
    }
    PickerScene picker(std::move(profile));
    for (int32_t i = 0; i < size_.entries; ++i) picker.Store("X" + std::to_string(i), "CC", 1);
    Scene& scene = picker.scene;
    scene.stage.calls.SetRecording(false);

    const int64_t entries = size_.entries;
    constexpr int64_t stores = 3;
    Add(scene, "picker: open", 6 + 6 * stores + (entries > 0 ? 6 : 0) + 11 * entries,
        "6 + 6 S + [M>0] 6 + 11 M", [&] { picker.Open(); });
    // Which of the ten default folders are asked for, by the kinds that come by: mail has five.
    const int64_t asked = 5 + std::min(size_.children - 1, 5);
    Add(scene, "picker: expand", 4 + 7 * int64_t{size_.children} + 2 * asked, "4 + 7 C + 2 D",
        [&] { picker.Expand("Archive"); });
    Add(scene, "picker: click a default folder", 0, "0", [&] { picker.Select("(Default Folders)/Inbox"); });
    picker.Expand("Public Folders");
    Add(scene, "picker: click a public folder", 4, "4", [&] { picker.Select("Public Folders/Sales"); });
    Add(scene, "picker: check it", 7 + 2 + 32, "9 + 2 an item type",
        [&] { picker.Check("Public Folders/Sales"); });
    Add(scene, "picker: check another item type", 2, "2", [&] { picker.CheckItem(139); });
    Add(scene, "picker: click a folder of a store", 4 + 2 + 2, "4 + 2 a level",
        [&] { picker.Select("Archive/Old"); });
    Add(scene, "picker: OK", 4 + 3 + 7 * (entries + 1), "4 + [M>0] 3 + 7 M",
        [&] { picker.Click(picker.picker->cmdOk); });
    picker.Open();
    Add(scene, "picker: Clear All", 0, "0", [&] { picker.Click(picker.picker->cmdClear); });
    Add(scene, "picker: OK, nothing chosen", 4, "4", [&] { picker.Click(picker.picker->cmdOk); });
  }

  WorldSize size_;
  std::vector<ActionCalls> counted_;
};

}  // namespace vexa::workbench
