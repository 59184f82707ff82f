// Outlook's session, folder lists and folders, called by name.
#include <array>

#include "windows/com/NamedObject.h"
#include "workbench/Workbench.h"
#include "workbench/com/Export.h"

namespace vexa::workbench {
namespace {

using windows::CallArguments;
using windows::GiveObject;
using windows::MakeEnumerator;
using windows::NamedObject;

using windows::ToVariant;

// Outlook's OlObjectClass.
constexpr int32_t ClassNameSpace = 1;
constexpr int32_t ClassFolder = 2;
constexpr int32_t ClassFolders = 15;

class FoldersObject final : public NamedObject<FoldersObject> {
  friend NamedObject;

 public:
  FoldersObject(ExportsRef exports, std::shared_ptr<Folders> folders)
      : NamedObject(folders), exports_(std::move(exports)), folders_(std::move(folders)) {}

 private:
  static std::span<const Member> Members() {
    static constexpr auto members = std::to_array<Member>({
        {{L"Item", DISPID_VALUE, 1, 1}, &FoldersObject::Item},
        {{L"Count", 1, 0, 0}, &FoldersObject::Count},
        {{L"Class", 2, 0, 0}, &FoldersObject::Class},
        {{L"_NewEnum", DISPID_NEWENUM, 0, 0}, &FoldersObject::Enumerate},
    });
    return members;
  }

  void Item(const CallArguments& arguments, VARIANT& result) {
    GiveObject(exports_->Export(folders_->Item(arguments.Number(0))), result);
  }
  void Count(const CallArguments&, VARIANT& result) { ToVariant(folders_->Count(), result); }
  void Class(const CallArguments&, VARIANT& result) { ToVariant(ClassFolders, result); }
  void Enumerate(const CallArguments&, VARIANT& result) {
    result.punkVal =
        MakeEnumerator([folders = folders_] { return folders->Count(); },
                       [exports = exports_, folders = folders_](int32_t position, VARIANT& item) {
                         GiveObject(exports->Export(folders->Item(position)), item);
                       })
            .Detach();
    result.vt = VT_UNKNOWN;
  }

  ExportsRef exports_;
  std::shared_ptr<Folders> folders_;
};

class FolderObject final : public NamedObject<FolderObject> {
  friend NamedObject;

 public:
  FolderObject(ExportsRef exports, FolderRef folder)
      : NamedObject(folder), exports_(std::move(exports)), folder_(std::move(folder)) {}

 private:
  static std::span<const Member> Members() {
    static constexpr auto members = std::to_array<Member>({
        {{L"Name", DISPID_VALUE, 0, 0}, &FolderObject::Name},
        {{L"EntryID", 1, 0, 0}, &FolderObject::EntryID},
        {{L"StoreID", 2, 0, 0}, &FolderObject::StoreID},
        {{L"DefaultItemType", 3, 0, 0}, &FolderObject::DefaultItemType},
        {{L"Folders", 4, 0, 0}, &FolderObject::Folders},
        {{L"Parent", 5, 0, 0}, &FolderObject::Parent},
        {{L"Class", 6, 0, 0}, &FolderObject::Class},
    });
    return members;
  }

  void Name(const CallArguments&, VARIANT& result) { ToVariant(folder_->Name(), result); }
  void EntryID(const CallArguments&, VARIANT& result) { ToVariant(folder_->EntryID(), result); }
  void StoreID(const CallArguments&, VARIANT& result) { ToVariant(folder_->StoreID(), result); }
  void DefaultItemType(const CallArguments&, VARIANT& result) {
    ToVariant(static_cast<int32_t>(folder_->DefaultItemType()), result);
  }
  void Folders(const CallArguments&, VARIANT& result) {
    GiveObject(exports_->Export(folder_->Folders()), result);
  }
  void Parent(const CallArguments&, VARIANT& result) {
    if (const FolderRef parent = folder_->Parent()) {
      GiveObject(exports_->Export(parent), result);
    } else {
      // As in Outlook: above the root folder of a store stands the session.
      GiveObject(exports_->Export(MakeSession(exports_->TheWorkbench())), result);
    }
  }
  void Class(const CallArguments&, VARIANT& result) { ToVariant(ClassFolder, result); }

  ExportsRef exports_;
  FolderRef folder_;
};

class SessionObject final : public NamedObject<SessionObject> {
  friend NamedObject;

 public:
  SessionObject(ExportsRef exports, NameSpaceRef session)
      : NamedObject(session), exports_(std::move(exports)), session_(std::move(session)) {}

 private:
  static std::span<const Member> Members() {
    static constexpr auto members = std::to_array<Member>({
        {{L"Folders", 1, 0, 0}, &SessionObject::Folders},
        {{L"GetFolderFromID", 2, 1, 2}, &SessionObject::GetFolderFromID},
        {{L"GetDefaultFolder", 3, 1, 1}, &SessionObject::GetDefaultFolder},
        {{L"PickFolder", 4, 0, 0}, &SessionObject::PickFolder},
        {{L"Class", 5, 0, 0}, &SessionObject::Class},
        {{L"Application", 6, 0, 0}, &SessionObject::Application},
        {{L"CurrentUser", 7, 0, 0}, &SessionObject::CurrentUser},
        {{L"CurrentProfileName", 8, 0, 0}, &SessionObject::CurrentProfileName},
    });
    return members;
  }

  void Application(const CallArguments&, VARIANT& result) {
    GiveObject(exports_->Export(session_->Application()), result);
  }
  void CurrentUser(const CallArguments&, VARIANT& result) {
    GiveObject(exports_->Export(session_->CurrentUser()), result);
  }
  void CurrentProfileName(const CallArguments&, VARIANT& result) {
    ToVariant(session_->CurrentProfileName(), result);
  }
  void Folders(const CallArguments&, VARIANT& result) {
    GiveObject(exports_->Export(session_->Folders()), result);
  }
  void GetFolderFromID(const CallArguments& arguments, VARIANT& result) {
    const std::string store = arguments.IsMissing(1) ? std::string() : arguments.Text(1);
    GiveObject(exports_->Export(session_->GetFolderFromID(arguments.Text(0), store)), result);
  }
  void GetDefaultFolder(const CallArguments& arguments, VARIANT& result) {
    GiveObject(exports_->Export(session_->GetDefaultFolder(arguments.Number(0))), result);
  }
  void PickFolder(const CallArguments&, VARIANT& result) {
    GiveObject(exports_->Export(session_->PickFolder()), result);  // Nothing when it is cancelled
  }
  void Class(const CallArguments&, VARIANT& result) { ToVariant(ClassNameSpace, result); }

  ExportsRef exports_;
  NameSpaceRef session_;
};

/// An object without members.
class OpaqueObject final : public NamedObject<OpaqueObject> {
  friend NamedObject;

 public:
  explicit OpaqueObject(ObjectRef object) : NamedObject(std::move(object)) {}

 private:
  static std::span<const Member> Members() { return {}; }
};

}  // namespace

windows::ComPtr<IDispatch> Exports::Export(const NameSpaceRef& session) {
  if (session == nullptr) return nullptr;
  return MakeObject<IDispatch, SessionObject>(shared_from_this(), session);
}

windows::ComPtr<IDispatch> Exports::Export(const std::shared_ptr<Folders>& folders) {
  if (folders == nullptr) return nullptr;
  return MakeObject<IDispatch, FoldersObject>(shared_from_this(), folders);
}

windows::ComPtr<IDispatch> Exports::Export(const FolderRef& folder) {
  if (folder == nullptr) return nullptr;
  return MakeObject<IDispatch, FolderObject>(shared_from_this(), folder);
}

windows::ComPtr<IDispatch> Exports::ExportOpaque(const ObjectRef& object) {
  if (object == nullptr) return nullptr;
  return MakeObject<IDispatch, OpaqueObject>(object);
}

}  // namespace vexa::workbench
