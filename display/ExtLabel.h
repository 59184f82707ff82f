// The formatted label: a text with bracket tags (see FormattedText) whose hot spots can be clicked. OnClick
// is raised for a click on any word, and for Enter or Space on a hot spot. A label takes the keyboard focus
// only while its text has a hot spot. The form owns the label; the view lays its words out and draws them.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "display/Control.h"
#include "display/FormattedText.h"

namespace vexa {

/// Buttons and keys as a view tells them; the keys may be added up.
enum MouseButton : int { ButtonLeft = 1, ButtonRight = 2, ButtonMiddle = 4 };
enum ShiftState : int { ShiftNone = 0, ShiftKey = 1, ShiftCtrl = 2, ShiftAlt = 4 };

class ExtLabel final : public Control {
 public:
  struct WordClick {
    std::string word;
    size_t index = 0;     // of the word in the label, from 0
    bool isLink = false;  // part of a hot spot
    int button = ButtonLeft;
    int shift = ShiftNone;
  };

  enum class Alignment { Left, Center, Right };
  enum class VerticalAlignment { Top, Middle, Bottom };
  enum class Border { None, Single };

  /// How the label looks, its text aside.
  struct Appearance {
    Alignment alignment = Alignment::Left;
    VerticalAlignment verticalAlignment = VerticalAlignment::Top;
    Border border = Border::None;
    bool wordWrap = true;
    friend bool operator==(const Appearance&, const Appearance&) = default;
  };

  /// What a form file keeps of a control; a missing entry is read as its default.
  struct SavedProperties {
    std::optional<std::string> caption;
    std::optional<Alignment> alignment;
    std::optional<VerticalAlignment> verticalAlignment;
    std::optional<Border> border;
    std::optional<bool> wordWrap;
    std::optional<vexa::Picture> picture;
  };

  ExtLabel(Form& form, std::string name, StringId caption = StringId::None)
      : Control(form, std::move(name), ControlKind::ExtLabel, caption) {}

  /// The caption is the text with its tags.
  void SetCaption(std::string caption) override;
  const FormattedText& Text() const { return text_; }
  bool TakesFocus() const override { return text_.HotSpotCount() > 0; }

  const Appearance& Look() const { return appearance_; }
  void SetAppearance(const Appearance& appearance);

  /// The hot spot that Enter and Space click; the first one of a new text.
  int32_t CurrentHotSpot() const { return currentHotSpot_; }
  void SetCurrentHotSpot(int32_t hotSpot);

  /// Raises OnClick for a word; nothing for an index that no word has.
  void ClickWord(size_t index, int button = ButtonLeft, int shift = ShiftNone);

  void ReadProperties(const SavedProperties& saved);
  /// Properties equal to their default are left out.
  SavedProperties WriteProperties() const;

  std::function<void(const WordClick&)> OnClick;

 private:
  FormattedText text_;
  Appearance appearance_;
  int32_t currentHotSpot_ = 0;
};

}  // namespace vexa
