#include "dialogs/frmAbout.h"

namespace vexa {

frmAbout::frmAbout(const Services& services) : Dialog("frmAbout"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::AboutTitle));
  LoadCaptions(services.resources);
  lblVersion.SetCaption(services.resources.LoadString(StringId::AboutVersion, {VEXA_VERSION}));
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdOk);
  cmdOk.OnClick = [this] { Hide(); };
}

void frmAbout::Initialize(RegSettings& theRegSettings) {
  PassOn(Name(), "Initialize", [&] {
    // What the add-in hands over is its own business: an object has nothing to show here.
    lblInfo.SetCaption(AboutInfo.ToObject() == nullptr ? AboutInfo.ToText() : std::string());
    lblInfo.SetVisible(!lblInfo.Caption().empty());
    const bool enterprise = theRegSettings.GetUsingEnterpriseSettings();
    lblEnterprise.SetVisible(enterprise);
    if (enterprise) {
      lblEnterprise.SetCaption(services_.resources.LoadString(StringId::AboutEnterprisePath,
                                                              {theRegSettings.GetEnterpriseSettingsPath()}));
    }
  });
}

}  // namespace vexa
