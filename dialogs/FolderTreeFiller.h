// Adds the folders of a session to the folder picker's tree, each with the picture of its kind and checked
// when the selection has it. Made for adding folders in one go: a default folder is asked for when a folder
// of its kind comes by, and once. Nothing is remembered beyond that, because default folders may change.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "dialogs/FolderSelection.h"
#include "dialogs/Screen.h"
#include "display/Tree.h"

namespace vexa {

class FolderTreeFiller {
 public:
  FolderTreeFiller(Tree& tree, const FolderSelection& selection, NameSpaceRef session)
      : tree_(tree), selection_(selection), session_(std::move(session)) {}

  /// Adds all of `folders` below `parent`, or as stores.
  void AddFolders(const std::shared_ptr<Folders>& folders, Tree::Node parent);
  /// Adds one folder. It gets a placeholder for what is below it or, with `allLevels`, the folders
  /// themselves. A folder whose entry id cannot be read is left out.
  void AddFolder(const FolderRef& folder, Tree::Node parent, bool allLevels = false);

 private:
  Tree::Node AddNode(Folder& folder, Tree::Node parent);
  StringId PictureOf(ItemType itemType, const std::string& entryID);
  const std::string& EntryIdOf(StringId defaultFolder);

  Tree& tree_;
  const FolderSelection& selection_;
  NameSpaceRef session_;
  std::map<StringId, std::string> defaults_;  // entry ids
};

}  // namespace vexa
