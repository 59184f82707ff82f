// A mail as the workbench sends it: plain data, and the text of the standard message file (.eml) that any
// mail program reads.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vexa::workbench {

struct SentMail {
  struct Attachment {
    std::string name;
    std::string content;
  };
  std::vector<std::string> recipients;
  std::string subject;
  std::string body;
  std::vector<std::pair<std::string, std::string>> properties;  // user-defined, by name
  std::vector<Attachment> attachments;
};

struct MailSender {
  std::string name;
  std::string userName;
  std::string computerName;
};

/// The message in the format of RFC 5322 with MIME parts, CR LF line ends. `date` is as such messages write
/// it.
std::string MessageText(const SentMail& mail, const MailSender& sender, const std::string& date);

/// The time now in UTC, as strftime formats it.
std::string FormattedTime(const char* format);

}  // namespace vexa::workbench
