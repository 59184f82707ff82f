#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"

namespace vexa::windows {
namespace {

constexpr int CaptionMargin = 20;  // the caption's distance from both corners together, at 96 dpi
constexpr int BelowCaption = 4;

class FrameView final : public ControlView {
 public:
  FrameView(ViewHost& host, Frame& frame) : ControlView(host, frame) {
    Create(WC_BUTTONW, BS_GROUPBOX, WS_EX_TRANSPARENT);
    FrameView::Sync();
  }

  int MinWidth() const override {
    return host_.Face().WidthOf(ToUtf16(Shown().Caption())) + host_.Face().Scale(CaptionMargin);
  }
  /// Of the top edge with the caption; what stands inside comes on top.
  int HeightFor(int /*width*/) const override {
    return host_.Face().LineHeight() + host_.Face().Scale(BelowCaption);
  }
};

}  // namespace

ControlViewPtr MakeFrameView(ViewHost& host, Frame& frame) {
  return std::make_unique<FrameView>(host, frame);
}

}  // namespace vexa::windows
