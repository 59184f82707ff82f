#include "dialogs/frmEditFolderset.h"

#include <array>
#include <span>
#include <utility>

#include "core/Numbers.h"
#include "dialogs/FolderChoice.h"
#include "dialogs/frmSharedFolders.h"

namespace vexa {

/// The record's text fields beside the lists that hold them, in the order in which they are read, removed
/// and inserted: first the folders, then the routing.
struct FolderSetFields {
  struct Field {
    CollectionRef<std::string> (RegSettings::*list)();
    std::string frmEditFolderset::*value;
  };
  static constexpr std::array<Field, 6> Folders{{
      {&RegSettings::GetContactEntryIDs, &frmEditFolderset::contactEntryID_},
      {&RegSettings::GetContactStoreIDs, &frmEditFolderset::contactStoreID_},
      {&RegSettings::GetJournEntryIDs, &frmEditFolderset::journEntryID_},
      {&RegSettings::GetJournStoreIDs, &frmEditFolderset::journStoreID_},
      {&RegSettings::GetEmailEntryIDs, &frmEditFolderset::emailEntryID_},
      {&RegSettings::GetEmailStoreIDs, &frmEditFolderset::emailStoreID_},
  }};
  static constexpr std::array<Field, 6> Routing{{
      {&RegSettings::GetSharedCalEntryIDs, &frmEditFolderset::SharedCalEntryID},
      {&RegSettings::GetSharedCalStoreIDs, &frmEditFolderset::SharedCalStoreID},
      {&RegSettings::GetSharedJournEntryIDs, &frmEditFolderset::SharedJournEntryID},
      {&RegSettings::GetSharedJournStoreIDs, &frmEditFolderset::SharedJournStoreID},
      {&RegSettings::GetSharedTaskEntryIDs, &frmEditFolderset::SharedTaskEntryID},
      {&RegSettings::GetSharedTaskStoreIDs, &frmEditFolderset::SharedTaskStoreID},
  }};
};

namespace {

constexpr int32_t LeaveCopyFlag = 2;  // the start value of a new folder set

/// Puts `value` where it becomes item `index` of a list of `count` items.
template <typename Value>
void InsertAt(Collection<Value>& list, const Value& value, int16_t index, int32_t count) {
  if (count == 0) {
    list.Add(value);
  } else if (index != 1) {
    list.AddAfter(value, index - 1);
  } else {
    list.AddBefore(value, 1);
  }
}

}  // namespace

frmEditFolderset::frmEditFolderset(const Services& services)
    : Dialog("frmEditFolderset"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::FolderSetTitle));
  LoadCaptions(services.resources);
  txtEmail.SetEnabled(false);
  cmdShared.SetEnabled(false);
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);

  const auto on = [&](Event& event, std::string_view procedure, void (frmEditFolderset::*handler)()) {
    event = Handler(services_, *this, procedure, [this, handler] { (this->*handler)(); });
  };
  on(cmdSelContact.OnClick, "cmdSelContact_Click", &frmEditFolderset::ChooseContactFolder);
  on(cmdSelJourn.OnClick, "cmdSelJourn_Click", &frmEditFolderset::ChooseJournalFolder);
  on(cmdSelEmail.OnClick, "cmdSelEmail_Click", &frmEditFolderset::ChooseEmailFolder);
  on(chkEmail.OnClick, "chkEmail_Click", &frmEditFolderset::EmailBoxChanged);
  on(cmdShared.OnClick, "cmdShared_Click", &frmEditFolderset::ShowSharedFolders);
  on(cmdOk.OnClick, "cmdOk_Click", &frmEditFolderset::Ok);
  on(cmdCancel.OnClick, "cmdCancel_Click", &frmEditFolderset::Cancel);
}

void frmEditFolderset::Initialize(OptionsPage& /*outlookPropertiesPage*/, AddinAppRef vexaAddin,
                                  RegSettingsRef theRegSettings, int16_t theRegIndex, bool theModeEdit) {
  addin_ = std::move(vexaAddin);
  settings_ = std::move(theRegSettings);
  index_ = theRegIndex;
  modeEdit_ = theModeEdit;

  // Errors are passed over statement by statement: a folder set that is damaged can still be opened.
  initializing_ = true;
  if (modeEdit_) {
    LoadRecord();
    ShowFolders();
  } else {
    FLAGS = LeaveCopyFlag;
  }
  initializing_ = false;

  IgnoreErrors([&] { UpdateButtons(); });
  // In edit mode, too, a folder must be picked before OK means anything.
  cmdOk.SetEnabled(false);
  bool canWrite = false;
  IgnoreErrors([&] { canWrite = CanWrite(Require(settings_)); });
  if (!canWrite) {
    for (Control* control :
         std::initializer_list<Control*>{&cmdSelContact, &cmdSelEmail, &cmdSelJourn, &chkEmail, &cmdOk}) {
      control->SetEnabled(false);
    }
  }
}

void frmEditFolderset::LoadRecord() {
  for (const auto& fields : {std::span(FolderSetFields::Folders), std::span(FolderSetFields::Routing)}) {
    for (const FolderSetFields::Field& field : fields) {
      IgnoreErrors([&] { this->*field.value = Require((Require(settings_).*field.list)()).Item(index_); });
    }
  }
  IgnoreErrors([&] { FLAGS = Require(Require(settings_).GetFolderSetFlags()).Item(index_); });
}

void frmEditFolderset::ShowFolders() {
  const auto show = [&](TextBox& box, const std::string& entryID, const std::string& storeID) {
    IgnoreErrors([&] {
      const FolderRef folder = ResolveFolder(Require(addin_), entryID, storeID);
      if (folder != nullptr) box.SetText(Require(addin_->Utilities()).GetFolderPath(folder));
    });
  };
  show(txtContact, contactEntryID_, contactStoreID_);
  show(txtJourn, journEntryID_, journStoreID_);
  const bool hasEmailFolder = !emailEntryID_.empty();
  if (hasEmailFolder) show(txtEmail, emailEntryID_, emailStoreID_);
  chkEmail.SetChecked(hasEmailFolder);
  txtEmail.SetEnabled(hasEmailFolder);
}

void frmEditFolderset::UpdateButtons() {
  cmdShared.SetEnabled(!contactEntryID_.empty());
  const bool complete = FoldersAreComplete();
  const bool canWrite = CanWrite(Require(settings_));
  cmdOk.SetEnabled(complete && canWrite);
}

bool frmEditFolderset::FoldersAreComplete() {
  const bool withEmail = chkEmail.Checked();
  if (contactEntryID_.empty() || journEntryID_.empty() || (withEmail && emailEntryID_.empty())) return false;
  bool complete = false;
  IgnoreErrors([&] {
    const NameSpaceRef session = Require(addin_).Session();
    const auto exists = [&](const std::string& entryID, const std::string& storeID) {
      return Require(session).GetFolderFromID(entryID, storeID) != nullptr;
    };
    complete = exists(contactEntryID_, contactStoreID_) && exists(journEntryID_, journStoreID_) &&
               (!withEmail || exists(emailEntryID_, emailStoreID_));
  });
  return complete;
}

void frmEditFolderset::ChooseContactFolder() {
  // No exception for the folder set being changed: its own folder counts as set up, too.
  const auto isSetUp = [&](const std::string& entryID, const std::string& storeID) {
    return Require(settings_).FindFolderSet(entryID, storeID, Require(addin_).FolderSetContext()).IsNonZero();
  };
  const auto chosen =
      ChooseFolder(Require(addin_), services_, {{ItemType::Contact}, StringId::SelectContactFolder, isSetUp});
  if (!chosen) return;
  contactEntryID_ = chosen->entryID;
  contactStoreID_ = chosen->storeID;
  txtContact.SetText(chosen->path);
  UpdateButtons();
}

void frmEditFolderset::ChooseJournalFolder() {
  const auto chosen =
      ChooseFolder(Require(addin_), services_, {{ItemType::Journal}, StringId::SelectJournalFolder, {}});
  if (!chosen) return;
  journEntryID_ = chosen->entryID;
  journStoreID_ = chosen->storeID;
  txtJourn.SetText(chosen->path);
  UpdateButtons();
}

void frmEditFolderset::ChooseEmailFolder() {
  const auto chosen = ChooseFolder(Require(addin_), services_,
                                   {{ItemType::Mail, ItemType::Post}, StringId::SelectEmailFolder, {}});
  if (!chosen) return;
  emailEntryID_ = chosen->entryID;
  emailStoreID_ = chosen->storeID;
  txtEmail.SetText(chosen->path);
  chkEmail.SetChecked(true);
  UpdateButtons();
}

void frmEditFolderset::EmailBoxChanged() {
  if (txtEmail.Text().empty()) {
    // While loading, a stored folder that is gone ticks the box with an empty text and asks for nothing.
    if (!chkEmail.Checked() || initializing_) return;
    ChooseEmailFolder();
    if (txtEmail.Text().empty()) chkEmail.SetChecked(false);
  } else {
    // The ids of an unticked folder are kept until OK, so that ticking the box again brings them back.
    txtEmail.SetEnabled(chkEmail.Checked());
  }
}

void frmEditFolderset::ShowSharedFolders() {
  const FolderRef folder = ResolveFolder(Require(addin_), contactEntryID_, contactStoreID_);
  const std::string name = Require(folder).Name();
  const bool canWrite = CanWrite(Require(settings_));
  frmSharedFolders shared(services_);
  shared.Initialize(addin_, *this, name, canWrite);
  services_.windows.ShowModal(shared, this);
}

void frmEditFolderset::Ok() {
  // Statement by statement again: what can be stored is stored.
  RegSettings& settings = Require(settings_);
  const auto changeCount = [&](int32_t by) {
    IgnoreErrors([&] { settings.LetFolderSetCount(CheckedAdd(settings.GetFolderSetCount(), by)); });
  };
  if (!chkEmail.Checked()) {
    emailEntryID_.clear();
    emailStoreID_.clear();
  }
  if (modeEdit_) {
    const auto removeFrom = [&](std::span<const FolderSetFields::Field> fields) {
      for (const auto& field : fields) {
        IgnoreErrors([&] { Require((settings.*field.list)()).Remove(index_); });
      }
    };
    removeFrom(FolderSetFields::Folders);
    changeCount(-1);
    removeFrom(FolderSetFields::Routing);
    IgnoreErrors([&] { Require(settings.GetFolderSetFlags()).Remove(index_); });
  }
  int32_t count = 0;
  IgnoreErrors([&] { count = settings.GetFolderSetCount(); });
  for (const auto& fields : {std::span(FolderSetFields::Folders), std::span(FolderSetFields::Routing)}) {
    for (const FolderSetFields::Field& field : fields) {
      IgnoreErrors([&] { InsertAt(Require((settings.*field.list)()), this->*field.value, index_, count); });
    }
  }
  IgnoreErrors([&] { InsertAt(Require(settings.GetFolderSetFlags()), FLAGS, index_, count); });
  changeCount(1);
  End(false);
}

void frmEditFolderset::Cancel() { End(true); }

void frmEditFolderset::CloseWindow() {
  if (addin_ != nullptr || settings_ != nullptr) Cancel();
}

void frmEditFolderset::End(bool cancelled) {
  Hide();
  cancelled_ = cancelled;
  addin_.reset();
  settings_.reset();
}

}  // namespace vexa
