// The add-in's settings object, as the library needs it. The add-in owns the class and stores the values;
// the page makes a fresh instance, loads it, lets the dialogs edit it and hands it back on Apply. The
// collections are parallel: item i of each belongs to the same folder set or monitored folder. Every call
// is an outside call and may fail.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "contracts/Collection.h"
#include "core/Variant.h"

namespace vexa {

class RegSettings : public Object {
 public:
  // GetX reads a property, LetX assigns it, SetX replaces a collection by another object.
#define VEXA_PROPERTY(place, Name, Type) \
  virtual Type Get##Name() = 0;          \
  virtual void Let##Name(const Type& value) = 0;
#define VEXA_READ(place, Name, Type) virtual Type Get##Name() = 0;
#define VEXA_READ_ONLY(place, Name, Type) virtual Type Get##Name() = 0;
#define VEXA_COLLECTION(place, Name, Type)                      \
  virtual CollectionRef<Type> Get##Name() = 0;                  \
  virtual void Let##Name(const CollectionRef<Type>& value) = 0; \
  virtual void Set##Name(const CollectionRef<Type>& value) = 0;
#include "contracts/RegSettings.members.inc"

  /// Brings back every message that the user has chosen not to see again.
  virtual void RestoreHiddenDialogs() = 0;
  /// Loads the stored values. `first` is always 0; the two flags are those of the utility object.
  virtual void Load(int32_t first, bool& bypassBlocked, bool& delayAvailable) = 0;
  /// Whether the current user may write the settings store. `argument` is always 0.
  virtual bool CanWrite(int32_t& argument) = 0;
  /// Not zero when the contact folder already belongs to a folder set; `context` is what the add-in's
  /// FolderSetContext returned.
  virtual Variant FindFolderSet(const std::string& entryId, const std::string& storeId,
                                const ObjectRef& context) = 0;
};

using RegSettingsRef = std::shared_ptr<RegSettings>;

/// Asks CanWrite in the one way in which it is ever asked.
inline bool CanWrite(RegSettings& settings) {
  int32_t argument = 0;
  return settings.CanWrite(argument);
}

enum class MemberKind { Property, Read, ReadOnly, Collection, Method, UnusedProperty, UnusedMember };

/// One of the 67 places of the interface. A place takes as many consecutive slots as its kind has
/// accessors: Get before Let, then Set.
struct RegSettingsMember {
  int32_t place;
  std::string_view name;  // empty for places that are not used here
  MemberKind kind;

  constexpr int32_t SlotCount() const {
    switch (kind) {
      case MemberKind::Property:
      case MemberKind::Read:
      case MemberKind::UnusedProperty:
        return 2;
      case MemberKind::Collection:
        return 3;
      case MemberKind::ReadOnly:
      case MemberKind::Method:
      case MemberKind::UnusedMember:
        return 1;
    }
    return 0;
  }
};

inline constexpr auto RegSettingsMembers = std::to_array<RegSettingsMember>({
#define VEXA_PROPERTY(place, Name, Type) {place, #Name, MemberKind::Property},
#define VEXA_READ(place, Name, Type) {place, #Name, MemberKind::Read},
#define VEXA_READ_ONLY(place, Name, Type) {place, #Name, MemberKind::ReadOnly},
#define VEXA_COLLECTION(place, Name, Type) {place, #Name, MemberKind::Collection},
#define VEXA_METHOD(place, Name) {place, #Name, MemberKind::Method},
#define VEXA_UNUSED_PROPERTY(place) {place, {}, MemberKind::UnusedProperty},
#define VEXA_UNUSED_MEMBER(place) {place, {}, MemberKind::UnusedMember},
#include "contracts/RegSettings.members.inc"
});

/// Slot of a member's first accessor, counted from 0 = first slot behind those every dual interface has;
/// -1 when there is no member of this name.
constexpr int32_t FirstSlotOf(std::string_view name) {
  int32_t slot = 0;
  for (const RegSettingsMember& member : RegSettingsMembers) {
    if (!name.empty() && member.name == name) return slot;
    slot += member.SlotCount();
  }
  return -1;
}

}  // namespace vexa
