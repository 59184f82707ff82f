#include "display/OptionsSection.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vexa {
namespace {

constexpr int GapBehindCaption = 15;

}  // namespace

OptionsSection::OptionsSection(Form& form, std::string name, StringId caption, int32_t pictureId)
    : Control(form, std::move(name), ControlKind::Section, caption, pictureId) {
  Control::SetCaption("Tracked Contacts");  // the caption that the design sizes belong to
}

void OptionsSection::SetCaption(std::string caption) {
  Control::SetCaption(std::move(caption));
  LayOut();
}

void OptionsSection::SetMeasure(Measure measure) {
  measure_ = std::move(measure);
  LayOut();
}

void OptionsSection::Resize(int innerWidth) {
  line1_.x2 = innerWidth - 1;
  line2_.x2 = line1_.x2;
  Changed();
}

void OptionsSection::ReadProperties(const SavedProperties& saved) {
  SetCaption(saved.caption.value_or(DefaultCaption));
  SetPicture(saved.picture.value_or(vexa::Picture()));
}

OptionsSection::SavedProperties OptionsSection::WriteProperties() const {
  SavedProperties saved;
  if (Caption() != DefaultCaption) saved.caption = Caption();
  if (Picture().kind != vexa::Picture::Kind::None) saved.picture = Picture();
  return saved;
}

void OptionsSection::LayOut() {
  if (measure_) captionWidth_ = measure_(Caption());
  constexpr int most = std::numeric_limits<int>::max();
  line1_.x1 =
      captionLeft_ + std::min(captionWidth_, most - captionLeft_ - GapBehindCaption) + GapBehindCaption;
  line2_.x1 = line1_.x1;
  Changed();
}

}  // namespace vexa
