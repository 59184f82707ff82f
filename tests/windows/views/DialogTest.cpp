// A dialog with every kind of control on the screen, where a script cannot go: what is modal to what, the
// pointer, the ways in which a modal dialog may end, and what assistive software sees.
#include <gtest/gtest.h>

#include <thread>

#include "dialogs/frmNotice.h"
#include "tests/windows/views/Stage.h"
#include "windows/com/Com.h"
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

std::string FocusName() { return NameOf(GetFocus()); }

void PostAccessKey(wchar_t letter) { PostMessageW(GetFocus(), WM_SYSCHAR, letter, 1 << 29); }

// --- focus

void EnterText(HWND box, const wchar_t* text) {
  SendMessageW(box, EM_SETSEL, 0, -1);
  SendMessageW(box, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text));
}

TEST_F(DialogTest, AnInvalidEntryKeepsTheFocusHoweverTheUserLeaves) {
  const std::string complaint = "Between 1 and 10, please";
  using Leave = void (*)(HWND front);
  const std::vector<Leave> ways = {
      [](HWND front) { Modals::PostClick(FindNamed(front, "gdRows")); },
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
      EnterText(FindNamed(front, "txtNumber"), L"50");
    });
    modals.Then([&](HWND front) { ways[way](front); });
    modals.Answer(complaint, IDOK);
    modals.Then([&](HWND front) {
      EXPECT_EQ(FocusName(), "txtNumber");
      EXPECT_EQ(gallery.Focus(), &gallery.txtNumber);
      EXPECT_FALSE(gallery.chkFrame.Checked()) << "the click did not arrive";
      EnterText(FindNamed(front, "txtNumber"), L"7");
      Modals::PostKey(VK_TAB);
    });
    modals.Then([&](HWND) {
      EXPECT_NE(FocusName(), "txtNumber");
      Modals::PostKey(VK_ESCAPE);
    });
    Show(gallery);
  }
}

TEST_F(DialogTest, TheFocusComesBackAfterABoxAndAfterADialog) {
  Gallery inner(services_);
  WhenPressed([&] {
    desktop_.Show("a message", MessageIcon::None, MessageButtons::Ok, "title");
    windows_.ShowModal(inner, &gallery_);
  });
  HWND outer = nullptr;
  Modals modals;
  modals.Then([&](HWND front) {
    outer = front;
    Modals::PostClick(FindNamed(front, "cmdHidden"));
  });
  modals.Then([&](HWND front) {
    EXPECT_EQ(MessageOf(front), "a message");
    EXPECT_EQ(IsWindowEnabled(outer), FALSE);
    PostMessageW(GetDlgItem(front, IDOK), BM_CLICK, 0, 0);
  });
  modals.Then([&](HWND front) {
    EXPECT_NE(front, outer);
    EXPECT_EQ(IsWindowEnabled(outer), FALSE);
    EXPECT_EQ(IsWindowEnabled(owner_), FALSE);
    Modals::PostKey(VK_ESCAPE);
  });
  modals.Then([&](HWND front) {
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
    const HWND form = GetAncestor(GetFocus(), GA_ROOT);
    const HWND box = FindNamed(form, "chkFrame");
    gallery_.SetEnabled(false);
    gallery_.SetMousePointer(Form::Pointer::Wait);
    EXPECT_EQ(IsWindowEnabled(form), FALSE);
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
    Send(box, WM_SETCURSOR, box, MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT)) << "over a control, too";
    Modals::PostKey(VK_SPACE);
    Modals::PostClick(box);
    desktop_.ProcessPendingMessages();
    EXPECT_EQ(pressed, 1);
    EXPECT_FALSE(gallery_.chkFrame.Checked());
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

TEST_F(DialogTest, WhatAHandlerThrowsComesOutOnceTheDialogIsGone) {
  for (const int kind : {0, 1, 2}) {
    SCOPED_TRACE(kind);
    Gallery gallery(services_);
    gallery.chkFrame.OnClick = [&] {
      if (kind == 0) throw Error(1234, "thrown", "test");
      if (kind == 1) throw std::runtime_error("thrown");
      throw kind;
    };
    Modals modals;
    modals.Click("chkFrame");
    bool caught = false;
    try {
      Show(gallery);
    } catch (const Error& error) {
      caught = kind == 0 && error.Number == 1234;
    } catch (const std::runtime_error&) {
      caught = kind == 1;
    } catch (int thrown) {
      caught = kind == thrown;
    }
    EXPECT_TRUE(caught);
    EXPECT_FALSE(gallery.IsShowing());
    EXPECT_NE(IsWindowEnabled(owner_), FALSE);
    EXPECT_EQ(GetActiveWindow(), owner_);
  }
}

TEST_F(DialogTest, AThrowInANestedDialogPassesThroughTheOuterOne) {
  Gallery inner(services_);
  inner.chkFrame.OnClick = [] { throw Error(1234, "thrown", "test"); };
  WhenPressed([&] { windows_.ShowModal(inner, &gallery_); });
  Modals modals;
  modals.Click("cmdHidden").Click("chkFrame");
  EXPECT_THROW(Show(gallery_), Error);
  EXPECT_NE(IsWindowEnabled(owner_), FALSE);
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

TEST_F(DialogTest, TheOwnerIsDestroyedMeanwhile) {
  for (const bool byAnotherThread : {false, true}) {
    SCOPED_TRACE(byAnotherThread);
    SetActiveWindow(owner_);
    Gallery gallery(services_);
    std::thread other;
    Modals modals;
    modals.Then([&](HWND) {
      if (byAnotherThread) {
        other = std::thread([owner = owner_] { SendMessageW(owner, WM_CLOSE, 0, 0); });
        // Until it has come: before that, the user would find a dialog that nobody expects.
        for (MSG message{}; IsWindow(owner_) != FALSE;) {
          MsgWaitForMultipleObjects(0, nullptr, FALSE, INFINITE, QS_SENDMESSAGE);
          PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
        }
      } else {
        DestroyWindow(owner_);
      }
    });
    Show(gallery);
    if (other.joinable()) other.join();
    EXPECT_FALSE(gallery.IsShowing());
    EXPECT_EQ(IsWindow(owner_), FALSE);
    owner_ = MakeOwner();
  }
}

TEST_F(DialogTest, TheDialogsWindowIsDestroyed) {
  Modals modals;
  modals.Then([](HWND front) { DestroyWindow(front); });
  Show(gallery_);
  EXPECT_FALSE(gallery_.IsShowing());
}

TEST_F(DialogTest, ADialogWithoutALayoutDisablesNobody) {
  class Unknown final : public Dialog {
   public:
    Unknown() : Dialog("Unknown") {}
  } unknown;
  EXPECT_THROW(windows_.ShowModal(unknown, nullptr), Error);
  EXPECT_NE(IsWindowEnabled(owner_), FALSE);
}

// --- what assistive software and others see

TEST_F(DialogTest, ControlsAreNamedByTheirTextOrTheirSection) {
  Modals modals;
  modals.Then([&](HWND front) {
    const std::string section = "Every kind of control";
    for (const auto& [control, expected] : std::map<std::string, std::string>{{"cmdBrowse", "Browse..."},
                                                                              {"chkFrame", "Choices"},
                                                                              {"optOne", "One"},
                                                                              {"txtNumber", section},
                                                                              {"sldLevel", section},
                                                                              {"gdRows", section}}) {
      EXPECT_EQ(AccessibleNameOf(FindNamed(front, control)), expected) << control;
    }
    Modals::PostKey(VK_ESCAPE);
  });
  Show(gallery_);
}

TEST_F(DialogTest, TheLinksOfATextAreFoundReachedAndFollowed) {
  ComPtr<IAccessible> text;
  const auto number = [](const VARIANT& value) { return value.vt == VT_I4 ? value.lVal : -1; };
  const auto stateOf = [&](LONG child) {
    VARIANT state{};
    EXPECT_EQ(text->get_accState(Child(child), &state), S_OK);
    return number(state);
  };
  const auto focused = [&] {
    VARIANT child{};
    text->get_accFocus(&child);
    return number(child);
  };
  Modals modals;
  modals.Then([&](HWND front) {
    text = AccessibleOf(FindNamed(front, "lblHot"));
    LONG count = 0;
    EXPECT_EQ(text->get_accChildCount(&count), S_OK);
    ASSERT_EQ(count, 2);
    Bstr whole;
    Bstr second;
    EXPECT_EQ(text->get_accName(Child(CHILDID_SELF), whole.Receive()), S_OK);
    EXPECT_EQ(whole.Text(), gallery_.lblHot.Text().PlainText());
    EXPECT_EQ(text->get_accName(Child(2), second.Receive()), S_OK);
    EXPECT_EQ(second.Text(), "the second");
    VARIANT role{};
    EXPECT_EQ(text->get_accRole(Child(2), &role), S_OK);
    EXPECT_EQ(number(role), ROLE_SYSTEM_LINK);
    EXPECT_EQ(stateOf(2) & STATE_SYSTEM_FOCUSED, 0);
    EXPECT_EQ(text->get_accName(Child(3), second.Receive()), E_INVALIDARG);
    // Where it says that a link is, it finds the link.
    for (const LONG link : {1, 2}) {
      LONG left = 0, top = 0, width = 0, height = 0;
      EXPECT_EQ(text->accLocation(&left, &top, &width, &height, Child(link)), S_OK);
      VARIANT hit{};
      EXPECT_EQ(text->accHitTest(left + width / 2, top + height / 2, &hit), S_OK);
      EXPECT_EQ(number(hit), link);
      VARIANT next{};
      EXPECT_EQ(text->accNavigate(NAVDIR_NEXT, Child(link), &next), link == 1 ? S_OK : S_FALSE);
      EXPECT_EQ(number(next), link == 1 ? 2 : -1);
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
    EXPECT_NE(Log(gallery_).find("lblHot_Click"), std::string::npos) << Log(gallery_);
    EXPECT_EQ(focused(), 1);
    Modals::PostKey(VK_ESCAPE);
  });
  Show(gallery_);
  Bstr late;
  EXPECT_EQ(text->get_accName(Child(1), late.Receive()), CO_E_OBJNOTCONNECTED)
      << "it is kept, the text is gone";
  EXPECT_EQ(text->accDoDefaultAction(Child(1)), CO_E_OBJNOTCONNECTED);
}

}  // namespace
}  // namespace vexa::windows
