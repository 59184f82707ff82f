#include <gtest/gtest.h>

#include "display/ExtLabel.h"
#include "display/TextBox.h"
#include "display/UserActions.h"

namespace vexa {
namespace {

/// "b" bold, "i" italics, the number of the hot spot; "_" for each blank and "/" for each line break before.
std::string Words(const FormattedText& text) {
  std::string all;
  for (const TextWord& word : text.Words()) {
    std::string marks;
    if (word.style.bold) marks += "b";
    if (word.style.italic) marks += "i";
    if (word.style.hotSpot != TextStyle::NoHotSpot) marks += std::to_string(word.style.hotSpot);
    all += (all.empty() ? "" : " ") + std::string(static_cast<size_t>(word.lineBreaks), '/') +
           std::string(static_cast<size_t>(word.blanks), '_') + word.text +
           (marks.empty() ? "" : ":" + marks);
  }
  return all;
}

TEST(FormattedText, IsTakenApartByItsTags) {
  const struct {
    std::string source;
    std::string plain;
    std::string words;
  } rows[] = {
      {"", "", ""},
      {"[b] Bold text. [b]", "Bold text.", "Bold:b _text.:b"},
      {"[b] It is [i] highly [i] so. [b]", "It is highly so.", "It:b _is:b _highly:bi _so.:b"},
      {"a[b]b[b]c", "abc", "a b:b c"},
      {"[b]x[i]y[b]z[i]", "xyz", "x:b y:bi z:i"},
      {"[b] [i] x [i] [b] y", "x y", "x:bi _y"},
      {"two  blanks", "two  blanks", "two __blanks"},
      {"one\r\ntwo\nthree\r\rfour", "one\r\ntwo\nthree\r\rfour", "one /two /three //four"},
      {"a \n b", "a \n b", "a /_b"},
      {"Click [h] this here [h] or [h]that[h].", "Click this here or that.",
       "Click _this:0 _here:0 _or _that:1 ."},
      {"[h] [h][h][h] [h]c[h]", " c", "_c:0"},
      {"[b] Bold [h] and hot [h] [b]", "Bold and hot", "Bold:b _and:b0 _hot:b0"},
      {"été [i] où [i]", "été où", "été _où:i"},
      // No tags: unbalanced, unknown, other case, unfinished.
      {"[b] x [b] y [b] z", "x y [b] z", "x:b _y _[b] _z"},
      {"[i] x [b] y [i]", "x [b] y", "x:i _[b]:i _y:i"},
      {"[u] x [u] [x] [] [ [b", "[u] x [u] [x] [] [ [b", "[u] _x _[u] _[x] _[] _[ _[b"},
      {"[B] x [B]", "[B] x [B]", "[B] _x _[B]"},
      {"[[b]x[b]]", "[x]", "[ x:b ]"},
  };
  for (const auto& row : rows) {
    const FormattedText text(row.source);
    EXPECT_EQ(text.PlainText(), row.plain) << row.source;
    EXPECT_EQ(Words(text), row.words) << row.source;
  }
}

class LabelForm final : public Dialog {
 public:
  LabelForm() : Dialog("f") {
    label.OnClick = [this](const ExtLabel::WordClick& click) {
      clicks += click.word + "/" + std::to_string(click.index) + (click.isLink ? "/link/" : "/") +
                std::to_string(click.button) + "/" + std::to_string(click.shift) + " ";
    };
    ok.OnClick = [this] { clicks += "ok "; };
    SetDefaultButton(ok);
    Show();
  }
  std::string Take() { return std::exchange(clicks, {}); }

  TextBox box{*this, "box"};
  ExtLabel label{*this, "label"};
  Button ok{*this, "ok"};
  std::string clicks;
};

TEST(ExtLabel, TellsWhichWordWasClicked) {
  LabelForm form;
  UserActions user(form);
  form.label.SetCaption("No hot spot here");
  EXPECT_EQ(user.Focus(form.label), Outcome::NotTaken);
  EXPECT_EQ(user.ClickWord(form.label, 0, ButtonLeft, ShiftNone), Outcome::Done);
  EXPECT_EQ(form.Focus(), &form.box) << "without a hot spot there is nothing to focus";
  form.label.SetCaption("A [h] hot spot [h] here");
  EXPECT_EQ(form.label.Text().HotSpotText(0), "hot spot");
  form.box.OnValidate = [] { return false; };
  EXPECT_EQ(user.ClickHotSpot(form.label, 0), Outcome::FocusKept) << "as by a click on a button";
  form.box.OnValidate = {};
  EXPECT_EQ(user.ClickWord(form.label, 2, ButtonRight, ShiftKey + ShiftCtrl), Outcome::Done);
  EXPECT_EQ(user.ClickWord(form.label, 99, ButtonLeft, ShiftNone), Outcome::Done);
  EXPECT_EQ(form.Take(), "No/0/1/0 spot/2/link/2/3 ");
}

TEST(ExtLabel, GoesThroughItsHotSpotsByKey) {
  LabelForm form;
  UserActions user(form);
  form.label.SetCaption("[h]one[h] [h]two[h] [h]three[h]");
  user.Focus(form.label);
  for (const int key : {KeyLeft, KeySpace, KeyEnd, KeyDown, KeySpace, KeyUp, KeyReturn}) user.Press(key);
  EXPECT_EQ(form.Take(), "one/0/link/1/0 three/2/link/1/0 two/1/link/1/0 ") << "the ends hold";
  form.label.SetCaption("[h]new[h]");
  EXPECT_EQ(form.label.CurrentHotSpot(), 0);
}

TEST(ExtLabel, MayGetAnotherTextFromItsOwnClick) {
  LabelForm form;
  form.label.SetCaption("[h] more [h]");
  std::string seen;
  form.label.OnClick = [&](const ExtLabel::WordClick& click) {
    form.label.SetCaption("");
    seen = click.word;
  };
  UserActions(form).ClickHotSpot(form.label, 0);
  EXPECT_EQ(seen, "more");
  EXPECT_EQ(form.Focus(), &form.ok) << "without its hot spot the label loses the focus";
}

TEST(ExtLabel, KeepsWhatDiffersFromItsDefaults) {
  Form form("f");
  ExtLabel label(form, "a");
  ExtLabel copy(form, "b");
  const ExtLabel::SavedProperties saved = label.WriteProperties();
  EXPECT_FALSE(saved.caption || saved.alignment || saved.verticalAlignment || saved.border ||
               saved.wordWrap || saved.picture);
  label.SetPicture({Picture::Kind::Icon, 2302});
  label.SetAppearance(
      {ExtLabel::Alignment::Right, ExtLabel::VerticalAlignment::Middle, ExtLabel::Border::Single, false});
  copy.ReadProperties(label.WriteProperties());
  EXPECT_EQ(copy.Look(), label.Look());
  EXPECT_EQ(copy.Picture(), label.Picture());
  copy.ReadProperties({});
  EXPECT_EQ(copy.Look(), ExtLabel::Appearance());
}

}  // namespace
}  // namespace vexa
