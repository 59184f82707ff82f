#include "windows/views/layouts/Layouts.h"

#include <string>

#include "core/Error.h"

namespace vexa::windows {

const Layout& FindLayout(std::string_view form) {
  for (const auto layout :
       {LayoutOfOutlookPropertiesPage, LayoutOfFrmEditFolderset, LayoutOfFrmAbout, LayoutOfFrmTrackingOptions,
        LayoutOfFrmFolders, LayoutOfFrmSharedFolders, LayoutOfFrmAdvanced, LayoutOfFrmCacheAdjust,
        LayoutOfFrmBackgroundAdjust, LayoutOfFrmNotice}) {
    if (layout().form == form) return layout();
  }
  Error error = MakeError(ErrorNumber::InternalError);
  error.Description = "No layout for " + std::string(form);
  throw error;
}

}  // namespace vexa::windows
