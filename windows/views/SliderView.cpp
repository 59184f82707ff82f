#include <algorithm>

#include "windows/views/ControlViews.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

constexpr int WidthUnits = 80;
constexpr int MostTicks = 16;
constexpr int Height = 30;  // at 96 dpi

class SliderView final : public ControlView {
 public:
  SliderView(ViewHost& host, Slider& slider) : ControlView(host, slider), slider_(slider) {
    Create(TRACKBAR_CLASSW, TBS_HORZ | TBS_AUTOTICKS | WS_TABSTOP);
    Send(Window(), TBM_SETRANGEMIN, FALSE, slider.Minimum());
    Send(Window(), TBM_SETRANGEMAX, TRUE, slider.Maximum());
    const int range = slider.Maximum() - slider.Minimum();
    Send(Window(), TBM_SETTICFREQ, std::max(range / MostTicks, 1));
    Send(Window(), TBM_SETLINESIZE, 0, 1);
    Send(Window(), TBM_SETPAGESIZE, 0, 1);
    SliderView::Sync();
  }

  void Sync() override {
    ControlView::Sync();
    if (Send(Window(), TBM_GETPOS) != slider_.Position()) {
      Send(Window(), TBM_SETPOS, TRUE, slider_.Position());
    }
  }

  int MinWidth() const override { return host_.Face().UnitsX(WidthUnits); }
  int HeightFor(int /*width*/) const override { return host_.Face().Scale(Height); }

  bool KeyDown(int key) override {
    if (key == VK_PRIOR || key == VK_NEXT || key == VK_HOME || key == VK_END) return false;
    return ControlView::KeyDown(key);
  }

  LRESULT Notified(UINT message, WPARAM wParam, LPARAM /*lParam*/) override {
    if (message != WM_HSCROLL || LOWORD(wParam) == TB_ENDTRACK) return 0;
    Slide(static_cast<int32_t>(Send(Window(), TBM_GETPOS)));
    return 0;
  }

 protected:
  std::wstring WindowText() const override { return AccessibleName(); }

  bool Intercept(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
    if (message != WM_MOUSEWHEEL) return ControlView::Intercept(message, wParam, lParam, result);
    // The window itself would move by as many positions as a text scrolls lines. Fine wheels send parts of
    // a notch.
    turned_ += GET_WHEEL_DELTA_WPARAM(wParam);
    const int notches = turned_ / WHEEL_DELTA;
    turned_ %= WHEEL_DELTA;
    if (notches != 0) Slide(slider_.Position() - notches);
    return true;
  }

 private:
  void Slide(int32_t position) {
    host_.Actions().Slide(slider_, position);
    Resync();  // back, when it was refused
  }

  Slider& slider_;
  int turned_ = 0;  // the wheel, since the last whole notch
};

}  // namespace

ControlViewPtr MakeSliderView(ViewHost& host, Slider& slider) {
  return std::make_unique<SliderView>(host, slider);
}

}  // namespace vexa::windows
