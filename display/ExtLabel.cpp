#include "display/ExtLabel.h"

#include <algorithm>

namespace vexa {
namespace {

template <typename Value>
std::optional<Value> UnlessDefault(const Value& value, const Value& defaultValue) {
  return value == defaultValue ? std::nullopt : std::optional(value);
}

}  // namespace

void ExtLabel::SetCaption(std::string caption) {
  text_ = FormattedText(caption);
  currentHotSpot_ = 0;
  Control::SetCaption(std::move(caption));
  FocusabilityChanged();
}

void ExtLabel::SetAppearance(const Appearance& appearance) {
  if (appearance_ == appearance) return;
  appearance_ = appearance;
  Changed();
}

void ExtLabel::SetCurrentHotSpot(int32_t hotSpot) {
  hotSpot = std::clamp(hotSpot, 0, std::max(0, text_.HotSpotCount() - 1));
  if (currentHotSpot_ == hotSpot) return;
  currentHotSpot_ = hotSpot;
  Changed();
}

void ExtLabel::ClickWord(size_t index, int button, int shift) {
  if (index >= text_.Words().size()) return;
  const TextWord& word = text_.Words()[index];
  const bool isLink = word.style.hotSpot != TextStyle::NoHotSpot;
  if (isLink) SetCurrentHotSpot(word.style.hotSpot);
  // A copy: the handler may give the label another text.
  const WordClick click{word.text, index, isLink, button, shift};
  if (OnClick) OnClick(click);
}

void ExtLabel::ReadProperties(const SavedProperties& saved) {
  const Appearance defaults;
  SetAppearance({saved.alignment.value_or(defaults.alignment),
                 saved.verticalAlignment.value_or(defaults.verticalAlignment),
                 saved.border.value_or(defaults.border), saved.wordWrap.value_or(defaults.wordWrap)});
  SetCaption(saved.caption.value_or(std::string()));
  SetPicture(saved.picture.value_or(vexa::Picture()));
}

ExtLabel::SavedProperties ExtLabel::WriteProperties() const {
  const Appearance defaults;
  return {UnlessDefault(Caption(), std::string()),
          UnlessDefault(appearance_.alignment, defaults.alignment),
          UnlessDefault(appearance_.verticalAlignment, defaults.verticalAlignment),
          UnlessDefault(appearance_.border, defaults.border),
          UnlessDefault(appearance_.wordWrap, defaults.wordWrap),
          UnlessDefault(Picture(), vexa::Picture())};
}

}  // namespace vexa
