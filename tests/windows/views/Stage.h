// A window to stand dialogs over, and the services of the screens with real windows and real message boxes.
#pragma once

#include <gtest/gtest.h>
#include <oleacc.h>

#include "tests/windows/Bench.h"
#include "tests/windows/Modals.h"
#include "tests/windows/control/Module.h"
#include "windows/com/Com.h"
#include "windows/desktop/WindowsDesktop.h"
#include "windows/views/WindowsModals.h"
#include "workbench/Gallery.h"
#include "workbench/Stage.h"
#include "workbench/host/GalleryLayout.h"

namespace vexa::windows {

/// The module whose pictures and manifest the windows use.
inline HMODULE TestedModule() {
  static const HMODULE module = LoadLibraryW(TestedModulePath().c_str());
  return module;
}

/// What assistive software asks about a control.
inline ComPtr<IAccessible> AccessibleOf(HWND control) {
  void* found = nullptr;
  if (FAILED(AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                        &found))) {
    return nullptr;
  }
  return ComPtr<IAccessible>::Attach(static_cast<IAccessible*>(found));
}

inline VARIANT Child(LONG number) {
  VARIANT child{};
  child.vt = VT_I4;
  child.lVal = number;
  return child;
}

inline std::string AccessibleNameOf(HWND control) {
  Bstr name;
  const ComPtr<IAccessible> accessible = AccessibleOf(control);
  if (accessible) accessible->get_accName(Child(CHILDID_SELF), name.Receive());
  return name.Text();
}

/// The letter that a caption is marked with; 0 for none.
inline wchar_t MarkOf(const std::wstring& text) {
  for (size_t at = 0; at + 1 < text.size(); ++at) {
    if (text[at] != L'&') continue;
    if (text[at + 1] != L'&') return text[at + 1];
    ++at;
  }
  return 0;
}

class WindowStage : public testing::Test {
 protected:
  WindowStage() { SetActiveWindow(owner_); }
  ~WindowStage() override {
    if (IsWindow(owner_) != FALSE) {
      EXPECT_NE(IsWindowEnabled(owner_), FALSE) << "the owner was left disabled";
      DestroyWindow(owner_);
    }
  }

  static const Layout& LayoutOf(std::string_view form) {
    return form == "Gallery" ? workbench::LayoutOfGallery() : FindLayout(form);
  }

  void Show(workbench::Gallery& gallery) { windows_.ShowModal(gallery, nullptr); }

  Apartment apartment_;
  HWND owner_ = CreateWindowExW(0, L"STATIC", L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 300, 200,
                                nullptr, nullptr, nullptr, nullptr);
  WindowsDesktop desktop_;
  WindowsModals windows_{TestedModule(), LayoutOf};
  workbench::FixedAnswers answers_;
  workbench::Stage stage_{workbench::SmallProfile(), "", 1033, windows_, answers_};
  Services services_{stage_.resources, desktop_, windows_, stage_.workbench.Objects(), stage_.errorLog};
};

}  // namespace vexa::windows
