#include <algorithm>
#include <string>

#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

constexpr int WidthUnits = 50;
constexpr int Borders = 8;  // above and below the text together, at 96 dpi

class TextBoxView final : public ControlView {
 public:
  TextBoxView(ViewHost& host, TextBox& box) : ControlView(host, box), box_(box) {
    Create(WC_EDITW, ES_AUTOHSCROLL | WS_TABSTOP | (box.Locked() ? ES_READONLY : 0U), WS_EX_CLIENTEDGE);
    Send(Window(), EM_SETLIMITTEXT, 0);  // as much as there can be
    TextBoxView::Sync();
  }

  void Sync() override {
    ControlView::Sync();
    // Up to the first zero is all that the window can show.
    std::wstring wanted = ToUtf16(box_.Text());
    wanted.resize(std::min(wanted.size(), wanted.find(L'\0')));
    if (wanted != shown_) {
      shown_ = wanted;
      Verified(SetWindowTextW(Window(), shown_.c_str()), "SetWindowTextW");
    }
  }

  void SelectContent() override { Send(Window(), EM_SETSEL, 0, -1); }
  bool TakesLetters() const override { return true; }

  int MinWidth() const override { return host_.Face().UnitsX(WidthUnits); }
  int HeightFor(int /*width*/) const override {
    return host_.Face().LineHeight() + host_.Face().Scale(Borders);
  }

  LRESULT Notified(UINT message, WPARAM wParam, LPARAM /*lParam*/) override {
    if (message != WM_COMMAND || HIWORD(wParam) != EN_CHANGE) return 0;
    std::wstring entry = Entry();
    if (entry == shown_) return 0;
    shown_ = std::move(entry);
    host_.Actions().Type(box_, ToUtf8(shown_));
    Resync();  // what the form made of it, or the former text when the entry was refused
    return 0;
  }

 protected:
  // The window's text is what the user has typed, no caption.
  std::wstring WindowText() const override { return {}; }

 private:
  std::wstring Entry() const {
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(Window())), L'\0');
    if (!text.empty()) {
      const int length = GetWindowTextW(Window(), text.data(), static_cast<int>(text.size()) + 1);
      text.resize(static_cast<size_t>(std::max(length, 0)));
    }
    return text;
  }

  TextBox& box_;
  std::wstring shown_;
};

}  // namespace

ControlViewPtr MakeTextBoxView(ViewHost& host, TextBox& box) {
  return std::make_unique<TextBoxView>(host, box);
}

}  // namespace vexa::windows
