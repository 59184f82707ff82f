#include "workbench/Mail.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>
#include <string_view>

namespace vexa::workbench {
namespace {

constexpr std::string_view LineBreak = "\r\n";

bool IsPlain(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= ' ' && c < 0x7F; });
}

/// In lines of at most `lineLength` characters; 0: in one.
std::string Base64(std::string_view bytes, size_t lineLength) {
  constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  size_t inLine = 0;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t count = std::min<size_t>(3, bytes.size() - i);
    uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k) {
      group = (group << 8U) | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    if (lineLength != 0 && inLine + 4 > lineLength) {
      text += LineBreak;
      inLine = 0;
    }
    for (size_t k = 0; k < 4; ++k) text += k <= count ? digits[(group >> (18U - 6U * k)) & 63U] : '=';
    inLine += 4;
  }
  return text;
}

/// Text in a header: as it is when it is plain and short, else in encoded words, which end between
/// characters.
std::string HeaderText(std::string_view text) {
  constexpr size_t longestPlain = 60;
  constexpr size_t bytesAWord = 42;
  if (IsPlain(text) && text.size() <= longestPlain && text.find("=?") == std::string_view::npos) {
    return std::string(text);
  }
  std::string words;
  while (!text.empty()) {
    size_t length = std::min(bytesAWord, text.size());
    while (length < text.size() && length > 1 &&
           (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
      --length;
    }
    if (!words.empty()) words.append(LineBreak).append(" ");
    words += "=?UTF-8?B?" + Base64(text.substr(0, length), 0) + "?=";
    text.remove_prefix(length);
  }
  return words;
}

/// The local part or host of an address.
std::string AddressPart(std::string_view text) {
  std::string part(text);
  for (char& c : part) {
    const bool fits = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
    if (!fits) c = '-';
  }
  return part.empty() ? "unknown" : part;
}

/// A file name as the parameter of a header.
std::string FileNameParameter(std::string_view name) {
  if (IsPlain(name) && name.find_first_of("\"\\") == std::string_view::npos) {
    return "filename=\"" + std::string(name) + "\"";
  }
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string parameter = "filename*=UTF-8''";
  for (const char c : name) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       c == '.' || c == '-' || c == '_';
    const auto byte = static_cast<unsigned char>(c);
    if (plain) {
      parameter += c;
    } else {
      parameter.append("%").append(1, digits[byte >> 4U]).append(1, digits[byte & 15U]);
    }
  }
  return parameter;
}

std::string Part(const std::string& boundary, const std::string& headers, std::string_view content) {
  constexpr size_t lineLength = 76;
  std::string part = "--" + boundary;
  part.append(LineBreak).append(headers).append("Content-Transfer-Encoding: base64").append(LineBreak);
  part.append(LineBreak).append(Base64(content, lineLength)).append(LineBreak);
  return part;
}

}  // namespace

std::string MessageText(const SentMail& mail, const MailSender& sender, const std::string& date) {
  // Everything between the boundaries is base64, which has no "=_" in it but at its end.
  const std::string boundary = "=_part_of_the_message_=";
  std::string text;
  const auto header = [&](std::string_view name, const std::string& value) {
    text.append(name).append(": ").append(value).append(LineBreak);
  };
  std::string from = HeaderText(sender.name);
  from.append(" <").append(AddressPart(sender.userName)).append("@");
  header("From", from.append(AddressPart(sender.computerName)).append(".invalid>"));
  std::string to;
  for (const std::string& recipient : mail.recipients) to += (to.empty() ? "" : ", ") + recipient;
  header("To", to);
  header("Subject", HeaderText(mail.subject));
  header("Date", date);
  for (const auto& [name, value] : mail.properties) {
    header("X-User-Property", HeaderText(std::string(name).append("=").append(value)));
  }
  header("MIME-Version", "1.0");
  header("Content-Type", "multipart/mixed; boundary=\"" + boundary + "\"");
  text += LineBreak;
  text += Part(boundary, "Content-Type: text/plain; charset=utf-8\r\n", mail.body);
  for (const SentMail::Attachment& attachment : mail.attachments) {
    text += Part(boundary,
                 "Content-Type: application/octet-stream\r\nContent-Disposition: attachment;\r\n " +
                     FileNameParameter(attachment.name) + "\r\n",
                 attachment.content);
  }
  return text.append("--").append(boundary).append("--").append(LineBreak);
}

std::string FormattedTime(const char* format) {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
#ifdef _WIN32
  gmtime_s(&parts, &now);
#else
  gmtime_r(&now, &parts);
#endif
  std::array<char, 64> text{};
  const size_t length = std::strftime(text.data(), text.size(), format, &parts);
  return {text.data(), length};
}

}  // namespace vexa::workbench
