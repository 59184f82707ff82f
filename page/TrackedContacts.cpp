// The list of tracked contact folders on the page: one row a folder set of the working copy, and the
// buttons that add, change and remove folder sets.
#include "core/Numbers.h"
#include "dialogs/frmEditFolderset.h"
#include "page/OutlookPropertiesPage.h"

namespace vexa {

/// What the rows are read from, fetched once for as many rows as are filled; the list of stores that few rows
/// need, when one does.
struct OutlookPropertiesPage::FolderSetLists {
  const Work& work;
  CollectionRef<std::string> contactEntryIDs, contactStoreIDs;
  CollectionRef<std::string> journEntryIDs, journStoreIDs;
  CollectionRef<std::string> emailEntryIDs, emailStoreIDs;
  NameSpaceRef session;
  std::shared_ptr<Utilities> utilities;

  explicit FolderSetLists(const Work& theWork)
      : work(theWork),
        contactEntryIDs(Require(work.settings).GetContactEntryIDs()),
        contactStoreIDs(work.settings->GetContactStoreIDs()),
        journEntryIDs(work.settings->GetJournEntryIDs()),
        journStoreIDs(work.settings->GetJournStoreIDs()),
        emailEntryIDs(work.settings->GetEmailEntryIDs()),
        session(Require(work.addin).Session()),
        utilities(work.addin->Utilities()) {}
};

void OutlookPropertiesPage::FillTrackedContacts() {
  PassOn(Name(), "FillTrackedContacts", [&] { FillRows(Begin()); });
}

void OutlookPropertiesPage::FillRows(const Work& work) {
  const Resources& resources = services_.resources;
  gd.Clear();
  gd.SetHeaders({resources.LoadString(StringId::PublicContactsColumn),
                 resources.LoadString(StringId::AssociatedJournalColumn),
                 resources.LoadString(StringId::AssociatedEmailColumn)});
  const int32_t count = Require(work.settings).GetFolderSetCount();
  if (count > 0) {
    FolderSetLists lists(work);
    for (int32_t folderSet = 1; folderSet <= count; ++folderSet) FillRow(lists, folderSet);
  }
  UpdateButtons(work);
  UpdateDefaultButton();
}

void OutlookPropertiesPage::FillRow(FolderSetLists& lists, int32_t folderSet) {
  const auto pathOf = [&](const std::string& entryID, const std::string& storeID) {
    FolderRef folder;
    IgnoreErrors([&] { folder = Require(lists.session).GetFolderFromID(entryID, storeID); });
    std::string path;
    if (folder != nullptr) path = Require(lists.utilities).GetFolderPath(folder);
    return path.empty() ? services_.resources.LoadString(StringId::FolderNotFound) : path;
  };
  const auto pathAt = [&](const CollectionRef<std::string>& entryIDs,
                          const CollectionRef<std::string>& storeIDs) {
    const std::string entryID = Require(entryIDs).Item(folderSet);
    return pathOf(entryID, Require(storeIDs).Item(folderSet));
  };
  const std::string contact = pathAt(lists.contactEntryIDs, lists.contactStoreIDs);
  const std::string journ = pathAt(lists.journEntryIDs, lists.journStoreIDs);
  const std::string emailEntryID = Require(lists.emailEntryIDs).Item(folderSet);
  if (!emailEntryID.empty() && lists.emailStoreIDs == nullptr) {
    lists.emailStoreIDs = lists.work.settings->GetEmailStoreIDs();
  }
  const std::string email = emailEntryID.empty()
                                ? services_.resources.LoadString(StringId::NoFolder)
                                : pathOf(emailEntryID, Require(lists.emailStoreIDs).Item(folderSet));
  RequireCurrent(lists.work);
  if (folderSet <= gd.RowCount()) {  // as the one that a grid always has
    gd.SetRow(folderSet, {contact, journ, email});
  } else {
    gd.AddRow({contact, journ, email});
  }
}

void OutlookPropertiesPage::UpdateButtons(const Work& work) {
  // Without an answer about the access both buttons stay as they are.
  IgnoreErrors([&] {
    const bool enabled = !gd.Text().empty() && CanWrite(Require(work.settings));
    RequireCurrent(work);
    cmdChange.SetEnabled(enabled);
    cmdRemove.SetEnabled(enabled);
  });
}

void OutlookPropertiesPage::UpdateDefaultButton() {
  SetDefaultButton(gd.TextAt(gd.CurrentRow(), 0).empty() ? cmdAdd : cmdChange);
}

void OutlookPropertiesPage::EditFolderSet(const Work& work, int32_t folderSet, bool modeEdit) {
  frmEditFolderset editor(services_);
  editor.Initialize(*this, work.addin, work.settings, ToInt16(folderSet), modeEdit);
  RequireCurrent(work);
  ShowModal(services_, *this, editor, this);
  if (editor.Cancelled()) return;
  RequireCurrent(work);
  FolderSetLists lists(work);
  FillRow(lists, folderSet);
  UpdateButtons(work);
  SetDirty();
}

void OutlookPropertiesPage::AddFolderSet() {
  const Work work = Begin();
  EditFolderSet(work, CheckedAdd(Require(work.settings).GetFolderSetCount(), 1), false);
}

void OutlookPropertiesPage::ChangeFolderSet() {
  const Work work = Begin();
  Require(work.settings);
  EditFolderSet(work, gd.CurrentRow(), true);
}

void OutlookPropertiesPage::RemoveFolderSet() {
  const Work work = Begin();
  RegSettings& settings = Require(work.settings);
  const int32_t row = gd.CurrentRow();
  settings.LetFolderSetCount(CheckedAdd(settings.GetFolderSetCount(), -1));
  // These six and no more: the routing of the folder sets behind stays where it is.
  for (const auto list :
       {&RegSettings::GetContactEntryIDs, &RegSettings::GetContactStoreIDs, &RegSettings::GetEmailEntryIDs,
        &RegSettings::GetEmailStoreIDs, &RegSettings::GetJournEntryIDs, &RegSettings::GetJournStoreIDs}) {
    Require((settings.*list)()).Remove(row);
  }
  RequireCurrent(work);
  if (gd.RowCount() == 1) {
    gd.SetRow(1, {});
  } else {
    gd.RemoveRow(row);
  }
  UpdateButtons(work);
  UpdateDefaultButton();  // another folder set stands in the current row now
  SetDirty();
}

}  // namespace vexa
