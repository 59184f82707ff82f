// Outlook's mail items, and what becomes of them when they are sent.
#include <filesystem>

#include "core/Paths.h"
#include "workbench/AtomicFile.h"
#include "workbench/Utf8Path.h"
#include "workbench/Workbench.h"

namespace vexa::workbench {
namespace {

namespace fs = std::filesystem;
using Kind = CallLog::Kind;

class WorkbenchMailItem final : public MailItem {
 public:
  explicit WorkbenchMailItem(Workbench& workbench) : workbench_(workbench) {}

  void LetBody(const std::string& text) override {
    Enter("Mail.Body=", "Mail.Body = " + QuotedText(text));
    mail_.body = text;
  }
  void LetSubject(const std::string& text) override {
    Enter("Mail.Subject=", "Mail.Subject = " + QuotedText(text));
    mail_.subject = text;
  }
  void AddRecipient(const std::string& address) override {
    Enter("Mail.Recipients.Add", "Mail.Recipients.Add(" + QuotedText(address) + ")");
    mail_.recipients.push_back(address);
  }
  void AddAttachment(const std::string& path) override {
    Enter("Mail.Attachments.Add", "Mail.Attachments.Add(" + QuotedText(path) + ")");
    mail_.attachments.push_back({std::string(FileNamePart(path)), workbench_.files.Read(path)});
  }
  void Send() override {
    Enter("Mail.Send", "Mail.Send()");
    workbench_.Send(mail_);
  }

  void SetProperty(const std::string& name, const std::string& value) {
    mail_.properties.emplace_back(name, value);
  }

 private:
  void Enter(const char* member, const std::string& line) {
    workbench_.Calls().Enter(member, Kind::Action, [&] { return line; });
  }

  Workbench& workbench_;
  SentMail mail_;
};

class WorkbenchOutlook final : public OutlookApplication {
 public:
  explicit WorkbenchOutlook(Workbench& workbench) : workbench_(workbench) {}
  std::shared_ptr<MailItem> CreateItem(ItemType type) override {
    const bool nothing = workbench_.Calls().Enter("Outlook.CreateItem", Kind::Action, [&] {
      return "Outlook.CreateItem(" + std::to_string(static_cast<int32_t>(type)) + ")";
    });
    if (nothing) return nullptr;
    if (type != ItemType::Mail) throw MakeError(ErrorNumber::InvalidProcedureCall);
    return std::make_shared<WorkbenchMailItem>(workbench_);
  }

 private:
  Workbench& workbench_;
};

}  // namespace

std::shared_ptr<OutlookApplication> MakeOutlook(Workbench& workbench) {
  return std::make_shared<WorkbenchOutlook>(workbench);
}

void SetMailProperty(Object& item, const std::string& name, const std::string& value) {
  if (auto* const mail = dynamic_cast<WorkbenchMailItem*>(&item)) mail->SetProperty(name, value);
}

void Workbench::Send(const SentMail& mail) {
  if (!savePath_.empty()) {
    const MachineState& machine = profile.machine;
    const MailSender sender{machine.outlookUser, machine.userName, machine.computerName};
    const std::string text = MessageText(mail, sender, FormattedTime("%a, %d %b %Y %H:%M:%S +0000"));
    try {
      const fs::path outbox = Utf8Path(savePath_ + ".outbox");
      fs::create_directories(outbox);
      const auto fileOf = [&](int number) {
        const std::string digits = std::to_string(number);
        return outbox / (std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits + ".eml");
      };
      int number = 1;
      while (fs::exists(fileOf(number))) ++number;
      WriteFileAtomically(Utf8Text(fileOf(number)), [&](const TextSink& put) { put(text); });
    } catch (const std::exception& failure) {
      throw Error(static_cast<int32_t>(ErrorNumber::PathFileAccess),
                  std::string("The message could not be put into the outbox: ") + failure.what(),
                  "Microsoft Outlook");
    }
  }
  sent.push_back(mail);
}

}  // namespace vexa::workbench
