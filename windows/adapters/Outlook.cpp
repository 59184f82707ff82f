// Outlook's session and folders, called by name.
#include "windows/adapters/Adapters.h"
#include "windows/com/LateBound.h"

namespace vexa::windows {
namespace {

constexpr int32_t ClassFolder = 2;  // Outlook's OlObjectClass of a folder

class ComFolders final : public Folders {
 public:
  explicit ComFolders(const ComPtr<IUnknown>& folders) : folders_(folders) {}
  int32_t Count() override { return folders_.CallForNumber(L"Count"); }
  FolderRef Item(int32_t position) override {
    return AdaptFolder(folders_.CallForObject(L"Item", {position}));
  }

 private:
  LateBound folders_;
};

std::shared_ptr<Folders> AdaptFolders(const ComPtr<IUnknown>& folders) {
  return folders ? std::make_shared<ComFolders>(folders) : nullptr;
}

class ComFolder final : public Folder, public Wrapper {
 public:
  explicit ComFolder(const ComPtr<IUnknown>& folder) : folder_(folder) {}

  ComPtr<IUnknown> Wrapped() const override { return folder_.Dispatch().As<IUnknown>(); }

  std::string Name() override { return folder_.CallForText(L"Name"); }
  std::string EntryID() override { return folder_.CallForText(L"EntryID"); }
  std::string StoreID() override { return folder_.CallForText(L"StoreID"); }
  ItemType DefaultItemType() override {
    return static_cast<ItemType>(folder_.CallForNumber(L"DefaultItemType"));
  }
  std::shared_ptr<vexa::Folders> Folders() override {
    return AdaptFolders(folder_.CallForObject(L"Folders"));
  }
  FolderRef Parent() override {
    // Above the top folder of a store stands the session, which is no folder.
    const ComPtr<IUnknown> parent = folder_.CallForObject(L"Parent");
    if (!parent || LateBound(parent).CallForNumber(L"Class") != ClassFolder) return nullptr;
    return AdaptFolder(parent);
  }

 private:
  LateBound folder_;
};

class ComMailItem final : public MailItem, public Wrapper {
 public:
  explicit ComMailItem(const ComPtr<IUnknown>& mail) : mail_(mail) {}

  ComPtr<IUnknown> Wrapped() const override { return mail_.Dispatch().As<IUnknown>(); }

  void LetBody(const std::string& text) override { mail_.Put(L"Body", text); }
  void LetSubject(const std::string& text) override { mail_.Put(L"Subject", text); }
  void AddRecipient(const std::string& address) override {
    LateBound(mail_.CallForObject(L"Recipients")).Call(L"Add", {address});
  }
  void AddAttachment(const std::string& path) override {
    LateBound(mail_.CallForObject(L"Attachments")).Call(L"Add", {path});
  }
  void Send() override { mail_.Call(L"Send"); }

 private:
  LateBound mail_;
};

class ComRecipient final : public Recipient {
 public:
  explicit ComRecipient(const ComPtr<IUnknown>& recipient) : recipient_(recipient) {}
  std::string Name() override { return recipient_.CallForText(L"Name"); }

 private:
  LateBound recipient_;
};

class ComOutlook final : public OutlookApplication {
 public:
  explicit ComOutlook(const ComPtr<IUnknown>& application) : application_(application) {}
  std::shared_ptr<MailItem> CreateItem(ItemType type) override {
    const ComPtr<IUnknown> item = application_.CallForObject(L"CreateItem", {static_cast<int32_t>(type)});
    return item ? std::make_shared<ComMailItem>(item) : nullptr;
  }

 private:
  LateBound application_;
};

class ComSession final : public NameSpace {
 public:
  explicit ComSession(const ComPtr<IUnknown>& session) : session_(session) {}

  std::shared_ptr<OutlookApplication> Application() override {
    const ComPtr<IUnknown> application = session_.CallForObject(L"Application");
    return application ? std::make_shared<ComOutlook>(application) : nullptr;
  }
  std::shared_ptr<Recipient> CurrentUser() override {
    const ComPtr<IUnknown> user = session_.CallForObject(L"CurrentUser");
    return user ? std::make_shared<ComRecipient>(user) : nullptr;
  }
  std::string CurrentProfileName() override { return session_.CallForText(L"CurrentProfileName"); }
  std::shared_ptr<vexa::Folders> Folders() override {
    return AdaptFolders(session_.CallForObject(L"Folders"));
  }
  FolderRef GetFolderFromID(const std::string& entryId, const std::string& storeId) override {
    return AdaptFolder(session_.CallForObject(L"GetFolderFromID", {entryId, storeId}));
  }
  FolderRef GetDefaultFolder(int32_t defaultFolder) override {
    return AdaptFolder(session_.CallForObject(L"GetDefaultFolder", {defaultFolder}));
  }
  FolderRef PickFolder() override { return AdaptFolder(session_.CallForObject(L"PickFolder")); }

 private:
  LateBound session_;
};

}  // namespace

NameSpaceRef AdaptSession(const ComPtr<IUnknown>& session) {
  return session ? std::make_shared<ComSession>(session) : nullptr;
}

FolderRef AdaptFolder(const ComPtr<IUnknown>& folder) {
  return folder ? std::make_shared<ComFolder>(folder) : nullptr;
}

}  // namespace vexa::windows
