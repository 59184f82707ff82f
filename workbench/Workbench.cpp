#include "workbench/Workbench.h"

#include "workbench/Settings.h"

namespace vexa::workbench {
namespace {

class WorkbenchSite final : public PropertyPageSite {
 public:
  explicit WorkbenchSite(CallLog& calls) : calls_(calls) {}
  void OnStatusChange() override {
    calls_.Enter("Site.OnStatusChange", CallLog::Kind::Action, [] { return "Site.OnStatusChange()"; });
  }

 private:
  CallLog& calls_;
};

/// One item of a monitored-folder selection. Item type n, by the number of its text, is the bit
/// 2^(n − 135); setting the mail defaults marks mail and meeting items.
class WorkbenchMonitoredFolder final : public MonitoredFolder {
 public:
  std::string GetEntryID() override { return entryID_; }
  void LetEntryID(const std::string& value) override { entryID_ = value; }
  std::string GetStoreID() override { return storeID_; }
  void LetStoreID(const std::string& value) override { storeID_ = value; }
  int32_t GetItemTypes() override { return itemTypes_; }
  void LetItemTypes(int32_t value) override { itemTypes_ = value; }
  void SetMailDefaults(bool flag) override {
    constexpr int16_t mailItems = 140;
    constexpr int16_t meetingItems = 141;
    LetFlag(MaskFromResId(mailItems) | MaskFromResId(meetingItems), flag);
  }
  bool GetFlag(int32_t mask) override { return (itemTypes_ & mask) == mask; }
  void LetFlag(int32_t mask, bool value) override {
    itemTypes_ = value ? itemTypes_ | mask : itemTypes_ & ~mask;
  }
  int32_t MaskFromResId(int16_t resId) override {
    if (resId < FirstItemType || resId > LastItemType) throw MakeError(ErrorNumber::InvalidProcedureCall);
    return 1 << (resId - FirstItemType);
  }
  int16_t ResIdFromMask(int32_t mask) override {
    for (int16_t resId = FirstItemType; resId <= LastItemType; ++resId) {
      if (mask == MaskFromResId(resId)) return resId;
    }
    throw MakeError(ErrorNumber::InvalidProcedureCall);
  }
  int32_t MaskFromOlItemType(ItemType itemType) override {
    switch (itemType) {
      case ItemType::Mail:
        return MaskFromResId(140);
      case ItemType::Appointment:
        return MaskFromResId(135);
      case ItemType::Contact:
        return MaskFromResId(136);
      case ItemType::Task:
        return MaskFromResId(146);
      case ItemType::Journal:
        return MaskFromResId(139);
      case ItemType::Note:
        return MaskFromResId(142);
      case ItemType::Post:
        return MaskFromResId(143);
      case ItemType::DistributionList:
        return MaskFromResId(137);
    }
    throw MakeError(ErrorNumber::InvalidProcedureCall);
  }
  bool Excluded() override { return false; }

 private:
  static constexpr int16_t FirstItemType = 135;
  static constexpr int16_t LastItemType = 150;

  std::string entryID_;
  std::string storeID_;
  int32_t itemTypes_ = 0;
};

}  // namespace

class Workbench::ObjectFactory final : public AddinObjectFactory {
 public:
  explicit ObjectFactory(Workbench& workbench) : workbench_(workbench) {}

  RegSettingsRef CreateRegSettings() override {
    workbench_.Calls().Enter("New RegSettings", CallLog::Kind::Action);
    auto settings = std::make_shared<WorkbenchSettings>(workbench_);
    newest = settings;
    return settings;
  }
  std::shared_ptr<MonitoredFolder> CreateMonitoredFolder() override {
    return std::make_shared<WorkbenchMonitoredFolder>();
  }

  std::weak_ptr<WorkbenchSettings> newest;

 private:
  Workbench& workbench_;
};

Workbench::Workbench(Profile theProfile, std::string savePath, CallLog& calls, UserAnswers& user)
    : profile(std::move(theProfile)),
      savePath_(std::move(savePath)),
      calls_(calls),
      user_(user),
      addin_(MakeAddin(*this)),
      site_(std::make_shared<WorkbenchSite>(calls)),
      desktop_(MakeDesktop(*this)),
      objects_(std::make_unique<ObjectFactory>(*this)) {}

Workbench::~Workbench() = default;

AddinObjectFactory& Workbench::Objects() const { return *objects_; }

SettingsData* Workbench::WorkingCopy() const {
  const std::shared_ptr<WorkbenchSettings> settings = objects_->newest.lock();
  return settings == nullptr ? nullptr : &settings->data;
}

void Workbench::TakeOver(RegSettings& workingCopy) {
  profile.settings = dynamic_cast<WorkbenchSettings&>(workingCopy).data;
  if (savePath_.empty()) return;
  try {
    WriteProfile(savePath_, profile);
  } catch (const ProfileError& failure) {
    user_.Seen(std::string("the add-in could not save its settings: ") + failure.what());
    throw Error(static_cast<int32_t>(ErrorNumber::PathFileAccess), failure.what(), "VexaAddin");
  }
}

}  // namespace vexa::workbench
