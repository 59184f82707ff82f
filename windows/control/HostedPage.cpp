#include "windows/control/HostedPage.h"

#include "core/Handlers.h"
#include "core/Paths.h"
#include "windows/adapters/Adapters.h"
#include "windows/com/Text.h"
#include "windows/control/Module.h"
#include "windows/views/ActivationContext.h"

namespace vexa::windows {
namespace {

constexpr const char* ConfigurationKey = "SOFTWARE\\Tolvane\\Vexa";

/// The module, the add-in, the program that has loaded both, and what draws the controls.
std::vector<Component> Components() {
  WindowsDesktop desktop;
  std::vector<Component> components{{"VexaControls", ToUtf8(ModulePath()), {}},
                                    {"VexaAddin", ToUtf8(ServerFileOf(L"VexaAddin.RegSettings")), {}}};
  const HMODULE commonControls = ActivationContext(ModuleHandle()).CommonControls();
  for (const HMODULE module : {GetModuleHandleW(nullptr), commonControls, GetModuleHandleW(L"ole32.dll")}) {
    if (module == nullptr) continue;
    const std::string file = ToUtf8(FileOf(module));
    components.push_back({std::string(FileNamePart(file)), file, {}});
  }
  return WithFileVersions(std::move(components), desktop);
}

/// Where error reports are sent: what is configured for the machine, else for the user, else the maker's.
std::string SupportAddress(Registry& registry) {
  for (const RegistryRoot root : {RegistryRoot::LocalMachine, RegistryRoot::CurrentUser}) {
    std::string address;
    IgnoreErrors([&] {
      const std::optional<Variant> value = registry.ReadRegistry(root, ConfigurationKey, "SupportAddress");
      if (value) address = value->ToText();
    });
    if (!address.empty()) return address;
  }
  return DefaultSupportAddress;
}

/// One report for all pages of the module: a session is as long as the module is loaded.
ComponentReport& SessionComponents() {
  static ComponentReport report(Components);
  return report;
}

}  // namespace

HostedPage::HostedPage(SiteSource site)
    : moduleResources_(ModuleHandle(), GetThreadUILanguage()),
      resources_(moduleResources_),
      errorLog_({files_, [this] { return page_.ErrorLogPath(); }, UtcNow, SessionComponents()}),
      windows_(ModuleHandle()),
      objects_(MakeObjectFactory()),
      services_{resources_, desktop_, windows_, *objects_, errorLog_, SupportAddress(desktop_)},
      page_(services_, std::move(site)) {}

}  // namespace vexa::windows
