// The options page that Outlook shows as one tab of its Options dialog: the entry of the whole options
// interface. It owns the working copy of the add-in's settings, shows the tracked contact folders, opens
// every dialog, and hands the copy to the add-in on Apply. The host makes it, the add-in calls Initialize.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/Grid.h"
#include "display/Label.h"
#include "display/OptionsSection.h"

namespace vexa {

class OutlookPropertiesPage final : public Form, public OptionsPage {
 public:
  /// Gives the host's page site, or null while there is none.
  using SiteSource = std::function<std::shared_ptr<PropertyPageSite>()>;

  OutlookPropertiesPage(const Services& services, SiteSource site);
  /// Releases the add-in as hiding does, when that has not happened yet.
  ~OutlookPropertiesPage() override;

  // --- called by the host and the add-in

  /// Makes a fresh working copy and shows it. With `reinitialize` the add-in given is ignored and the one
  /// from before stays. Errors of the add-in's objects come through, and the page stays inactive then. Error
  /// 91 without an add-in, while the page is being hidden, and when an outside call led to the page being
  /// hidden or initialised anew.
  void Initialize(const AddinAppRef& addinApp, bool reinitialize = false);
  void PropertyPage_GetPageInfo(std::string& helpFile, int32_t& helpContext);
  bool PropertyPage_Dirty() const { return dirty_; }
  /// Hands the working copy to the add-in and starts a pending search; does nothing on a page that is not
  /// active or not dirty, or while an action of the user is still changing the copy. Its errors are trapped
  /// except in development mode.
  void PropertyPage_Apply();
  /// Title of the tab.
  std::string TabTitle() const;
  /// The host hides the page: what is not applied by now is lost.
  void UserControl_Hide();

  // --- called by the page and its dialogs

  /// Never set back: once something was changed, the host sees the page as dirty for the rest of its life.
  void SetDirty() override;
  void FillTrackedContacts();
  /// Redraws the page and every control on it, whatever some of them answer.
  void Refresh();
  void KeyDown(int keyCode) override;

  bool PageActive() const { return pageActive_; }
  /// Where the working copy says that the error log lies; empty without a working copy.
  std::string ErrorLogPath();

  OptionsSection opsTrackedContacts{*this, "opsTrackedContacts", StringId::TrackedContacts, 2008};
  Label lblTrackedContacts{*this, "lblTrackedContacts", StringId::TrackedContactsHelp};
  Grid gd{*this, "gd", 3};
  Button cmdAdd{*this, "cmdAdd", StringId::Add};
  Button cmdChange{*this, "cmdChange", StringId::Change};
  Button cmdRemove{*this, "cmdRemove", StringId::Remove};
  OptionsSection opsTrackingOptions{*this, "opsTrackingOptions", StringId::TrackingOptions, 2302};
  Label lblTrackingOptions{*this, "lblTrackingOptions", StringId::TrackingOptionsHelp};
  Button cmdTracking{*this, "cmdTracking", StringId::Configure};
  OptionsSection opsOther{*this, "opsOther", StringId::General, 2011};
  Button cmdAdvanced{*this, "cmdAdvanced", StringId::Advanced};
  Button cmdAbout{*this, "cmdAbout", StringId::About};
  Button cmdRestoreDialogs{*this, "cmdRestoreDialogs", StringId::RestoreDialogs};
  Button cmdHelp{*this, "cmdHelp", StringId::Documentation, 2016};
  Label lblFooter{*this, "lblFooter"};
  Button cmdIDEApply{*this, "cmdIDEApply"};

 private:
  /// What an action of the page works with, its own from start to end. Any outside call may hide the page or
  /// initialise it anew before it returns.
  struct Work {
    AddinAppRef addin;
    RegSettingsRef settings;
    uint32_t generation;
  };
  Work Begin() const { return {addinApp_, settings_, generation_}; }
  /// Error 91 when the page has dropped or replaced what the action works with.
  void RequireCurrent(const Work& work) const;

  struct FolderSetLists;

  Work LoadWorkingCopy(const AddinAppRef& addinApp, bool reinitialize);
  void ShowAccess(const Work& work);
  void ApplyTrapped();
  void Apply();
  void Release() noexcept;

  void FillRows(const Work& work);
  void FillRow(FolderSetLists& lists, int32_t folderSet);
  void UpdateButtons(const Work& work);
  void UpdateDefaultButton();
  void EditFolderSet(const Work& work, int32_t folderSet, bool modeEdit);
  void AddFolderSet();
  void ChangeFolderSet();
  void RemoveFolderSet();

  void ShowTrackingOptions();
  void ShowAdvanced();
  void ShowAbout();
  void RestoreHiddenDialogs();
  void ShowHelp();

  const Services& services_;
  SiteSource site_;
  AddinAppRef addinApp_;
  RegSettingsRef settings_;
  bool dirty_ = false;
  bool pageActive_ = false;
  bool hiding_ = false;
  uint32_t generation_ = 0;  // raised by each Initialize and each hiding
};

}  // namespace vexa
