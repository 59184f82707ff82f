// Shows dialogs as modal windows over the window of the form that opens them. That window is usable again
// when the dialog ends, in whatever way it does.
#pragma once

#include <windows.h>

#include <string_view>

#include "display/Form.h"
#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

class WindowsModals final : public ModalWindows {
 public:
  using LayoutSource = const Layout& (*)(std::string_view form);

  /// Pictures and manifest come from `module`.
  explicit WindowsModals(HMODULE module, LayoutSource layouts = FindLayout)
      : module_(module), layouts_(layouts) {}

  /// What a handler of the dialog throws comes out here, once the dialog is gone.
  void ShowModal(Dialog& dialog, Form* owner) override;

 private:
  HMODULE module_;
  LayoutSource layouts_;
};

}  // namespace vexa::windows
