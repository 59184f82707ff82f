// Outlook's object model, as far as the library calls it. A folder is identified by its entry id and the
// id of its store, and found again with GetFolderFromID; names and paths are never stored.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/Variant.h"

namespace vexa {

/// What kind of items a folder holds by default (Outlook's OlItemType).
enum class ItemType : int32_t {
  Mail = 0,
  Appointment = 1,
  Contact = 2,
  Task = 3,
  Journal = 4,
  Note = 5,
  Post = 6,
  DistributionList = 7,
};

class Folders;

class Folder : public Object {
 public:
  virtual std::string Name() = 0;
  virtual std::string EntryID() = 0;
  virtual std::string StoreID() = 0;
  virtual ItemType DefaultItemType() = 0;
  virtual std::shared_ptr<vexa::Folders> Folders() = 0;
  /// The folder above, or null at the top of a store (whose parent is no folder).
  virtual std::shared_ptr<Folder> Parent() = 0;
};

using FolderRef = std::shared_ptr<Folder>;

/// The folders in a folder, or the top-level folders of a session; 1-based.
class Folders : public Object {
 public:
  virtual int32_t Count() = 0;
  virtual FolderRef Item(int32_t position) = 0;
};

/// A message that is being written.
class MailItem : public Object {
 public:
  virtual void LetBody(const std::string& text) = 0;
  virtual void LetSubject(const std::string& text) = 0;
  /// Adds a recipient of the kind "To".
  virtual void AddRecipient(const std::string& address) = 0;
  /// Attaches a copy of the file as it is now.
  virtual void AddAttachment(const std::string& path) = 0;
  virtual void Send() = 0;
};

/// A person in the address book.
class Recipient : public Object {
 public:
  virtual std::string Name() = 0;
};

/// Outlook itself.
class OutlookApplication : public Object {
 public:
  /// A new item of a kind (Outlook's OlItemType); only mail items are ever made here.
  virtual std::shared_ptr<MailItem> CreateItem(ItemType type) = 0;
};

/// A session (Outlook's NameSpace).
class NameSpace : public Object {
 public:
  virtual std::shared_ptr<OutlookApplication> Application() = 0;
  virtual std::shared_ptr<Recipient> CurrentUser() = 0;
  /// Name of the Outlook profile that the session runs on.
  virtual std::string CurrentProfileName() = 0;
  virtual std::shared_ptr<vexa::Folders> Folders() = 0;
  /// An error when the folder does not exist or its store is not open.
  virtual FolderRef GetFolderFromID(const std::string& entryId, const std::string& storeId) = 0;
  /// The user's own folder of this kind (Outlook's OlDefaultFolders number).
  virtual FolderRef GetDefaultFolder(int32_t defaultFolder) = 0;
  /// Outlook's own folder-choosing dialog; null when the user cancels it.
  virtual FolderRef PickFolder() = 0;
};

using NameSpaceRef = std::shared_ptr<NameSpace>;

/// The host of the options page, told when the page's state changes.
class PropertyPageSite : public Object {
 public:
  virtual void OnStatusChange() = 0;
};

}  // namespace vexa
