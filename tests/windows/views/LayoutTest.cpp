// Every screen that the user can open, in every language and at three resolutions: no text is wider than the
// control that shows it, no control covers another, no access key is given twice, and what takes the focus
// has a name for screen readers. The screens are found by pressing every button, so that new ones are
// measured without being named here.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <vector>

#include "resources/CompiledResources.h"
#include "tests/windows/views/Stage.h"
#include "windows/views/FormWindow.h"
#include "windows/views/Handles.h"
#include "workbench/EveryScreen.h"

namespace vexa {
static void PrintTo(const LanguageTable& table, std::ostream* out) { *out << table.language; }
}  // namespace vexa

namespace vexa::windows {
namespace {

using workbench::KindOf;

/// The texts of windows, measured with the font that each is written in.
class Ruler {
 public:
  explicit Ruler(HWND window) : dc_(GetDC(window)), window_(window) {
    const auto font = reinterpret_cast<HGDIOBJ>(Send(window, WM_GETFONT));
    if (font != nullptr) former_ = SelectObject(dc_, font);
  }
  Ruler(const Ruler&) = delete;
  Ruler& operator=(const Ruler&) = delete;
  ~Ruler() {
    if (former_ != nullptr) SelectObject(dc_, former_);
    ReleaseDC(window_, dc_);
  }
  SIZE Measure(const std::wstring& text, LONG width = 0) const {
    RECT area{0, 0, width, 0};
    const UINT wrap = width > 0 ? DT_WORDBREAK : DT_SINGLELINE;
    DrawTextW(dc_, text.c_str(), static_cast<int>(text.size()), &area, DT_CALCRECT | DT_NOPREFIX | wrap);
    return {area.right, area.bottom};
  }

 private:
  HDC dc_;
  HWND window_;
  HGDIOBJ former_ = nullptr;
};

class LayoutTest : public WindowStage, public workbench::EveryScreen {
 protected:
  void Opened(Form& form, Dialog* dialog) override {
    SCOPED_TRACE(form.Name());
    EXPECT_NO_THROW(Measure(form, FindLayout(form.Name()), dialog));
  }

  void Measure(Form& form, const Layout& layout, Dialog* dialog) {
    const auto window = FormWindow::Make(form, {TestedModule(), layout, owner_, dialog});
    for (const int dpi : {96, 144, 192}) {
      SCOPED_TRACE(dpi);
      RECT area{};
      GetWindowRect(window->Handle(), &area);
      if (dpi != 96) Send(window->Handle(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), &area);
      if (dialog == nullptr) {
        const SIZE wished = window->PreferredSize();
        SetWindowPos(window->Handle(), nullptr, 0, 0, wished.cx, wished.cy, SWP_NOZORDER);
      }
      CheckWindow(window->Handle(), dpi);
      if (dpi != 144) continue;
      GetWindowRect(window->Handle(), &area);
      // The smallest screens that are set to this are 1366 by 768, with a task bar of 40.
      EXPECT_LE(area.right - area.left, 1366);
      EXPECT_LE(area.bottom - area.top, 728);
    }
  }

  static void CheckWindow(HWND form, int dpi) {
    RECT all{};
    GetClientRect(form, &all);
    std::vector<std::pair<std::string, RECT>> placed;  // but for frames, which stand around others
    std::map<wchar_t, std::string> keys;
    for (const HWND child : workbench::ControlsOf(form)) {
      const std::string name = ControlNameOf(child);
      if (workbench::Usability(child) == Outcome::Hidden) continue;
      RECT area{};
      GetWindowRect(child, &area);
      MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&area), 2);
      if (KindOf(child) != ControlKind::Frame) placed.emplace_back(name, area);
      EXPECT_TRUE(area.left >= 0 && area.top >= 0 && area.right <= all.right && area.bottom <= all.bottom)
          << name << " stands outside";
      EXPECT_TRUE(area.right > area.left && area.bottom > area.top) << name << " has no size";
      CheckText(name, child, dpi);
      if (dpi == 96) CheckAccessible(name, child);
      if (const wchar_t key = MarkOf(TextOfWindow(child));
          key != 0 && KindOf(child) != ControlKind::TextBox) {
        const auto [other, isNew] = keys.try_emplace(static_cast<wchar_t>(towupper(key)), name);
        EXPECT_TRUE(isNew) << name << " has the access key of " << other->second;
      }
    }
    EXPECT_FALSE(placed.empty());
    for (size_t one = 0; one < placed.size(); ++one) {
      for (size_t two = one + 1; two < placed.size(); ++two) {
        RECT common{};
        EXPECT_EQ(IntersectRect(&common, &placed[one].second, &placed[two].second), FALSE)
            << placed[one].first << " covers " << placed[two].first;
      }
    }
  }

  static void CheckText(const std::string& name, HWND window, int dpi) {
    RECT client{};
    GetClientRect(window, &client);
    const Ruler ruler(window);
    const std::wstring text = PlainText(TextOfWindow(window));
    SIZE needed{};
    switch (KindOf(window)) {
      case ControlKind::Frame:
      case ControlKind::Section:
        needed.cx = ruler.Measure(text).cx + MulDiv(16, dpi, 96);
        break;
      case ControlKind::Button:
      case ControlKind::CheckBox:
      case ControlKind::OptionButton:
        // What the control itself wants to have.
        ASSERT_NE(Send(window, BCM_GETIDEALSIZE, 0, &needed), FALSE) << name;
        EXPECT_GT(needed.cx, ruler.Measure(text).cx) << name << ": the ideal size is none";
        needed.cy = ruler.Measure(text).cy;
        break;
      case ControlKind::ExtLabel:
        needed.cy = ruler.Measure(text, client.right).cy;
        break;
      case ControlKind::Label:
        if (!text.empty()) needed = ruler.Measure(text, client.right);
        break;
      case ControlKind::TextBox:
        needed.cy = ruler.Measure(L"Wg").cy;
        break;
      case ControlKind::Tree:
        CheckNodes(name, window, client.right);
        break;
      case ControlKind::Grid:
        CheckColumns(name, window);
        break;
      case ControlKind::Slider:
        break;
    }
    EXPECT_LE(needed.cx, client.right) << name << ": " << ToUtf8(text);
    EXPECT_LE(needed.cy, client.bottom) << name << ": " << ToUtf8(text);
  }

  static void CheckNodes(const std::string& name, HWND tree, LONG width) {
    const bool hasBar = (workbench::StyleOf(tree) & WS_VSCROLL) != 0;
    const LONG room = width - (hasBar ? 0 : GetSystemMetrics(SM_CXVSCROLL));
    for (HTREEITEM item = workbench::FirstBelow(tree, nullptr); item != nullptr;
         item = workbench::Related(tree, item, TVGN_NEXT)) {
      RECT area{};
      std::memcpy(&area, &item, sizeof item);  // the message takes the item where it puts the place
      if (Send(tree, TVM_GETITEMRECT, TRUE, &area) == 0) continue;  // scrolled out
      const std::string text = workbench::ReadNode(tree, item).text;
      // The width that the tree tells is right only once it has drawn the item.
      EXPECT_LE(area.left + Ruler(tree).Measure(ToUtf16(text)).cx, room) << name << ": " << text;
    }
  }

  static void CheckColumns(const std::string& name, HWND grid) {
    const auto header = reinterpret_cast<HWND>(Send(grid, LVM_GETHEADER));
    const std::vector<std::string> titles = workbench::ReadControl(grid).rows.front();
    for (size_t column = 0; column < titles.size(); ++column) {
      EXPECT_LE(Ruler(header).Measure(ToUtf16(titles[column])).cx, Send(grid, LVM_GETCOLUMNWIDTH, column))
          << name << ": " << titles[column];
    }
  }

  /// Whatever takes the focus has a name, which screen readers read out.
  static void CheckAccessible(const std::string& name, HWND window) {
    if (!workbench::TakesFocus(window)) return;
    const std::string read = AccessibleNameOf(window);
    EXPECT_FALSE(read.empty()) << name << " has no name";
    if (ClassOfWindow(window) == WC_BUTTONW) {
      EXPECT_EQ(read, ToUtf8(PlainText(TextOfWindow(window)))) << name;
    }
  }
};

class LayoutInLanguage : public LayoutTest, public testing::WithParamInterface<LanguageTable> {};
INSTANTIATE_TEST_SUITE_P(Every, LayoutInLanguage, testing::ValuesIn(LanguageTables()));

TEST_P(LayoutInLanguage, EveryScreenFitsItsTextsInEverySize) {
  workbench::Stage stage(workbench::ProfileWithFolderSet(), "", GetParam().language, *this, answers_);
  OutlookPropertiesPage& page = stage.CreatePage();
  page.Initialize(stage.workbench.Addin());
  page.FocusFirst();
  Walk(page);
  for (const char* screen : {"frmEditFolderset", "frmAbout", "frmTrackingOptions", "frmFolders",
                             "frmAdvanced", "frmSharedFolders"}) {
    EXPECT_TRUE(Names().contains(screen)) << screen << " was never opened";
  }
}

TEST_F(LayoutTest, TheGalleryFitsAndFollowsItsTexts) {
  workbench::Gallery gallery(services_);
  Measure(gallery, workbench::LayoutOfGallery(), &gallery);
  const auto window =
      FormWindow::Make(gallery, {TestedModule(), workbench::LayoutOfGallery(), owner_, &gallery});
  gallery.cmdBrowse.SetCaption("A caption that is much longer than the one from before");
  Send(window->Handle(), WM_APP);  // shows what has changed
  EXPECT_NE(TextOfWindow(FindNamed(window->Handle(), "cmdBrowse")).find(L"much longer"), std::wstring::npos);
  CheckWindow(window->Handle(), 96);
}

}  // namespace
}  // namespace vexa::windows
