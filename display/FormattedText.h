// A text with bracket tags, taken apart. Tags are used in pairs, the first one switches on and the next one
// off: "[b] bold [b]", "[i] italics [i]", "[h] hot spot [h]"; pairs may lie in each other and overlap. The
// blank just inside a tag belongs to the tag. What is no tag is text: other brackets, and the last of an odd
// number of the same tag.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexa {

struct TextStyle {
  static constexpr int32_t NoHotSpot = -1;

  bool bold = false;
  bool italic = false;
  int32_t hotSpot = NoHotSpot;  // which hot spot it is part of, from 0
  friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

/// A stretch of text in one style, blanks and line breaks included.
struct TextRun {
  std::string text;
  TextStyle style;
};

/// What is laid out as one piece. A word that changes its style halfway is several of these; the later ones
/// have neither blanks nor line breaks before them and stay on the line.
struct TextWord {
  std::string text;
  TextStyle style;
  int32_t blanks = 0;      // between the word before and this one, unless a line ends there
  int32_t lineBreaks = 0;  // before this word
};

class FormattedText {
 public:
  FormattedText() = default;
  explicit FormattedText(std::string_view source);

  const std::vector<TextRun>& Runs() const { return runs_; }
  const std::vector<TextWord>& Words() const { return words_; }

  /// Hot spots that hold a word; others cannot be clicked and do not count.
  int32_t HotSpotCount() const { return hotSpotCount_; }
  /// Index of a hot spot's first word.
  size_t FirstWordOf(int32_t hotSpot) const;
  /// What a hot spot reads.
  std::string HotSpotText(int32_t hotSpot) const;

  /// The text without its tags.
  std::string PlainText() const;

 private:
  void FindWords();
  void NumberHotSpots();

  std::vector<TextRun> runs_;
  std::vector<TextWord> words_;
  int32_t hotSpotCount_ = 0;
};

}  // namespace vexa
