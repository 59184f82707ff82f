// How the control's members are entered; shared by its source files.
#pragma once

#include "core/Handlers.h"
#include "windows/adapters/Adapters.h"
#include "windows/control/PageControl.h"

namespace vexa::windows {

template <typename Body>
HRESULT PageControl::Call(const IID& interfaceId, Body&& body) noexcept {
  return Guarded(interfaceId, [&] {
    if (GetCurrentThreadId() != thread_) {
      throw Error(static_cast<int32_t>(RPC_E_WRONG_THREAD),
                  "The options page was called from a thread that it does not belong to", "VexaControls");
    }
    // The call may end with the caller's last reference gone.
    const ComPtr<IUnknown> keep(static_cast<IOutlookPropertiesPage*>(this));
    body();
  });
}

}  // namespace vexa::windows
