#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "core/Handlers.h"
#include "core/JsonErrorLog.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/ShellOpen.h"
#include "resources/CompiledResources.h"

namespace vexa {
namespace {

Error Broken(std::string source = "VexaAddin") { return {1001, "Something broke", std::move(source)}; }

TEST(Trail, IsTakenApartAtTheLastPoint) {
  Error error = Broken();
  error.AppendTrail("A.Module", "Inner");
  const CachedError record(error);
  EXPECT_EQ(record.InnermostModule(), "A.Module");
  for (const int32_t index : {-1, 1}) EXPECT_THROW(record.PropogatedModule(index), Error) << index;
}

TEST(Report, ShowsNeitherSourceNorTrailWhereThereIsNone) {
  const CompiledResources source(1033);
  EXPECT_EQ(
      CachedError(Broken("")).toString(Resources(source), true),
      "An error occurred.  Details are below.\r\n\r\nError Number: 1001\r\nDescription: Something broke");
}

class BrokenBoxes final : public MessageBoxes {
 public:
  MessageAnswer Show(const std::string&, MessageIcon, MessageButtons, const std::string&) override {
    ++shown;
    throw std::runtime_error("no desktop");
  }
  int shown = 0;
};

class Records final : public ErrorLog {
 public:
  void Write(const CachedError& record) noexcept override { numbers.push_back(record.Number()); }
  std::vector<int32_t> numbers;
};

TEST(Reporter, LogsEvenWhenTheBoxCannotBeShownAndShowsNothingForNumber0) {
  const CompiledResources source(1033);
  const Resources resources(source);
  BrokenBoxes boxes;
  Records log;
  ErrorReporter reporter(resources, boxes, log);
  EXPECT_FALSE(ShowAndLog(reporter, "M", "A", [] { throw Broken(); }));
  reporter.Report(CachedError(Error(0, "", "")));
  EXPECT_EQ(boxes.shown, 1);
  EXPECT_EQ(log.numbers, (std::vector<int32_t>{1001, 0}));
}

class Lines final : public FileAppender {
 public:
  void Append(const std::string& path, std::string_view text) override {
    if (path == "locked") throw MakeError(ErrorNumber::PathFileAccess);
    lines.emplace_back(text);
  }
  /// The line of JSON that was written last.
  nlohmann::json Last() const {
    const std::string_view all = lines.back();
    EXPECT_TRUE(all.ends_with("}\n"));
    const size_t start = all.rfind('\n', all.size() - 2) + 1;
    return nlohmann::json::parse(all.substr(start));
  }
  std::vector<std::string> lines;
};

class Versions final : public FileVersions {
 public:
  std::optional<std::string> FileVersion(const std::string& path) override {
    ++asked;
    return path == "C:\\a.dll" ? std::optional<std::string>("1.2.3.4") : std::nullopt;
  }
  int asked = 0;
};

TEST(JsonErrorLog, ReportsTheComponentsInFullOnceASessionAndWithEachRecordInShort) {
  Versions versions;
  ComponentReport components([&] {
    return WithFileVersions({{"own", "", "3.0"}, {"a", "C:\\a.dll", ""}, {"gone", "C:\\gone.dll", ""}},
                            versions);
  });
  Lines files;
  std::string path = "locked";
  const auto environment = [&](ComponentReport& report) {
    return JsonErrorLog::Environment{files, [&] { return path; }, [] { return std::string("now"); }, report};
  };
  JsonErrorLog log(environment(components));
  log.Write(CachedError(Broken()));  // arrives nowhere, so the report is still due
  path = "";
  log.Write(CachedError(Broken()));
  path = "log";
  log.Write(CachedError(Broken()));
  JsonErrorLog another(environment(components));
  Error error(5, "quote \" back\\slash \x01 bad \xff\xc3 \xe2\x82\xac", "src");
  error.HelpContext = 3;
  error.LastDLLError = 2;
  error.AppendTrail("M", "A");
  another.Write(CachedError(error));
  ASSERT_EQ(files.lines.size(), 2U);
  EXPECT_TRUE(files.lines.front().starts_with(
      R"({"time":"now","components":[{"name":"own","version":"3.0","path":""},)"
      R"({"name":"a","version":"1.2.3.4","path":"C:\\a.dll"},)"
      R"({"name":"gone","version":"","path":"C:\\gone.dll"}]})"
      "\n"))
      << files.lines.front();
  EXPECT_EQ(versions.asked, 2) << "files are asked once a session";
  EXPECT_EQ(files.Last().dump(),
            R"({"components":"own 3.0, a 1.2.3.4, gone","description":"quote \" back\\slash \u0001 bad )"
            "\uFFFD\uFFFD \u20AC"
            R"(","helpContext":3,"helpFile":"","lastDLLError":2,"number":5,"source":"src\r\n-->M.A",)"
            R"("time":"now","trail":["M.A"]})");

  ComponentReport broken([]() -> std::vector<Component> { throw Broken(); });
  JsonErrorLog(environment(broken)).Write(CachedError(Broken()));
  EXPECT_EQ(files.Last()["number"], 1001) << "a report that fails keeps nothing out";
  EXPECT_EQ(JsonLiteral("lone \xed\xa0\x80"), "\"lone \\ud800\"") << "is escaped";
}

TEST(Numbers, RoundTiesToEvenAndOverflow) {
  EXPECT_EQ(ToInt16(2.5), 2);
  EXPECT_EQ(ToInt16(-3.5), -4);
  EXPECT_EQ(ToInt16(32767.4), 32767);
  EXPECT_EQ(ToInt16(-32768.5), -32768);
  EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
  for (const double big : {32767.5, -32768.6, 1e300, std::nan("")}) EXPECT_THROW(ToInt16(big), Error) << big;
  for (const double big : {2147483647.5, -2147483649.0, std::nan("")})
    EXPECT_THROW(ToInt32(big), Error) << big;
  EXPECT_THROW(CheckedAdd(INT32_MAX, 1), Error);
  EXPECT_THROW(CheckedAdd(INT32_MIN, -1), Error);
  EXPECT_EQ(CheckedAdd(INT32_MAX, -1), INT32_MAX - 1);
  const std::map<std::string, double> numbers{{"12", 12},   {"  -3.5x", -3.5}, {"+4", 4},      {".5", 0.5},
                                              {"", 0},      {"abc", 0},        {"1.2.3", 1.2}, {"-", 0},
                                              {"1,000", 1}, {"1e5", 1},        {"+-5", 0},     {"-.", 0},
                                              {"-0x10", 0}, {"7.", 7},         {"\t9 9", 9}};
  for (const auto& [text, number] : numbers) EXPECT_EQ(LeadingNumber(text), number) << text;
  const std::string many(400, '9');
  EXPECT_THROW(ToInt32(LeadingNumber(many)), Error) << "too great is no 0";
  EXPECT_THROW(ToInt32(LeadingNumber("-" + many)), Error);
  EXPECT_EQ(LeadingNumber("0." + std::string(400, '0') + "1"), 0);
}

TEST(Numbers, AreWholeTextsWithinTheirBounds) {
  for (const char* inside : {"1", " 12 ", "+4.5", "5.", "\t6", "10000.0", "9999.9"})
    EXPECT_TRUE(IsNumberBetween(inside, 1, 10000)) << inside;
  for (const char* outside : {"0", "-3", ".5", "0.9", "10000.1", "10001"}) {
    EXPECT_TRUE(IsNumber(outside)) << outside;
    EXPECT_FALSE(IsNumberBetween(outside, 1, 10000)) << outside;
  }
  for (const char* none : {"", " ", ".", "-", "+.", "1,000", "1 000", "1e5", "0x10", "&H10", "1.2.3", "--1",
                           "5-", "five", "5 ms", "1,5", "\xD9\xA1"}) {
    EXPECT_FALSE(IsNumberBetween(none, -1e9, 1e9)) << none;
  }
}

TEST(Paths, AreTakenApartAsTheyStand) {
  using Parts = std::pair<std::string, std::string>;
  for (const auto& [folder, name] : {Parts{"C:\\", "x"},
                                     {"\\\\server\\share\\", "x"},
                                     {"C:/logs/", "x"},
                                     {"C:\\a/b\\", "x"},
                                     {"", "x"},
                                     {"", ""},
                                     {"C:\\a\\", ""},
                                     {"D:", "x"},
                                     {"C:\\\u00e9t\u00e9\\", "a b.txt"}}) {
    EXPECT_EQ(FolderPart(folder + name), folder);
    EXPECT_EQ(FileNamePart(folder + name), name);
  }
  for (const char* folder : {"C:\\logs", "C:\\logs\\\\", "C:\\logs/"})
    EXPECT_EQ(JoinPath(folder, "x"), "C:\\logs\\x") << folder;
  EXPECT_EQ(JoinPath("", ""), "\\");
}

TEST(ShellOpen, KnowsTheCodesOfTheShell) {
  const std::set<int32_t> unknown{1, 4, 7, 9, 17, 18, 22, 23, 24, 25};
  for (int32_t code = 0; code <= 32; ++code)
    EXPECT_EQ(ShellErrorText(code) == "Unknown error", unknown.contains(code)) << code;
  EXPECT_EQ(ShellErrorText(-5), "Unknown error");
  EXPECT_EQ(ShellErrorText(33), "");
}

}  // namespace
}  // namespace vexa
