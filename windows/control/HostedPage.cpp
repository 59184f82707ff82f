#include "windows/control/HostedPage.h"

#include "windows/adapters/Adapters.h"
#include "windows/control/Module.h"

namespace vexa::windows {
namespace {

std::string ComponentReport() { return "VexaControls " VEXA_VERSION; }

}  // namespace

HostedPage::HostedPage(SiteSource site)
    : moduleResources_(ModuleHandle(), GetThreadUILanguage()),
      resources_(moduleResources_),
      errorLog_({files_, [this] { return page_.ErrorLogPath(); }, UtcNow, ComponentReport}),
      windows_(ModuleHandle()),
      objects_(MakeObjectFactory()),
      services_{resources_, desktop_, windows_, *objects_, errorLog_},
      page_(services_, std::move(site)) {}

}  // namespace vexa::windows
