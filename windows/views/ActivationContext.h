// Gives the windows that this module creates the common controls of version 6, whatever the process it is
// loaded into uses: the module's own manifest names them. Whoever creates windows owns one of these and
// activates it around the creation.
#pragma once

#include <windows.h>

namespace vexa::windows {

class ActivationContext {
 public:
  /// Reads the manifest of `module`. Without one, scopes do nothing and the process decides.
  explicit ActivationContext(HMODULE module);
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;
  ~ActivationContext();

  /// Active from construction to destruction, on this thread.
  class Scope {
   public:
    explicit Scope(const ActivationContext& context);
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope();

   private:
    bool active_ = false;
    ULONG_PTR cookie_ = 0;
  };

  /// The loaded library that draws the windows created in a scope; null before there is one.
  HMODULE CommonControls() const;

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
};

}  // namespace vexa::windows
