// The running add-in and the objects it hands out, each with the members that the library uses in the
// order in which the add-in's interfaces declare them. All of them are outside objects: any call may fail.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Outlook.h"
#include "contracts/RegSettings.h"
#include "core/Variant.h"

namespace vexa {

/// The add-in's application object.
class AddinApplication : public Object {
 public:
  /// Installation folder of the add-in.
  virtual std::string Path() = 0;
};

/// The add-in's utility and environment object.
class Utilities : public Object {
 public:
  /// Bypassing Outlook's object model when copying may not be used.
  virtual bool BypassBlocked() = 0;
  /// The delayed processing of new items is in force.
  virtual bool DelayAvailable() = 0;
  /// Display path of a folder.
  virtual std::string GetFolderPath(const FolderRef& folder) = 0;
  virtual bool IsPublicFolder(const FolderRef& folder) = 0;
  virtual std::shared_ptr<AddinApplication> App() = 0;
  /// Adds or sets a user-defined property on an Outlook item; type 1 is text.
  virtual void SetUserProperty(const ObjectRef& item, const std::string& name, const Variant& value,
                               int32_t type, bool flag) = 0;
  /// Information handed unchanged to the about box.
  virtual Variant AboutInfo() = 0;
};

/// The add-in's background scanner of monitored folders.
class Scanner : public Object {
 public:
  /// Starts an immediate search of all monitored folders; the argument says whether to stop at the first
  /// item of a folder that was scanned before.
  virtual void StartSearch(bool stopAtScanned) = 0;
  virtual bool IsScanning() = 0;
};

/// One monitored folder in its working form; created by the add-in, one for each entry.
class MonitoredFolder : public Object {
 public:
  virtual std::string GetEntryID() = 0;
  virtual void LetEntryID(const std::string& value) = 0;
  virtual std::string GetStoreID() = 0;
  virtual void LetStoreID(const std::string& value) = 0;
  virtual int32_t GetItemTypes() = 0;
  virtual void LetItemTypes(int32_t value) = 0;
  virtual void SetMailDefaults(bool flag) = 0;
  /// Whether the item types hold all bits of `mask`.
  virtual bool GetFlag(int32_t mask) = 0;
  virtual void LetFlag(int32_t mask, bool value) = 0;
  /// Between the number of an item type's text (135 to 150), its bit, and Outlook's item type.
  virtual int32_t MaskFromResId(int16_t resId) = 0;
  virtual int16_t ResIdFromMask(int32_t mask) = 0;
  virtual int32_t MaskFromOlItemType(ItemType itemType) = 0;
  /// Keeps the record out of the stored lists.
  virtual bool Excluded() = 0;
};

/// The running add-in.
class AddinApp : public Object {
 public:
  virtual std::shared_ptr<vexa::Utilities> Utilities() = 0;
  virtual std::shared_ptr<vexa::Scanner> Scanner() = 0;
  virtual NameSpaceRef Session() = 0;
  /// Passed unchanged to RegSettings.FindFolderSet.
  virtual ObjectRef FolderSetContext() = 0;
  virtual void SetOptionsPageOpen(bool& open) = 0;
  /// Takes over the working copy; storing it is the add-in's business.
  virtual void ApplySettings(RegSettingsRef& settings) = 0;
};

using AddinAppRef = std::shared_ptr<AddinApp>;

/// Makes the add-in's helper objects, whose classes are the add-in's own.
class AddinObjectFactory {
 public:
  AddinObjectFactory() = default;
  AddinObjectFactory(const AddinObjectFactory&) = delete;
  AddinObjectFactory& operator=(const AddinObjectFactory&) = delete;
  virtual ~AddinObjectFactory() = default;
  virtual RegSettingsRef CreateRegSettings() = 0;
  virtual std::shared_ptr<MonitoredFolder> CreateMonitoredFolder() = 0;
};

}  // namespace vexa
