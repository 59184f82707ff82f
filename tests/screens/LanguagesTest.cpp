#include <gtest/gtest.h>

#include <set>

#include "resources/CompiledResources.h"
#include "tests/screens/Scene.h"
#include "workbench/EveryScreen.h"
#include "workbench/FormState.h"

namespace vexa::workbench {
namespace {

/// Every text on every screen in a language, and where it stands.
class ScreenTexts : public EveryScreen, public UserAnswers {
 public:
  explicit ScreenTexts(int32_t language) : stage_(Scene::MakeProfile(), "", language, *this, *this) {
    OutlookPropertiesPage& page = stage_.CreatePage();
    page.Initialize(stage_.workbench.Addin());
    Walk(page);
  }

  std::vector<std::pair<std::string, std::string>> texts;

 protected:
  void Opened(Form& form, Dialog* /*dialog*/) override {
    const FormState state = StateOf(form);
    Note(state.name, state.caption);
    for (const ControlState& control : state.controls) {
      const std::string place = state.name + "." + control.name;
      Note(place, control.text);
      for (const std::vector<std::string>& row : control.rows) {
        for (const std::string& cell : row) Note(place, cell);
      }
      for (const NodeState& node : control.nodes) Note(place, node.text);
    }
  }

 private:
  void Note(const std::string& place, const std::string& text) { texts.emplace_back(place, text); }

  std::optional<FolderIndex> PickFolder() override { return std::nullopt; }
  MessageAnswer AnswerMessage(const std::string&, MessageButtons) override { return MessageAnswer::Ok; }
  BrowseAnswer BrowseForFolder(const std::string&, const std::string&) override { return {}; }
  int32_t OpenDocument(const std::string&) override { return 42; }
  void Seen(const std::string&) override {}

  Stage stage_;
};

TEST(Languages, EveryTextOnEveryScreenIsThatOfItsLanguage) {
  const std::set<std::string> written = {
      "",         "\\\\P\\C1",    "\\\\P\\C2", "\\\\P\\J",
      "\\\\P\\E", "C1",           "P",         "0",
      "10",       "100",          "2000",      "C:\\ProgramData\\Tolvane\\Vexa\\VEXAERRORS.MDB",
      "2 MB",     "Version 3.0.0"};
  const std::span<const LanguageTable> tables = LanguageTables();
  const ScreenTexts english(tables.front().language);
  for (const LanguageTable& table : tables) {
    SCOPED_TRACE(table.language);
    const ScreenTexts screens(table.language);
    ASSERT_EQ(screens.texts.size(), english.texts.size());
    for (size_t place = 0; place < english.texts.size(); ++place) {
      const auto& [control, text] = english.texts[place];
      if (written.contains(text)) continue;
      // A text may stand in the table more than once, and read differently elsewhere.
      std::set<std::string_view> right;
      for (size_t entry = 0; entry < table.entries.size(); ++entry) {
        if (tables.front().entries[entry].text == text) right.insert(table.entries[entry].text);
      }
      EXPECT_TRUE(right.contains(screens.texts[place].second))
          << control << ": \"" << screens.texts[place].second << "\" for \"" << text << "\"";
    }
  }
}

}  // namespace
}  // namespace vexa::workbench
