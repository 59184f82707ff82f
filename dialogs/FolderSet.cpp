#include "dialogs/FolderSet.h"

#include <array>
#include <span>

#include "core/Handlers.h"
#include "core/Numbers.h"

namespace vexa {
namespace {

/// A text field beside the list that holds it.
struct Field {
  CollectionRef<std::string> (RegSettings::*list)();
  std::string FolderSet::*value;
};

// In the order in which they are read, removed and inserted: first the folders, then the routing.
constexpr std::array<Field, 12> Fields{{
    {&RegSettings::GetContactEntryIDs, &FolderSet::ContactEntryID},
    {&RegSettings::GetContactStoreIDs, &FolderSet::ContactStoreID},
    {&RegSettings::GetJournEntryIDs, &FolderSet::JournEntryID},
    {&RegSettings::GetJournStoreIDs, &FolderSet::JournStoreID},
    {&RegSettings::GetEmailEntryIDs, &FolderSet::EmailEntryID},
    {&RegSettings::GetEmailStoreIDs, &FolderSet::EmailStoreID},
    {&RegSettings::GetSharedCalEntryIDs, &FolderSet::SharedCalEntryID},
    {&RegSettings::GetSharedCalStoreIDs, &FolderSet::SharedCalStoreID},
    {&RegSettings::GetSharedJournEntryIDs, &FolderSet::SharedJournEntryID},
    {&RegSettings::GetSharedJournStoreIDs, &FolderSet::SharedJournStoreID},
    {&RegSettings::GetSharedTaskEntryIDs, &FolderSet::SharedTaskEntryID},
    {&RegSettings::GetSharedTaskStoreIDs, &FolderSet::SharedTaskStoreID},
}};
constexpr std::span FolderFields = std::span(Fields).first<6>();
constexpr std::span RoutingFields = std::span(Fields).last<6>();

void ChangeCount(RegSettings& settings, int32_t by) {
  IgnoreErrors([&] { settings.LetFolderSetCount(CheckedAdd(settings.GetFolderSetCount(), by)); });
}

/// Puts `value` where it becomes item `index` of a list of `count` items.
template <typename Value>
void InsertAt(Collection<Value>& list, const Value& value, int16_t index, int32_t count) {
  if (count == 0) {
    list.Add(value);
  } else if (index != 1) {
    list.AddAfter(value, index - 1);
  } else {
    list.AddBefore(value, 1);
  }
}

}  // namespace

FolderSet LoadFolderSet(RegSettings& settings, int16_t index) {
  FolderSet folderSet;
  folderSet.FLAGS = 0;
  for (const Field& field : Fields) {
    IgnoreErrors([&] { folderSet.*field.value = Require((settings.*field.list)()).Item(index); });
  }
  IgnoreErrors([&] { folderSet.FLAGS = Require(settings.GetFolderSetFlags()).Item(index); });
  return folderSet;
}

void EraseFolderSet(RegSettings& settings, int16_t index) {
  const auto removeFrom = [&](std::span<const Field> fields) {
    for (const Field& field : fields) {
      IgnoreErrors([&] { Require((settings.*field.list)()).Remove(index); });
    }
  };
  removeFrom(FolderFields);
  ChangeCount(settings, -1);
  removeFrom(RoutingFields);
  IgnoreErrors([&] { Require(settings.GetFolderSetFlags()).Remove(index); });
}

void InsertFolderSet(RegSettings& settings, int16_t index, const FolderSet& folderSet) {
  int32_t count = 0;
  IgnoreErrors([&] { count = settings.GetFolderSetCount(); });
  for (const Field& field : Fields) {
    IgnoreErrors([&] { InsertAt(Require((settings.*field.list)()), folderSet.*field.value, index, count); });
  }
  IgnoreErrors([&] { InsertAt(Require(settings.GetFolderSetFlags()), folderSet.FLAGS, index, count); });
  ChangeCount(settings, 1);
}

}  // namespace vexa
