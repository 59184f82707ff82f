// The plain values behind a settings object: what the workbench's add-in stores and what a working copy
// holds. One member for each property of the settings interface, under its own name; the interface's table
// is the only place where the members are listed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "contracts/RegSettings.h"

namespace vexa::workbench {

struct SettingsData {
#define VEXA_PROPERTY(place, Name, Type) Type Name{};
#define VEXA_READ(place, Name, Type) Type Name{};
#define VEXA_READ_ONLY(place, Name, Type) Type Name{};
#define VEXA_COLLECTION(place, Name, Type) std::vector<Type> Name;
#include "contracts/RegSettings.members.inc"

  /// What the add-in starts with when nothing is stored.
  static SettingsData Defaults();

  friend bool operator==(const SettingsData&, const SettingsData&) = default;
};

/// Assigns a property as the settings object's Let does: the error log's path is given by its folder alone.
template <typename Value>
void LetSetting(std::string_view /*name*/, Value& member, const Value& value) {
  member = value;
}
inline void LetSetting(std::string_view name, std::string& member, const std::string& value) {
  member = name == "ErrorLogPath" ? value + "\\VEXAERRORS.MDB" : value;
}

/// Calls visit(name, member) for each member in the interface's order; the members are bool, int16_t,
/// int32_t, std::string, or a vector of std::string or int32_t.
template <typename Data, typename Visitor>
void VisitSettings(Data& data, Visitor&& visit) {
#define VEXA_PROPERTY(place, Name, Type) visit(std::string_view(#Name), data.Name);
#define VEXA_READ(place, Name, Type) visit(std::string_view(#Name), data.Name);
#define VEXA_READ_ONLY(place, Name, Type) visit(std::string_view(#Name), data.Name);
#define VEXA_COLLECTION(place, Name, Type) visit(std::string_view(#Name), data.Name);
#include "contracts/RegSettings.members.inc"
}

}  // namespace vexa::workbench
