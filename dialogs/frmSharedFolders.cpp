#include "dialogs/frmSharedFolders.h"

#include <utility>

#include "dialogs/FolderChoice.h"
#include "dialogs/frmEditFolderset.h"

namespace vexa {

frmSharedFolders::frmSharedFolders(const Services& services)
    : Dialog("frmSharedFolders"),
      services_(services),
      routes_{{{chkSCal, txtSCal, ItemType::Appointment, StringId::SelectAppointmentFolder,
                &FolderSet::SharedCalEntryID, &FolderSet::SharedCalStoreID},
               {chkSJourn, txtSJourn, ItemType::Journal, StringId::SelectJournalFolder,
                &FolderSet::SharedJournEntryID, &FolderSet::SharedJournStoreID},
               {chkSTask, txtSTask, ItemType::Task, StringId::SelectTaskFolder, &FolderSet::SharedTaskEntryID,
                &FolderSet::SharedTaskStoreID}}} {
  LoadCaptions(services.resources);
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);

  const auto onChoose = [&](Button& button, std::string_view procedure, Route& route) {
    button.OnClick = Handler(services_, *this, procedure, [this, &route] { Choose(route); });
  };
  onChoose(cmdSelSCal, "cmdSelSCal_Click", routes_[0]);
  onChoose(cmdSelSJourn, "cmdSelSJourn_Click", routes_[1]);
  onChoose(cmdSelSTask, "cmdSelSTask_Click", routes_[2]);
  const auto onTick = [&](std::string_view procedure, Route& route) {
    route.path.SetEnabled(false);
    route.box.OnClick = Handler(services_, *this, procedure, [this, &route] { BoxChanged(route); });
  };
  onTick("chkSCal_Click", routes_[0]);
  onTick("chkSJourn_Click", routes_[1]);
  onTick("chkSTask_Click", routes_[2]);
  chkLog.OnClick = [this] { MarkChange(); };
  chkLeaveCopy.OnClick = [this] { MarkChange(); };
  cmdOk.OnClick = Handler(services_, *this, "cmdOk_Click", &frmSharedFolders::Ok);
  cmdCancel.OnClick = [this] { End(true); };
}

void frmSharedFolders::Initialize(AddinAppRef vexaAddin, frmEditFolderset& parent,
                                  const std::string& contactFoldername, bool userHasWriteAccess) {
  PassOn(Name(), "Initialize", [&] {
    addin_ = std::move(vexaAddin);
    parent_ = &parent;
    record_ = parent.Record;
    userHasWriteAccess_ = userHasWriteAccess;
    SetCaption(contactFoldername);

    {
      const ScopedFlag initializing(initializing_);
      for (Route& route : routes_) Load(route);
    }
    chkLog.SetChecked((record_.FLAGS & FolderSet::LogRouted) != 0);
    chkLeaveCopy.SetChecked((record_.FLAGS & FolderSet::LeaveCopy) != 0);

    cmdOk.SetEnabled(false);
    if (!userHasWriteAccess_) {
      // The buttons that choose folders stay usable: what they choose is shown and cannot be saved.
      for (Control* control :
           std::initializer_list<Control*>{&chkLeaveCopy, &chkLog, &chkSCal, &chkSJourn, &chkSTask}) {
        control->SetEnabled(false);
      }
    }
  });
}

void frmSharedFolders::Load(Route& route) {
  // A folder that is gone leaves its box clear, and OK forgets it.
  const FolderRef folder = FindStoredFolder(addin_, record_.*route.entryID, record_.*route.storeID);
  if (folder == nullptr) return;
  route.path.SetText(Require(Share(addin_)->Utilities()).GetFolderPath(folder));
  route.box.SetChecked(true);
}

void frmSharedFolders::Choose(Route& route) {
  const auto chosen = ChooseFolder(addin_, services_, {{route.itemType}, route.wrongTypeMessage, {}});
  if (!chosen) return;
  record_.*route.entryID = chosen->entryID;
  record_.*route.storeID = chosen->storeID;
  route.path.SetText(chosen->path);
  route.box.SetChecked(true);
  MarkChange();
}

void frmSharedFolders::BoxChanged(Route& route) {
  if (!initializing_ && FolderBoxChanged(route.box, route.path, [&] { Choose(route); })) MarkChange();
  route.path.SetEnabled(route.box.Checked());
}

void frmSharedFolders::MarkChange() { cmdOk.SetEnabled(userHasWriteAccess_); }

void frmSharedFolders::Ok() {
  frmEditFolderset& editor = Require(parent_);
  FolderSet record = record_;
  for (const Route& route : routes_) {
    if (route.box.Checked()) continue;
    (record.*route.entryID).clear();
    (record.*route.storeID).clear();
  }
  // A value out of range is repaired to what a new folder set has; a negative one is left alone.
  if (record.FLAGS > (FolderSet::LogRouted | FolderSet::LeaveCopy)) record.FLAGS = FolderSet::LeaveCopy;
  const auto write = [&](int32_t flag, const CheckBox& box) {
    record.FLAGS = box.Checked() ? record.FLAGS | flag : record.FLAGS & ~flag;
  };
  write(FolderSet::LogRouted, chkLog);
  write(FolderSet::LeaveCopy, chkLeaveCopy);

  FolderSet former = std::exchange(editor.Record, std::move(record));
  try {
    editor.UpdateButtons();
  } catch (...) {
    editor.Record = std::move(former);  // the dialog stays open, and its Cancel leaves the editor as it was
    throw;
  }
  End(false);
}

void frmSharedFolders::DropReferences() {
  addin_.reset();
  parent_ = nullptr;
}

}  // namespace vexa
