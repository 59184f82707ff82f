// Texts with bracket tags, and what a form file keeps of a label: nothing that is no tag is lost, hot spots
// can all be clicked, and what is saved is read again as it was.
#include "display/ExtLabel.h"
#include "display/Form.h"
#include "fuzz/Fuzz.h"

using vexa::ExtLabel;
using vexa::FormattedText;
using vexa::fuzz::Promise;

namespace {

void CheckText(std::string_view source) {
  const FormattedText text(source);
  std::string runs;
  for (const vexa::TextRun& run : text.Runs()) runs += run.text;
  Promise(runs == text.PlainText(), "the runs are the text");
  Promise(runs.size() <= source.size(), "nothing is added");
  if (source.find('[') == std::string_view::npos)
    Promise(runs == source, "a text without brackets stays as it is");
  for (const vexa::TextWord& word : text.Words()) {
    Promise(!word.text.empty(), "no word is empty");
    Promise(runs.find(word.text) != std::string::npos, "words are parts of the text");
  }
  for (int32_t spot = 0; spot < text.HotSpotCount(); ++spot) {
    Promise(text.Words()[text.FirstWordOf(spot)].style.hotSpot == spot, "each hot spot has a word");
    Promise(!text.HotSpotText(spot).empty(), "each hot spot reads something");
  }
}

void CheckClicks(ExtLabel& label) {
  size_t clicks = 0;
  label.OnClick = [&](const ExtLabel::WordClick& click) {
    ++clicks;
    const vexa::TextWord& word = label.Text().Words()[click.index];
    Promise(click.isLink == (word.style.hotSpot != vexa::TextStyle::NoHotSpot),
            "a link is part of a hot spot");
  };
  const size_t words = label.Text().Words().size();
  for (size_t word = 0; word < words + 2; ++word) label.ClickWord(word);
  Promise(clicks == words, "each word can be clicked, and nothing else");
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vexa::fuzz::Input input(data, size);
  ExtLabel::SavedProperties saved;
  const uint8_t present = input.Byte();
  // Numbers outside of their ranges are what a damaged file holds.
  if ((present & 1) != 0) saved.alignment = static_cast<ExtLabel::Alignment>(input.Byte());
  if ((present & 2) != 0) saved.verticalAlignment = static_cast<ExtLabel::VerticalAlignment>(input.Byte());
  if ((present & 4) != 0) saved.border = static_cast<ExtLabel::Border>(input.Byte());
  if ((present & 8) != 0) saved.wordWrap = input.Byte() % 2 == 0;
  saved.caption = std::string(input.Rest());

  CheckText(*saved.caption);
  vexa::Form form("form");
  ExtLabel label(form, "label");
  label.ReadProperties(saved);
  Promise(label.Caption() == *saved.caption, "the caption is what was saved");
  CheckClicks(label);
  vexa::Form other("other");
  ExtLabel copy(other, "copy");
  copy.ReadProperties(label.WriteProperties());
  Promise(copy.Look() == label.Look() && copy.Caption() == label.Caption(), "what is written is read again");
  return 0;
}
