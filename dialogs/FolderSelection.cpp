#include "dialogs/FolderSelection.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "contracts/List.h"

namespace vexa {
namespace {

struct DefaultFolder {
  int32_t rsIndex;
  int32_t index;
};
constexpr std::array<DefaultFolder, 10> DefaultFolders{{
    {116, 9},
    {117, 10},
    {118, 3},
    {119, 16},
    {120, 6},
    {121, 11},
    {122, 12},
    {123, 4},
    {124, 5},
    {125, 13},
}};
constexpr int32_t PseudoStore = 115;

/// A text that is no number is the number of no folder.
int32_t DecimalNumber(std::string_view text) {
  int32_t number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : -1;
}

}  // namespace

std::string FolderKey(std::string_view entryID, std::string_view storeID) {
  std::string key;
  key.reserve(entryID.size() + KeySplitter.size() + storeID.size());
  return key.append(entryID).append(KeySplitter).append(storeID);
}

FolderIds IdsOfKey(std::string_view key) {
  const size_t splitter = key.find(KeySplitter);
  if (splitter == std::string_view::npos) throw MakeError(ErrorNumber::SubscriptOutOfRange);
  const std::string_view rest = key.substr(splitter + KeySplitter.size());
  return {std::string(key.substr(0, splitter)), std::string(rest.substr(0, rest.find(KeySplitter)))};
}

std::string DefaultFolderKey(int32_t rsIndex) {
  return std::string(DefaultFolderPrefix).append(std::to_string(rsIndex));
}
bool IsDefaultFolderKey(std::string_view key) { return key.starts_with(DefaultFolderPrefix); }
int32_t DefaultFolderOfKey(std::string_view key) {
  return DecimalNumber(key.substr(std::min(key.size(), DefaultFolderPrefix.size())));
}

std::string NumberKey(int32_t resId) { return "@" + std::to_string(resId); }
int32_t NumberOfKey(std::string_view key) {
  return DecimalNumber(key.substr(std::min<size_t>(key.size(), 1)));
}

int32_t RSIndexToDefFolderIndex(int32_t rsIndex) {
  if (rsIndex == PseudoStore) return 0;
  const auto* const found = std::ranges::find(DefaultFolders, rsIndex, &DefaultFolder::rsIndex);
  return found == DefaultFolders.end() ? -1 : found->index;
}

int32_t DefFolderIndexToRSIndex(int32_t index) {
  const auto* const found = std::ranges::find(DefaultFolders, index, &DefaultFolder::index);
  return found == DefaultFolders.end() ? -1 : found->rsIndex;
}

void FolderSelection::Load(RegSettings& settings, AddinObjectFactory& objects) {
  int32_t count = settings.GetMonitoredFolderCount();
  if (count > 0) {
    count = std::min({count, Require(settings.GetMonitoredFolderEntryIDs()).Count(),
                      Require(settings.GetMonitoredFolderStoreIDs()).Count(),
                      Require(settings.GetMonitoredFolderItemTypes()).Count()});
  }
  if (count > 0) records_.Reserve(static_cast<size_t>(count));
  for (int32_t i = 1; i <= count; ++i) {
    MonitoredFolderRef record = objects.CreateMonitoredFolder();
    const std::string entryID = Require(settings.GetMonitoredFolderEntryIDs()).Item(i);
    Require(record).LetEntryID(entryID);
    const std::string storeID = Require(settings.GetMonitoredFolderStoreIDs()).Item(i);
    record->LetStoreID(storeID);
    record->LetItemTypes(Require(settings.GetMonitoredFolderItemTypes()).Item(i));
    const std::string key = record->GetFlag(DefaultFolderFlag)
                                ? DefaultFolderKey(DefFolderIndexToRSIndex(DecimalNumber(entryID)))
                                : FolderKey(entryID, storeID);
    records_.Add(key, std::move(record));
  }
}

void FolderSelection::Save(RegSettings& settings) const {
  settings.LetMonitoredFolderCount(static_cast<int32_t>(records_.Size()));
  settings.SetMonitoredFolderEntryIDs(std::make_shared<List<std::string>>());
  settings.SetMonitoredFolderStoreIDs(std::make_shared<List<std::string>>());
  settings.SetMonitoredFolderItemTypes(std::make_shared<List<int32_t>>());
  if (records_.Size() == 0) return;
  // What the settings made of the new lists.
  const auto entryIDs = settings.GetMonitoredFolderEntryIDs();
  const auto storeIDs = settings.GetMonitoredFolderStoreIDs();
  const auto itemTypes = settings.GetMonitoredFolderItemTypes();
  records_.ForEach([&](const std::string& /*key*/, const MonitoredFolderRef& record) {
    if (record->Excluded()) return;
    Require(entryIDs).Add(record->GetEntryID());
    Require(storeIDs).Add(record->GetStoreID());
    Require(itemTypes).Add(record->GetItemTypes());
  });
}

MonitoredFolderRef FolderSelection::Add(const std::string& key, AddinObjectFactory& objects) {
  MonitoredFolderRef record = Share(objects.CreateMonitoredFolder());
  records_.Add(key, record);
  return record;
}

MonitoredFolderRef FolderSelection::Find(std::string_view key) const {
  const MonitoredFolderRef* const found = records_.Find(key);
  return found == nullptr ? nullptr : *found;
}

}  // namespace vexa
