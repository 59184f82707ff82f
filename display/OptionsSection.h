// The header of a group of settings: a picture at the left, a caption beside it, and an etched rule from
// just behind the caption to the right edge. All numbers are in the control's own units (twips at design
// time); how wide a caption is, only the view can tell, so it hands in a measuring function.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "display/Control.h"

namespace vexa {

class OptionsSection final : public Control {
 public:
  /// Width of a caption in the control's units, 0 or more. The rule starts at INT_MAX at most.
  using Measure = std::function<int(const std::string& caption)>;

  struct Line {
    int x1;
    int x2;
    int y;
    friend bool operator==(const Line&, const Line&) = default;
  };

  /// What a form file keeps of a control; a missing entry is read as its default.
  struct SavedProperties {
    std::optional<std::string> caption;
    std::optional<vexa::Picture> picture;
  };

  static constexpr const char* DefaultCaption = "Options Section";

  OptionsSection(Form& form, std::string name, StringId caption = StringId::None, int32_t pictureId = 0);

  void SetCaption(std::string caption) override;

  /// From now on captions are measured so; the present one is laid out again.
  void SetMeasure(Measure measure);
  /// The control's inner width has changed. Moves the right ends of the rule only: one that is narrower
  /// than the caption has its end left of its start.
  void Resize(int innerWidth);

  /// The scale of the control's surface, as Visual Basic numbers it; 3 is pixels.
  int ScaleMode() const { return scaleMode_; }
  int CaptionLeft() const { return captionLeft_; }
  int CaptionWidth() const { return captionWidth_; }
  int CaptionHeight() const { return captionHeight_; }
  const Line& Shadow() const { return line1_; }
  const Line& Highlight() const { return line2_; }

  void ReadProperties(const SavedProperties& saved);
  /// A caption equal to the default is left out.
  SavedProperties WriteProperties() const;

 private:
  void LayOut();

  // First of all, before anything is laid out in these units.
  int scaleMode_ = 3;
  int captionLeft_ = 285;
  int captionWidth_ = 1260;
  int captionHeight_ = 195;
  Line line1_{1560, 5805, 90};
  Line line2_{1560, 5805, 105};
  Measure measure_;
};

}  // namespace vexa
