#include <gtest/gtest.h>

#include "core/Error.h"
#include "display/CheckBox.h"
#include "display/Frame.h"
#include "display/Grid.h"
#include "display/OptionButton.h"
#include "display/OptionsSection.h"
#include "display/Slider.h"
#include "display/TextBox.h"
#include "display/UserActions.h"

namespace vexa {
namespace {

/// A form whose controls write every event into one line.
class TestForm final : public Dialog {
 public:
  TestForm() : Dialog("TestForm") {
    for (Control* control : Controls()) {
      control->OnGotFocus = [this, control] { Log(control->Name() + "+"); };
      control->OnLostFocus = [this, control] { Log(control->Name() + "-"); };
    }
    box.OnChange = [this] { Log("box=" + box.Text()); };
    box.OnValidate = [this] {
      Log(valid ? "valid" : "invalid");
      return valid;
    };
    check.OnClick = [this] { Log("check"); };
    for (OptionButton* option : group) option->OnClick = [this, option] { Log(option->Name()); };
    ok.OnClick = [this] { Log("ok"); };
    cancel.OnClick = [this] { Log("cancel"); };
    slider.OnChange = [this] { Log("slider=" + std::to_string(slider.Position())); };
    SetDefaultButton(ok);
    SetCancelButton(cancel);
    Show();
    EXPECT_EQ(Take(), "box+") << "the first one has the focus and hears of it";
  }

  void Log(const std::string& event) { events += (events.empty() ? "" : " ") + event; }
  std::string Take() { return std::exchange(events, {}); }

  OptionGroup group;
  TextBox box{*this, "box"};
  CheckBox check{*this, "check"};
  Frame frame{*this, "frame"};
  OptionButton one{*this, "one", group};
  OptionButton two{*this, "two", group};
  Slider slider{*this, "slider", 0, 3};
  Button ok{*this, "ok"};
  Button cancel{*this, "cancel"};
  bool valid = true;
  std::string events;
};

TEST(Events, AreRaisedWhenAValueReallyChanges) {
  TestForm form;
  form.box.SetText("");
  form.check.SetChecked(false);
  form.slider.SetPosition(-5);  // clamped to where it is
  EXPECT_EQ(form.Take(), "");
  form.box.SetText("a");
  form.check.SetChecked(true);
  form.slider.SetPosition(99);
  form.one.Select();
  form.one.Select();
  form.two.Select();
  EXPECT_EQ(form.Take(), "box=a check slider=3 one two");
  EXPECT_FALSE(form.one.Selected());
}

TEST(Focus, StaysInABoxUntilItsEntryIsValid) {
  TestForm form;
  UserActions user(form);
  form.valid = false;
  EXPECT_EQ(user.Click(form.check), Outcome::FocusKept);
  EXPECT_EQ(user.Click(form.ok), Outcome::FocusKept);
  EXPECT_EQ(user.Leave(), Outcome::FocusKept);
  EXPECT_EQ(form.Take(), "invalid invalid invalid") << "and no click arrived";
  EXPECT_EQ(user.Enter(), Outcome::Done);
  EXPECT_EQ(user.Escape(), Outcome::Done);
  EXPECT_EQ(user.Click(form.cancel), Outcome::Done);
  form.CloseWindow();
  EXPECT_EQ(form.Take(), "ok cancel cancel") << "Enter, Esc, Cancel and closing never validate";
  form.valid = true;
  EXPECT_EQ(user.Click(form.check), Outcome::Done);
  EXPECT_EQ(form.Take(), "valid box- check+ check");
}

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
  UserActions(form).Focus(form.one);
  form.one.SetFrame(&form.frame);
  form.two.SetFrame(&form.frame);
  form.Take();
  form.frame.SetEnabled(false);
  EXPECT_EQ(form.Focus(), &form.slider);
  EXPECT_EQ(form.Take(), "one- slider+");
  EXPECT_EQ(UserActions(form).Choose(form.two), Outcome::Disabled);
  form.frame.SetVisible(false);
  EXPECT_EQ(UserActions(form).Choose(form.two), Outcome::Hidden);
  for (Control* control : form.Controls()) control->SetEnabled(false);
  EXPECT_EQ(form.Focus(), nullptr);
}

TEST(Focus, AFocusedButtonIsTheOneThatEnterPresses) {
  TestForm form;
  UserActions user(form);
  user.Focus(form.cancel);
  user.Press(KeyReturn);
  user.Focus(form.slider);
  user.Press(KeyReturn);
  EXPECT_TRUE(form.Take().ends_with("cancel cancel- slider+ ok"));
  form.ok.SetEnabled(false);
  EXPECT_EQ(user.Enter(), Outcome::Disabled);
}

TEST(GridModel, KeepsOneRowAndACurrentCell) {
  Form form("f");
  Grid grid(form, "g", 2);
  int moves = 0;
  grid.OnSelChange = [&] { ++moves; };
  grid.SetRow(1, {"a", "b"});
  grid.AddRow({"c", "d"});
  EXPECT_EQ(moves, 0) << "filling raises nothing";
  grid.SetCurrent(2, 1);
  EXPECT_EQ(grid.Text(), "d");
  grid.AddRow({"e"});
  EXPECT_EQ(grid.TextAt(3, 1), "");
  grid.RemoveRow(3);
  grid.RemoveRow(2);
  EXPECT_EQ(grid.CurrentRow(), 1);
  EXPECT_EQ(grid.Text(), "b");
  EXPECT_EQ(moves, 2);
  grid.Clear();
  EXPECT_EQ(grid.RowCount(), 1);
  EXPECT_EQ(grid.Text(), "");
  EXPECT_EQ(grid.CurrentColumn(), 0);
}

TEST(TreeModel, FindsNodesByKeyUntilTheyAreRemoved) {
  Form form("f");
  Tree tree(form, "t");
  const Tree::Node root = tree.Add(Tree::NoNode, "@r", "root");
  const Tree::Node child = tree.Add(root, "@c", "child");
  tree.Add(child, "", "placeholder");
  tree.Add(child, "", "another without a key");
  EXPECT_EQ(tree.Find("@c"), child);
  EXPECT_EQ(tree.Find("@C"), Tree::NoNode) << "keys compare exactly";
  EXPECT_EQ(tree.Find(""), Tree::NoNode);
  EXPECT_THROW(tree.Add(root, "@r", "again"), Error);
  tree.Select(child);
  tree.Remove(child);
  EXPECT_EQ(tree.Find("@c"), Tree::NoNode);
  EXPECT_EQ(tree.Selected(), Tree::NoNode);
  EXPECT_TRUE(tree.Children(root).empty());
  EXPECT_EQ(tree.Text(tree.Add(root, "@c", "new")), "new") << "a key that was given back";
}

TEST(SectionHeader, StartsItsRuleBehindTheCaption) {
  Form form("f");
  OptionsSection section(form, "s");
  EXPECT_EQ(section.Shadow(), (OptionsSection::Line{1560, 5805, 90}));
  section.SetMeasure([](const std::string& caption) { return 100 * static_cast<int>(caption.size()); });
  section.SetCaption("four");
  EXPECT_EQ(section.Shadow(), (OptionsSection::Line{285 + 400 + 15, 5805, 90}));
  section.Resize(300);
  EXPECT_EQ(section.Highlight(), (OptionsSection::Line{700, 299, 105}))
      << "its end may lie left of its start";
  section.ReadProperties({});
  EXPECT_EQ(section.Caption(), OptionsSection::DefaultCaption);
  EXPECT_FALSE(section.WriteProperties().caption.has_value());
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
  EXPECT_EQ(user.Click(form.ok), Outcome::Disabled);
  EXPECT_EQ(user.Click(form.check), Outcome::Disabled);
  EXPECT_EQ(user.Type(form.box, "x"), Outcome::Disabled);
  EXPECT_EQ(user.Slide(form.slider, 2), Outcome::Disabled);
  EXPECT_EQ(user.Enter(), Outcome::Disabled);
  EXPECT_EQ(user.Escape(), Outcome::Disabled);
  EXPECT_EQ(user.Press(KeyTab), Outcome::Disabled);
  EXPECT_EQ(form.Take(), "");
  EXPECT_TRUE(form.ok.Enabled()) << "the controls keep their own state";
  EXPECT_EQ(form.Focus(), &form.box);
  form.SetMousePointer(Form::Pointer::Default);
  form.SetEnabled(true);
  EXPECT_EQ(user.Click(form.check), Outcome::Done);
  EXPECT_EQ(view.states, "off; off waits; off; on; ");
}

}  // namespace
}  // namespace vexa
