// The scene of the screens' tests: a small world on the workbench, a user who agrees to everything, and
// dialogs that run as the test tells them to.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "dialogs/frmEditFolderset.h"
#include "display/UserActions.h"
#include "workbench/Settings.h"
#include "workbench/Stage.h"

namespace vexa::workbench {

class Scene final : public ModalWindows, public UserAnswers {
 public:
  /// Windows paths lead somewhere only when the profile has a path.
  explicit Scene(int32_t language = 1033, const std::string& profilePath = "",
                 Profile profile = MakeProfile())
      : stage(std::move(profile), profilePath, language, *this, *this) {}

  // --- verbs

  OutlookPropertiesPage& Open() {
    OutlookPropertiesPage& page = stage.CreatePage();
    page.Initialize(stage.workbench.Addin());
    return page;
  }
  OutlookPropertiesPage& Page() { return *stage.Page(); }
  Outcome Click(Form& form, Control& control) { return UserActions(form).Click(control); }
  /// What the user does in the next dialog; when it ends with the dialog open, Esc is pressed.
  void InNextDialog(std::function<void(Dialog&)> body) { dialogs.push_back(std::move(body)); }
  /// Does something in the dialog that a button of the page opens; opens the page when there is none.
  template <typename Shown>
  void In(Button OutlookPropertiesPage::*opener, const std::function<void(Shown&, UserActions&)>& body) {
    if (stage.Page() == nullptr) Open();
    bool shown = false;
    InNextDialog([&](Dialog& dialog) {
      shown = true;
      dialog.SetView(&stage.View());
      UserActions user(dialog);
      body(dynamic_cast<Shown&>(dialog), user);
    });
    Click(Page(), Page().*opener);
    EXPECT_TRUE(shown) << seen;
  }
  /// Picks folders by path in the pickers to come; "" cancels.
  void Pick(std::vector<std::string> paths) { picks.insert(picks.end(), paths.begin(), paths.end()); }

  // --- what came of it

  std::string TakeSeen() { return std::exchange(seen, {}); }
  SettingsData& Working() { return *stage.workbench.WorkingCopy(); }
  /// The settings whose values differ, by name.
  static std::string Differences(const SettingsData& one, const SettingsData& other) {
    std::string names;
    VisitSettings(one, [&](std::string_view name, const auto& value) {
      VisitSettings(other, [&](std::string_view otherName, const auto& otherValue) {
        if constexpr (std::is_same_v<decltype(value), decltype(otherValue)>) {
          if (name == otherName && value != otherValue) names.append(names.empty() ? "" : " ").append(name);
        }
      });
    });
    return names;
  }
  // --- the human parts

  void ShowModal(Dialog& dialog, Form* /*owner*/) override {
    dialog.Show();
    if (!dialogs.empty()) {
      const auto body = dialogs.front();
      dialogs.pop_front();
      body(dialog);
    }
    if (dialog.IsShowing()) UserActions(dialog).Escape();
    dialog.Hide();
  }
  std::optional<FolderIndex> PickFolder() override {
    if (picks.empty()) return std::nullopt;
    const std::string path = picks.front();
    picks.pop_front();
    const FolderIndex folder = stage.workbench.profile.world.FindPath(path);
    return folder == NoFolder ? std::nullopt : std::optional(folder);
  }
  MessageAnswer AnswerMessage(const std::string&, MessageButtons buttons) override {
    const bool asks = buttons == MessageButtons::YesNo || buttons == MessageButtons::YesNoCancel;
    return asks ? MessageAnswer::Yes : MessageAnswer::Ok;
  }
  BrowseAnswer BrowseForFolder(const std::string&, const std::string&) override { return {}; }
  int32_t OpenDocument(const std::string&) override { return 42; }
  void Seen(const std::string& line) override { seen += line + "\n"; }

  static Profile MakeProfile() {
    Profile profile;
    World& world = profile.world;
    const uint32_t store = world.AddStore("S", StoreKind::PublicFolders);
    const FolderIndex root = world.AddFolder(store, NoFolder, "P", "R", ItemType::Mail);
    world.AddFolder(store, root, "C1", "c1", ItemType::Contact);
    world.AddFolder(store, root, "C2", "c2", ItemType::Contact);
    world.AddFolder(store, root, "C3", "c3", ItemType::Contact);
    world.AddFolder(store, root, "J", "j", ItemType::Journal);
    world.AddFolder(store, root, "E", "e", ItemType::Post);
    AddFolderSet(profile.settings, "c1", "j", "", "r1");
    AddFolderSet(profile.settings, "c2", "j", "e", "r2");
    profile.settings.FolderSetFlags = {1, 3};
    return profile;
  }
  /// A folder set of folders of the store "S"; "" for no separate folder for mail, and for no routing.
  static void AddFolderSet(SettingsData& settings, const std::string& contacts, const std::string& journal,
                           const std::string& mail, const std::string& routing) {
    ++settings.FolderSetCount;
    settings.ContactEntryIDs.push_back(contacts);
    settings.JournEntryIDs.push_back(journal);
    settings.EmailEntryIDs.push_back(mail);
    settings.ContactStoreIDs.emplace_back("S");
    settings.JournStoreIDs.emplace_back("S");
    settings.EmailStoreIDs.emplace_back(mail.empty() ? "" : "S");
    for (auto* list :
         {&settings.SharedCalEntryIDs, &settings.SharedCalStoreIDs, &settings.SharedJournEntryIDs,
          &settings.SharedJournStoreIDs, &settings.SharedTaskEntryIDs, &settings.SharedTaskStoreIDs}) {
      list->push_back(routing);
    }
    settings.FolderSetFlags.push_back(2);
  }

  Stage stage;
  std::deque<std::function<void(Dialog&)>> dialogs;
  std::deque<std::string> picks;
  std::string seen;
};

}  // namespace vexa::workbench
