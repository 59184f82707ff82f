// The tracking options: where the add-in looks for items to log, what it does with them and with later
// changes, and which contacts it tracks. The page makes it and shows it. It works on the page's working copy
// and writes into it on OK only; the immediate search is a request to the page itself, which starts it at
// Apply.
#pragma once

#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/CheckBox.h"
#include "display/Label.h"
#include "display/OptionButton.h"
#include "display/OptionsSection.h"
#include "display/TextBox.h"

namespace vexa {

class frmTrackingOptions final : public Dialog, public DialogParent {
 public:
  explicit frmTrackingOptions(const Services& services);

  void Initialize(AddinAppRef vexaAddin, RegSettingsRef tempRegSettings, OptionsPage& theParent);

  /// Enables OK; called by the dialog itself and by the folder picker's OK.
  void SetDirty() override { cmdOk.SetEnabled(true); }

  OptionsSection opsLoggingMethod{*this, "opsLoggingMethod", StringId::LoggingMethod};
  Label lblInstructions{*this, "lblInstructions", StringId::LoggingMethodHelp};
  OptionGroup methods;
  OptionButton optDefault{*this, "optDefault", methods, StringId::Default};
  OptionButton optPersonal{*this, "optPersonal", methods, StringId::AllPersonalFolders};
  OptionButton optCustom{*this, "optCustom", methods, StringId::OnlyTheseFolders};
  Button cmdFolders{*this, "cmdFolders", StringId::Select};
  OptionButton optWindowMode{*this, "optWindowMode", methods, StringId::WindowMode};
  OptionsSection opsLoggingFeatures{*this, "opsLoggingFeatures", StringId::LoggingFeatures};
  CheckBox chkScanInbox{*this, "chkScanInbox", StringId::ScanInboxAtStartup};
  CheckBox chkSearchNow{*this, "chkSearchNow", StringId::SearchNow};
  CheckBox chkIgnoreInternal{*this, "chkIgnoreInternal", StringId::IgnoreInternalSenders};
  CheckBox chkEnableBlanketDomain{*this, "chkEnableBlanketDomain", StringId::EnableBlanketDomain};
  CheckBox chkStripAttachments{*this, "chkStripAttachments", StringId::StripAttachments};
  OptionsSection opsChangeMonitoring{*this, "opsChangeMonitoring", StringId::ChangeMonitoring};
  CheckBox chkAudit{*this, "chkAudit", StringId::MaintainAuditTrail};
  CheckBox chkUpdateLogged{*this, "chkUpdateLogged", StringId::UpdateLoggedItems};
  CheckBox chkUpdateShared{*this, "chkUpdateShared", StringId::UpdateSharedItems};
  OptionsSection opsContactFiltering{*this, "opsContactFiltering", StringId::ContactFiltering};
  Label lblContactFiltering{*this, "lblContactFiltering", StringId::TrackedCategories};
  TextBox txtCategories{*this, "txtCategories"};
  CheckBox chkIgnorePrivate{*this, "chkIgnorePrivate", StringId::IgnorePrivateContacts};
  Button cmdOk{*this, "cmdOk", StringId::Ok};
  Button cmdCancel{*this, "cmdCancel", StringId::Cancel};

 private:
  friend struct TrackingSettings;

  void Load();
  void Lock();
  void MethodChosen();
  void ChooseFolders();
  void SearchNowChanged();
  void Ok();
  void DropReferences() override;

  const Services& services_;
  AddinAppRef addin_;
  RegSettingsRef settings_;
  OptionsPage* page_ = nullptr;
  bool loaded_ = false;
  bool unchecking_ = false;     // the dialog itself takes the search request back
  bool stopAtScanned_ = false;  // the answer to the search question
};

}  // namespace vexa
