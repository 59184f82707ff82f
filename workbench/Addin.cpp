// The running add-in of the workbench, with its utility object and its scanner.
#include "workbench/Settings.h"
#include "workbench/Workbench.h"

namespace vexa::workbench {
namespace {

using Kind = CallLog::Kind;

class WorkbenchApplication final : public AddinApplication {
 public:
  explicit WorkbenchApplication(Workbench& workbench) : workbench_(workbench) {}
  std::string Path() override {
    workbench_.Calls().Enter("Util.App.Path", Kind::Read);
    return workbench_.profile.addin.path;
  }

 private:
  Workbench& workbench_;
};

class WorkbenchUtilities final : public Utilities {
 public:
  explicit WorkbenchUtilities(Workbench& workbench) : workbench_(workbench) {}

  bool BypassBlocked() override {
    workbench_.Calls().Enter("Util.BypassBlocked", Kind::Read);
    return workbench_.profile.addin.bypassBlocked;
  }
  bool DelayAvailable() override {
    workbench_.Calls().Enter("Util.DelayAvailable", Kind::Read);
    return workbench_.profile.addin.delayAvailable;
  }
  std::string GetFolderPath(const FolderRef& folder) override {
    return PathOf(Enter("Util.GetFolderPath", folder));
  }
  bool IsPublicFolder(const FolderRef& folder) override {
    const FolderIndex index = Enter("Util.IsPublicFolder", folder);
    return workbench_.profile.world.StoreOf(index).kind == StoreKind::PublicFolders;
  }
  std::shared_ptr<AddinApplication> App() override {
    if (workbench_.Calls().Enter("Util.App", Kind::Read)) return nullptr;
    return std::make_shared<WorkbenchApplication>(workbench_);
  }
  void SetUserProperty(const ObjectRef& item, const std::string& name, const Variant& value, int32_t type,
                       bool flag) override {
    workbench_.Calls().Enter("Util.SetUserProperty", Kind::Action, [&] {
      return "Util.SetUserProperty(item, " + QuotedText(name) + ", " + QuotedText(value.ToText()) + ", " +
             std::to_string(type) + ", " + ValueText(flag) + ")";
    });
    SetMailProperty(Require(item), name, value.ToText());
  }
  Variant AboutInfo() override {
    workbench_.Calls().Enter("Util.AboutInfo", Kind::Read);
    return workbench_.profile.addin.aboutInfo;
  }

 private:
  /// Enters a call with a folder; the folder's index when it still exists.
  FolderIndex Enter(const std::string& member, const FolderRef& folder) const {
    const FolderIndex index = folder == nullptr ? NoFolder : Workbench::IndexOf(*folder);
    workbench_.Calls().Enter(member, Kind::Action, [&] {
      return member + "(" + (index == NoFolder ? "nothing" : QuotedText(PathOf(index))) + ")";
    });
    if (index == NoFolder || workbench_.profile.world.At(index).deleted) {
      throw MakeError(ErrorNumber::InvalidProcedureCall);
    }
    return index;
  }
  std::string PathOf(FolderIndex index) const { return workbench_.profile.world.PathOf(index); }

  Workbench& workbench_;
};

class WorkbenchScanner final : public Scanner {
 public:
  explicit WorkbenchScanner(Workbench& workbench) : workbench_(workbench) {}
  void StartSearch(bool stopAtScanned) override {
    workbench_.Calls().Enter("Scan.StartSearch", Kind::Action,
                             [&] { return "Scan.StartSearch(" + ValueText(stopAtScanned) + ")"; });
    workbench_.profile.addin.scanning = true;
  }
  bool IsScanning() override {
    workbench_.Calls().Enter("Scan.IsScanning", Kind::Read);
    return workbench_.profile.addin.scanning;
  }

 private:
  Workbench& workbench_;
};

class WorkbenchAddin final : public AddinApp {
 public:
  explicit WorkbenchAddin(Workbench& workbench) : workbench_(workbench) {}

  std::shared_ptr<vexa::Utilities> Utilities() override {
    if (workbench_.Calls().Enter("App.Utilities", Kind::Read)) return nullptr;
    return std::make_shared<WorkbenchUtilities>(workbench_);
  }
  std::shared_ptr<vexa::Scanner> Scanner() override {
    if (workbench_.Calls().Enter("App.Scanner", Kind::Read)) return nullptr;
    return std::make_shared<WorkbenchScanner>(workbench_);
  }
  NameSpaceRef Session() override {
    if (workbench_.Calls().Enter("App.Session", Kind::Read)) return nullptr;
    return MakeSession(workbench_);
  }
  ObjectRef FolderSetContext() override {
    if (workbench_.Calls().Enter("App.FolderSetContext", Kind::Read)) return nullptr;
    return std::make_shared<Object>();
  }
  void SetOptionsPageOpen(bool& open) override {
    workbench_.Calls().Enter("App.SetOptionsPageOpen", Kind::Action,
                             [&] { return "App.SetOptionsPageOpen(" + ValueText(open) + ")"; });
  }
  void ApplySettings(RegSettingsRef& settings) override {
    workbench_.Calls().Enter("App.ApplySettings", Kind::Action, [] { return "App.ApplySettings(RS)"; });
    workbench_.TakeOver(Require(settings));
  }

 private:
  Workbench& workbench_;
};

}  // namespace

AddinAppRef MakeAddin(Workbench& workbench) { return std::make_shared<WorkbenchAddin>(workbench); }

}  // namespace vexa::workbench
