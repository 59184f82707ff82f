// A profile: the world and the add-in's stored state, kept in one JSON file. Reading checks everything and
// says file, line and what would be right; writing is atomic, so that a crash at any moment leaves the old
// file or the new one whole. docs/console.md describes the format.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "dialogs/Screen.h"
#include "workbench/LowerCase.h"
#include "workbench/SettingsData.h"
#include "workbench/World.h"

namespace vexa::workbench {

/// What stands beside the settings in the add-in.
struct AddinState {
  std::string path = "C:\\Program Files\\Tolvane\\Vexa\\Bin";
  std::string aboutInfo;
  bool bypassBlocked = false;
  bool delayAvailable = false;
  bool scanning = false;
  bool canWrite = true;
};

/// The machine that Outlook runs on, and who works at it.
struct MachineState {
  std::string userName = "aberg";  // logged on to the operating system
  std::string computerName = "WORKSTATION7";
  std::string profileName = "Outlook";  // Outlook's
  std::string outlookUser = "Anna Berg";
  std::string supportAddress = DefaultSupportAddress;
  bool canWriteMachine = true;  // HKEY_LOCAL_MACHINE
  /// What files say of their versions, by path.
  std::map<std::string, std::string, LessIgnoringCase> fileVersions;
  using RegistryValue = std::variant<std::string, int32_t>;
  using RegistryKey = std::map<std::string, RegistryValue, LessIgnoringCase>;
  /// By key, the root in front: "HKEY_CURRENT_USER\\Software\\Tolvane".
  std::map<std::string, RegistryKey, LessIgnoringCase> registry;
};

struct Profile {
  int32_t language = 1033;
  AddinState addin;
  MachineState machine;
  SettingsData settings = SettingsData::Defaults();
  World world;
};

/// A file that cannot be used; what() is one line for the user, with the file (and line) at its start.
class ProfileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Error: ProfileError.
Profile ReadProfile(const std::string& path);
Profile ParseProfile(std::string_view text, const std::string& nameForMessages);

/// Writes aside, flushes to the disk, renames over `path`. Error: ProfileError; the old file is then
/// untouched and nothing is left beside it.
void WriteProfile(const std::string& path, const Profile& profile);

/// Adds the stores of `other`, its default folders where `profile` has none, to `profile`. Error:
/// ProfileError when both have a store with the same id.
void MergeWorld(Profile& profile, const Profile& other);

/// The words of the file format for the kinds of stores: "mailbox", "public", "personal".
std::string_view StoreKindName(StoreKind kind);
std::optional<StoreKind> StoreKindNamed(std::string_view name);

}  // namespace vexa::workbench
