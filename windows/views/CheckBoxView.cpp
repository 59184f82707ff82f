#include <algorithm>

#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

constexpr int GlyphAndGap = 22;  // at 96 dpi, generous: themes differ
constexpr int HeightUnits = 10;

class CheckBoxView final : public ControlView {
 public:
  CheckBoxView(ViewHost& host, CheckBox& box) : ControlView(host, box), box_(box) {
    // Not the automatic kind: whether a click changes anything, the form decides.
    Create(WC_BUTTONW, BS_CHECKBOX | WS_TABSTOP);
    CheckBoxView::Sync();
  }

  void Sync() override {
    ControlView::Sync();
    const LRESULT wanted = box_.Checked() ? BST_CHECKED : BST_UNCHECKED;
    if (Send(Window(), BM_GETCHECK) != wanted) Send(Window(), BM_SETCHECK, wanted);
  }

  int MinWidth() const override {
    return host_.Face().WidthOf(ToUtf16(box_.Caption())) + host_.Face().Scale(GlyphAndGap);
  }
  int HeightFor(int /*width*/) const override {
    return std::max(host_.Face().UnitsY(HeightUnits), host_.Face().LineHeight() + host_.Face().Scale(2));
  }

  LRESULT Notified(UINT message, WPARAM wParam, LPARAM /*lParam*/) override {
    if (message == WM_COMMAND && (HIWORD(wParam) == BN_CLICKED || HIWORD(wParam) == BN_DOUBLECLICKED)) {
      host_.Actions().Click(box_);
    }
    return 0;
  }

 private:
  CheckBox& box_;
};

}  // namespace

ControlViewPtr MakeCheckBoxView(ViewHost& host, CheckBox& box) {
  return std::make_unique<CheckBoxView>(host, box);
}

}  // namespace vexa::windows
