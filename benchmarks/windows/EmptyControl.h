// The least that a container takes for a control: an object in a library of its own that activates in place
// and shows an empty window. What the options page costs is measured against it.
#pragma once

#include <windows.h>
// windows.h first
#include <ole2.h>

namespace vexa::windows {

/// The library's one export, by the name "MakeEmptyControl". The caller owns the reference.
using MakeEmptyControlFunction = IUnknown*();

}  // namespace vexa::windows
