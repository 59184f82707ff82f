// The layout of the workbench's gallery of controls, which the product does not contain.
#pragma once

#include "windows/views/Layout.h"

namespace vexa::windows {

const Layout& LayoutOfGallery();

}  // namespace vexa::windows
