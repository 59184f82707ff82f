// The desktop of the workbench: what the system's own dialogs show, and what its user answers.
#include "workbench/LowerCase.h"
#include "workbench/Workbench.h"

namespace vexa::workbench {
namespace {

std::string_view IconName(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::None:
      return "none";
    case MessageIcon::Critical:
      return "critical";
    case MessageIcon::Question:
      return "question";
    case MessageIcon::Exclamation:
      return "exclamation";
    case MessageIcon::Information:
      return "information";
  }
  return {};
}

std::string_view ButtonNames(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok:
      return "OK";
    case MessageButtons::OkCancel:
      return "OK, Cancel";
    case MessageButtons::YesNo:
      return "Yes, No";
    case MessageButtons::YesNoCancel:
      return "Yes, No, Cancel";
  }
  return {};
}

class WorkbenchDesktop final : public Desktop {
 public:
  explicit WorkbenchDesktop(Workbench& workbench) : workbench_(workbench) {}

  MessageAnswer Show(const std::string& text, MessageIcon icon, MessageButtons buttons,
                     const std::string& title) override {
    std::string line = MessageLine(text, icon, buttons, title);
    const MessageAnswer answer = workbench_.User().AnswerMessage(line, buttons);
    line.append(" -> ").append(AnswerWord(answer));
    workbench_.User().Seen(line);
    workbench_.Calls().Note(line);
    return answer;
  }

  int32_t ShellExecuteOpen(const std::string& path) override {
    workbench_.Calls().Enter("Shell.Open", CallLog::Kind::Action,
                             [&] { return "Shell.Open(" + QuotedText(path) + ")"; });
    return workbench_.User().OpenDocument(path);
  }

  std::optional<std::string> BrowseForFolder(const std::string& prompt,
                                             const std::string& startFolder) override {
    workbench_.Calls().Enter("Shell.BrowseForFolder", CallLog::Kind::Action, [&] {
      return "Shell.BrowseForFolder(" + QuotedText(prompt) + ", " + QuotedText(startFolder) + ")";
    });
    BrowseAnswer answer = workbench_.User().BrowseForFolder(prompt, startFolder);
    if (answer.kind == BrowseAnswer::Kind::CannotBeCreated)
      throw MakeError(ErrorNumber::InvalidProcedureCall);
    if (answer.kind == BrowseAnswer::Kind::Cancelled) return std::nullopt;
    return std::move(answer.folder);
  }

  std::string LowerCase(const std::string& text) override { return workbench::LowerCase(text); }

 private:
  Workbench& workbench_;
};

}  // namespace

std::unique_ptr<Desktop> MakeDesktop(Workbench& workbench) {
  return std::make_unique<WorkbenchDesktop>(workbench);
}

std::string MessageLine(const std::string& text, MessageIcon icon, MessageButtons buttons,
                        const std::string& title) {
  std::string line = "MSG[";
  line.append(IconName(icon)).append(" | ").append(ButtonNames(buttons)).append(" | ");
  return line.append(QuotedText(title)).append("] ").append(QuotedText(text));
}

std::string_view AnswerWord(MessageAnswer answer) {
  switch (answer) {
    case MessageAnswer::Ok:
      return "ok";
    case MessageAnswer::Cancel:
      return "cancel";
    case MessageAnswer::Yes:
      return "yes";
    case MessageAnswer::No:
      return "no";
  }
  return {};
}

}  // namespace vexa::workbench
