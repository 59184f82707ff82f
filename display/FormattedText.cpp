#include "display/FormattedText.h"

#include <algorithm>
#include <array>

namespace vexa {
namespace {

constexpr std::string_view TagLetters = "bih";
constexpr size_t TagLength = 3;  // "[b]"

struct Tag {
  size_t position;
  size_t kind;  // in TagLetters
};

/// The tags that have a partner, in order.
std::vector<Tag> FindTags(std::string_view source) {
  std::vector<Tag> tags;
  for (size_t at = source.find('['); at != std::string_view::npos; at = source.find('[', at + 1)) {
    if (at + TagLength > source.size() || source[at + 2] != ']') continue;
    const size_t kind = TagLetters.find(source[at + 1]);
    if (kind != std::string_view::npos) tags.push_back({at, kind});
  }
  for (size_t kind = 0; kind < TagLetters.size(); ++kind) {
    const auto isOfKind = [kind](const Tag& tag) { return tag.kind == kind; };
    if (std::ranges::count_if(tags, isOfKind) % 2 == 0) continue;
    tags.erase(std::find_if(tags.rbegin(), tags.rend(), isOfKind).base() - 1);
  }
  return tags;
}

}  // namespace

FormattedText::FormattedText(std::string_view source) {
  std::array<bool, TagLetters.size()> on{};
  int32_t hotSpots = 0;
  size_t start = 0;
  const auto addUpTo = [&](size_t end) {
    if (end <= start) return;
    const TextStyle style{on[0], on[1], on[2] ? hotSpots - 1 : TextStyle::NoHotSpot};
    if (runs_.empty() || runs_.back().style != style) runs_.push_back({{}, style});
    runs_.back().text.append(source.substr(start, end - start));
  };
  for (const Tag& tag : FindTags(source)) {
    const size_t behind = tag.position + TagLength;
    const bool opens = !on[tag.kind];
    const bool blankBefore = tag.position > start && source[tag.position - 1] == ' ';
    addUpTo(tag.position - (!opens && blankBefore ? 1 : 0));
    on[tag.kind] = opens;
    if (opens && TagLetters[tag.kind] == 'h') ++hotSpots;
    start = behind + (opens && behind < source.size() && source[behind] == ' ' ? 1 : 0);
  }
  addUpTo(source.size());
  FindWords();
  NumberHotSpots();
}

void FormattedText::FindWords() {
  TextWord next;
  for (const TextRun& run : runs_) {
    next.style = run.style;
    for (size_t at = 0; at < run.text.size(); ++at) {
      const char c = run.text[at];
      if (c == '\n' || c == '\r') {
        if (c == '\r' && run.text.substr(at + 1, 1) == "\n") ++at;
        ++next.lineBreaks;
        next.blanks = 0;
      } else if (c == ' ' || c == '\t') {
        ++next.blanks;
      } else {
        const size_t end = std::min(run.text.find_first_of(" \t\r\n", at), run.text.size());
        next.text = run.text.substr(at, end - at);
        words_.push_back(next);
        next = {{}, run.style, 0, 0};
        at = end - 1;
      }
    }
  }
}

void FormattedText::NumberHotSpots() {
  std::vector<int32_t> numbers;  // by the number of the pair of tags
  for (TextWord& word : words_) {
    if (word.style.hotSpot == TextStyle::NoHotSpot) continue;
    numbers.resize(std::max(numbers.size(), static_cast<size_t>(word.style.hotSpot) + 1),
                   TextStyle::NoHotSpot);
    int32_t& number = numbers[static_cast<size_t>(word.style.hotSpot)];
    if (number == TextStyle::NoHotSpot) number = hotSpotCount_++;
    word.style.hotSpot = number;
  }
  for (TextRun& run : runs_) {
    const auto pair = static_cast<size_t>(run.style.hotSpot);
    if (run.style.hotSpot != TextStyle::NoHotSpot)
      run.style.hotSpot = pair < numbers.size() ? numbers[pair] : TextStyle::NoHotSpot;
  }
}

size_t FormattedText::FirstWordOf(int32_t hotSpot) const {
  const auto found =
      std::ranges::find_if(words_, [&](const TextWord& word) { return word.style.hotSpot == hotSpot; });
  return static_cast<size_t>(found - words_.begin());
}

std::string FormattedText::HotSpotText(int32_t hotSpot) const {
  std::string text;
  for (const TextRun& run : runs_) {
    if (run.style.hotSpot == hotSpot) text += run.text;
  }
  return text;
}

std::string FormattedText::PlainText() const {
  std::string text;
  for (const TextRun& run : runs_) text += run.text;
  return text;
}

}  // namespace vexa
