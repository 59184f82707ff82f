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

}  // namespace

class Workbench::ObjectFactory final : public AddinObjectFactory {
 public:
  explicit ObjectFactory(Workbench& workbench) : workbench_(workbench) {}

  RegSettingsRef CreateRegSettings() override {
    if (workbench_.Calls().Enter("New RegSettings", CallLog::Kind::Action)) return nullptr;
    auto settings = std::make_shared<WorkbenchSettings>(workbench_);
    newest = settings;
    return settings;
  }
  std::shared_ptr<MonitoredFolder> CreateMonitoredFolder() override {
    if (workbench_.Calls().Enter("New MonitoredFolder", CallLog::Kind::Action)) return nullptr;
    return MakeMonitoredFolder(workbench_);
  }

  std::weak_ptr<WorkbenchSettings> newest;

 private:
  Workbench& workbench_;
};

Workbench::Workbench(Profile theProfile, std::string savePath, CallLog& calls, UserAnswers& user)
    : profile(std::move(theProfile)),
      files(savePath),
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
    user_.SeenFailing(std::string("the add-in could not save its settings: ") + failure.what());
    throw Error(static_cast<int32_t>(ErrorNumber::PathFileAccess), failure.what(), "VexaAddin");
  }
}

}  // namespace vexa::workbench
