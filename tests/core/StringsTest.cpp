#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "core/Error.h"
#include "resources/CompiledResources.h"

namespace vexa {
namespace {

TEST(StringTables, HoldEveryTextInEveryLanguageAndLeaveNoTagOpen) {
  for (const LanguageTable& table : LanguageTables()) {
    EXPECT_EQ(table.entries.size(), 287U) << table.language;
    for (const StringEntry& entry : table.entries) {
      EXPECT_TRUE(std::ranges::none_of(entry.text, [](char c) { return c >= 0 && c < ' '; })) << entry.id;
      for (const std::string_view tag : {"[b]", "[i]", "[h]"}) {
        int count = 0;
        for (size_t at = entry.text.find(tag); at != std::string_view::npos;
             at = entry.text.find(tag, at + 1))
          ++count;
        EXPECT_EQ(count % 2, 0) << tag << " is left open in " << entry.id;
      }
    }
  }
}

TEST(StringTables, AreChosenByLanguageThenPrimaryLanguageThenEnglish) {
  const std::map<int32_t, int32_t> chosen{{1033, 1033}, {1036, 1036}, {3084, 3084}, {2060, 1036},
                                          {4108, 1036}, {2057, 1033}, {1031, 1033}, {0, 1033}};
  for (const auto& [asked, found] : chosen) EXPECT_EQ(CompiledResources(asked).Language(), found) << asked;
}

/// A table of one text.
class OneText final : public ResourceSource {
 public:
  explicit OneText(std::string text) : text_(std::move(text)) {}
  const TableText* FindString(int32_t id, MadeText& made) const override {
    return id == 1 ? made.Make(text_) : nullptr;
  }
  bool HasIcon(int32_t) const override { return false; }
  bool HasCursor(int32_t) const override { return false; }

 private:
  std::string text_;
};

std::string Filled(const std::string& text, std::vector<Variant> arguments) {
  const OneText source(text);
  return Resources(source).LoadString(1, arguments);
}

TEST(LoadString, ConvertsItsArguments) {
  const std::string much(5000, 'x');
  EXPECT_EQ(Filled("<|1>|n" + much, {much}), "<" + much + ">\r\n" + much);
  EXPECT_EQ(Filled("|N|S", {}), "|N|S") << "case counts";
  EXPECT_EQ(Filled("|1 |2 |3 |4 |5", {true, -7, 2.5, 1e16, Variant()}), "True -7 2.5 1E+16 ");
  EXPECT_EQ(Filled("no marks", {"A", ObjectRef()}), "no marks");
  try {
    Filled("|1", {"A", ObjectRef()});
    ADD_FAILURE() << "every argument of a text with marks is converted";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, 13);
  }
  const CompiledResources compiled(1033);
  for (const int32_t id : {4, 4003, 65536 + 2000}) EXPECT_THROW(Resources(compiled).LoadString(id), Error);
}

/// The rule itself, step by step.
std::string SubstitutedStepByStep(std::string text, const std::vector<std::string>& arguments) {
  const auto replaceAll = [&](const std::string& mark, const std::string& with) {
    for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + with.size())) {
      text.replace(at, mark.size(), with);
    }
  };
  for (size_t k = 0; k < arguments.size(); ++k) replaceAll("|" + std::to_string(k + 1), arguments[k]);
  replaceAll("|n", "\r\n");
  replaceAll("|s", " ");
  return text;
}

TEST(LoadString, IsTheSameAsStepByStepWhateverStandsInTextsAndArguments) {
  const uint32_t seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const auto any = [&](size_t longest) {
    std::string text(random() % (longest + 1), ' ');
    for (char& c : text) c = "||||1123nsa0"[random() % 12];
    return text;
  };
  for (int i = 0; i < 20000; ++i) {
    const std::string text = any(12);
    std::vector<std::string> arguments(random() % 12);
    for (std::string& argument : arguments) {
      argument = any(3);
      if (i % 2 == 0) std::erase(argument, '|');  // else hardly a list would be without
    }
    ASSERT_EQ(Filled(text, std::vector<Variant>(arguments.begin(), arguments.end())),
              SubstitutedStepByStep(text, arguments))
        << text << " with " << testing::PrintToString(arguments);
  }
}

}  // namespace
}  // namespace vexa
