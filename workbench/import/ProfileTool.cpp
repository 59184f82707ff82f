// vexa-profile: makes profiles of Outlook data files, and says what is in a profile.
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "workbench/Profile.h"
#include "workbench/import/Import.h"

namespace vexa::workbench {
namespace {

constexpr std::string_view Usage =
    "Usage:\n"
    "  vexa-profile import FILE -o PROFILE.json [--add OTHER.json]... [--force]\n"
    "      Makes a profile with the stores and folders of an Outlook data file (.pst, .ost) and those of\n"
    "      other profiles. An existing PROFILE.json is replaced only with --force.\n"
    "  vexa-profile check PROFILE.json\n"
    "      Reads a profile and says what stores, folders and default folders it has.\n"
    "  vexa-profile help\n";

class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct ImportOrder {
  std::string source;
  std::string output;
  std::vector<std::string> additions;
  bool force = false;
};

void SetOnce(std::string& value, const std::string& argument, const char* what) {
  if (argument.empty() || !value.empty()) throw UsageError(std::string("import needs one ") + what);
  value = argument;
}

ImportOrder ParseImport(std::span<const std::string> arguments) {
  ImportOrder order;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--force") {
      order.force = true;
    } else if (argument == "-o" || argument == "--add") {
      if (++i == arguments.size()) throw UsageError(argument + " needs a file after it");
      if (argument == "-o") {
        SetOnce(order.output, arguments[i], "-o PROFILE.json");
      } else {
        order.additions.push_back(arguments[i]);
      }
    } else if (argument.starts_with('-')) {
      throw UsageError("unknown option " + argument);
    } else {
      SetOnce(order.source, argument, "FILE");
    }
  }
  if (order.source.empty()) throw UsageError("import needs a FILE");
  if (order.output.empty()) throw UsageError("import needs -o PROFILE.json");
  return order;
}

void Import(const ImportOrder& order) {
  if (!order.force && std::filesystem::exists(std::filesystem::symlink_status(order.output))) {
    throw ProfileError(order.output + ": exists already; --force replaces it");
  }
  std::error_code unknown;  // when one of them does not exist they are not the same
  if (std::filesystem::equivalent(order.source, order.output, unknown)) {
    throw ProfileError(order.output + ": is the data file itself, which is never replaced");
  }
  Profile profile = ImportDataFile(order.source);
  for (const std::string& addition : order.additions) {
    const Profile other = ReadProfile(addition);
    try {
      MergeWorld(profile, other);
    } catch (const ProfileError& error) {
      throw ProfileError(addition + ": cannot be added: " + error.what());
    }
  }
  WriteProfile(order.output, profile);
}

void Check(const std::string& path) {
  const World world = ReadProfile(path).world;
  std::cout << path << ": " << world.Stores().size() << " store(s)\n";
  for (uint32_t store = 0; store < world.Stores().size(); ++store) {
    const Store& here = world.Stores()[store];
    std::cout << StoreKindName(here.kind) << ": \"" << world.At(here.root).name << "\", " << here.folderCount
              << " folder(s)\n";
    for (const auto& [number, folder] : world.defaultFolders) {
      if (world.At(folder).store == store) {
        std::cout << "  default folder " << number << ": " << world.PathOf(folder) << "\n";
      }
    }
  }
}

void Run(std::span<const std::string> arguments) {
  const std::string command = arguments.empty() ? "" : arguments.front();
  if (command == "import") {
    Import(ParseImport(arguments.subspan(1)));
  } else if (command == "check") {
    if (arguments.size() != 2) throw UsageError("check needs one PROFILE.json");
    Check(arguments[1]);
  } else if (command == "help" || command == "--help" || command == "-h") {
    std::cout << Usage;
  } else {
    throw UsageError(command.empty() ? "a command is needed" : "unknown command " + command);
  }
  if (!std::cout.flush()) throw ProfileError("standard output cannot be written");
}

}  // namespace
}  // namespace vexa::workbench

int main(int count, char** values) try {
  const std::vector<std::string> arguments(values + (count > 0 ? 1 : 0), values + count);
  vexa::workbench::Run(arguments);
  return 0;
} catch (const vexa::workbench::UsageError& error) {
  std::cerr << "vexa-profile: " << error.what() << "\n" << vexa::workbench::Usage;
  return 2;
} catch (const std::exception& error) {
  std::cerr << "vexa-profile: " << error.what() << "\n";
  return 1;
}
