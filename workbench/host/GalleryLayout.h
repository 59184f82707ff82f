// The layout of the gallery of controls, which the product does not contain.
#pragma once

#include "windows/views/Layout.h"

namespace vexa::workbench {

const windows::Layout& LayoutOfGallery();

}  // namespace vexa::workbench
