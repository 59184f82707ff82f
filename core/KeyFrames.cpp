#include "core/KeyFrames.h"

#include <algorithm>

namespace vexa {
namespace {

/// Shorter keys are not worth a frame.
constexpr size_t ShortestKey = 64;
/// Some for every store that is open. More would be keys that only chance makes alike.
constexpr size_t MostFrames = 64;

bool MostOf(size_t part, size_t whole) { return part * 3 >= whole * 2; }

}  // namespace

KeyFrames::Number KeyFrames::AnotherFrameFor(std::string_view key) {
  if (key.size() < ShortestKey) return Whole;
  for (size_t number = 1; number < frames_.size(); ++number) {
    if (Fits(frames_[number], key)) return last_ = static_cast<Number>(number);
  }
  return NewFrame(key);
}

/// Made of what the key shares with the last one without a frame, when that is most of it.
KeyFrames::Number KeyFrames::NewFrame(std::string_view key) {
  const size_t shorter = std::min(key.size(), misfit_.size());
  size_t prefix = 0;
  while (prefix < shorter && key[prefix] == misfit_[prefix]) ++prefix;
  size_t suffix = 0;
  while (suffix < shorter - prefix && key[key.size() - suffix - 1] == misfit_[misfit_.size() - suffix - 1]) {
    ++suffix;
  }
  Number number = Whole;
  if (frames_.size() < MostFrames && MostOf(prefix + suffix, key.size())) {
    frames_.push_back({std::string(key.substr(0, prefix)), std::string(key.substr(key.size() - suffix))});
    number = last_ = static_cast<Number>(frames_.size() - 1);
  }
  misfit_ = key;
  return number;
}

}  // namespace vexa
