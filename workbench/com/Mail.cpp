// Outlook itself, its user and its mail items, called by name.
#include <array>

#include "windows/com/NamedObject.h"
#include "workbench/com/Export.h"

namespace vexa::workbench {
namespace {

using windows::CallArguments;
using windows::GiveObject;
using windows::NamedObject;

using windows::ToVariant;

// Outlook's OlObjectClass.
constexpr int32_t ClassApplication = 0;
constexpr int32_t ClassRecipient = 4;
constexpr int32_t ClassMail = 43;

/// The recipients or attachments of a mail, of which nothing is asked but to take one more.
class AddedObjects final : public NamedObject<AddedObjects> {
  friend NamedObject;

 public:
  using Adder = void (MailItem::*)(const std::string&);
  AddedObjects(std::shared_ptr<MailItem> mail, Adder adder)
      : NamedObject(nullptr), mail_(std::move(mail)), adder_(adder) {}

 private:
  static std::span<const Member> Members() {
    static constexpr auto members = std::to_array<Member>({{{L"Add", 1, 1, 1}, &AddedObjects::Add}});
    return members;
  }
  void Add(const CallArguments& arguments, VARIANT& /*result*/) { (*mail_.*adder_)(arguments.Text(0)); }

  std::shared_ptr<MailItem> mail_;
  Adder adder_;
};

class MailObject final : public NamedObject<MailObject> {
  friend NamedObject;

 public:
  explicit MailObject(std::shared_ptr<MailItem> mail) : NamedObject(mail), mail_(std::move(mail)) {}

 private:
  static std::span<const Member> Members() {
    static constexpr auto members = std::to_array<Member>({
        {{L"Body", 1, 1, 1, true}, &MailObject::Body},
        {{L"Subject", 2, 1, 1, true}, &MailObject::Subject},
        {{L"Recipients", 3, 0, 0}, &MailObject::Recipients},
        {{L"Attachments", 4, 0, 0}, &MailObject::Attachments},
        {{L"Send", 5, 0, 0}, &MailObject::Send},
        {{L"Class", 6, 0, 0}, &MailObject::Class},
    });
    return members;
  }

  void Body(const CallArguments& arguments, VARIANT& /*result*/) { mail_->LetBody(arguments.Text(0)); }
  void Subject(const CallArguments& arguments, VARIANT& /*result*/) { mail_->LetSubject(arguments.Text(0)); }
  void Recipients(const CallArguments&, VARIANT& result) {
    GiveObject(MakeObject<IDispatch, AddedObjects>(mail_, &MailItem::AddRecipient), result);
  }
  void Attachments(const CallArguments&, VARIANT& result) {
    GiveObject(MakeObject<IDispatch, AddedObjects>(mail_, &MailItem::AddAttachment), result);
  }
  void Send(const CallArguments&, VARIANT& /*result*/) { mail_->Send(); }
  void Class(const CallArguments&, VARIANT& result) { ToVariant(ClassMail, result); }

  std::shared_ptr<MailItem> mail_;
};

class RecipientObject final : public NamedObject<RecipientObject> {
  friend NamedObject;

 public:
  explicit RecipientObject(std::shared_ptr<Recipient> recipient)
      : NamedObject(recipient), recipient_(std::move(recipient)) {}

 private:
  static std::span<const Member> Members() {
    static constexpr auto members = std::to_array<Member>({
        {{L"Name", DISPID_VALUE, 0, 0}, &RecipientObject::Name},
        {{L"Class", 1, 0, 0}, &RecipientObject::Class},
    });
    return members;
  }
  void Name(const CallArguments&, VARIANT& result) { ToVariant(recipient_->Name(), result); }
  void Class(const CallArguments&, VARIANT& result) { ToVariant(ClassRecipient, result); }

  std::shared_ptr<Recipient> recipient_;
};

class ApplicationObject final : public NamedObject<ApplicationObject> {
  friend NamedObject;

 public:
  ApplicationObject(ExportsRef exports, std::shared_ptr<OutlookApplication> application)
      : NamedObject(application), exports_(std::move(exports)), application_(std::move(application)) {}

 private:
  static std::span<const Member> Members() {
    static constexpr auto members = std::to_array<Member>({
        {{L"CreateItem", 1, 1, 1}, &ApplicationObject::CreateItem},
        {{L"Class", 2, 0, 0}, &ApplicationObject::Class},
    });
    return members;
  }
  void CreateItem(const CallArguments& arguments, VARIANT& result) {
    GiveObject(exports_->Export(application_->CreateItem(static_cast<ItemType>(arguments.Number(0)))),
               result);
  }
  void Class(const CallArguments&, VARIANT& result) { ToVariant(ClassApplication, result); }

  ExportsRef exports_;
  std::shared_ptr<OutlookApplication> application_;
};

}  // namespace

windows::ComPtr<IDispatch> Exports::Export(const std::shared_ptr<OutlookApplication>& application) {
  if (application == nullptr) return nullptr;
  return MakeObject<IDispatch, ApplicationObject>(shared_from_this(), application);
}

windows::ComPtr<IDispatch> Exports::Export(const std::shared_ptr<Recipient>& recipient) {
  if (recipient == nullptr) return nullptr;
  return MakeObject<IDispatch, RecipientObject>(recipient);
}

windows::ComPtr<IDispatch> Exports::Export(const std::shared_ptr<MailItem>& mail) {
  if (mail == nullptr) return nullptr;
  return MakeObject<IDispatch, MailObject>(mail);
}

}  // namespace vexa::workbench
