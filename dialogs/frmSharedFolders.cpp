#include "dialogs/frmSharedFolders.h"

#include <utility>

#include "dialogs/FolderChoice.h"
#include "dialogs/frmEditFolderset.h"

namespace vexa {
namespace {

constexpr int32_t LogFlag = 1;
constexpr int32_t LeaveCopyFlag = 2;
constexpr int32_t AllFlags = LogFlag | LeaveCopyFlag;

}  // namespace

frmSharedFolders::frmSharedFolders(const Services& services)
    : Dialog("frmSharedFolders"),
      services_(services),
      routes_{{{chkSCal, txtSCal, ItemType::Appointment, StringId::SelectAppointmentFolder,
                &frmEditFolderset::SharedCalEntryID, &frmEditFolderset::SharedCalStoreID},
               {chkSJourn, txtSJourn, ItemType::Journal, StringId::SelectJournalFolder,
                &frmEditFolderset::SharedJournEntryID, &frmEditFolderset::SharedJournStoreID},
               {chkSTask, txtSTask, ItemType::Task, StringId::SelectTaskFolder,
                &frmEditFolderset::SharedTaskEntryID, &frmEditFolderset::SharedTaskStoreID}}} {
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
  cmdOk.OnClick = Handler(services_, *this, "cmdOk_Click", [this] { Ok(); });
  cmdCancel.OnClick = [this] { Cancel(); };
}

void frmSharedFolders::Initialize(AddinAppRef vexaAddin, frmEditFolderset& parent,
                                  const std::string& contactFoldername, bool userHasWriteAccess) {
  addin_ = std::move(vexaAddin);
  parent_ = &parent;
  userHasWriteAccess_ = userHasWriteAccess;
  SetCaption(contactFoldername);

  initializing_ = true;
  for (Route& route : routes_) Load(route);
  chkLog.SetChecked((parent.FLAGS & LogFlag) == LogFlag);
  chkLeaveCopy.SetChecked((parent.FLAGS & LeaveCopyFlag) == LeaveCopyFlag);
  initializing_ = false;

  cmdOk.SetEnabled(false);
  if (!userHasWriteAccess_) {
    // The buttons that choose folders stay usable: what they choose is shown and cannot be saved.
    for (Control* control :
         std::initializer_list<Control*>{&chkLeaveCopy, &chkLog, &chkSCal, &chkSJourn, &chkSTask}) {
      control->SetEnabled(false);
    }
  }
}

void frmSharedFolders::Load(Route& route) {
  route.entryID = parent_->*route.parentEntryID;
  route.storeID = parent_->*route.parentStoreID;
  // A folder that is gone leaves its box clear, and OK forgets it.
  IgnoreErrors([&] {
    const FolderRef folder = ResolveFolder(Require(addin_), route.entryID, route.storeID);
    if (folder == nullptr) return;
    route.path.SetText(Require(addin_->Utilities()).GetFolderPath(folder));
    route.box.SetChecked(true);
  });
}

void frmSharedFolders::Choose(Route& route) {
  const auto chosen =
      ChooseFolder(Require(addin_), services_, {{route.itemType}, route.wrongTypeMessage, {}});
  if (!chosen) return;
  route.entryID = chosen->entryID;
  route.storeID = chosen->storeID;
  route.path.SetText(chosen->path);
  route.box.SetChecked(true);
  MarkChange();
}

void frmSharedFolders::BoxChanged(Route& route) {
  if (!route.path.Text().empty()) {
    MarkChange();
  } else if (route.box.Checked() && !initializing_) {
    // Whatever the choice comes to, a box without a folder does not stay ticked.
    try {
      Choose(route);
    } catch (...) {
      route.box.SetChecked(false);
      throw;
    }
    if (route.path.Text().empty()) route.box.SetChecked(false);
  }
  route.path.SetEnabled(route.box.Checked());
}

void frmSharedFolders::MarkChange() { cmdOk.SetEnabled(userHasWriteAccess_); }

void frmSharedFolders::WriteFlag(int32_t flag, const CheckBox& box) {
  parent_->FLAGS = box.Checked() ? parent_->FLAGS | flag : parent_->FLAGS & ~flag;
}

void frmSharedFolders::Ok() {
  frmEditFolderset& editor = Require(parent_);
  for (const Route& route : routes_) {
    const bool wanted = route.box.Checked();
    editor.*route.parentEntryID = wanted ? route.entryID : std::string();
    editor.*route.parentStoreID = wanted ? route.storeID : std::string();
  }
  // A value out of range is repaired to what a new folder set has; a negative one is left alone.
  if (editor.FLAGS > AllFlags) editor.FLAGS = LeaveCopyFlag;
  WriteFlag(LogFlag, chkLog);
  WriteFlag(LeaveCopyFlag, chkLeaveCopy);
  editor.UpdateButtons();
  End(false);
}

void frmSharedFolders::Cancel() { End(true); }

void frmSharedFolders::CloseWindow() {
  if (addin_ != nullptr || parent_ != nullptr) Cancel();
}

void frmSharedFolders::End(bool cancelled) {
  Hide();
  cancelled_ = cancelled;
  addin_.reset();
  parent_ = nullptr;
}

}  // namespace vexa
