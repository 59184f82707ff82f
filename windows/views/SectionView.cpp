#include <algorithm>

#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

constexpr int CaptionPadding = 3;  // behind the text, at 96 dpi
constexpr int ShortestRule = 40;

/// The section lays itself out in its own units; the view measures for it and draws what comes out.
class SectionView final : public ControlView {
 public:
  SectionView(ViewHost& host, OptionsSection& section) : ControlView(host, section), section_(section) {
    Create(WC_STATICW, SS_OWNERDRAW);
    Measure();
    SectionView::Sync();
  }
  ~SectionView() override { section_.SetMeasure(nullptr); }

  void Sync() override {
    ControlView::Sync();
    InvalidateRect(Window(), nullptr, FALSE);
  }

  void SyncFont() override {
    ControlView::SyncFont();
    Measure();
  }

  void Place(const RECT& area) override {
    ControlView::Place(area);
    section_.Resize(host_.Face().ToTwips(static_cast<int>(area.right - area.left)));
  }

  int MinWidth() const override {
    const Typeface& face = host_.Face();
    return face.FromTwips(section_.CaptionLeft()) + CaptionWidth(section_.Caption()) +
           face.Scale(ShortestRule);
  }
  int HeightFor(int /*width*/) const override {
    return std::max(host_.Icons().Size(), host_.Face().LineHeight());
  }

  LRESULT Notified(UINT message, WPARAM /*wParam*/, LPARAM lParam) override {
    if (message != WM_DRAWITEM) return 0;
    Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    return TRUE;
  }

 protected:
  bool Intercept(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
    if (message == WM_UPDATEUISTATE) InvalidateRect(Window(), nullptr, FALSE);
    return ControlView::Intercept(message, wParam, lParam, result);
  }

 private:
  int CaptionWidth(const std::string& caption) const {
    return host_.Face().WidthOf(ToUtf16(caption)) + host_.Face().Scale(CaptionPadding);
  }

  void Measure() {
    section_.SetMeasure(
        [this](const std::string& caption) { return host_.Face().ToTwips(CaptionWidth(caption)); });
  }

  HICON Icon() const {
    if (section_.Picture().kind == Picture::Kind::Icon) return host_.Icons().Find(section_.Picture().id);
    const Box* box = FindBox(host_.ShownLayout().content, section_.Name());
    return box == nullptr ? nullptr : host_.Icons().Find(box->picture);
  }

  void Draw(const DRAWITEMSTRUCT& item) const {
    const Typeface& face = host_.Face();
    const HDC dc = item.hDC;
    const LONG height = item.rcItem.bottom;
    FillRect(dc, &item.rcItem, GetSysColorBrush(COLOR_3DFACE));
    if (const HICON icon = Icon()) {
      const int size = host_.Icons().Size();
      DrawIconEx(dc, 0, (static_cast<int>(height) - size) / 2, icon, size, size, 0, nullptr, DI_NORMAL);
    }
    const LONG captionTop = (height - face.LineHeight()) / 2;
    RECT caption{face.FromTwips(section_.CaptionLeft()), captionTop, item.rcItem.right,
                 captionTop + face.LineHeight()};
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(section_.IsUsable() ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    const std::wstring text = host_.Keys().MarkedCaption(section_);
    const bool hidden = (Send(Window(), WM_QUERYUISTATE) & UISF_HIDEACCEL) != 0;
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &caption,
              DT_SINGLELINE | (hidden ? DT_HIDEPREFIX : 0U));
    DrawRule(dc, captionTop, section_.Shadow(), 0, COLOR_3DSHADOW);
    DrawRule(dc, captionTop, section_.Shadow(), 1, COLOR_3DHIGHLIGHT);
  }

  /// The rule stands where the section says, in relation to the height of the caption; its two lines touch.
  void DrawRule(HDC dc, LONG captionTop, const OptionsSection::Line& line, int below, int color) const {
    const Typeface& face = host_.Face();
    const int thickness = std::max(1, face.Scale(1));
    const LONG top =
        captionTop + MulDiv(face.LineHeight(), line.y, section_.CaptionHeight()) + below * thickness;
    const RECT rule{face.FromTwips(line.x1), top, face.FromTwips(line.x2), top + thickness};
    if (rule.right > rule.left) FillRect(dc, &rule, GetSysColorBrush(color));
  }

  OptionsSection& section_;
};

}  // namespace

ControlViewPtr MakeSectionView(ViewHost& host, OptionsSection& section) {
  return std::make_unique<SectionView>(host, section);
}

}  // namespace vexa::windows
