// The layouts of the product's screens by the names of their forms, one source a screen.
#pragma once

#include <string_view>

#include "windows/views/Layout.h"

namespace vexa::windows {

const Layout& LayoutOfOutlookPropertiesPage();
const Layout& LayoutOfFrmEditFolderset();
const Layout& LayoutOfFrmAbout();

/// Error 51 when the product has no screen of this name.
const Layout& FindLayout(std::string_view form);

}  // namespace vexa::windows
