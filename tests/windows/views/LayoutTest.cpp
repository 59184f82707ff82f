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

namespace vexa::windows {
namespace {

DWORD StyleOf(HWND window) { return static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE)); }

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
    const Layout* layout = nullptr;
    try {
      layout = &FindLayout(form.Name());
    } catch (const Error& error) {
      ADD_FAILURE() << error.Description;
      return;
    }
    Measure(form, *layout, dialog);
  }

  void Measure(Form& form, const Layout& layout, Dialog* dialog) {
    const auto window = FormWindow::Make(form, {TestedModule(), layout, owner_, dialog});
    for (const int dpi : {96, 144, 192}) {
      SCOPED_TRACE(std::to_string(language_) + " at " + std::to_string(dpi));
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
    struct Placed {
      std::string name;
      HWND window;
      RECT area;
    };
    std::vector<Placed> placed;
    std::map<wchar_t, std::string> keys;
    for (HWND child = GetWindow(form, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
      const std::string name = NameOf(child);
      if (name.empty() || (StyleOf(child) & WS_VISIBLE) == 0) continue;
      RECT area{};
      GetWindowRect(child, &area);
      MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&area), 2);
      placed.push_back({name, child, area});
      EXPECT_TRUE(area.left >= 0 && area.top >= 0 && area.right <= all.right && area.bottom <= all.bottom)
          << name << " stands outside";
      EXPECT_TRUE(area.right > area.left && area.bottom > area.top) << name << " has no size";
      CheckText(name, child, dpi);
      if (dpi == 96) CheckAccessible(name, child);
      if (const wchar_t key = MarkOf(TextOfWindow(child)); key != 0 && ClassOf(child) != WC_EDITW) {
        const auto [other, isNew] = keys.try_emplace(static_cast<wchar_t>(towupper(key)), name);
        EXPECT_TRUE(isNew) << name << " has the access key of " << other->second;
      }
    }
    EXPECT_FALSE(placed.empty());
    const auto isFrame = [](HWND window) {
      return ClassOf(window) == WC_BUTTONW && (StyleOf(window) & BS_TYPEMASK) == BS_GROUPBOX;
    };
    for (size_t one = 0; one < placed.size(); ++one) {
      for (size_t two = one + 1; two < placed.size(); ++two) {
        if (isFrame(placed[one].window) || isFrame(placed[two].window)) continue;
        RECT common{};
        EXPECT_EQ(IntersectRect(&common, &placed[one].area, &placed[two].area), FALSE)
            << placed[one].name << " covers " << placed[two].name;
      }
    }
  }

  static void CheckText(const std::string& name, HWND window, int dpi) {
    RECT client{};
    GetClientRect(window, &client);
    const Ruler ruler(window);
    const std::wstring kind = ClassOf(window);
    const std::wstring text = PlainText(TextOfWindow(window));
    if (kind == WC_BUTTONW) {
      if ((StyleOf(window) & BS_TYPEMASK) == BS_GROUPBOX) {
        EXPECT_LE(ruler.Measure(text).cx + MulDiv(16, dpi, 96), client.right) << name;
        return;
      }
      // What the control itself wants to have.
      SIZE ideal{};
      ASSERT_NE(Send(window, BCM_GETIDEALSIZE, 0, &ideal), FALSE) << name;
      EXPECT_GT(ideal.cx, ruler.Measure(text).cx) << name << ": the ideal size is none";
      EXPECT_LE(ideal.cx, client.right) << name << ": " << ToUtf8(text);
      EXPECT_LE(ruler.Measure(text).cy, client.bottom) << name;
    } else if (GetPropW(window, L"VexaMarkup") != nullptr) {
      EXPECT_LE(ruler.Measure(text, client.right).cy, client.bottom) << name << ": " << ToUtf8(text);
    } else if (kind == WC_STATICW && (StyleOf(window) & SS_TYPEMASK) == SS_OWNERDRAW) {
      EXPECT_LE(ruler.Measure(text).cx + MulDiv(16, dpi, 96), client.right) << name;
    } else if (kind == WC_STATICW) {
      if (text.empty()) return;
      const SIZE needed = ruler.Measure(text, client.right);
      EXPECT_LE(needed.cx, client.right) << name << ": " << ToUtf8(text);
      EXPECT_LE(needed.cy, client.bottom) << name << ": " << ToUtf8(text);
    } else if (kind == WC_EDITW) {
      EXPECT_LE(ruler.Measure(L"Wg").cy, client.bottom) << name;
    } else if (kind == WC_TREEVIEWW) {
      const bool hasBar = (StyleOf(window) & WS_VSCROLL) != 0;
      const LONG room = client.right - (hasBar ? 0 : GetSystemMetrics(SM_CXVSCROLL));
      for (LRESULT item = Send(window, TVM_GETNEXTITEM, TVGN_ROOT); item != 0;
           item = Send(window, TVM_GETNEXTITEM, TVGN_NEXT, item)) {
        RECT area{};
        std::memcpy(&area, &item, sizeof item);  // the message takes the item where it puts the place
        if (Send(window, TVM_GETITEMRECT, TRUE, &area) == 0) continue;  // scrolled out
        std::array<wchar_t, 256> shown{};
        TVITEMW asked{};
        asked.mask = TVIF_TEXT;
        asked.hItem = reinterpret_cast<HTREEITEM>(item);
        asked.pszText = shown.data();
        asked.cchTextMax = static_cast<int>(shown.size());
        Send(window, TVM_GETITEMW, 0, &asked);
        // The width that the tree tells is right only once it has drawn the item.
        EXPECT_LE(area.left + ruler.Measure(asked.pszText).cx, room) << name << ": " << ToUtf8(asked.pszText);
      }
    } else if (kind == WC_LISTVIEWW) {
      const auto header = reinterpret_cast<HWND>(Send(window, LVM_GETHEADER));
      const auto columns = static_cast<int>(Send(header, HDM_GETITEMCOUNT));
      for (int column = 0; column < columns; ++column) {
        std::array<wchar_t, 256> title{};
        HDITEMW item{};
        item.mask = HDI_TEXT | HDI_WIDTH;
        item.pszText = title.data();
        item.cchTextMax = static_cast<int>(title.size());
        Send(header, HDM_GETITEMW, column, &item);
        EXPECT_LE(Ruler(header).Measure(title.data()).cx, item.cxy) << name << " column " << column;
      }
    }
  }

  /// Whatever takes the focus has a name, which screen readers read out.
  static void CheckAccessible(const std::string& name, HWND window) {
    if ((StyleOf(window) & WS_TABSTOP) == 0) return;
    const std::string read = AccessibleNameOf(window);
    EXPECT_FALSE(read.empty()) << name << " has no name";
    if (ClassOf(window) == WC_BUTTONW) {
      EXPECT_EQ(read, ToUtf8(PlainText(TextOfWindow(window)))) << name;
    }
  }

  int32_t language_ = 0;
};

class LayoutInLanguage : public LayoutTest, public testing::WithParamInterface<int32_t> {};

TEST_P(LayoutInLanguage, EveryScreenFitsItsTextsInEverySize) {
  language_ = GetParam();
  workbench::Stage stage(workbench::ProfileWithFolderSet(), "", language_, *this, answers_);
  OutlookPropertiesPage& page = stage.CreatePage();
  page.Initialize(stage.workbench.Addin());
  page.FocusFirst();
  Walk(page);
  for (const char* screen : {"frmEditFolderset", "frmAbout", "frmTrackingOptions", "frmFolders",
                             "frmAdvanced", "frmSharedFolders"}) {
    EXPECT_TRUE(Names().contains(screen)) << screen << " was never opened";
  }
}

std::vector<int32_t> Languages() {
  std::vector<int32_t> languages;
  for (const LanguageTable& table : LanguageTables()) languages.push_back(table.language);
  return languages;
}
INSTANTIATE_TEST_SUITE_P(Every, LayoutInLanguage, testing::ValuesIn(Languages()));

TEST_F(LayoutTest, TheGalleryFits) {
  language_ = 1033;
  workbench::Gallery gallery(services_);
  Measure(gallery, workbench::LayoutOfGallery(), &gallery);
}

/// The measuring itself must see what it is there for.
TEST_F(LayoutTest, AControlThatIsTooNarrowIsSeen) {
  workbench::Gallery gallery(services_);
  const auto window =
      FormWindow::Make(gallery, {TestedModule(), workbench::LayoutOfGallery(), owner_, &gallery});
  const HWND button = FindNamed(window->Handle(), "cmdBrowse");
  SIZE ideal{};
  ASSERT_NE(Send(button, BCM_GETIDEALSIZE, 0, &ideal), FALSE);
  gallery.cmdBrowse.SetCaption("A caption that is much longer than the one from before");
  Send(window->Handle(), WM_APP);  // shows what has changed
  SIZE longer{};
  ASSERT_NE(Send(button, BCM_GETIDEALSIZE, 0, &longer), FALSE);
  EXPECT_GT(longer.cx, 2 * ideal.cx);
  RECT client{};
  GetClientRect(button, &client);
  EXPECT_LE(longer.cx, client.right) << "the layout follows the caption";
}

}  // namespace
}  // namespace vexa::windows
