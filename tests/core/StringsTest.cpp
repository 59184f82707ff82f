#include <gtest/gtest.h>

#include <algorithm>
#include <map>

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
}

}  // namespace
}  // namespace vexa
