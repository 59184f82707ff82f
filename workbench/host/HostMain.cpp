// vexa-host: the options page in real windows, embedded as Outlook does. Without a script a person uses it;
// with one the script does, in the console's language, and the transcript is the console's.
#include <windows.h>
// windows.h first
#include <fcntl.h>
#include <io.h>
#include <ole2.h>
#include <shellapi.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <thread>

#include "windows/com/Text.h"
#include "windows/views/Handles.h"
#include "workbench/host/FolderPicker.h"
#include "workbench/host/WindowDriver.h"

namespace vexa::workbench {
namespace {

constexpr const char* Usage =
    "usage: vexa-host [--profile FILE] [SCRIPT]\n"
    "Shows the options page on a profile. With a script it carries out the script's commands on the "
    "windows.\n"
    "Status: 0 done, 1 the host could not start, 2 a script was ended by an error.\n";

class OleSession {
 public:
  OleSession() { windows::Check(OleInitialize(nullptr)); }
  OleSession(const OleSession&) = delete;
  OleSession& operator=(const OleSession&) = delete;
  ~OleSession() { OleUninitialize(); }
};

std::wstring ModuleBesideProgram() {
  std::wstring path(32768, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  path.resize(length);
  return path.substr(0, path.rfind(L'\\') + 1) + L"VexaControls.dll";
}

struct Options {
  std::string profile;
  std::string script;
};

std::optional<Options> ReadArguments(const std::vector<std::string>& arguments) {
  Options options;
  for (size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--profile" && i + 1 < arguments.size()) {
      options.profile = arguments[++i];
    } else if (!arguments[i].starts_with("-") && options.script.empty()) {
      options.script = arguments[i];
    } else {
      return std::nullopt;
    }
  }
  return options;
}

/// The script on a thread of its own; this one shows the windows until it has ended.
int RunScript(const Options& options) {
  std::ifstream script(std::filesystem::path(windows::ToUtf16(options.script)));
  if (!script) throw std::runtime_error(options.script + ": cannot be read");
  UiThread ui;
  const std::wstring module = ModuleBesideProgram();
  const DWORD uiThread = GetCurrentThreadId();
  int status = 1;
  std::string failure;
  std::thread user([&] {
    try {
      Console console(
          {script, options.script, false, true, IsTranscript(script)}, std::cout,
          [&](Console& of, Stage& stage) { return std::make_unique<WindowDriver>(of, stage, ui, module); });
      if (!options.profile.empty()) console.Load(options.profile);
      status = console.Run();
    } catch (const std::exception& error) {
      failure = error.what();
      status = 1;
    }
    PostThreadMessageW(uiThread, WM_QUIT, 0, 0);
  });
  ui.RunLoop();
  user.join();
  if (!failure.empty()) throw std::runtime_error(failure);
  return status;
}

/// A person answers the system's own dialogs, which are real ones here.
class PersonsAnswers final : public UserAnswers {
 public:
  std::optional<FolderIndex> PickFolder() override { return ShowFolderPicker(GetActiveWindow(), *world); }
  MessageAnswer AnswerMessage(const std::string&, MessageButtons) override { return MessageAnswer::Ok; }
  BrowseAnswer BrowseForFolder(const std::string&, const std::string&) override { return {}; }
  int32_t OpenDocument(const std::string&) override { return 0; }
  void Seen(const std::string& line) override {
    MessageBoxW(GetActiveWindow(), windows::ToUtf16(line).c_str(), L"Vexa", MB_ICONWARNING);
  }

  const World* world = nullptr;
};

int RunForPerson(const Options& options) {
  CallLog calls;
  calls.SetRecording(false);
  PersonsAnswers answers;
  Workbench workbench(ReadProfile(options.profile), options.profile, calls, answers);
  answers.world = &workbench.profile.world;
  const ExportsRef exports = Exports::Make(workbench, ModuleBesideProgram());
  const ClassRegistration classes(exports);
  bool closed = false;
  OptionsDialog dialog({[] { return true; }, {}, [&] { closed = true; }});
  VARIANT_BOOL again = VARIANT_FALSE;
  windows::Call(dialog.Page(), &IOutlookPropertiesPage::Initialize, exports->Addin().Get(), &again);
  MSG message{};
  while (!closed && GetMessageW(&message, nullptr, 0, 0) > 0) dialog.Handle(message);
  return 0;
}

int Main(const std::vector<std::string>& arguments) {
  const std::optional<Options> options = ReadArguments(arguments);
  if (!options || (options->script.empty() && options->profile.empty())) {
    std::cerr << Usage;
    return 1;
  }
  const OleSession ole;
  const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
  windows::Verified(InitCommonControlsEx(&controls), "InitCommonControlsEx");
  return options->script.empty() ? RunForPerson(*options) : RunScript(*options);
}

LONG WINAPI EndCrashed(EXCEPTION_POINTERS* exception) {
  constexpr UINT crashed = 99;  // Windows would end with the exception's code, whose low byte may be 0
  std::cerr << "vexa-host: crashed, exception " << std::hex << exception->ExceptionRecord->ExceptionCode
            << std::endl;
  TerminateProcess(GetCurrentProcess(), crashed);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace
}  // namespace vexa::workbench

int main() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  SetUnhandledExceptionFilter(vexa::workbench::EndCrashed);
  // Transcripts have the same line ends everywhere.
  _setmode(_fileno(stdout), _O_BINARY);
  std::cout << std::unitbuf;  // what came before an end by force is seen
  try {
    int count = 0;
    LPWSTR* const values = CommandLineToArgvW(GetCommandLineW(), &count);
    if (values == nullptr) throw std::runtime_error("the command line cannot be read");
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(vexa::windows::ToUtf8(values[i]));
    LocalFree(values);
    return vexa::workbench::Main(arguments);
  } catch (const std::exception& failure) {
    std::cerr << "vexa-host: " << failure.what() << "\n";
    return 1;
  }
}
