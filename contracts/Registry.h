// The operating system's registry, as far as the library may need it: reading and writing single values, and
// finding out whether a key could be written without writing anything.
#pragma once

#include <optional>
#include <string>

#include "core/Variant.h"

namespace vexa {

enum class RegistryRoot { CurrentUser, LocalMachine };

class Registry {
 public:
  Registry() = default;
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;
  virtual ~Registry() = default;

  /// A text or a 32-bit number; nothing when there is no such key or value. Error 13 for a value of another
  /// type, 75 when the key may not be read.
  virtual std::optional<Variant> ReadRegistry(RegistryRoot root, const std::string& key,
                                              const std::string& name) = 0;
  /// Makes the key when it is missing. Error 13 for anything but a text or a 32-bit number, 75 when the key
  /// may not be written.
  virtual void WriteRegistry(RegistryRoot root, const std::string& key, const std::string& name,
                             const Variant& value) = 0;
  /// Whether the user may write values into the key, or make it where it is missing.
  virtual bool CanWriteRegistry(RegistryRoot root, const std::string& key) = 0;
};

/// The root as it is written in front of keys.
constexpr const char* RegistryRootName(RegistryRoot root) {
  return root == RegistryRoot::LocalMachine ? "HKEY_LOCAL_MACHINE" : "HKEY_CURRENT_USER";
}

}  // namespace vexa
