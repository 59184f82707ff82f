#include "windows/control/HostedPage.h"

#include "core/Paths.h"
#include "windows/adapters/Adapters.h"
#include "windows/com/Text.h"
#include "windows/control/Module.h"

namespace vexa::windows {
namespace {

std::vector<Component> Components() {
  WindowsDesktop desktop;
  std::vector<Component> components{{"VexaControls", ToUtf8(ModulePath()), {}}};
  // Whoever loaded the module, and what draws its controls.
  for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"comctl32.dll", L"ole32.dll"}) {
    std::wstring path(MAX_PATH, L'\0');
    const HMODULE module = GetModuleHandleW(name);
    if (module == nullptr) continue;
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    const std::string file = ToUtf8(path);
    components.push_back({std::string(FileNamePart(file)), file, {}});
  }
  return WithFileVersions(std::move(components), desktop);
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
      services_{resources_, desktop_, windows_, *objects_, errorLog_},
      page_(services_, std::move(site)) {}

}  // namespace vexa::windows
