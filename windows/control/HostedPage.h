// The options page with everything Windows that it needs around it: texts and pictures of the module, the
// desktop, modal windows, the add-in's objects, the error log.
#pragma once

#include <memory>

#include "core/JsonErrorLog.h"
#include "page/OutlookPropertiesPage.h"
#include "windows/desktop/WindowsDesktop.h"
#include "windows/views/WindowsModals.h"

namespace vexa::windows {

class HostedPage {
 public:
  using SiteSource = OutlookPropertiesPage::SiteSource;

  explicit HostedPage(SiteSource site);

  OutlookPropertiesPage& Page() { return page_; }

 private:
  WindowsDesktop desktop_;
  ModuleResources moduleResources_;
  Resources resources_;
  WindowsFileAppender files_;
  JsonErrorLog errorLog_;
  WindowsModals windows_;
  std::unique_ptr<AddinObjectFactory> objects_;
  Services services_;
  OutlookPropertiesPage page_;
};

}  // namespace vexa::windows
