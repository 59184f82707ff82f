// The add-in's record of a monitored folder. Item type n, by the number of its text, is the bit 2^(n - 135);
// setting the mail defaults marks mail and meeting items. A record is excluded when its folder is marked so
// in the profile.
#include <array>
#include <charconv>
#include <utility>

#include "workbench/Workbench.h"

namespace vexa::workbench {
namespace {

using Kind = CallLog::Kind;

constexpr int16_t FirstItemType = 135;
constexpr int16_t LastItemType = 150;
constexpr int16_t MailItems = 140;
constexpr int16_t MeetingItems = 141;
constexpr int32_t DefaultFolderMark = 0x40000000;

int32_t BitOf(int16_t resId) {
  if (resId < FirstItemType || resId > LastItemType) throw MakeError(ErrorNumber::InvalidProcedureCall);
  return 1 << (resId - FirstItemType);
}

class WorkbenchMonitoredFolder final : public MonitoredFolder {
 public:
  explicit WorkbenchMonitoredFolder(Workbench& workbench) : workbench_(workbench) {}

  std::string GetEntryID() override { return Read("EntryID", entryID_); }
  void LetEntryID(const std::string& value) override { Write("EntryID", entryID_, value); }
  std::string GetStoreID() override { return Read("StoreID", storeID_); }
  void LetStoreID(const std::string& value) override { Write("StoreID", storeID_, value); }
  int32_t GetItemTypes() override { return Read("ItemTypes", itemTypes_); }
  void LetItemTypes(int32_t value) override { Write("ItemTypes", itemTypes_, value); }

  void SetMailDefaults(bool flag) override {
    Enter("MF.SetMailDefaults", Kind::Action, [&] { return "SetMailDefaults(" + ValueText(flag) + ")"; });
    Set(BitOf(MailItems) | BitOf(MeetingItems), flag);
  }
  bool GetFlag(int32_t mask) override {
    Enter("MF.Flag", Kind::Read, [&] { return "Flag(" + ValueText(mask) + ")"; });
    return (itemTypes_ & mask) == mask;
  }
  void LetFlag(int32_t mask, bool value) override {
    Enter("MF.Flag=", Kind::Action, [&] { return "Flag(" + ValueText(mask) + ") = " + ValueText(value); });
    Set(mask, value);
  }

  int32_t MaskFromResId(int16_t resId) override {
    Enter("MF.MaskFromResId", Kind::Read, [&] { return "MaskFromResId(" + ValueText(resId) + ")"; });
    return BitOf(resId);
  }
  int16_t ResIdFromMask(int32_t mask) override {
    Enter("MF.ResIdFromMask", Kind::Read, [&] { return "ResIdFromMask(" + ValueText(mask) + ")"; });
    for (int16_t resId = FirstItemType; resId <= LastItemType; ++resId) {
      if (mask == BitOf(resId)) return resId;
    }
    throw MakeError(ErrorNumber::InvalidProcedureCall);
  }
  int32_t MaskFromOlItemType(ItemType itemType) override {
    Enter("MF.MaskFromOlItemType", Kind::Read,
          [&] { return "MaskFromOlItemType(" + ValueText(static_cast<int32_t>(itemType)) + ")"; });
    constexpr std::array<std::pair<ItemType, int16_t>, 8> texts{{{ItemType::Mail, MailItems},
                                                                 {ItemType::Appointment, 135},
                                                                 {ItemType::Contact, 136},
                                                                 {ItemType::Task, 146},
                                                                 {ItemType::Journal, 139},
                                                                 {ItemType::Note, 142},
                                                                 {ItemType::Post, 143},
                                                                 {ItemType::DistributionList, 137}}};
    for (const auto& [known, resId] : texts) {
      if (known == itemType) return BitOf(resId);
    }
    throw MakeError(ErrorNumber::InvalidProcedureCall);
  }

  bool Excluded() override {
    Enter("MF.Excluded", Kind::Read, [] { return std::string("Excluded"); });
    const FolderIndex folder = Monitored();
    return folder != NoFolder && workbench_.profile.world.At(folder).excluded;
  }

 private:
  template <typename MakeCall>
  void Enter(std::string_view member, Kind kind, MakeCall&& call) const {
    workbench_.Calls().Enter(member, kind, [&] { return "MF(" + QuotedText(entryID_) + ")." + call(); });
  }
  template <typename Value>
  Value Read(const std::string& name, const Value& value) const {
    Enter("MF." + name, Kind::Read, [&] { return name; });
    return value;
  }
  template <typename Value>
  void Write(const std::string& name, Value& member, const Value& value) {
    Enter("MF." + name + "=", Kind::Action, [&] { return name + " = " + ValueText(value); });
    member = value;
  }
  void Set(int32_t mask, bool value) { itemTypes_ = value ? itemTypes_ | mask : itemTypes_ & ~mask; }

  /// The folder that the record stands for; NoFolder when it does not exist.
  FolderIndex Monitored() const {
    const World& world = workbench_.profile.world;
    if ((itemTypes_ & DefaultFolderMark) == 0) return world.Find(entryID_, storeID_);
    int32_t number = 0;
    std::from_chars(entryID_.data(), entryID_.data() + entryID_.size(), number);
    const auto found = world.defaultFolders.find(number);
    return found == world.defaultFolders.end() ? NoFolder : found->second;
  }

  Workbench& workbench_;
  std::string entryID_;
  std::string storeID_;
  int32_t itemTypes_ = 0;
};

}  // namespace

std::shared_ptr<MonitoredFolder> MakeMonitoredFolder(Workbench& workbench) {
  return std::make_shared<WorkbenchMonitoredFolder>(workbench);
}

}  // namespace vexa::workbench
