#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"
#include "windows/views/Handles.h"
#include "windows/views/LinksAccessible.h"

namespace vexa::windows {
namespace {

constexpr const wchar_t* MarkupProperty = L"VexaMarkup";
constexpr int HandCursor = 2200;  // the module's own
constexpr int BorderPadding = 3;  // at 96 dpi
constexpr int PictureGap = 5;

/// The message font in the styles that words have, each made when it is first needed.
class StyledFonts {
 public:
  explicit StyledFonts(HFONT plain) : dc_(Verified(CreateCompatibleDC(nullptr), "CreateCompatibleDC")) {
    Verified(GetObjectW(plain, sizeof plain_, &plain_), "GetObjectW");
  }

  HFONT Find(const TextStyle& style) {
    const bool hot = style.hotSpot != TextStyle::NoHotSpot;
    FontHandle& font = fonts_[(style.bold ? 1U : 0U) + (style.italic ? 2U : 0U) + (hot ? 4U : 0U)];
    if (!font) {
      LOGFONTW description = plain_;
      if (style.bold) description.lfWeight = FW_BOLD;
      description.lfItalic = style.italic ? TRUE : FALSE;
      description.lfUnderline = hot ? TRUE : FALSE;
      font = FontHandle(Verified(CreateFontIndirectW(&description), "CreateFontIndirectW"));
    }
    return font.Get();
  }

  int WidthOf(const std::wstring& text, const TextStyle& style) {
    const HGDIOBJ former = SelectObject(dc_.Get(), Find(style));
    SIZE size{};
    GetTextExtentPoint32W(dc_.Get(), text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(dc_.Get(), former);
    return static_cast<int>(size.cx);
  }

 private:
  MemoryDc dc_;
  LOGFONTW plain_{};
  std::array<FontHandle, 8> fonts_;
};

int Brightness(COLORREF color) {
  return (299 * GetRValue(color) + 587 * GetGValue(color) + 114 * GetBValue(color)) / 1000;
}

/// The system's colour of links, where it can be read on the colour of dialogs.
COLORREF LinkColor() {
  constexpr int readable = 100;
  const COLORREF link = GetSysColor(COLOR_HOTLIGHT);
  const int contrast = Brightness(link) - Brightness(GetSysColor(COLOR_3DFACE));
  return contrast < readable && contrast > -readable ? GetSysColor(COLOR_BTNTEXT) : link;
}

/// The words stand in lines; the form's label knows nothing of pixels.
class ExtLabelView final : public ControlView, private LinkedText {
 public:
  ExtLabelView(ViewHost& host, ExtLabel& label) : ControlView(host, label), label_(label) {
    Create(WC_STATICW, SS_OWNERDRAW | SS_NOTIFY);
    fonts_.emplace(host.Face().Font());
    ExtLabelView::Sync();
  }
  ~ExtLabelView() override {
    RemovePropW(Window(), MarkupProperty);
    if (accessible_) accessible_->Disconnect();
  }

  void Sync() override {
    ControlView::Sync();
    // What is read aloud has no tags; those who drive the window want them.
    SetPropW(Window(), MarkupProperty, const_cast<char*>(label_.Caption().c_str()));
    const LONG_PTR style = GetWindowLongPtrW(Window(), GWL_STYLE) & ~LONG_PTR{WS_TABSTOP};
    SetWindowLongPtrW(Window(), GWL_STYLE, style | (label_.TakesFocus() ? WS_TABSTOP : 0));
    InvalidateRect(Window(), nullptr, FALSE);
    if (shownHotSpot_ == label_.CurrentHotSpot()) return;
    shownHotSpot_ = label_.CurrentHotSpot();
    if (GetFocus() == Window())
      NotifyWinEvent(EVENT_OBJECT_FOCUS, Window(), OBJID_CLIENT, LONG{shownHotSpot_} + 1);
  }

  void SyncFont() override {
    ControlView::SyncFont();
    fonts_.emplace(host_.Face().Font());
  }

  int MinWidth() const override {
    int width = 0;
    for (const Line& line : Lines(INT_MAX)) width = std::max(width, line.width);
    return width + Margins();
  }
  int HeightFor(int width) const override {
    const auto lines = static_cast<int>(Lines(label_.Look().wordWrap ? width - Margins() : INT_MAX).size());
    const int text = std::max(lines, 1) * host_.Face().LineHeight();
    return std::max(text, Icon() == nullptr ? 0 : host_.Icons().Size()) + 2 * Padding();
  }
  int HeightForLines(int lines) const override { return ControlView::HeightForLines(lines) + 2 * Padding(); }

  bool KeyDown(int key) override {
    if (key != VK_SPACE) return ControlView::KeyDown(key);
    host_.Actions().Press(key);
    return true;
  }

  LRESULT Notified(UINT message, WPARAM /*wParam*/, LPARAM lParam) override {
    if (message != WM_DRAWITEM) return 0;
    Draw(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)->hDC);
    return TRUE;
  }

 protected:
  std::wstring WindowText() const override { return ToUtf16(label_.Text().PlainText()); }

  bool Intercept(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
    switch (message) {
      case WM_GETOBJECT:
        if (static_cast<LONG>(lParam) != OBJID_CLIENT) break;
        if (!accessible_) accessible_ = ComPtr<LinksAccessible>::Attach(new LinksAccessible(*this));
        result = accessible_->Answer(wParam);
        return true;
      case WM_SETFOCUS:
      case WM_KILLFOCUS:
        InvalidateRect(Window(), nullptr, FALSE);
        break;
      case WM_SETCURSOR:
        if (LOWORD(lParam) != HTCLIENT || !IsOverHotSpot()) break;
        SetCursor(LoadCursorW(host_.Module(), MAKEINTRESOURCEW(HandCursor)));
        result = TRUE;
        return true;
      case WM_LBUTTONUP:
        return Clicked(lParam, ButtonLeft);
      case WM_RBUTTONUP:
        return Clicked(lParam, ButtonRight);
      case WM_MBUTTONUP:
        return Clicked(lParam, ButtonMiddle);
      default:
        break;
    }
    return ControlView::Intercept(message, wParam, lParam, result);
  }

 private:
  // LinkedText
  HWND TextWindow() const override { return Window(); }
  std::string WholeText() const override { return label_.Text().PlainText(); }
  int LinkCount() const override { return label_.Text().HotSpotCount(); }
  std::string LinkText(int link) const override { return label_.Text().HotSpotText(link); }
  RECT LinkArea(int link) const override {
    RECT around{};
    for (const PlacedWord& word : PlaceWords()) {
      if (label_.Text().Words()[word.word].style.hotSpot == link) UnionRect(&around, &around, &word.area);
    }
    return around;
  }
  int CurrentLink() const override { return label_.CurrentHotSpot(); }
  // These do not come by a message to the window, which would keep the form.
  void ReachLink(int link) override {
    const std::shared_ptr<void> keep = host_.KeepAlive();
    host_.Guard([&] {
      if (host_.Actions().Focus(label_) != Outcome::Done) return;
      label_.SetCurrentHotSpot(link);
      host_.TakeFocus();
    });
  }
  void FollowLink(int link) override {
    const std::shared_ptr<void> keep = host_.KeepAlive();
    // Later: whoever asks from another process must not wait for what the click opens.
    ReachLink(link);
    if (GetFocus() == Window()) PostMessageW(Window(), WM_KEYDOWN, VK_SPACE, 1);
  }

  struct Piece {
    size_t word;
    int x;
    int width;
  };
  struct Line {
    std::vector<Piece> pieces;
    int width = 0;
  };
  struct PlacedWord {
    size_t word;
    RECT area;
  };

  static const TextStyle& Plain() {
    static const TextStyle plain;
    return plain;
  }

  HICON Icon() const {
    return label_.Picture().kind == Picture::Kind::Icon ? host_.Icons().Find(label_.Picture().id) : nullptr;
  }
  int Padding() const {
    return label_.Look().border == ExtLabel::Border::None ? 0 : host_.Face().Scale(BorderPadding);
  }
  int PictureWidth() const {
    return Icon() == nullptr ? 0 : host_.Icons().Size() + host_.Face().Scale(PictureGap);
  }
  int Margins() const { return 2 * Padding() + PictureWidth(); }

  /// The words broken into lines of at most `width`, where one word alone may be wider.
  std::vector<Line> Lines(int width) const {
    std::vector<Line> lines(1);
    const int blank = fonts_->WidthOf(L" ", Plain());
    const std::vector<TextWord>& words = label_.Text().Words();
    for (size_t index = 0; index < words.size(); ++index) {
      const TextWord& word = words[index];
      for (int32_t line = 0; line < word.lineBreaks; ++line) lines.emplace_back();
      const int wide = fonts_->WidthOf(ToUtf16(word.text), word.style);
      const int gap = lines.back().pieces.empty() ? 0 : word.blanks * blank;
      const bool breaks =
          word.blanks > 0 && !lines.back().pieces.empty() && lines.back().width + gap > width - wide;
      if (breaks) lines.emplace_back();
      Line& line = lines.back();
      const int x = breaks ? 0 : line.width + gap;
      line.pieces.push_back({index, x, wide});
      line.width = x + wide;
    }
    return lines;
  }

  /// Where every word stands in the window.
  std::vector<PlacedWord> PlaceWords() const {
    RECT client{};
    GetClientRect(Window(), &client);
    const ExtLabel::Appearance& look = label_.Look();
    const int left = Padding() + PictureWidth();
    const int width = static_cast<int>(client.right) - left - Padding();
    const int height = static_cast<int>(client.bottom) - 2 * Padding();
    const std::vector<Line> lines = Lines(look.wordWrap ? width : INT_MAX);
    const int lineHeight = host_.Face().LineHeight();
    const int spare = height - static_cast<int>(lines.size()) * lineHeight;
    int y = Padding();
    if (look.verticalAlignment == ExtLabel::VerticalAlignment::Middle) y += spare / 2;
    if (look.verticalAlignment == ExtLabel::VerticalAlignment::Bottom) y += spare;
    std::vector<PlacedWord> placed;
    for (const Line& line : lines) {
      int x = left;
      if (look.alignment == ExtLabel::Alignment::Center) x += (width - line.width) / 2;
      if (look.alignment == ExtLabel::Alignment::Right) x += width - line.width;
      for (const Piece& piece : line.pieces) {
        placed.push_back({piece.word, {x + piece.x, y, x + piece.x + piece.width, y + lineHeight}});
      }
      y += lineHeight;
    }
    return placed;
  }

  std::optional<size_t> WordAt(POINT at) const {
    for (const PlacedWord& word : PlaceWords()) {
      if (PtInRect(&word.area, at) != FALSE) return word.word;
    }
    return std::nullopt;
  }

  bool IsOverHotSpot() const {
    POINT at{};
    if (!label_.IsUsable() || GetCursorPos(&at) == FALSE || ScreenToClient(Window(), &at) == FALSE)
      return false;
    const std::optional<size_t> word = WordAt(at);
    return word && label_.Text().Words()[*word].style.hotSpot != TextStyle::NoHotSpot;
  }

  bool Clicked(LPARAM position, int button) {
    const std::optional<size_t> word =
        WordAt({static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))});
    if (!word) return false;
    const int shift = (GetKeyState(VK_SHIFT) < 0 ? ShiftKey : 0) |
                      (GetKeyState(VK_CONTROL) < 0 ? ShiftCtrl : 0) |
                      (GetKeyState(VK_MENU) < 0 ? ShiftAlt : 0);
    host_.Actions().ClickWord(label_, *word, button, shift);
    return true;
  }

  void Draw(HDC dc) const {
    RECT client{};
    GetClientRect(Window(), &client);
    FillRect(dc, &client, GetSysColorBrush(COLOR_3DFACE));
    if (label_.Look().border == ExtLabel::Border::Single) DrawEdge(dc, &client, EDGE_ETCHED, BF_RECT);
    if (const HICON icon = Icon()) {
      const int size = host_.Icons().Size();
      DrawIconEx(dc, Padding(), (static_cast<int>(client.bottom) - size) / 2, icon, size, size, 0, nullptr,
                 DI_NORMAL);
    }
    SetBkMode(dc, TRANSPARENT);
    const HGDIOBJ former = GetCurrentObject(dc, OBJ_FONT);
    const std::vector<PlacedWord> placed = PlaceWords();
    for (size_t index = 0; index < placed.size(); ++index) DrawWord(dc, placed, index);
    SelectObject(dc, former);
    if (GetFocus() == Window()) MarkCurrentHotSpot(dc, placed);
  }

  void DrawWord(HDC dc, const std::vector<PlacedWord>& placed, size_t index) const {
    const std::vector<TextWord>& words = label_.Text().Words();
    const TextWord& word = words[placed[index].word];
    const bool hot = word.style.hotSpot != TextStyle::NoHotSpot;
    RECT area = placed[index].area;
    // The line under a hot spot goes on below the blanks between its words.
    if (hot && index + 1 < placed.size() && placed[index + 1].area.top == area.top &&
        words[placed[index + 1].word].style == word.style) {
      area.right = placed[index + 1].area.left;
    }
    SelectObject(dc, fonts_->Find(word.style));
    SetTextColor(dc, !label_.IsUsable() ? GetSysColor(COLOR_GRAYTEXT)
                     : hot              ? LinkColor()
                                        : GetSysColor(COLOR_BTNTEXT));
    std::wstring text = ToUtf16(word.text);
    if (area.right > placed[index].area.right) text.push_back(L' ');
    ExtTextOutW(dc, static_cast<int>(area.left), static_cast<int>(area.top), ETO_CLIPPED, &area, text.c_str(),
                static_cast<UINT>(text.size()), nullptr);
  }

  void MarkCurrentHotSpot(HDC dc, const std::vector<PlacedWord>& placed) const {
    RECT around{};
    const auto draw = [&] {
      if (IsRectEmpty(&around) == FALSE) DrawFocusRect(dc, &around);
      around = {};
    };
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    for (const PlacedWord& word : placed) {
      if (label_.Text().Words()[word.word].style.hotSpot != label_.CurrentHotSpot()) continue;
      if (around.top != word.area.top) draw();
      UnionRect(&around, &around, &word.area);
    }
    draw();
  }

  ExtLabel& label_;
  mutable std::optional<StyledFonts> fonts_;
  ComPtr<LinksAccessible> accessible_;
  int32_t shownHotSpot_ = 0;
};

}  // namespace

ControlViewPtr MakeExtLabelView(ViewHost& host, ExtLabel& label) {
  return std::make_unique<ExtLabelView>(host, label);
}

}  // namespace vexa::windows
