#include "dialogs/frmAbout.h"

namespace vexa {
namespace {

// Comes with Windows; the shell finds it without a folder.
constexpr const char* SystemInfoTool = "msinfo32.exe";

}  // namespace

frmAbout::frmAbout(const Services& services) : Dialog("frmAbout"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::AboutTitle));
  LoadCaptions(services.resources);
  lblVersion.SetCaption(services.resources.LoadString(StringId::AboutVersion, {VEXA_VERSION}));
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdOk);
  cmdSysInfo.OnClick = Handler(services_, *this, "cmdSysInfo_Click", &frmAbout::ShowSystemInfo);
  cmdOk.OnClick = [this] { End(false); };
}

void frmAbout::Initialize(const RegSettingsRef& theRegSettings) {
  PassOn(Name(), "Initialize", [&] {
    const RegSettingsRef own = Share(theRegSettings);
    // What the add-in hands over is its own business: an object has nothing to show here.
    lblInfo.SetCaption(AboutInfo.ToObject() == nullptr ? AboutInfo.ToText() : std::string());
    lblInfo.SetVisible(!lblInfo.Caption().empty());
    const bool enterprise = own->GetUsingEnterpriseSettings();
    lblEnterprise.SetVisible(enterprise);
    if (enterprise) {
      lblEnterprise.SetCaption(
          services_.resources.LoadString(StringId::AboutEnterprisePath, {own->GetEnterpriseSettingsPath()}));
    }
  });
}

void frmAbout::ShowSystemInfo() {
  try {
    ShellOpen(services_.desktop, SystemInfoTool);
  } catch (...) {
    CachedError record;
    record.SetTo(CurrentError(), Name(), "cmdSysInfo_Click");
    record.Log(services_.errorLog);
    services_.Tell(StringId::SystemInfoNotStarted, MessageIcon::Critical, StringId::ProductName);
  }
}

}  // namespace vexa
