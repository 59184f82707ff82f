// A dialog with every kind of control on the screen, used with the keyboard; and the ways in which a modal
// dialog may end.
#include <gtest/gtest.h>

#include <algorithm>
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
  Gallery gallery_{services_};
};

std::string FocusName() { return NameOf(GetFocus()); }

void PostAccessKey(wchar_t letter) { PostMessageW(GetFocus(), WM_SYSCHAR, letter, 1 << 29); }

/// The letter that a caption is marked with.
wchar_t MarkOf(const std::wstring& text) {
  for (size_t at = 0; at + 1 < text.size(); ++at) {
    if (text[at] != L'&') continue;
    if (text[at + 1] != L'&') return text[at + 1];
    ++at;
  }
  return 0;
}

TEST_F(DialogTest, TabGoesInTheModelsOrderAndBack) {
  for (const bool backwards : {false, true}) {
    std::vector<std::string> expected;
    std::vector<std::string> seen;
    Modals modals;
    modals.Then([&](HWND) {
      Control* const first = gallery_.NextInTabOrder(nullptr);
      Control* control = first;
      do {
        expected.push_back(control->Name());
        control = gallery_.NextInTabOrder(control, backwards);
      } while (control != first);
      SetShift(backwards);
    });
    for (int i = 0; i < 10; ++i) {
      modals.Then([&](HWND) {
        if (seen.size() == expected.size()) return;
        seen.push_back(FocusName());
        Modals::PostKey(VK_TAB);
      });
    }
    modals.Then([&](HWND) { SetShift(false); }).Press(VK_ESCAPE);
    Show(gallery_);
    EXPECT_GE(expected.size(), 8U);
    EXPECT_EQ(seen, expected);
  }
}

TEST_F(DialogTest, AccessKeysReachTheirTargets) {
  std::string focusAfterSection;
  Modals modals;
  const auto press = [](const std::string& name) {
    return [=](HWND front) { PostAccessKey(MarkOf(TextOfWindow(FindNamed(front, name)))); };
  };
  modals.Then(press("chkFrame")).Then(press("optTwo")).Then(press("opsGallery"));
  modals.Then([&](HWND) {
    focusAfterSection = FocusName();
    Modals::PostKey(VK_ESCAPE);
  });
  Show(gallery_);
  EXPECT_TRUE(gallery_.chkFrame.Checked());
  EXPECT_TRUE(gallery_.optTwo.Selected());
  EXPECT_EQ(focusAfterSection, "txtNumber") << "a section's letter belongs to its first field";
}

TEST_F(DialogTest, SpaceArrowsAndFunctionKeysReachTheControls) {
  Modals modals;
  modals.Then([&](HWND front) { SetFocus(FindNamed(front, "chkFrame")); }).Press(VK_SPACE);
  modals.Then([&](HWND front) { SetFocus(FindNamed(front, "optOne")); }).Press(VK_DOWN).Press(VK_RIGHT);
  modals.Then([&](HWND) {
    EXPECT_EQ(FocusName(), "optThree");
    Modals::PostKey(VK_DOWN);
  });
  modals.Then([&](HWND front) {
    EXPECT_EQ(FocusName(), "optOne") << "around";
    SetFocus(FindNamed(front, "sldLevel"));
  });
  modals.Press(VK_RIGHT).Press(VK_RIGHT).Press(VK_LEFT);
  modals.Then([&](HWND front) { SetFocus(FindNamed(front, "gdRows")); }).Press(VK_DOWN).Press(VK_RIGHT);
  modals.Then([&](HWND front) { SetFocus(FindNamed(front, "tvNodes")); });
  modals.Press(VK_DOWN).Press(VK_SPACE).Press(VK_F5);
  modals.Then([&](HWND front) { SetFocus(FindNamed(front, "cmdOk")); }).Press(VK_F5).Press(VK_SPACE);
  Show(gallery_);
  EXPECT_TRUE(gallery_.chkFrame.Checked());
  EXPECT_TRUE(gallery_.optOne.Selected());
  EXPECT_EQ(gallery_.sldLevel.Position(), 1);
  EXPECT_EQ(gallery_.gdRows.CurrentRow(), 2);
  EXPECT_EQ(gallery_.gdRows.CurrentColumn(), 1);
  const std::string log = Log(gallery_);
  EXPECT_NE(log.find("tvNodes_NodeCheck"), std::string::npos) << log;
  EXPECT_NE(log.find("KeyDown 116"), log.rfind("KeyDown 116")) << "from the tree and from a button: " << log;
}

TEST_F(DialogTest, EnterAndEscapePressTheirButtons) {
  {
    Modals modals;
    modals.Then([&](HWND front) { SetFocus(FindNamed(front, "txtNumber")); }).Press(VK_RETURN);
    Show(gallery_);
    EXPECT_EQ(Log(gallery_).find("cmdCancel_Click"), std::string::npos);
  }
  {
    Modals modals;
    modals.Then([&](HWND front) { SetFocus(FindNamed(front, "cmdCancel")); }).Press(VK_RETURN);
    Show(gallery_);
    EXPECT_NE(Log(gallery_).find("cmdCancel_Click"), std::string::npos)
        << "the focused button is the default";
  }
  Gallery other(services_);
  Modals modals;
  modals.Then([&](HWND front) { SetFocus(FindNamed(front, "tvNodes")); }).Press(VK_ESCAPE);
  Show(other);
  EXPECT_NE(Log(other).find("cmdCancel_Click"), std::string::npos);
}

// --- focus

void EnterText(HWND box, const wchar_t* text) {
  SendMessageW(box, EM_SETSEL, 0, -1);
  SendMessageW(box, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text));
}

TEST_F(DialogTest, AnInvalidEntryKeepsTheFocusHoweverTheUserLeaves) {
  const std::string complaint = "Between 1 and 10, please";
  using Leave = void (*)(HWND front);
  const std::vector<Leave> ways = {
      [](HWND) { Modals::PostKey(VK_TAB); },
      [](HWND front) { Modals::PostClick(FindNamed(front, "gdRows")); },
      [](HWND front) { Modals::PostClick(FindNamed(front, "cmdOk")); },
      [](HWND front) { Modals::PostClick(FindNamed(front, "tvNodes")); },
      [](HWND front) { Modals::PostClick(FindNamed(front, "chkFrame")); },
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

TEST_F(DialogTest, CancelAndClosingValidateNothing) {
  for (const bool byButton : {true, false}) {
    Gallery gallery(services_);
    Modals modals;
    modals.Then([&](HWND front) {
      SetFocus(FindNamed(front, "txtNumber"));
      EnterText(FindNamed(front, "txtNumber"), L"50");
      if (byButton) {
        Modals::PostClick(FindNamed(front, "cmdCancel"));
      } else {
        PostMessageW(front, WM_SYSCOMMAND, SC_CLOSE, 0);
      }
    });
    Show(gallery);
    EXPECT_NE(Log(gallery).find(byButton ? "cmdCancel_Click" : "closed by its window"), std::string::npos);
  }
}

TEST_F(DialogTest, TheFocusComesBackAfterABoxAndAfterADialog) {
  Gallery inner(services_);
  gallery_.cmdHidden.SetVisible(true);
  gallery_.cmdHidden.OnClick = [&] {
    desktop_.Show("a message", MessageIcon::None, MessageButtons::Ok, "title");
    windows_.ShowModal(inner, &gallery_);
  };
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
  gallery_.cmdHidden.SetVisible(true);
  gallery_.cmdHidden.OnClick = [&] {
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
  };
  Modals modals;
  modals.Click("cmdHidden").Press(VK_ESCAPE);
  Show(gallery_);
}

TEST_F(DialogTest, ANoticeStaysOnTopAndAnswersWithItsButton) {
  const struct {
    std::vector<std::string> buttons;
    std::function<void(HWND)> act;
    int32_t answer;
  } rows[] = {
      {{"Yes", "No", "Later"}, [](HWND notice) { Modals::PostClick(FindNamed(notice, "cmdSecond")); }, 2},
      {{"Yes", "No", "Later"}, [](HWND) { Modals::PostKey(VK_RETURN); }, 1},
      {{"Yes", "No", "Later"}, [](HWND) { Modals::PostKey(VK_ESCAPE); }, 3},
      {{"Yes", "No"}, [](HWND notice) { PostMessageW(notice, WM_CLOSE, 0, 0); }, 2},
      {{"OK"}, [](HWND) { Modals::PostKey(VK_SPACE); }, 1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.answer);
    frmNotice notice;
    notice.Initialize("Title", "Keep [b]everything[b]?", row.buttons);
    Modals modals;
    modals.Then([&](HWND front) {
      EXPECT_NE(GetWindowLongPtrW(front, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
      EXPECT_EQ(GetWindow(front, GW_HWNDFIRST), front) << "nothing stands above it";
      size_t shown = 0;
      for (const char* button : {"cmdFirst", "cmdSecond", "cmdThird"})
        if (IsWindowVisible(FindNamed(front, button)) != FALSE) ++shown;
      EXPECT_EQ(shown, row.buttons.size());
      row.act(front);
    });
    windows_.ShowModal(notice, nullptr);
    EXPECT_EQ(notice.Answer(), row.answer);
  }
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
    modals.Then([&](HWND front) { Modals::PostClick(FindNamed(front, "chkFrame")); });
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
  gallery_.cmdHidden.SetVisible(true);
  gallery_.cmdHidden.OnClick = [&] { windows_.ShowModal(inner, &gallery_); };
  Modals modals;
  modals.Click("cmdHidden").Click("chkFrame");
  EXPECT_THROW(Show(gallery_), Error);
  EXPECT_NE(IsWindowEnabled(owner_), FALSE);
}

TEST_F(DialogTest, TheEndOfTheProgramEndsEveryDialog) {
  Gallery inner(services_);
  gallery_.cmdHidden.SetVisible(true);
  gallery_.cmdHidden.OnClick = [&] { windows_.ShowModal(inner, &gallery_); };
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
    owner_ = CreateWindowExW(0, L"STATIC", L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 300, 200,
                             nullptr, nullptr, nullptr, nullptr);
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

VARIANT Child(LONG number) {
  VARIANT child{};
  child.vt = VT_I4;
  child.lVal = number;
  return child;
}

TEST_F(DialogTest, ControlsAreNamedByTheirTextOrTheirSection) {
  ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
  Modals modals;
  modals.Then([&](HWND front) {
    const std::string section = "Every kind of control";
    for (const auto& [control, expected] : std::map<std::string, std::string>{{"cmdBrowse", "Browse..."},
                                                                              {"chkFrame", "Choices"},
                                                                              {"optOne", "One"},
                                                                              {"txtNumber", section},
                                                                              {"sldLevel", section},
                                                                              {"gdRows", section}}) {
      Bstr name;
      const HWND window = FindNamed(front, control);
      const ComPtr<IAccessible> accessible = AccessibleOf(window);
      ASSERT_TRUE(accessible) << control;
      accessible->get_accName(Child(CHILDID_SELF), name.Receive());
      EXPECT_EQ(name.Text(), expected) << control;
    }
    Modals::PostKey(VK_ESCAPE);
  });
  Show(gallery_);
  CoUninitialize();
}

TEST_F(DialogTest, TheLinksOfATextAreFoundReachedAndFollowed) {
  ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
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
  text.Reset();
  CoUninitialize();
}

}  // namespace
}  // namespace vexa::windows
