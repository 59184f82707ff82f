// The shared-folders dialog: where new appointments, journal items and tasks for the contacts of one folder
// set are routed to. It works on copies of the editor's routing fields and hands them back on OK; they reach
// the settings with the editor's own OK. The folder-set editor makes and shows it.
#pragma once

#include <array>
#include <string>

#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/CheckBox.h"
#include "display/Label.h"
#include "display/OptionsSection.h"
#include "display/TextBox.h"

namespace vexa {

class frmEditFolderset;

class frmSharedFolders final : public Dialog {
 public:
  explicit frmSharedFolders(const Services& services);

  /// `contactFoldername` becomes the title. The editor outlives the dialog.
  void Initialize(AddinAppRef vexaAddin, frmEditFolderset& parent, const std::string& contactFoldername,
                  bool userHasWriteAccess);

  /// True when the dialog was closed by Cancel or by its window, false after OK.
  bool Cancelled() const { return cancelled_; }

  void CloseWindow() override;

  OptionsSection opsShared{*this, "opsShared", StringId::SharedActivityFolders, 2138};
  Label lblSharedInstr{*this, "lblSharedInstr", StringId::SharedActivityFoldersHelp};
  CheckBox chkSCal{*this, "chkSCal", StringId::SharedCalendar};
  TextBox txtSCal{*this, "txtSCal", TextBox::Typing::Locked};
  Button cmdSelSCal{*this, "cmdSelSCal", StringId::Select};
  CheckBox chkSJourn{*this, "chkSJourn", StringId::SharedJournal};
  TextBox txtSJourn{*this, "txtSJourn", TextBox::Typing::Locked};
  Button cmdSelSJourn{*this, "cmdSelSJourn", StringId::Select};
  CheckBox chkSTask{*this, "chkSTask", StringId::SharedTaskList};
  TextBox txtSTask{*this, "txtSTask", TextBox::Typing::Locked};
  Button cmdSelSTask{*this, "cmdSelSTask", StringId::Select};
  CheckBox chkLog{*this, "chkLog", StringId::LogRoutedItems};
  CheckBox chkLeaveCopy{*this, "chkLeaveCopy", StringId::LeaveCopy};
  Button cmdOk{*this, "cmdOk", StringId::Ok};
  Button cmdCancel{*this, "cmdCancel", StringId::Cancel};

 private:
  /// One of the three folders that items are routed to.
  struct Route {
    CheckBox& box;
    TextBox& path;
    ItemType itemType;
    StringId wrongTypeMessage;
    std::string frmEditFolderset::*parentEntryID;
    std::string frmEditFolderset::*parentStoreID;
    std::string entryID{}, storeID{};
  };

  void Load(Route& route);
  void Choose(Route& route);
  void BoxChanged(Route& route);
  void MarkChange();
  void WriteFlag(int32_t flag, const CheckBox& box);
  void Ok();
  void Cancel();
  void End(bool cancelled);

  const Services& services_;
  AddinAppRef addin_;
  frmEditFolderset* parent_ = nullptr;
  bool userHasWriteAccess_ = false;
  bool initializing_ = false;
  bool cancelled_ = true;
  std::array<Route, 3> routes_;
};

}  // namespace vexa
