#include <algorithm>
#include <utility>

#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

constexpr int MinimumWidth = 75;  // at 96 dpi
constexpr int MinimumUnits = 50;
constexpr int HeightUnits = 14;
constexpr int TextPadding = 7;  // at either side, at 96 dpi
constexpr int PictureGap = 5;

class ButtonView final : public ControlView {
 public:
  ButtonView(ViewHost& host, Button& button) : ControlView(host, button), button_(button) {
    Create(WC_BUTTONW, BS_PUSHBUTTON | WS_TABSTOP);
    ButtonView::Sync();
  }

  void Sync() override {
    ControlView::Sync();
    const bool isDefault = host_.DrawnDefault() == &button_;
    if (isDefault != drawnDefault_) {
      drawnDefault_ = isDefault;
      Send(Window(), BM_SETSTYLE, isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
    }
    HICON icon =
        button_.Picture().kind == Picture::Kind::Icon ? host_.Icons().Find(button_.Picture().id) : nullptr;
    if (icon != icon_) ShowIcon(icon);
  }

  int MinWidth() const override {
    const Typeface& face = host_.Face();
    int content = face.WidthOf(ToUtf16(button_.Caption())) + 2 * face.Scale(TextPadding);
    if (icon_ != nullptr) content += host_.Icons().Size() + face.Scale(PictureGap);
    return std::max({content, face.Scale(MinimumWidth), face.UnitsX(MinimumUnits)});
  }

  int HeightFor(int /*width*/) const override {
    return std::max(host_.Face().UnitsY(HeightUnits), host_.Face().LineHeight() + host_.Face().Scale(10));
  }

  LRESULT Notified(UINT message, WPARAM wParam, LPARAM /*lParam*/) override {
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED) host_.Actions().Click(button_);
    return 0;
  }

 protected:
  bool Intercept(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
    if (IsCancel() && message == WM_SETFOCUS && pressing_) {
      // Cancel takes no focus before it acts, so that no entry is validated; the form is not told.
      result = Default(message, wParam, lParam);
      return true;
    }
    if (message == WM_LBUTTONUP || message == WM_CAPTURECHANGED) {
      result = Default(message, wParam, lParam);
      if (std::exchange(pressing_, false)) host_.SettleFocus();
      return true;
    }
    return ControlView::Intercept(message, wParam, lParam, result);
  }

  bool ReachByMouse() override {
    if (!IsCancel()) return ControlView::ReachByMouse();
    pressing_ = true;
    return true;
  }

 private:
  /// At the left, as a list of one image: an icon by itself would touch the text.
  void ShowIcon(HICON icon) {
    ImageListHandle images;
    if (icon != nullptr) {
      const int size = host_.Icons().Size();
      images = ImageListHandle(
          Verified(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 1, 1), "ImageList_Create"));
      if (ImageList_ReplaceIcon(images.Get(), -1, icon) < 0)
        ThrowSystemError(GetLastError(), "ImageList_ReplaceIcon");
    }
    BUTTON_IMAGELIST shown{};
    shown.himl = images.Get();
    shown.margin.left = host_.Face().Scale(TextPadding);
    shown.uAlign = BUTTON_IMAGELIST_ALIGN_LEFT;
    Send(Window(), BCM_SETIMAGELIST, 0, &shown);
    images_ = std::move(images);
    icon_ = icon;
  }

  bool IsCancel() const { return host_.Shown().CancelButton() == &button_; }

  Button& button_;
  bool drawnDefault_ = false;
  bool pressing_ = false;
  HICON icon_ = nullptr;
  ImageListHandle images_;
};

}  // namespace

ControlViewPtr MakeButtonView(ViewHost& host, Button& button) {
  return std::make_unique<ButtonView>(host, button);
}

}  // namespace vexa::windows
