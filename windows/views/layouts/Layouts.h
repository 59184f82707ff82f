// The layouts of the product's screens by the names of their forms, one source a screen.
#pragma once

#include <string_view>

#include "windows/views/Layout.h"

namespace vexa::windows {

const Layout& LayoutOfOutlookPropertiesPage();
const Layout& LayoutOfFrmEditFolderset();
const Layout& LayoutOfFrmAbout();
const Layout& LayoutOfFrmTrackingOptions();
const Layout& LayoutOfFrmFolders();
const Layout& LayoutOfFrmSharedFolders();
const Layout& LayoutOfFrmAdvanced();
const Layout& LayoutOfFrmCacheAdjust();
const Layout& LayoutOfFrmBackgroundAdjust();
const Layout& LayoutOfFrmNotice();

/// Error 51 when the product has no screen of this name.
const Layout& FindLayout(std::string_view form);

}  // namespace vexa::windows
