// vexa-console: the options page in a terminal.
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>

#include "workbench/Console.h"
#include "workbench/LineEditor.h"

namespace {

constexpr const char* Usage =
    "usage: vexa-console [--profile FILE] [--language NUMBER] [--strict] [--json] [[--script] SCRIPT]\n"
    "Runs the commands of SCRIPT, or of the standard input. \"help\" lists the commands.\n"
    "--strict ends a script at a refusal or an error, --json prints forms and settings as lines of JSON, "
    "and\n"
    "everything else to the standard error.\n"
    "Status: 0 done, 1 the console could not start, 2 a line of a script cannot be carried out,\n"
    "3 a strict script was ended by a refusal or an error.\n";

struct Options {
  std::string profile;
  std::optional<int32_t> language;
  std::string script;
  bool strict = false;
  bool json = false;
};

/// Nothing when the arguments make no sense.
std::optional<Options> ReadArguments(const std::vector<std::string>& arguments) {
  Options options;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const bool hasValue = i + 1 < arguments.size();
    if (arguments[i] == "--profile" && hasValue) {
      options.profile = arguments[++i];
    } else if (arguments[i] == "--language" && hasValue) {
      options.language = vexa::workbench::NumberWord(arguments[++i], "--language");
    } else if (arguments[i] == "--strict") {
      options.strict = true;
    } else if (arguments[i] == "--json") {
      options.json = true;
    } else if (arguments[i] == "--script" && hasValue && options.script.empty()) {
      options.script = arguments[++i];
    } else if (!arguments[i].starts_with("-") && options.script.empty()) {
      options.script = arguments[i];
    } else {
      return std::nullopt;
    }
  }
  return options;
}

/// Empty where nothing can be kept.
std::string HistoryFile() {
  const char* const home = std::getenv("HOME");
  return home == nullptr || *home == '\0' ? std::string() : std::string(home) + "/.vexa-console-history";
}

int RunConsole(const Options& options) {
  std::ifstream script;
  if (!options.script.empty()) {
    script.open(options.script);
    if (!script) throw std::runtime_error(options.script + ": cannot be read: " + std::strerror(errno));
    // A folder opens like a file, but nothing can be read from it.
    if (script.peek(); script.bad())
      throw std::runtime_error(options.script + ": cannot be read; right would be a file");
    script.clear();
  }
  const bool interactive = options.script.empty() && ::isatty(STDIN_FILENO) == 1;
  vexa::workbench::CommandSource source{options.script.empty() ? std::cin : script,
                                        options.script.empty() ? "standard input" : options.script,
                                        interactive};
  std::optional<vexa::workbench::LineEditor> editor;
  source.transcript = !options.script.empty() && vexa::workbench::IsTranscript(script);
  source.readLine = [&](const std::string& prompt) { return editor->Read(prompt); };
  vexa::workbench::Console console(std::move(source), options.json ? std::cerr : std::cout);
  if (interactive)
    editor.emplace([&](std::string_view line) { return console.Complete(line); }, HistoryFile());
  if (options.json) console.PrintJsonTo(&std::cout);
  console.SetStrict(options.strict);
  if (options.language) console.SetLanguage(*options.language);
  if (!options.profile.empty()) console.Load(options.profile);
  return console.Run();
}

}  // namespace

int main(int count, char** values) {
  try {
    const std::vector<std::string> arguments(values + 1, values + count);
    if (arguments.size() == 1 && arguments.front() == "--help") {
      std::cout << Usage;
      return 0;
    }
    const std::optional<Options> options = ReadArguments(arguments);
    if (!options) {
      std::cerr << Usage;
      return 1;
    }
    return RunConsole(*options);
  } catch (const std::exception& failure) {
    std::cerr << "vexa-console: " << failure.what() << "\n";
    return 1;
  }
}
