// The folder picker: which folders are monitored, and for which item types. It shows the folder hierarchy of
// the session, fetched branch by branch as it is opened, and works on a FolderSelection; OK stores that in
// the settings and tells the dialog that has opened it. Records whose folders are not to be seen stay in it.
#pragma once

#include <string>

#include "dialogs/FolderSelection.h"
#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/ExtLabel.h"
#include "display/Frame.h"
#include "display/Label.h"
#include "display/Tree.h"

namespace vexa {

class frmFolders final : public Dialog {
 public:
  explicit frmFolders(const Services& services);

  void Initialize(AddinAppRef vexaAddinApp, RegSettingsRef tempRegSettings, DialogParent& myParent);

  /// Adds a folder to the tree, below `parent` or as a store. What is below it is added when its node is
  /// expanded or, with `allLevels`, at once. A folder whose entry id cannot be read is left out.
  void AddFolder(const FolderRef& folder, Tree::Node parent, bool allLevels = false);

  ExtLabel lblInstructions{*this, "lblInstructions"};
  Tree tvFolders{*this, "tvFolders"};
  Label lblNumTip{*this, "lblNumTip", StringId::ExpandAllHint};
  ExtLabel lblHotTip{*this, "lblHotTip"};
  Frame fraItems{*this, "fraItems", StringId::ItemsToLog};
  Tree tvItems{*this, "tvItems"};
  Button cmdAll{*this, "cmdAll", StringId::All};
  Button cmdNone{*this, "cmdNone", StringId::NoneOfThem};
  Button cmdClear{*this, "cmdClear", StringId::ClearAll};
  Button cmdOk{*this, "cmdOk", StringId::Ok};
  Button cmdCancel{*this, "cmdCancel", StringId::Cancel};

 private:
  void FillTrees();
  void Load();

  void ExpandFolder(Tree::Node node);

  void ClickFolder(Tree::Node node);
  StringId TipFor(Tree::Node node);
  bool IsAPersonalFolder(FolderRef folder) const;
  void ShowTip(StringId tip);
  void SettingToForm(const MonitoredFolderRef& record);

  bool IsRoot(Tree::Node node) const { return tvFolders.Parent(node) == Tree::NoNode; }
  MonitoredFolderRef RecordOf(Tree::Node node) const { return selection_.Find(tvFolders.Key(node)); }
  void CheckFolder(Tree::Node node);
  void CreateRecord(Tree::Node node);
  void CheckItem(Tree::Node item);

  void CheckAllItems();
  void CheckNoItems();
  void ClearAll();
  void ClickHotSpot(const ExtLabel::WordClick& click);
  void Ok();
  void DropReferences() override;

  const Services& services_;
  AddinAppRef addin_;
  RegSettingsRef settings_;
  DialogParent* parent_ = nullptr;
  FolderSelection selection_;
  StringId tip_ = StringId::None;
  /// The list of item types is checking a folder: its record starts without any item type.
  bool checkedByItem_ = false;
};

}  // namespace vexa
