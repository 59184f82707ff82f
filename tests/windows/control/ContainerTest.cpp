// The page's life in containers of all manners: what they leave out, in which order they do things, and what
// they do in the middle of a call. Whatever they do, nothing crashes, everything is released, and no window
// stays disabled.
#include <windows.h>
// windows.h first
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cwctype>
#include <fstream>
#include <functional>
#include <map>
#include <random>

#include "tests/ScratchFolder.h"
#include "tests/windows/Modals.h"
#include "tests/windows/control/Handles.h"
#include "tests/windows/control/PageTest.h"

namespace vexa::windows {
namespace {

using ContainerTest = PageTest;

/// A value in the registry of the machine or the user for the time of a scope, null for none.
class Configured {
 public:
  Configured(HKEY root, std::wstring key, const wchar_t* name, const wchar_t* value)
      : root_(root), key_(std::move(key)) {
    if (value == nullptr) return;
    const auto size = static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t));
    EXPECT_EQ(RegSetKeyValueW(root_, key_.c_str(), name, REG_SZ, value, size), ERROR_SUCCESS);
  }
  Configured(const Configured&) = delete;
  Configured& operator=(const Configured&) = delete;
  ~Configured() {
    // And the keys above it that have nothing below them then.
    while (RegDeleteKeyW(root_, key_.c_str()) == ERROR_SUCCESS) key_.resize(key_.rfind(L'\\'));
  }

 private:
  HKEY root_;
  std::wstring key_;
};

/// Before all other tests: the module finds out once what is at work.
TEST_F(ContainerTest, ErrorsNameWhatIsAtWorkAndGoToTheConfiguredAddress) {
  const ScratchFolder scratch;
  const std::string log = scratch / "VEXAERRORS.MDB";
  Stored().ErrorLogPath = log;
  CLSID classId{};
  CLSIDFromProgID(L"VexaAddin.RegSettings", &classId);
  std::array<wchar_t, 39> id{};
  StringFromGUID2(classId, id.data(), static_cast<int>(id.size()));
  const std::wstring server = L"\"" + TestedModulePath() + L"\" /automation";
  const Configured addin(HKEY_LOCAL_MACHINE,
                         L"Software\\Classes\\CLSID\\" + std::wstring(id.data()) + L"\\LocalServer32",
                         nullptr, server.c_str());
  const auto confirm = [](HWND front) { PostMessageW(GetDlgItem(front, IDOK), BM_CLICK, 0, 0); };
  struct Row {
    const wchar_t* machine;
    const wchar_t* user;
    const char* expected;
  };
  for (const Row& row :
       {Row{nullptr, nullptr, "support@tolvane.example"}, Row{L"", L"user@here", "user@here"},
        Row{L"machine@here", L"user@here", "machine@here"}}) {
    SCOPED_TRACE(row.expected);
    const Configured machine(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tolvane\\Vexa", L"SupportAddress", row.machine);
    const Configured user(HKEY_CURRENT_USER, L"SOFTWARE\\Tolvane\\Vexa", L"SupportAddress", row.user);
    Container container;
    Open(container);
    bench_->calls.PlanFault("RS.CanWrite", 1, Error(1005, "no answer", "test"));
    Modals modals;
    // The error; then the advanced settings, the notice of what is sent, and that the mail found no file.
    modals.Then(confirm).Click("cmdEmail").Then(confirm).Then(confirm).Press(VK_ESCAPE);
    bench_->calls.Clear();
    container.Click("cmdAdvanced");
    container.Click("cmdAdvanced");
    EXPECT_TRUE(
        Contains(bench_->calls.Lines(), "Mail.Recipients.Add(\"" + std::string(row.expected) + "\")"));
  }
  std::ifstream records(log);
  std::string components;
  std::getline(records, components);
  const auto after = [&](const std::string& name) {
    const size_t at = components.find('"' + name + "\",") + name.size() + 3;
    return components.substr(at, components.find('}', at) - at);
  };
  EXPECT_NE(after("VexaControls").find("VexaControls.dll"), std::string::npos) << components;
  EXPECT_EQ(after("VexaAddin"), after("VexaControls")) << "the same file, and so the same version";
  EXPECT_NE(components.find("\"control-tests.exe\","), std::string::npos) << components;
  EXPECT_NE(components.find("\\\\winsxs\\\\"), std::string::npos) << components;
}

TEST_F(ContainerTest, ShowsThePageAndEndsItInGoodOrder) {
  Container container;
  Open(container);
  EXPECT_EQ(container.calls,
            (std::vector<std::string>{"CanInPlaceActivate", "OnInPlaceActivate", "GetWindowContext",
                                      "ShowObject", "OnControlInfoChanged"}));
  ASSERT_NE(container.PageWindow(), nullptr);
  EXPECT_NE(IsWindowVisible(container.PageWindow()), FALSE);
  EXPECT_NE(IsWindowVisible(container.Control("cmdChange")), FALSE);
  EXPECT_NE(IsWindowEnabled(container.Control("cmdChange")), FALSE) << "there is a folder set";
  const HWND window = container.PageWindow();

  container.calls.clear();
  EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_EQ(container.calls, (std::vector<std::string>{"OnUIActivate", "SetActiveObject", "SetBorderSpace"}));
  EXPECT_EQ(ControlNameOf(GetFocus()), "gd") << "the first control has the keyboard";

  container.calls.clear();
  const ComPtr<IUnknown> kept = container.PageAs<IUnknown>();
  container.LetGo();
  EXPECT_EQ(container.calls,
            (std::vector<std::string>{"SetActiveObject null", "OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_EQ(IsWindow(window), FALSE);
  EXPECT_EQ(TimesClosed(), 1) << "whoever keeps it";
  EXPECT_EQ(WorkingCopy(), nullptr);
}

TEST_F(ContainerTest, InitialisedBeforeItIsSitedOrNeverShown) {
  {
    const ComPtr<IOutlookPropertiesPage> page = CreatePage();
    ASSERT_EQ(Initialize(*page.Get()), S_OK);
    ASSERT_EQ(page->SetDirty(), S_OK);
    Container container;
    container.Embed(page);
    EXPECT_NE(IsWindowEnabled(container.Control("cmdChange")), FALSE);
    ASSERT_EQ(page->SetDirty(), S_OK);
    EXPECT_TRUE(Contains(container.calls, "OnStatusChange"));
  }
  EXPECT_EQ(TimesClosed(), 1);
  ASSERT_EQ(Initialize(*CreatePage().Get()), S_OK);
  EXPECT_EQ(TimesClosed(), 2) << "release hides";
  Container container;
  container.Site(CreatePage());
  ASSERT_EQ(Initialize(container.Page()), S_OK);
  container.LetGo();
  EXPECT_EQ(TimesClosed(), 3);
}

TEST_F(ContainerTest, HiddenAndShownAgain) {
  Container container;
  Open(container);
  EXPECT_EQ(container.DoVerb(OLEIVERB_HIDE), S_OK);
  EXPECT_EQ(IsWindowVisible(container.PageWindow()), FALSE);
  EXPECT_EQ(TimesClosed(), 1);
  EXPECT_EQ(WorkingCopy(), nullptr) << "hiding drops the working copy";
  EXPECT_EQ(container.DoVerb(OLEIVERB_SHOW), S_OK);
  EXPECT_NE(IsWindowVisible(container.PageWindow()), FALSE);
  ASSERT_EQ(Initialize(container.Page()), S_OK);
  EXPECT_NE(WorkingCopy(), nullptr);
}

TEST_F(ContainerTest, AnotherTabKeepsTheWorkingCopy) {
  Container container;
  Open(container);
  EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  const Modals modals;
  container.Click("cmdRemove");
  EXPECT_TRUE(Contains(container.calls, "OnStatusChange"));
  workbench::SettingsData* const copy = WorkingCopy();
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->FolderSetCount, 0);
  ShowWindow(container.Area(), SW_HIDE);
  EXPECT_EQ(container.PageAs<IOleInPlaceObject>()->UIDeactivate(), S_OK);
  SetFocus(container.Behind());
  container.Pump();
  ShowWindow(container.Area(), SW_SHOW);
  EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.Pump();
  EXPECT_EQ(WorkingCopy(), copy);
  EXPECT_EQ(TimesClosed(), 0);
  EXPECT_EQ(Stored().FolderSetCount, 1);
  EXPECT_EQ(container.Page().PropertyPage_Apply(), S_OK);
  EXPECT_EQ(Stored().FolderSetCount, 0);
}

// --- what a container may leave out

TEST_F(ContainerTest, PoorContainers) {
  using Offers = Container::Offers;
  const std::vector<std::pair<const char*, Offers>> poor = {
      {"no page site", {.pageSite = false}},
      {"no ambient properties", {.automation = false}},
      {"no control site", {.controlSite = false}},
      {"no frame", {.context = Container::Context::WithoutFrame}},
      {"nothing at all",
       {.controlSite = false,
        .automation = false,
        .pageSite = false,
        .context = Container::Context::WithoutFrame}},
  };
  for (const auto& [name, offers] : poor) {
    SCOPED_TRACE(name);
    Container container(offers);
    Open(container);
    ASSERT_NE(container.PageWindow(), nullptr);
    EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
    Modals modals;
    modals.Press(VK_ESCAPE);
    container.Click("cmdChange");
    container.Click("cmdRemove");
    EXPECT_EQ(WorkingCopy()->FolderSetCount, 0);
    EXPECT_EQ(Contains(container.calls, "OnStatusChange"), offers.pageSite);
    for (int i = 0; i < 12; ++i) {
      Modals::PostKey(VK_TAB);
      container.Pump();
    }
    EXPECT_EQ(container.DoVerb(OLEIVERB_HIDE), S_OK);
  }
}

TEST_F(ContainerTest, ContainersThatRefuse) {
  using Offers = Container::Offers;
  const std::vector<std::pair<const char*, Offers>> refusing = {
      {"no in-place site", {.inPlace = false}},
      {"the context fails", {.context = Container::Context::Fails}},
      {"may not be activated", {.canActivate = S_FALSE}},
      {"activation fails", {.activate = E_FAIL}},
      {"no window", {.noWindow = true}},
  };
  for (const auto& [name, offers] : refusing) {
    SCOPED_TRACE(name);
    Container container(offers);
    container.Site(CreatePage());
    EXPECT_TRUE(FAILED(container.DoVerb(OLEIVERB_INPLACEACTIVATE)));
    EXPECT_TRUE(FAILED(container.DoVerb(OLEIVERB_UIACTIVATE)));
    EXPECT_EQ(container.PageWindow(), nullptr);
    EXPECT_EQ(std::ranges::count(container.calls, "OnInPlaceActivate") - (offers.activate == S_OK ? 0 : 2),
              std::ranges::count(container.calls, "OnInPlaceDeactivate"))
        << "every activation that began was taken back";
    EXPECT_EQ(Initialize(container.Page()), S_OK) << "the page works all the same";
    EXPECT_EQ(container.Page().SetDirty(), S_OK);
  }
  Container container(Container::Offers{.uiActivate = E_FAIL});
  container.Site(CreatePage());
  EXPECT_TRUE(FAILED(container.DoVerb(OLEIVERB_UIACTIVATE)));
  EXPECT_FALSE(Contains(container.calls, "SetActiveObject"));
}

// --- the order in which a container lets go

using Operation = std::function<void(Container&)>;

const std::map<std::string, Operation>& Operations() {
  static const std::map<std::string, Operation> operations = {
      {"close", [](Container& container) { container.PageAs<IOleObject>()->Close(OLECLOSE_NOSAVE); }},
      {"unsite", [](Container& container) { container.PageAs<IOleObject>()->SetClientSite(nullptr); }},
      {"deactivate",
       [](Container& container) { container.PageAs<IOleInPlaceObject>()->InPlaceDeactivate(); }},
      {"UI-deactivate", [](Container& container) { container.PageAs<IOleInPlaceObject>()->UIDeactivate(); }},
      {"hide", [](Container& container) { container.DoVerb(OLEIVERB_HIDE); }},
      {"show", [](Container& container) { container.DoVerb(OLEIVERB_SHOW); }},
      {"let go", [](Container& container) { container.LetGo(); }},
      {"release", [](Container& container) { container.Forget(); }},
      {"destroy", [](Container& container) { container.DestroyWindows(); }},
      {"destroy and release",
       [](Container& container) {
         container.DestroyWindows();
         container.Forget();
       }},
  };
  return operations;
}

TEST_F(ContainerTest, LetsGoInAnyOrder) {
  const Modals modals;
  std::mt19937 random(20);
  for (int order = 0; order < 100; ++order) {
    const int closed = TimesClosed();
    std::string done = "order " + std::to_string(order) + ": ";
    {
      Container container;
      Open(container);
      if (order % 2 == 0) container.DoVerb(OLEIVERB_UIACTIVATE);
      container.Pump();
      while (container.PageAs<IUnknown>()) {
        const auto operation =
            std::next(Operations().begin(), static_cast<int>(random() % Operations().size()));
        done += operation->first + ", ";
        operation->second(container);
        container.Pump();
      }
      EXPECT_TRUE(module_.CanUnload()) << done << "the last reference was the last";
    }
    EXPECT_EQ(TimesClosed(), closed + 1) << done << "the add-in is told once";
  }
}

TEST_F(ContainerTest, WindowDestroyedAndShownAnew) {
  Container container;
  Open(container);
  DestroyWindow(container.PageWindow());
  EXPECT_EQ(container.PageWindow(), nullptr) << "a page without its window has none to show";
  EXPECT_EQ(container.DoVerb(OLEIVERB_SHOW), S_OK);
  ASSERT_NE(container.PageWindow(), nullptr);
  EXPECT_NE(IsWindowVisible(container.Control("cmdChange")), FALSE);
  EXPECT_NE(IsWindowEnabled(container.Control("cmdChange")), FALSE) << "the page is as it was";
}

// --- what a container does in the middle of a call

TEST_F(ContainerTest, ActsWhileItIsCalled) {
  const Modals modals;
  for (const std::string call :
       {"CanInPlaceActivate", "OnInPlaceActivate", "GetWindowContext", "ShowObject", "OnControlInfoChanged",
        "OnUIActivate", "SetActiveObject", "SetBorderSpace", "OnStatusChange", "OnStatusChange by the user",
        "SetActiveObject null", "OnUIDeactivate", "OnInPlaceDeactivate"}) {
    for (const auto& [name, operation] : Operations()) {
      SCOPED_TRACE(call + ": " + name);
      Container container;
      bool done = false;
      const bool byUser = call == "OnStatusChange by the user";
      container.During(byUser ? "OnStatusChange" : call, [&] {
        done = true;
        if (container.PageAs<IUnknown>()) operation(container);
      });
      // What becomes of each call is not foreseen here, only that it comes to an end.
      container.Site(CreatePage());
      const ComPtr<IOutlookPropertiesPage> page = container.PageAs<IOutlookPropertiesPage>();
      Initialize(*page.Get());
      const auto stillIn = [&] { return container.PageAs<IUnknown>() != nullptr; };
      if (stillIn()) container.DoVerb(OLEIVERB_INPLACEACTIVATE);
      if (stillIn()) container.DoVerb(OLEIVERB_UIACTIVATE);
      container.Pump();
      if (!byUser) {
        page->SetDirty();
      } else if (stillIn()) {
        container.Click("cmdRemove");
      }
      container.Pump();
      if (stillIn()) container.PageAs<IOleInPlaceObject>()->InPlaceDeactivate();
      if (stillIn()) container.LetGo();
      container.Pump();
      EXPECT_TRUE(done) << "the call never came";
    }
  }
}

TEST_F(ContainerTest, ActsWhileADialogOrAMessageBoxIsOpen) {
  for (const std::string button : {"cmdChange", "cmdRestoreDialogs"}) {
    for (const auto& [name, operation] : Operations()) {
      SCOPED_TRACE(button + ": " + name);
      Container container;
      Open(container);
      ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
      Modals modals;
      modals.Then([&, act = operation](HWND front) {
        EXPECT_EQ(ReadMessageBox(front).has_value(), button == "cmdRestoreDialogs");
        EXPECT_EQ(IsWindowEnabled(container.Top()), FALSE) << "it is modal";
        act(container);
        if (IsWindow(front) != FALSE) PostMessageW(front, WM_CLOSE, 0, 0);
      });
      container.Click(button);
      EXPECT_TRUE(container.Top() == nullptr || IsWindowEnabled(container.Top()) != FALSE);
    }
  }
}

TEST_F(ContainerTest, TellsTheContainerWhichLettersItTakes) {
  Container container;
  Open(container);
  const std::wstring caption = TextOfWindow(container.Control("cmdAbout"));
  const wchar_t letter = caption[caption.find(L'&') + 1];
  for (const wchar_t pressed : {letter, static_cast<wchar_t>(std::towlower(letter)), L'#'}) {
    Modals modals;
    if (pressed != L'#') modals.Press(VK_ESCAPE);
    MSG message{container.Top(), WM_SYSCHAR, pressed, 1 << 29, 0, {}};
    EXPECT_EQ(container.PageAs<IOleControl>()->OnMnemonic(&message), pressed == L'#' ? S_FALSE : S_OK);
    // While the focus is elsewhere the container looks whether a letter is one that the page has named.
    const CONTROLINFO& named = container.accessKeys;
    EXPECT_EQ(IsAccelerator(named.hAccel, named.cAccel, &message, nullptr) != FALSE, pressed != L'#');
  }
}

// --- whole lives

class Lives : public ContainerTest {
 protected:
  /// Opens the page, removes nothing, opens a dialog and cancels it, ends the page.
  void Live() {
    Container container;
    Open(container);
    EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
    Modals modals;
    modals.Press(VK_ESCAPE);
    container.Click("cmdChange");
    container.Click("cmdRemove");
  }
};

TEST_F(Lives, TheCountsSeeEveryKindOfHandle) {
  const HICON shared = LoadIconW(nullptr, IDI_ERROR);  // stays for the process
  CountHandles();                                      // and so does what counting needs
  const HandleCounts before = CountHandles();
  const HFONT font = CreateFontW(12, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, 0, 0, 0, 0, 0, L"Tahoma");
  const HDC dc = CreateCompatibleDC(nullptr);
  const HICON icon = CopyIcon(shared);
  const HWND window =
      CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
  const HandleCounts more = CountHandles();
  EXPECT_GE(more.gdi, before.gdi + 2) << "font and device context";
  EXPECT_GE(more.user, before.user + 2) << "icon and window";
  DestroyWindow(window);
  DestroyIcon(icon);
  DeleteDC(dc);
  DeleteObject(font);
  EXPECT_EQ(CountHandles(), before);
}

/// VEXA_LIVES is another number of them.
TEST_F(Lives, AThousandLeaveEverythingAsItWas) {
  const char* const wanted = std::getenv("VEXA_LIVES");
  const int lives = wanted == nullptr ? 1000 : std::atoi(wanted);
  for (int i = 0; i < 10; ++i) Live();  // what is kept for the whole process is there now
  const HandleCounts before = CountHandles();
  const LONG objects = LivingObjects::Count();
  bench_->calls.SetRecording(false);
  for (int i = 0; i < lives; ++i) {
    Live();
    ASSERT_TRUE(module_.CanUnload()) << "after " << i + 1;
    ASSERT_EQ(LivingObjects::Count(), objects) << "after " << i + 1;
  }
  EXPECT_EQ(CountHandles(), before);
}

}  // namespace
}  // namespace vexa::windows
