#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"

namespace vexa::windows {
namespace {

class LabelView final : public ControlView {
 public:
  LabelView(ViewHost& host, Label& label) : ControlView(host, label) {
    const Box* const box = FindBox(host.ShownLayout().content, label.Name());
    Create(WC_STATICW, box != nullptr && box->centred ? SS_CENTER : SS_LEFT);
    LabelView::Sync();
  }

  int MinWidth() const override { return host_.Face().WidthOf(ToUtf16(Shown().Caption())); }
  int HeightFor(int width) const override { return host_.Face().HeightOf(ToUtf16(Shown().Caption()), width); }
};

}  // namespace

ControlViewPtr MakeLabelView(ViewHost& host, Label& label) {
  return std::make_unique<LabelView>(host, label);
}

}  // namespace vexa::windows
