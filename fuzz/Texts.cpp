// Texts that are filled: what comes out is what the replacements do to the text one after the other.
#include <vector>

#include "core/Error.h"
#include "core/Resources.h"
#include "fuzz/Fuzz.h"

namespace {

class OneText final : public vexa::ResourceSource {
 public:
  explicit OneText(std::string_view text) : text_(text) {}
  const vexa::TableText* FindString(int32_t id, vexa::MadeText& made) const override {
    return id == 1 ? made.Make(text_) : nullptr;
  }
  bool HasIcon(int32_t) const override { return false; }
  bool HasCursor(int32_t) const override { return false; }

 private:
  std::string text_;
};

void Replace(std::string& text, const std::string& what, std::string_view by) {
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vexa::fuzz::Input input(data, size);
  std::string expected(input.Text());
  const OneText source(expected);
  std::vector<vexa::Variant> arguments(input.Byte() % 12);
  for (vexa::Variant& argument : arguments) {
    switch (input.Byte() % 4) {
      case 0:
        argument = input.Text();
        break;
      case 1:
        argument = input.Number();
        break;
      case 2:
        argument = input.Byte() % 2 == 0;
        break;
      default:
        argument = input.Number() / 1000.0;
        break;
    }
  }
  for (size_t i = 0; i < arguments.size(); ++i) {
    Replace(expected, "|" + std::to_string(i + 1), arguments[i].ToText());
  }
  Replace(expected, "|n", "\r\n");
  Replace(expected, "|s", " ");
  vexa::fuzz::Promise(vexa::Resources(source).LoadString(1, arguments) == expected,
                      "arguments replace placeholders one after the other");
  return 0;
}
