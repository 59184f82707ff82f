#include <gtest/gtest.h>

#include "display/CheckBox.h"
#include "display/OptionButton.h"
#include "display/Slider.h"
#include "display/TextBox.h"
#include "display/UserActions.h"

namespace vexa {
namespace {

class TestForm final : public Dialog {
 public:
  TestForm() : Dialog("TestForm") {
    for (Control* control : Controls()) {
      control->OnGotFocus = [this, control] { events += control->Name() + "+ "; };
      control->OnLostFocus = [this, control] { events += control->Name() + "- "; };
    }
    SetDefaultButton(ok);
    SetCancelButton(cancel);
    Show();
  }

  OptionGroup group;
  TextBox box{*this, "box"};
  CheckBox check{*this, "check"};
  OptionButton one{*this, "one", group};
  OptionButton two{*this, "two", group};
  Slider slider{*this, "slider", 0, 3};
  Button ok{*this, "ok"};
  Button cancel{*this, "cancel"};
  std::string events;
};

TEST(Focus, MeetsOneOptionOfAGroup) {
  TestForm form;
  EXPECT_EQ(form.NextInTabOrder(&form.check), &form.one) << "the first, where none is selected";
  EXPECT_EQ(form.NextInTabOrder(&form.one), &form.slider);
  form.two.Select();
  EXPECT_EQ(form.NextInTabOrder(&form.check), &form.two);
  EXPECT_EQ(form.NextInTabOrder(&form.slider, true), &form.two);
  EXPECT_EQ(form.NextInTabOrder(&form.two, true), &form.check);
  form.two.SetEnabled(false);
  EXPECT_EQ(form.NextInTabOrder(&form.check), &form.one) << "the selected one cannot be used";
}

TEST(Focus, MovesOffAControlThatIsNoLongerUsable) {
  TestForm form;
  EXPECT_EQ(UserActions(form).Focus(form.one), Outcome::Done);
  form.two.SetEnabled(false);
  form.one.SetEnabled(false);
  EXPECT_EQ(form.Focus(), &form.slider);
  EXPECT_EQ(form.events, "box+ box- one+ one- slider+ ");
  for (Control* control : form.Controls()) control->SetEnabled(false);
  EXPECT_EQ(form.Focus(), nullptr);
}

class StateView final : public FormView {
 public:
  void Changed(Control& /*control*/) override {}
  void FocusMoved(Form& /*form*/) override {}
  void StateChanged(Form& form) override {
    states += std::string(form.Enabled() ? "on" : "off") +
              (form.MousePointer() == Form::Pointer::Wait ? " waits; " : "; ");
  }
  void Refresh(Form& /*form*/) override {}
  void Refresh(Control& /*control*/) override {}
  std::string states;
};

TEST(DisabledForm, TakesNoInputAndTellsItsView) {
  TestForm form;
  StateView view;
  form.SetView(&view);
  UserActions user(form);
  form.SetEnabled(false);
  form.SetEnabled(false);
  form.SetMousePointer(Form::Pointer::Wait);
  for (const Outcome outcome : {user.Click(form.ok), user.Click(form.check), user.Type(form.box, "x"),
                                user.Slide(form.slider, 2), user.Enter(), user.Escape(), user.Press(KeyTab)})
    EXPECT_EQ(outcome, Outcome::Disabled);
  EXPECT_TRUE(form.ok.Enabled()) << "the controls keep their own state";
  EXPECT_EQ(form.Focus(), &form.box);
  form.SetMousePointer(Form::Pointer::Default);
  form.SetEnabled(true);
  EXPECT_EQ(user.Click(form.check), Outcome::Done);
  EXPECT_EQ(view.states, "off; off waits; off; on; ");
}

}  // namespace
}  // namespace vexa
