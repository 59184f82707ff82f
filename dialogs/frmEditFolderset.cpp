#include "dialogs/frmEditFolderset.h"

#include <utility>

#include "dialogs/FolderChoice.h"
#include "dialogs/frmSharedFolders.h"

namespace vexa {

frmEditFolderset::frmEditFolderset(const Services& services)
    : Dialog("frmEditFolderset"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::FolderSetTitle));
  LoadCaptions(services.resources);
  txtEmail.SetEnabled(false);
  cmdShared.SetEnabled(false);
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);

  cmdSelContact.OnClick =
      Handler(services_, *this, "cmdSelContact_Click", &frmEditFolderset::ChooseContactFolder);
  cmdSelJourn.OnClick =
      Handler(services_, *this, "cmdSelJourn_Click", &frmEditFolderset::ChooseJournalFolder);
  cmdSelEmail.OnClick = Handler(services_, *this, "cmdSelEmail_Click", &frmEditFolderset::ChooseEmailFolder);
  chkEmail.OnClick = Handler(services_, *this, "chkEmail_Click", &frmEditFolderset::EmailBoxChanged);
  cmdShared.OnClick = Handler(services_, *this, "cmdShared_Click", &frmEditFolderset::ShowSharedFolders);
  cmdOk.OnClick = Handler(services_, *this, "cmdOk_Click", &frmEditFolderset::Ok);
  cmdCancel.OnClick = [this] { End(true); };
}

void frmEditFolderset::Initialize(OptionsPage& /*outlookPropertiesPage*/, AddinAppRef vexaAddin,
                                  RegSettingsRef theRegSettings, int16_t theRegIndex, bool theModeEdit) {
  addin_ = std::move(vexaAddin);
  settings_ = std::move(theRegSettings);
  index_ = theRegIndex;
  modeEdit_ = theModeEdit;

  // Errors are passed over statement by statement: a folder set that is damaged can still be opened.
  if (modeEdit_) {
    const ScopedFlag initializing(initializing_);
    if (settings_ != nullptr) Record = LoadFolderSet(*settings_, index_);
    ShowFolders();
  }

  IgnoreErrors([&] { UpdateButtons(); });
  // In edit mode, too, a folder must be picked before OK means anything.
  cmdOk.SetEnabled(false);
  bool canWrite = false;
  IgnoreErrors([&] { canWrite = CanWrite(*Share(settings_)); });
  if (!canWrite) {
    for (Control* control :
         std::initializer_list<Control*>{&cmdSelContact, &cmdSelEmail, &cmdSelJourn, &chkEmail, &cmdOk}) {
      control->SetEnabled(false);
    }
  }
}

void frmEditFolderset::ShowFolders() {
  const auto show = [&](TextBox& box, const std::string& entryID, const std::string& storeID) {
    IgnoreErrors([&] {
      const FolderRef folder = ResolveFolder(addin_, entryID, storeID);
      if (folder != nullptr) box.SetText(Require(Share(addin_)->Utilities()).GetFolderPath(folder));
    });
  };
  show(txtContact, Record.ContactEntryID, Record.ContactStoreID);
  show(txtJourn, Record.JournEntryID, Record.JournStoreID);
  const bool hasEmailFolder = !Record.EmailEntryID.empty();
  if (hasEmailFolder) show(txtEmail, Record.EmailEntryID, Record.EmailStoreID);
  chkEmail.SetChecked(hasEmailFolder);
  txtEmail.SetEnabled(hasEmailFolder);
}

void frmEditFolderset::UpdateButtons() {
  cmdShared.SetEnabled(!Record.ContactEntryID.empty());
  const bool complete = FoldersAreComplete();
  const bool canWrite = CanWrite(*Share(settings_));
  cmdOk.SetEnabled(complete && canWrite);
}

bool frmEditFolderset::FoldersAreComplete() {
  const bool withEmail = chkEmail.Checked();
  if (Record.ContactEntryID.empty() || Record.JournEntryID.empty() ||
      (withEmail && Record.EmailEntryID.empty()))
    return false;
  bool complete = false;
  IgnoreErrors([&] {
    const NameSpaceRef session = Share(addin_)->Session();
    const auto exists = [&](const std::string& entryID, const std::string& storeID) {
      return Require(session).GetFolderFromID(entryID, storeID) != nullptr;
    };
    complete = exists(Record.ContactEntryID, Record.ContactStoreID) &&
               exists(Record.JournEntryID, Record.JournStoreID) &&
               (!withEmail || exists(Record.EmailEntryID, Record.EmailStoreID));
  });
  return complete;
}

void frmEditFolderset::ChooseContactFolder() {
  // No exception for the folder set being changed: its own folder counts as set up, too.
  const auto isSetUp = [&](const std::string& entryID, const std::string& storeID) {
    return Share(settings_)->FindFolderSet(entryID, storeID, Share(addin_)->FolderSetContext()).IsNonZero();
  };
  const auto chosen =
      ChooseFolder(addin_, services_, {{ItemType::Contact}, StringId::SelectContactFolder, isSetUp});
  if (!chosen) return;
  Record.ContactEntryID = chosen->entryID;
  Record.ContactStoreID = chosen->storeID;
  txtContact.SetText(chosen->path);
  UpdateButtons();
}

void frmEditFolderset::ChooseJournalFolder() {
  const auto chosen =
      ChooseFolder(addin_, services_, {{ItemType::Journal}, StringId::SelectJournalFolder, {}});
  if (!chosen) return;
  Record.JournEntryID = chosen->entryID;
  Record.JournStoreID = chosen->storeID;
  txtJourn.SetText(chosen->path);
  UpdateButtons();
}

void frmEditFolderset::ChooseEmailFolder() {
  const auto chosen =
      ChooseFolder(addin_, services_, {{ItemType::Mail, ItemType::Post}, StringId::SelectEmailFolder, {}});
  if (!chosen) return;
  Record.EmailEntryID = chosen->entryID;
  Record.EmailStoreID = chosen->storeID;
  txtEmail.SetText(chosen->path);
  chkEmail.SetChecked(true);
  UpdateButtons();
}

void frmEditFolderset::EmailBoxChanged() {
  // While loading, a stored folder that is gone ticks the box with an empty text and asks for nothing.
  if (initializing_) return;
  // The ids of an unticked folder are kept until OK, so that ticking the box again brings them back.
  if (FolderBoxChanged(chkEmail, txtEmail, [&] { ChooseEmailFolder(); }))
    txtEmail.SetEnabled(chkEmail.Checked());
}

void frmEditFolderset::ShowSharedFolders() {
  const AddinAppRef addin = Share(addin_);
  const FolderRef folder = ResolveFolder(addin, Record.ContactEntryID, Record.ContactStoreID);
  const std::string name = Require(folder).Name();
  const bool canWrite = CanWrite(*Share(settings_));
  frmSharedFolders shared(services_);
  shared.Initialize(addin, *this, name, canWrite);
  ShowModal(services_, *this, shared, this);
}

void frmEditFolderset::Ok() {
  const RegSettingsRef settings = Share(settings_);
  if (!chkEmail.Checked()) {
    Record.EmailEntryID.clear();
    Record.EmailStoreID.clear();
  }
  if (modeEdit_) EraseFolderSet(*settings, index_);
  InsertFolderSet(*settings, index_, Record);
  End(false);
}

void frmEditFolderset::DropReferences() {
  addin_.reset();
  settings_.reset();
}

}  // namespace vexa
