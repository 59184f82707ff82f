// The desktop of the workbench: what the system's own dialogs show, and what its user answers.
#include "core/Numbers.h"
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

  bool FileExists(const std::string& path) override {
    Enter("Files.Exists", Kind::Read, path);
    return workbench_.files.Exists(path);
  }
  void CopyFileTo(const std::string& from, const std::string& to) override {
    workbench_.Calls().Enter("Files.Copy", Kind::Action,
                             [&] { return "Files.Copy(" + QuotedText(from) + ", " + QuotedText(to) + ")"; });
    workbench_.files.Write(to, workbench_.files.Read(from));
  }
  void RemoveFile(const std::string& path) override {
    Enter("Files.Remove", Kind::Action, path);
    workbench_.files.Remove(path);
  }

  std::string UserName() override {
    workbench_.Calls().Enter("Sys.UserName", Kind::Read);
    return Machine().userName;
  }
  std::string ComputerName() override {
    workbench_.Calls().Enter("Sys.ComputerName", Kind::Read);
    return Machine().computerName;
  }
  void ProcessPendingMessages() override {
    workbench_.Calls().Enter("Sys.ProcessMessages", Kind::Action, [] { return "Sys.ProcessMessages()"; });
  }

  std::optional<Variant> ReadRegistry(RegistryRoot root, const std::string& key,
                                      const std::string& name) override {
    const std::string path = KeyPath(root, key);
    workbench_.Calls().Enter("Reg.Read", Kind::Read,
                             [&] { return "Reg.Read(" + QuotedText(path) + ", " + QuotedText(name) + ")"; });
    const auto found = Machine().registry.find(path);
    if (found == Machine().registry.end()) return std::nullopt;
    const auto value = found->second.find(name);
    if (value == found->second.end()) return std::nullopt;
    return std::visit([](const auto& held) { return Variant(held); }, value->second);
  }
  void WriteRegistry(RegistryRoot root, const std::string& key, const std::string& name,
                     const Variant& value) override {
    const std::string path = KeyPath(root, key);
    workbench_.Calls().Enter("Reg.Write", Kind::Action, [&] {
      return "Reg.Write(" + QuotedText(path) + ", " + QuotedText(name) + ", " + QuotedText(value.ToText()) +
             ")";
    });
    if (!MayWrite(root)) throw MakeError(ErrorNumber::PathFileAccess);
    Machine().registry[path][name] = value.Visit([](const auto& held) -> MachineState::RegistryValue {
      using Held = std::decay_t<decltype(held)>;
      if constexpr (std::is_same_v<Held, std::string>) {
        return held;
      } else if constexpr (std::is_same_v<Held, int64_t>) {
        return ToInt32(static_cast<double>(held));
      } else {
        throw MakeError(ErrorNumber::TypeMismatch);
      }
    });
  }
  bool CanWriteRegistry(RegistryRoot root, const std::string& key) override {
    Enter("Reg.CanWrite", Kind::Read, KeyPath(root, key));
    return MayWrite(root);
  }

  std::optional<std::string> FileVersion(const std::string& path) override {
    // Asked for by the error log, whose calls are nobody's business.
    const auto found = Machine().fileVersions.find(path);
    if (found == Machine().fileVersions.end()) return std::nullopt;
    return found->second;
  }

 private:
  using Kind = CallLog::Kind;

  MachineState& Machine() const { return workbench_.profile.machine; }
  bool MayWrite(RegistryRoot root) const {
    return root == RegistryRoot::CurrentUser || Machine().canWriteMachine;
  }
  static std::string KeyPath(RegistryRoot root, const std::string& key) {
    return std::string(RegistryRootName(root)) + "\\" + key;
  }
  void Enter(const char* member, Kind kind, const std::string& argument) {
    workbench_.Calls().Enter(member, kind,
                             [&] { return std::string(member) + "(" + QuotedText(argument) + ")"; });
  }

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
