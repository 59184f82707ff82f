// Lets many long keys that resemble one another be kept in little room. The ids of a store's folders, and so
// their keys, begin and end alike and differ in a few characters: what they share is a frame, kept here once,
// and whoever owns a key keeps the number of its frame and the part that is its own. Frames are found by
// comparing keys as they come; nothing is known about how keys are made.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexa {

class KeyFrames {
 public:
  using Number = uint16_t;
  /// The frame of keys that are kept whole.
  static constexpr Number Whole = 0;

  /// The frame to keep this key in.
  Number FrameFor(std::string_view key) {
    return last_ != Whole && Fits(frames_[last_], key) ? last_ : AnotherFrameFor(key);
  }
  /// What remains of a key in the frame that was found for it.
  std::string_view OwnPart(Number frame, std::string_view key) const {
    const Frame& around = frames_[frame];
    return key.substr(around.prefix.size(), key.size() - around.prefix.size() - around.suffix.size());
  }

  /// Whether frame and own part make up `key`.
  bool Make(Number frame, std::string_view own, std::string_view key) const {
    const Frame& around = frames_[frame];
    return key.size() == around.prefix.size() + own.size() + around.suffix.size() &&
           key.substr(around.prefix.size(), own.size()) == own && Fits(around, key);
  }
  /// The key that they make up.
  std::string KeyOf(Number frame, std::string_view own) const {
    return std::string(frames_[frame].prefix).append(own).append(frames_[frame].suffix);
  }

 private:
  struct Frame {
    std::string prefix;
    std::string suffix;
  };

  static bool Fits(const Frame& frame, std::string_view key) {
    return key.size() >= frame.prefix.size() + frame.suffix.size() && key.starts_with(frame.prefix) &&
           key.ends_with(frame.suffix);
  }
  Number AnotherFrameFor(std::string_view key);
  Number NewFrame(std::string_view key);

  std::vector<Frame> frames_{Frame{}};
  Number last_ = Whole;
  std::string misfit_;  // the last long key that was in no frame
};

}  // namespace vexa
