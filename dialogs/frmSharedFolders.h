// The shared-folders dialog: where new appointments, journal items and tasks for the contacts of one folder
// set are routed to. It works on a copy of the editor's record and hands it back on OK; it reaches
// the settings with the editor's own OK. The folder-set editor makes and shows it.
#pragma once

#include <array>
#include <string>

#include "dialogs/FolderSet.h"
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

  /// `contactFoldername` becomes the title. The editor outlives the dialog. A stored folder that is gone is
  /// passed over; other failures come through.
  void Initialize(AddinAppRef vexaAddin, frmEditFolderset& parent, const std::string& contactFoldername,
                  bool userHasWriteAccess);

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
    std::string FolderSet::*entryID;
    std::string FolderSet::*storeID;
  };

  void Load(Route& route);
  void Choose(Route& route);
  void BoxChanged(Route& route);
  void MarkChange();
  void Ok();
  void DropReferences() override;

  const Services& services_;
  AddinAppRef addin_;
  frmEditFolderset* parent_ = nullptr;
  FolderSet record_;  // of which the routing is edited
  bool userHasWriteAccess_ = false;
  bool initializing_ = false;
  std::array<Route, 3> routes_;
};

}  // namespace vexa
