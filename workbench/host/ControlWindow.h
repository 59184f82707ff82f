// What the windows of a form and of its controls tell of themselves: the names and pictures that the product
// leaves on them, their kind and state, what stands in their lists and trees. Nothing is changed by asking.
#pragma once

#include <windows.h>
// windows.h first
#include <commctrl.h>

#include <string>
#include <vector>

#include "display/UserActions.h"
#include "workbench/FormState.h"

namespace vexa::workbench {

/// The window of a form within `window`, itself included; null when there is none.
HWND FindFormWindow(HWND window);
/// The name of the form that a window shows; empty for any other window.
std::string FormNameOf(HWND window);
/// The name of the control that a window is; empty for any other window.
std::string ControlNameOf(HWND window);

/// The controls of a form's window, in tab order.
std::vector<HWND> ControlsOf(HWND form);
DWORD StyleOf(HWND window);
ControlKind KindOf(HWND window);
bool TakesFocus(HWND control);
/// Done, or why a user can do nothing with the control.
Outcome Usability(HWND control);
POINT MiddleOf(HWND control);
/// All but what its form knows: whether it has the focus or is the default button.
ControlState ReadControl(HWND control);

HTREEITEM Related(HWND tree, HTREEITEM item, WPARAM relation);
/// The first of all for null.
HTREEITEM FirstBelow(HWND tree, HTREEITEM item);
NodeState ReadNode(HWND tree, HTREEITEM item);
/// A place where the tree sees the wanted part of an item: its text, its box, or what expands it.
POINT PlaceOf(HWND tree, HTREEITEM item, UINT part);

}  // namespace vexa::workbench
