#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "core/Error.h"
#include "core/StringIds.h"
#include "resources/CompiledResources.h"

namespace vexa {
namespace {

/// What must be the same in every language: how often each placeholder, mark and tag occurs.
std::map<std::string, int> MarksOf(std::string_view text) {
  std::map<std::string, int> marks;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '|' && i + 1 < text.size()) ++marks[std::string(text.substr(i, 2))];
    if (text[i] == '[' && i + 2 < text.size() && text[i + 2] == ']') ++marks[std::string(text.substr(i, 3))];
  }
  return marks;
}

std::string Edge(std::string_view text) {
  return std::string(text.starts_with(' ') ? "blank " : "text ") + (text.ends_with(' ') ? "blank" : "text");
}

TEST(StringTables, HoldTheSameIdsMarksAndEdgesInEveryLanguage) {
  const auto english = LanguageTables().front().entries;
  ASSERT_EQ(english.size(), 287U);
  for (const LanguageTable& table : LanguageTables().subspan(1)) {
    ASSERT_EQ(table.entries.size(), english.size()) << table.language;
    for (size_t i = 0; i < english.size(); ++i) {
      ASSERT_EQ(table.entries[i].id, english[i].id) << table.language;
      EXPECT_EQ(MarksOf(table.entries[i].text), MarksOf(english[i].text))
          << table.language << " " << english[i].id;
      EXPECT_EQ(Edge(table.entries[i].text), Edge(english[i].text)) << table.language << " " << english[i].id;
    }
  }
}

TEST(StringTables, HoldTextsThatCanBeShown) {
  for (const LanguageTable& table : LanguageTables()) {
    for (const StringEntry& entry : table.entries) {
      EXPECT_FALSE(entry.text.empty()) << entry.id;
      EXPECT_TRUE(std::ranges::none_of(entry.text, [](char c) { return c >= 0 && c < ' '; })) << entry.id;
      for (const auto& [mark, count] : MarksOf(entry.text)) {
        EXPECT_TRUE(mark.front() != '[' || count % 2 == 0) << mark << " is left open in " << entry.id;
      }
    }
  }
}

TEST(StringTables, ServeEveryTextThatTheCodeNames) {
  // The names the code uses, from the first to the last number; what lies between belongs to the add-in.
  for (const int32_t language : {1033, 1036, 3084}) {
    const CompiledResources source(language);
    MadeText made;
    for (const StringId id :
         {StringId::ProductName, StringId::ErrorTrailCaption, StringId::View, StringId::CannotMakeChanges,
          StringId::FolderAlreadySetUp, StringId::AboutEnterprisePath}) {
      EXPECT_NE(source.FindString(static_cast<int32_t>(id), made), nullptr) << static_cast<int32_t>(id);
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
  bool HasIcon(int32_t id) const override { return id == 2; }
  bool HasCursor(int32_t id) const override { return id == 3; }

 private:
  std::string text_;
};

std::string Filled(const std::string& text, std::vector<Variant> arguments) {
  const OneText source(text);
  return Resources(source).LoadString(1, arguments);
}

TEST(LoadString, SubstitutesOneArgumentAfterTheOther) {
  EXPECT_EQ(Filled("from |1 to |2, |1 again", {"A", "B"}), "from A to B, A again");
  EXPECT_EQ(Filled("no marks", {}), "no marks");
  EXPECT_EQ(Filled("|1 and |3", {"A"}), "A and |3");
  EXPECT_EQ(Filled("a|nb|sc||", {}), "a\r\nb c||");
  EXPECT_EQ(Filled("|1", {"x|ny|sz"}), "x\r\ny z") << "marks in an argument count";
  EXPECT_EQ(Filled("|1", {"|2", "B"}), "B") << "a later argument fills what an earlier one brought";
  EXPECT_EQ(Filled("|2", {"A", "|1"}), "|1") << "an earlier one is done already";
  const std::string much(5000, 'x');
  EXPECT_EQ(Filled(much + "|1" + much, {"A"}), much + "A" + much);
  EXPECT_EQ(Filled("<|1>|n", {much}), "<" + much + ">\r\n");
  EXPECT_EQ(Filled("|10", {"a", 2, 3, 4, 5, 6, 7, 8, 9, "ten"}), "a0")
      << "the first one destroys the tenth mark";
  EXPECT_EQ(Filled("|N|S", {}), "|N|S") << "case counts";
  EXPECT_EQ(Filled("|1 |2 |3 |4 |5", {true, -7, 2.5, 1e16, Variant()}), "True -7 2.5 1E+16 ");
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

TEST(LoadString, ConvertsEveryArgumentOfATextWithMarks) {
  const auto number = [](const std::string& text) {
    try {
      Filled(text, {"A", ObjectRef()});
    } catch (const Error& error) {
      return error.Number;
    }
    return 0;
  };
  EXPECT_EQ(number("|1"), 13);
  EXPECT_EQ(number("no marks"), 0);
}

TEST(LoadString, WhatIsMissingIsError326) {
  const OneText source("text");
  const Resources resources(source);
  const auto numberOf = [](auto&& load) {
    try {
      load();
    } catch (const Error& error) {
      return error.Number;
    }
    return 0;
  };
  EXPECT_EQ(numberOf([&] { resources.LoadString(7); }), 326);
  EXPECT_EQ(numberOf([&] { resources.LoadIcon(3); }), 326);
  EXPECT_EQ(numberOf([&] { resources.LoadCursor(2); }), 326);
  EXPECT_EQ(numberOf([&] { resources.LoadIcon(2); }), 0);
  const CompiledResources compiled(1033);
  for (const int32_t id : {-1, 4, 4003, 65538, 65536 + 2000}) {
    EXPECT_EQ(numberOf([&] { Resources(compiled).LoadString(id); }), 326) << id;
  }
}

}  // namespace
}  // namespace vexa
