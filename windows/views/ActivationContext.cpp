#include "windows/views/ActivationContext.h"

#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

/// The manifest of a DLL stands under 2, that of a program under 1.
constexpr WORD DllManifest = 2;
constexpr WORD ProgramManifest = 1;

HANDLE Create(HMODULE module, WORD manifest) {
  ACTCTXW description{};
  description.cbSize = sizeof description;
  description.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  description.hModule = module;
  description.lpResourceName = MAKEINTRESOURCEW(manifest);
  return CreateActCtxW(&description);
}

}  // namespace

ActivationContext::ActivationContext(HMODULE module) : context_(Create(module, DllManifest)) {
  if (context_ == INVALID_HANDLE_VALUE) context_ = Create(module, ProgramManifest);
}

ActivationContext::~ActivationContext() {
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

HMODULE ActivationContext::CommonControls() const {
  const Scope scope(*this);
  return GetModuleHandleW(L"comctl32.dll");
}

ActivationContext::Scope::Scope(const ActivationContext& context) {
  if (context.context_ == INVALID_HANDLE_VALUE) return;
  active_ = Verified(ActivateActCtx(context.context_, &cookie_), "ActivateActCtx") != FALSE;
}

ActivationContext::Scope::~Scope() {
  if (active_) DeactivateActCtx(0, cookie_);
}

}  // namespace vexa::windows
