// The options page with everything Windows that it needs around it: texts and pictures of the module, the
// desktop, modal windows, the add-in's objects, the error log.
#pragma once

#include <functional>
#include <memory>

#include "core/JsonErrorLog.h"
#include "page/OutlookPropertiesPage.h"
#include "windows/com/Com.h"
#include "windows/desktop/WindowsDesktop.h"

namespace vexa::windows {

class HostedPage {
 public:
  using SiteSource = OutlookPropertiesPage::SiteSource;
  /// Keeps the page alive while a modal dialog of it runs, whatever its container does meanwhile.
  using KeepAlive = std::function<ComPtr<IUnknown>()>;

  HostedPage(SiteSource site, KeepAlive keepAlive);

  OutlookPropertiesPage& Page() { return page_; }

 private:
  WindowsDesktop desktop_;
  ModuleResources moduleResources_;
  Resources resources_;
  WindowsFileAppender files_;
  JsonErrorLog errorLog_;
  std::unique_ptr<ModalWindows> windows_;
  std::unique_ptr<AddinObjectFactory> objects_;
  Services services_;
  OutlookPropertiesPage page_;
};

}  // namespace vexa::windows
