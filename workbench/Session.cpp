// Outlook's session, folders and folder lists over the world of a profile.
#include <algorithm>

#include "workbench/Workbench.h"

namespace vexa::workbench {
namespace {

using Kind = CallLog::Kind;

// The numbers and texts with which Outlook answers.
Error NotFound() {
  return {static_cast<int32_t>(0x8004010F), "The operation failed. An object could not be found.",
          "Microsoft Outlook"};
}
Error NoAccess() {
  return {static_cast<int32_t>(0x80070005),
          "You do not have sufficient permission to perform this operation.", "Microsoft Outlook"};
}

class WorkbenchFolder final : public Folder {
 public:
  WorkbenchFolder(Workbench& workbench, FolderIndex index) : workbench_(workbench), index_(index) {}

  FolderIndex Index() const { return index_; }

  std::string Name() override { return Node("Name").name; }
  std::string EntryID() override {
    const FolderNode& node = Node("EntryID");
    if (node.unreadable) throw NoAccess();
    return node.entryID;
  }
  std::string StoreID() override {
    Node("StoreID");
    return World().StoreOf(index_).storeID;
  }
  ItemType DefaultItemType() override { return Node("DefaultItemType").itemType; }
  std::shared_ptr<vexa::Folders> Folders() override {
    if (Enter("Folders")) return nullptr;
    Node();
    return workbench_.FoldersObject(index_);
  }
  FolderRef Parent() override {
    if (Enter("Parent")) return nullptr;
    const FolderIndex parent = Node().parent;
    return parent == NoFolder ? nullptr : workbench_.FolderObject(parent);
  }

 private:
  workbench::World& World() const { return workbench_.profile.world; }

  bool Enter(const char* member) const {
    return workbench_.Calls().Enter(std::string("Folder.") + member, Kind::Read, [&] {
      return "Folder(" + QuotedText(World().PathOf(index_)) + ")." + member;
    });
  }
  const FolderNode& Node(const char* member) const {
    Enter(member);
    return Node();
  }
  const FolderNode& Node() const {
    const FolderNode& node = World().At(index_);
    if (node.deleted) throw NotFound();
    return node;
  }

  Workbench& workbench_;
  FolderIndex index_;
};

/// What is in a folder now, whatever was there when the list was asked for; so costs only what is read of it.
class WorkbenchFolders final : public Folders {
 public:
  WorkbenchFolders(Workbench& workbench, FolderIndex parent) : workbench_(workbench), parent_(parent) {}

  int32_t Count() override {
    workbench_.Calls().Enter("Folders.Count", Kind::Read);
    return static_cast<int32_t>(ChildCount());
  }
  FolderRef Item(int32_t position) override {
    const bool nothing = workbench_.Calls().Enter(
        "Folders.Item", Kind::Read, [&] { return "Folders.Item(" + std::to_string(position) + ")"; });
    if (nothing) return nullptr;
    if (position < 1 || static_cast<size_t>(position) > ChildCount()) throw NotFound();
    return workbench_.FolderObject(
        workbench_.profile.world.ChildAt(parent_, static_cast<size_t>(position - 1)));
  }

 private:
  size_t ChildCount() const {
    const World& world = workbench_.profile.world;
    if (parent_ != NoFolder && world.At(parent_).deleted) throw NotFound();
    return world.ChildCount(parent_);
  }

  Workbench& workbench_;
  FolderIndex parent_;
};

class WorkbenchUser final : public Recipient {
 public:
  explicit WorkbenchUser(Workbench& workbench) : workbench_(workbench) {}
  std::string Name() override {
    workbench_.Calls().Enter("CurrentUser.Name", Kind::Read);
    return workbench_.profile.machine.outlookUser;
  }

 private:
  Workbench& workbench_;
};

class WorkbenchSession final : public NameSpace {
 public:
  explicit WorkbenchSession(Workbench& workbench) : workbench_(workbench) {}

  std::shared_ptr<OutlookApplication> Application() override {
    if (workbench_.Calls().Enter("Sess.Application", Kind::Read)) return nullptr;
    return MakeOutlook(workbench_);
  }
  std::shared_ptr<Recipient> CurrentUser() override {
    if (workbench_.Calls().Enter("Sess.CurrentUser", Kind::Read)) return nullptr;
    return std::make_shared<WorkbenchUser>(workbench_);
  }
  std::string CurrentProfileName() override {
    workbench_.Calls().Enter("Sess.CurrentProfileName", Kind::Read);
    return workbench_.profile.machine.profileName;
  }

  std::shared_ptr<vexa::Folders> Folders() override {
    if (workbench_.Calls().Enter("Sess.Folders", Kind::Read)) return nullptr;
    return workbench_.FoldersObject(NoFolder);
  }

  FolderRef GetFolderFromID(const std::string& entryId, const std::string& storeId) override {
    const bool nothing = workbench_.Calls().Enter("Sess.GetFolderFromID", Kind::Action, [&] {
      return "Sess.GetFolderFromID(" + QuotedText(entryId) + ", " + QuotedText(storeId) + ")";
    });
    if (nothing) return nullptr;
    const FolderIndex found = World().Find(entryId, storeId);
    if (found == NoFolder) throw NotFound();
    return workbench_.FolderObject(found);
  }

  FolderRef GetDefaultFolder(int32_t defaultFolder) override {
    const bool nothing = workbench_.Calls().Enter("Sess.GetDefaultFolder", Kind::Action, [&] {
      return "Sess.GetDefaultFolder(" + std::to_string(defaultFolder) + ")";
    });
    if (nothing) return nullptr;
    const auto found = World().defaultFolders.find(defaultFolder);
    if (found == World().defaultFolders.end()) throw NotFound();
    return workbench_.FolderObject(found->second);
  }

  FolderRef PickFolder() override {
    // A picker that fails is never seen by the user; one that works is a line with its outcome.
    if (workbench_.Calls().Enter("Sess.PickFolder", Kind::Action, [] { return "Sess.PickFolder()"; }))
      return nullptr;
    const std::optional<FolderIndex> picked = workbench_.User().PickFolder();
    const std::string outcome =
        "picked " + (picked ? QuotedText(World().PathOf(*picked)) : "nothing: cancel");
    workbench_.Calls().Note("  -> " + outcome);
    return picked ? workbench_.FolderObject(*picked) : nullptr;
  }

 private:
  workbench::World& World() const { return workbench_.profile.world; }

  Workbench& workbench_;
};

}  // namespace

NameSpaceRef MakeSession(Workbench& workbench) { return std::make_shared<WorkbenchSession>(workbench); }

FolderRef Workbench::FolderObject(FolderIndex folder) {
  return std::make_shared<WorkbenchFolder>(*this, folder);
}

FolderIndex Workbench::IndexOf(const Folder& folder) {
  const auto* ours = dynamic_cast<const WorkbenchFolder*>(&folder);
  return ours == nullptr ? NoFolder : ours->Index();
}

std::shared_ptr<Folders> Workbench::FoldersObject(FolderIndex parent) {
  return std::make_shared<WorkbenchFolders>(*this, parent);
}

}  // namespace vexa::workbench
