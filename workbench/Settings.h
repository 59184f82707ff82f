// The workbench's settings object: a working copy of the add-in's settings, its collections edited in
// place. Every access is traced.
#pragma once

#include <memory>

#include "contracts/RegSettings.h"
#include "workbench/SettingsData.h"

namespace vexa::workbench {

class Workbench;

class WorkbenchSettings final : public RegSettings, public std::enable_shared_from_this<WorkbenchSettings> {
 public:
  explicit WorkbenchSettings(Workbench& workbench) : workbench_(workbench) {}

#define VEXA_PROPERTY(place, Name, Type) \
  Type Get##Name() override;             \
  void Let##Name(const Type& value) override;
#define VEXA_READ(place, Name, Type) Type Get##Name() override;
#define VEXA_READ_ONLY(place, Name, Type) Type Get##Name() override;
#define VEXA_COLLECTION(place, Name, Type)                   \
  CollectionRef<Type> Get##Name() override;                  \
  void Let##Name(const CollectionRef<Type>& value) override; \
  void Set##Name(const CollectionRef<Type>& value) override;
#include "contracts/RegSettings.members.inc"

  void RestoreHiddenDialogs() override;
  void Load(int32_t first, bool& bypassBlocked, bool& delayAvailable) override;
  bool CanWrite(int32_t& argument) override;
  Variant FindFolderSet(const std::string& entryId, const std::string& storeId,
                        const ObjectRef& context) override;

  SettingsData data;

 private:
  Workbench& workbench_;
};

}  // namespace vexa::workbench
