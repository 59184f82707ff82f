// The machine that the module finds itself on in a script: the profile's drives, names and registry, its
// language, the shell as the script answers for it. The module's own code runs as it does anywhere; what it
// imports from Windows leads here, so that a transcript does not depend on the machine that made it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "workbench/Stage.h"

namespace vexa::workbench {

class ProfileMachine {
 public:
  /// Stands in for Windows in this module while it lives; there is one at a time. The module stays loaded.
  ProfileMachine(Stage& stage, const std::wstring& module);
  ProfileMachine(const ProfileMachine&) = delete;
  ProfileMachine& operator=(const ProfileMachine&) = delete;
  ~ProfileMachine();

  HMODULE Module() const { return module_; }

 private:
  struct Import {
    void** place;
    void* real;
  };

  void Restore();

  HMODULE module_;
  std::vector<Import> replaced_;
};

}  // namespace vexa::workbench
