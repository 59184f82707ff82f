// A dialog with every kind of control on the screen, where a script cannot go: what is modal to what, the
// pointer, the ways in which a modal dialog may end, and what assistive software sees.
#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "dialogs/frmNotice.h"
#include "tests/windows/views/Stage.h"
#include "windows/com/Com.h"
#include "windows/views/FormWindow.h"
#include "windows/views/Handles.h"

namespace vexa::windows {
namespace {

using workbench::Gallery;

class DialogTest : public WindowStage {
 protected:
  void WhenPressed(std::function<void()> deed) {
    gallery_.cmdHidden.SetVisible(true);
    gallery_.cmdHidden.OnClick = std::move(deed);
  }

  Gallery gallery_{services_};
};

/// What all controls show.
std::string Seen(HWND form) {
  std::ostringstream seen;
  for (const HWND control : workbench::ControlsOf(form)) Print(seen, workbench::ReadControl(control));
  return seen.str();
}

std::string FocusName() { return ControlNameOf(GetFocus()); }

void PostAccessKey(wchar_t letter) { PostMessageW(GetFocus(), WM_SYSCHAR, letter, 1 << 29); }

// --- focus

TEST_F(DialogTest, AnInvalidEntryKeepsTheFocusHoweverTheUserLeaves) {
  const std::vector<Modals::Step> ways = {
      [](HWND front) { Modals::PostClick(FindNamed(front, "cmdOk")); },
      [](HWND front) { Modals::PostClick(FindNamed(front, "tvNodes")); },
      [](HWND front) { PostAccessKey(MarkOf(TextOfWindow(FindNamed(front, "chkFrame")))); },
      [](HWND front) { SetFocus(FindNamed(front, "cmdOk")); },  // as others' message loops do
  };
  for (size_t way = 0; way < ways.size(); ++way) {
    SCOPED_TRACE(way);
    Gallery gallery(services_);
    Modals modals;
    modals.Then([&](HWND front) {
      SetFocus(FindNamed(front, "txtNumber"));
      Send(GetFocus(), EM_SETSEL, 0, -1);
      Send(GetFocus(), EM_REPLACESEL, TRUE, L"50");
    });
    modals.Then(ways[way]).Answer("Between 1 and 10, please").Then([&](HWND) {
      EXPECT_EQ(FocusName(), "txtNumber");
      EXPECT_EQ(gallery.Focus(), &gallery.txtNumber);
      EXPECT_FALSE(gallery.chkFrame.Checked()) << "the click did not arrive";
      Modals::PostKey(VK_ESCAPE);
    });
    Show(gallery);
  }
}

TEST_F(DialogTest, TheFocusComesBackAfterABoxAndAfterADialog) {
  Gallery inner(services_);
  HWND outer = nullptr;
  WhenPressed([&] {
    outer = GetActiveWindow();
    desktop_.Show("a message", MessageIcon::None, MessageButtons::Ok, "title");
    windows_.ShowModal(inner, &gallery_);
  });
  const auto sendAwayModal = [&](HWND front) {
    EXPECT_EQ(IsWindowEnabled(outer), FALSE);
    EXPECT_EQ(IsWindowEnabled(owner_), FALSE);
    Modals::SendAway(front);
  };
  Modals modals;
  modals.Click("cmdHidden").Then(sendAwayModal).Then(sendAwayModal).Then([&](HWND front) {
    EXPECT_EQ(front, outer);
    EXPECT_EQ(FocusName(), "cmdHidden");
    EXPECT_EQ(GetActiveWindow(), outer);
    Modals::PostKey(VK_ESCAPE);
  });
  Show(gallery_);
  EXPECT_EQ(GetActiveWindow(), owner_);
}

TEST_F(DialogTest, ABusyFormTakesNoInputAndShowsTheWaitPointer) {
  int pressed = 0;
  WhenPressed([&] {
    if (++pressed > 1) return;
    gallery_.tvNodes.SetExpanded(gallery_.tvNodes.FirstChild(Tree::NoNode), true);
    gallery_.tvNodes.Refresh();
    const HWND form = GetAncestor(GetFocus(), GA_ROOT);
    const HWND box = FindNamed(form, "chkFrame");
    gallery_.SetEnabled(false);
    gallery_.SetMousePointer(Form::Pointer::Wait);
    EXPECT_EQ(IsWindowEnabled(form), FALSE);
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
    Send(box, WM_SETCURSOR, box, MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT)) << "over a control, too";
    Modals::PostKey(VK_SPACE);
    const std::string before = Seen(form);
    // As programs that drive the windows do: each window has changed before it says so.
    Modals::PostClick(box);
    Modals::PostClick(FindNamed(form, "optTwo"));
    Send(FindNamed(form, "txtNumber"), EM_REPLACESEL, TRUE, L"7");
    Send(FindNamed(form, "sldLevel"), WM_KEYDOWN, VK_END);
    Send(FindNamed(form, "sldLevel"), WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA));
    Send(FindNamed(form, "gdRows"), WM_KEYDOWN, VK_END);
    Send(FindNamed(form, "tvNodes"), WM_KEYDOWN, VK_SPACE);
    Send(FindNamed(form, "tvNodes"), WM_CHAR, 'l', 1);
    desktop_.ProcessPendingMessages();
    EXPECT_EQ(pressed, 1);
    EXPECT_EQ(Seen(form), before);
    gallery_.SetMousePointer(Form::Pointer::Default);
    gallery_.SetEnabled(true);
    EXPECT_NE(IsWindowEnabled(form), FALSE);
    EXPECT_EQ(FocusName(), "cmdHidden");
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_ARROW));
  });
  Modals modals;
  modals.Click("cmdHidden").Press(VK_ESCAPE);
  Show(gallery_);
}

TEST_F(DialogTest, ANotchOfTheWheelMovesASliderByOnePosition) {
  Modals modals;
  modals.Then([&](HWND front) {
    const HWND slider = FindNamed(front, "sldLevel");
    std::string positions;
    for (const int turn : {-120, -60, -60, -20, 120, 20, 240}) {
      Send(slider, WM_MOUSEWHEEL, MAKEWPARAM(0, turn));
      positions += std::to_string(gallery_.sldLevel.Position()) + " ";
    }
    EXPECT_EQ(positions, "1 1 2 2 2 1 0 ");
    EXPECT_EQ(Send(slider, TBM_GETPOS), 0);
    Modals::PostKey(VK_ESCAPE);
  });
  Show(gallery_);
}

TEST_F(DialogTest, ANoticeStandsAboveEverything) {
  frmNotice notice;
  notice.Initialize("Title", "Keep [b]everything[b]?", {"Yes", "No"});
  Modals modals;
  modals.Then([&](HWND front) {
    EXPECT_NE(GetWindowLongPtrW(front, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    EXPECT_EQ(GetWindow(front, GW_HWNDFIRST), front);
    PostMessageW(front, WM_CLOSE, 0, 0);
  });
  windows_.ShowModal(notice, nullptr);
  EXPECT_EQ(notice.Answer(), 2);
}

// --- ends

TEST_F(DialogTest, WhatAHandlerThrowsComesOutOnceTheDialogsAreGone) {
  for (const int kind : {0, 1, 2}) {
    SCOPED_TRACE(kind);
    Gallery inner(services_);
    inner.chkFrame.OnClick = [&] {
      if (kind == 0) throw Error(1234, "thrown", "test");
      if (kind == 1) throw std::runtime_error("thrown");
      throw kind;
    };
    WhenPressed([&] { windows_.ShowModal(inner, &gallery_); });
    Modals modals;
    modals.Click("cmdHidden").Click("chkFrame");
    int caught = -1;
    try {
      Show(gallery_);
    } catch (const Error&) {
      caught = 0;
    } catch (const std::runtime_error&) {
      caught = 1;
    } catch (int) {
      caught = 2;
    }
    EXPECT_EQ(caught, kind);
    EXPECT_FALSE(inner.IsShowing());
    EXPECT_FALSE(gallery_.IsShowing());
    EXPECT_NE(IsWindowEnabled(owner_), FALSE);
    EXPECT_EQ(GetActiveWindow(), owner_);
  }
}

TEST_F(DialogTest, TheEndOfTheProgramEndsEveryDialog) {
  Gallery inner(services_);
  WhenPressed([&] { windows_.ShowModal(inner, &gallery_); });
  Modals modals;
  modals.Click("cmdHidden").Then([](HWND) { PostQuitMessage(7); });
  Show(gallery_);
  EXPECT_FALSE(inner.IsShowing());
  EXPECT_FALSE(gallery_.IsShowing());
  MSG message{};
  ASSERT_NE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), FALSE)
      << "whoever runs the outer loop has to hear of it";
  EXPECT_EQ(message.wParam, 7U);
}

/// What comes while the dialog's loop waits for a message is none that it would see.
TEST_F(DialogTest, AnotherThreadDestroysTheOwner) {
  std::thread other([owner = owner_] {
    while (IsWindowEnabled(owner) != FALSE) Sleep(1);  // until the dialog stands over it
    SendMessageW(owner, WM_CLOSE, 0, 0);
  });
  Show(gallery_);
  other.join();
  EXPECT_FALSE(gallery_.IsShowing());
  EXPECT_EQ(IsWindow(owner_), FALSE);
}

TEST_F(DialogTest, ADialogWithoutALayoutDisablesNobody) {
  class Unknown final : public Dialog {
   public:
    Unknown() : Dialog("Unknown") {}
  } unknown;
  EXPECT_THROW(windows_.ShowModal(unknown, nullptr), Error);
  EXPECT_NE(IsWindowEnabled(owner_), FALSE);
}

/// The container of a page may release it at any time, also while the page runs a handler.
TEST_F(DialogTest, AWindowLivesAsLongAsAnythingRunsInIt) {
  std::shared_ptr<FormWindow> window;
  const std::vector<std::pair<const char*, Modals::Step>> ways = {
      {"a message to the form",
       [](HWND form) {
         const HWND slider = FindNamed(form, "sldLevel");
         Send(slider, TBM_SETPOS, TRUE, 1);
         Send(form, WM_HSCROLL, SB_THUMBPOSITION, slider);
       }},
      {"a message to a control",
       [](HWND form) { Send(FindNamed(form, "sldLevel"), WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA)); }},
      {"a key",
       [&](HWND form) {
         window->Translate({form, WM_KEYDOWN, VK_RETURN, 1, 0, {}});
       }},
      {"an access key",
       [&](HWND form) { window->PressAccessKey(MarkOf(TextOfWindow(FindNamed(form, "chkFrame")))); }},
      {"assistive software",
       [](HWND form) { AccessibleOf(FindNamed(form, "lblHot"))->accSelect(SELFLAG_TAKEFOCUS, Child(1)); }},
  };
  for (const auto& [name, enter] : ways) {
    SCOPED_TRACE(name);
    Gallery gallery(services_);
    auto owner = std::make_shared<int>();
    const std::weak_ptr ownerAlive = owner;
    window = FormWindow::Make(gallery, {TestedModule(), workbench::LayoutOfGallery(), owner_, nullptr,
                                        [ownerAlive] { return ownerAlive.lock(); }});
    const std::weak_ptr alive = window;
    int ran = 0;
    const auto letGo = [&] {
      ++ran;
      window.reset();
      owner.reset();
      EXPECT_FALSE(alive.expired() || ownerAlive.expired());
    };
    for (Event* const event : {&gallery.sldLevel.OnChange, &gallery.cmdOk.OnClick, &gallery.chkFrame.OnClick,
                               &gallery.lblHot.OnGotFocus}) {
      *event = letGo;
    }
    enter(window->Handle());
    EXPECT_EQ(ran, 1);
    EXPECT_TRUE(alive.expired() && ownerAlive.expired());
  }
}

// --- what assistive software and others see

TEST_F(DialogTest, FieldsAreNamedByTheirSection) {
  Modals modals;
  modals.Then([&](HWND front) {
    for (const char* const field : {"txtNumber", "sldLevel", "gdRows"}) {
      EXPECT_EQ(AccessibleNameOf(FindNamed(front, field)), "Every kind of control") << field;
    }
    Modals::PostKey(VK_ESCAPE);
  });
  Show(gallery_);
}

TEST_F(DialogTest, TheLinksOfATextAreFoundReachedAndFollowed) {
  ComPtr<IAccessible> text;
  Bstr name;
  const auto nameOf = [&](LONG child) { return text->get_accName(Child(child), name.Receive()); };
  const auto answer = [&](const auto& ask) {
    VARIANT value{};
    const HRESULT outcome = ask(&value);
    return value.vt == VT_I4 ? value.lVal : -1 - outcome;
  };
  const auto stateOf = [&](LONG child) {
    return answer([&](VARIANT* state) { return text->get_accState(Child(child), state); });
  };
  const auto focused = [&] { return answer([&](VARIANT* child) { return text->get_accFocus(child); }); };
  Modals modals;
  modals.Then([&](HWND front) {
    text = AccessibleOf(FindNamed(front, "lblHot"));
    LONG count = 0;
    EXPECT_EQ(text->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(nameOf(CHILDID_SELF), S_OK);
    EXPECT_EQ(name.Text(), gallery_.lblHot.Text().PlainText());
    EXPECT_EQ(nameOf(2), S_OK);
    EXPECT_EQ(name.Text(), "the second");
    EXPECT_EQ(nameOf(3), E_INVALIDARG);
    EXPECT_EQ(answer([&](VARIANT* role) { return text->get_accRole(Child(2), role); }), ROLE_SYSTEM_LINK);
    EXPECT_EQ(stateOf(2) & STATE_SYSTEM_FOCUSED, 0);
    // Where it says that a link is, it finds the link.
    for (const LONG link : {1, 2}) {
      LONG left = 0, top = 0, width = 0, height = 0;
      EXPECT_EQ(text->accLocation(&left, &top, &width, &height, Child(link)), S_OK);
      const auto hit = [&](VARIANT* child) {
        return text->accHitTest(left + width / 2, top + height / 2, child);
      };
      EXPECT_EQ(answer(hit), link);
      const auto next = [&](VARIANT* child) { return text->accNavigate(NAVDIR_NEXT, Child(link), child); };
      EXPECT_EQ(answer(next), link == 1 ? 2 : -1 - S_FALSE);
    }
    EXPECT_EQ(text->accSelect(SELFLAG_TAKEFOCUS, Child(1)), S_OK);
    EXPECT_EQ(focused(), 1);
    Modals::PostKey(VK_RIGHT);
  });
  modals.Then([&](HWND) {
    EXPECT_EQ(focused(), 2);
    EXPECT_NE(stateOf(2) & STATE_SYSTEM_FOCUSED, 0);
    EXPECT_EQ(text->accDoDefaultAction(Child(1)), S_OK);
  });
  modals.Then([&](HWND) {
    EXPECT_NE(gallery_.lblEvents.Caption().find("lblHot_Click"), std::string::npos);
    EXPECT_EQ(focused(), 1);
    Modals::PostKey(VK_ESCAPE);
  });
  Show(gallery_);
  EXPECT_EQ(nameOf(1), CO_E_OBJNOTCONNECTED) << "it is kept, the text is gone";
  EXPECT_EQ(text->accDoDefaultAction(Child(1)), CO_E_OBJNOTCONNECTED);
}

}  // namespace
}  // namespace vexa::windows
