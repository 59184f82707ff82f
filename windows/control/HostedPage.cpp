#include "windows/control/HostedPage.h"

#include "windows/adapters/Adapters.h"
#include "windows/control/Module.h"
#include "windows/views/WindowsModals.h"

namespace vexa::windows {
namespace {

/// A modal dialog outlives a container that lets go of the control while the dialog runs.
class KeepingModals final : public ModalWindows {
 public:
  explicit KeepingModals(HostedPage::KeepAlive keepAlive)
      : windows_(ModuleHandle()), keepAlive_(std::move(keepAlive)) {}
  void ShowModal(Dialog& dialog, Form* owner) override {
    const ComPtr<IUnknown> keep = keepAlive_();
    windows_.ShowModal(dialog, owner);
  }

 private:
  WindowsModals windows_;
  HostedPage::KeepAlive keepAlive_;
};

std::string ComponentReport() { return "VexaControls " VEXA_VERSION; }

}  // namespace

HostedPage::HostedPage(SiteSource site, KeepAlive keepAlive)
    : moduleResources_(ModuleHandle(), GetThreadUILanguage()),
      resources_(moduleResources_),
      errorLog_({files_, [this] { return page_.ErrorLogPath(); }, UtcNow, ComponentReport}),
      windows_(std::make_unique<KeepingModals>(std::move(keepAlive))),
      objects_(MakeObjectFactory()),
      services_{resources_, desktop_, *windows_, *objects_, errorLog_},
      page_(services_, std::move(site)) {}

}  // namespace vexa::windows
