// The folder-set editor: creates a folder set or changes one. A folder set is a public contact folder that
// is tracked, with the journal folder and the optional e-mail folder into which its contacts' items are
// logged. The dialog works on a private copy of one record and writes it into the settings on OK only.
// The page makes it, shows it and reads Cancelled when it has closed.
#pragma once

#include <cstdint>
#include <string>

#include "dialogs/FolderSet.h"
#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/CheckBox.h"
#include "display/Label.h"
#include "display/OptionsSection.h"
#include "display/TextBox.h"

namespace vexa {

class frmEditFolderset final : public Dialog {
 public:
  explicit frmEditFolderset(const Services& services);

  /// `theRegIndex` is the position of the folder set to change, or the one that a new folder set gets.
  void Initialize(OptionsPage& outlookPropertiesPage, AddinAppRef vexaAddin, RegSettingsRef theRegSettings,
                  int16_t theRegIndex, bool theModeEdit);

  /// Enables OK while the folders are complete and the user may change settings, and the shared folders while
  /// there is a contact folder.
  void UpdateButtons();

  /// The working copy. The shared-folders dialog edits its routing: the shared folders and FLAGS.
  FolderSet Record;

  OptionsSection opsContacts{*this, "opsContacts", StringId::PublicContactFolder};
  Label lblHelpContact{*this, "lblHelpContact", StringId::PublicContactFolderHelp};
  TextBox txtContact{*this, "txtContact", TextBox::Typing::Locked};
  Button cmdSelContact{*this, "cmdSelContact", StringId::Select};
  OptionsSection opsAssoc{*this, "opsAssoc", StringId::AssociatedFolders};
  Label lblHelpAssoc{*this, "lblHelpAssoc", StringId::AssociatedFoldersHelp};
  Label lblPublicJourn{*this, "lblPublicJourn", StringId::PublicJournalFolder};
  TextBox txtJourn{*this, "txtJourn", TextBox::Typing::Locked};
  Button cmdSelJourn{*this, "cmdSelJourn", StringId::Select};
  CheckBox chkEmail{*this, "chkEmail", StringId::SeparateEmailStore};
  TextBox txtEmail{*this, "txtEmail", TextBox::Typing::Locked};
  Button cmdSelEmail{*this, "cmdSelEmail", StringId::Select};
  Button cmdShared{*this, "cmdShared", StringId::SharedFolders};
  Button cmdOk{*this, "cmdOk", StringId::Ok};
  Button cmdCancel{*this, "cmdCancel", StringId::Cancel};

 private:
  void ShowFolders();
  bool FoldersAreComplete();
  void ChooseContactFolder();
  void ChooseJournalFolder();
  void ChooseEmailFolder();
  void EmailBoxChanged();
  void ShowSharedFolders();
  void Ok();
  void DropReferences() override;

  const Services& services_;
  AddinAppRef addin_;
  RegSettingsRef settings_;
  int16_t index_ = 0;
  bool modeEdit_ = false;
  bool initializing_ = false;
};

}  // namespace vexa
