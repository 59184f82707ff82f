#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

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
  error.Line = 7;
  error.AppendTrail("A.Module", "Inner");
  error.AppendTrail("frmX", "cmdOk_Click");
  const CachedError record(error);
  EXPECT_EQ(record.PropogationArray(), (std::vector<std::string>{"A.Module.Inner(7)", "frmX.cmdOk_Click"}));
  EXPECT_EQ(record.InnermostModule(), "A.Module");
  EXPECT_EQ(record.PropogatedMethod(1), "cmdOk_Click");
  for (const int32_t index : {-1, 2}) EXPECT_THROW(record.PropogatedModule(index), Error) << index;
}

TEST(Report, ShowsNeitherSourceNorTrailWhereThereIsNone) {
  const CompiledResources source(1033);
  EXPECT_EQ(
      CachedError(Broken("")).toString(Resources(source), true),
      "An error occurred.  Details are below.\r\n\r\nError Number: 1001\r\nDescription: Something broke");
}

TEST(Errors, OfOtherTypesAreTranslated) {
  const auto numberOf = [](auto&& raise) {
    try {
      PassOn("M", "A", raise);
    } catch (const Error& error) {
      EXPECT_TRUE(error.Source.ends_with("\r\n-->M.A")) << error.Source;
      return error.Number;
    }
    return 0;
  };
  EXPECT_EQ(numberOf([] { throw std::bad_alloc(); }), 7);
  EXPECT_EQ(numberOf([] { throw std::runtime_error("foreign"); }), 51);
  EXPECT_EQ(numberOf([] { throw 42; }), 51);
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
  EXPECT_EQ(boxes.shown, 1);
  EXPECT_TRUE(ShowAndLog(reporter, "M", "A", [] {}));
  reporter.Report(CachedError(Error(0, "", "")));
  EXPECT_EQ(boxes.shown, 1);
  EXPECT_EQ(log.numbers, (std::vector<int32_t>{1001, 0}));
}

class Lines final : public FileAppender {
 public:
  void Append(const std::string& path, std::string_view text) override {
    if (path == "locked") throw MakeError(ErrorNumber::PathFileAccess);
    paths.push_back(path);
    lines.emplace_back(text);
  }
  std::vector<std::string> paths, lines;
};

TEST(JsonErrorLog, WritesOneLineOfJsonWhereTheSettingsSayNow) {
  Lines files;
  std::string path = "first";
  ComponentReport components([] {
    return std::vector<Component>{{"parts", "", "1"}, {"more", "C:\\m", ""}};
  });
  components.SetLogged();
  JsonErrorLog log({files, [&] { return path; }, [] { return std::string("now"); }, components});
  Error error(5, "quote \" back\\slash \x01 bad \xff\xc3 lone \xed\xa0\x80 \xe2\x82\xac", "src");
  error.HelpContext = 3;
  error.LastDLLError = 2;
  error.AppendTrail("M", "A");
  log.Write(CachedError(error));
  path = "second";
  log.Write(CachedError(Broken()));
  for (const char* nowhere : {"", "locked"}) {
    path = nowhere;
    log.Write(CachedError(Broken()));
  }
  EXPECT_EQ(files.paths, (std::vector<std::string>{"first", "second"}));
  ASSERT_TRUE(files.lines.front().ends_with("}\n"));
  EXPECT_EQ(files.lines.front().find('\n'), files.lines.front().size() - 1);
  EXPECT_NE(files.lines.front().find("\\ud800"), std::string::npos) << "a lone surrogate is escaped";
  std::string plain = files.lines.front();
  plain.replace(plain.find("\\ud800"), 6, "?");
  const auto record = nlohmann::json::parse(plain);
  EXPECT_EQ(record["description"], "quote \" back\\slash \x01 bad \uFFFD\uFFFD lone ? \u20AC");
  EXPECT_EQ(record["trail"], nlohmann::json::array({"M.A"}));
  EXPECT_EQ(record["helpContext"], 3);
  EXPECT_EQ(record["lastDLLError"], 2);
  EXPECT_EQ(record["components"], "parts 1, more");
}

class Versions final : public FileVersions {
 public:
  std::optional<std::string> FileVersion(const std::string& path) override {
    ++asked;
    return path == "C:\\a.dll" ? std::optional<std::string>("1.2.3.4") : std::nullopt;
  }
  int asked = 0;
};

TEST(JsonErrorLog, ReportsTheComponentsInFullOnceASession) {
  Versions versions;
  ComponentReport components([&] {
    return WithFileVersions({{"own", "", "3.0"}, {"a", "C:\\a.dll", ""}, {"gone", "C:\\gone.dll", ""}},
                            versions);
  });
  Lines files;
  std::string path = "locked";
  const auto time = [] { return std::string("now"); };
  JsonErrorLog first({files, [&] { return path; }, time, components});
  JsonErrorLog second({files, [&] { return path; }, time, components});
  first.Write(CachedError(Broken()));  // arrives nowhere, so the report is still due
  path = "log";
  first.Write(CachedError(Broken()));
  second.Write(CachedError(Broken()));
  ASSERT_EQ(files.lines.size(), 2U);
  const size_t end = files.lines.front().find('\n');
  const auto report = nlohmann::json::parse(files.lines.front().substr(0, end));
  EXPECT_EQ(report.dump(), R"({"components":[{"name":"own","path":"","version":"3.0"},)"
                           R"({"name":"a","path":"C:\\a.dll","version":"1.2.3.4"},)"
                           R"({"name":"gone","path":"C:\\gone.dll","version":""}],"time":"now"})");
  const auto record = nlohmann::json::parse(files.lines.front().substr(end + 1));
  EXPECT_EQ(record["components"], "own 3.0, a 1.2.3.4, gone");
  EXPECT_EQ(nlohmann::json::parse(files.lines.back()), record)
      << "the next log of the session says it in short";
  EXPECT_EQ(versions.asked, 2) << "files are asked once a session";

  ComponentReport broken([]() -> std::vector<Component> { throw Broken(); });
  JsonErrorLog third({files, [&] { return path; }, time, broken});
  third.Write(CachedError(Broken()));
  EXPECT_EQ(nlohmann::json::parse(files.lines.back())["number"], 1001)
      << "a report that fails keeps nothing out";
}

TEST(Numbers, RoundTiesToEvenAndOverflow) {
  EXPECT_EQ(ToInt16(2.5), 2);
  EXPECT_EQ(ToInt16(3.5), 4);
  EXPECT_EQ(ToInt16(-2.5), -2);
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
  for (const char* number : {"1", " 12 ", "-3", "+4.5", ".5", "5.", "\t6"})
    EXPECT_TRUE(IsNumber(number)) << number;
  for (const char* none : {"", " ", ".", "-", "+.", "1,000", "1 000", "1e5", "0x10", "&H10", "1.2.3", "--1",
                           "5-", "five", "5 ms", "1,5", "\xD9\xA1"}) {
    EXPECT_FALSE(IsNumber(none)) << none;
  }
  for (const char* inside : {"1", "1.0", "10000", "10000.0", " 100 ", "9999.9"}) {
    EXPECT_TRUE(IsNumberBetween(inside, 1, 10000)) << inside;
  }
  for (const char* outside : {"0", "0.9", "10000.1", "10001", "-5", "", "12x"}) {
    EXPECT_FALSE(IsNumberBetween(outside, 1, 10000)) << outside;
  }
}

TEST(Paths, AreTakenApartAsTheyStand) {
  struct Row {
    std::string folder, name;
  };
  for (const auto& [folder, name] :
       {Row{"C:\\Program Files\\", "a b.txt"}, Row{"C:\\", "x"}, Row{"\\\\server\\share\\", "x"},
        Row{"C:/logs/", "x"}, Row{"C:\\a/b\\", "x"}, Row{"", "x"}, Row{"", ""}, Row{"C:\\a\\", ""},
        Row{"D:", "x"}, Row{"C:\\\u00e9t\u00e9\\", "x"}, Row{"C:\\" + std::string(300, 'n') + "\\", "x"}}) {
    EXPECT_EQ(FolderPart(folder + name), folder);
    EXPECT_EQ(FileNamePart(folder + name), name);
  }
  for (const char* folder : {"C:\\logs", "C:\\logs\\", "C:\\logs\\\\", "C:\\logs/"})
    EXPECT_EQ(JoinPath(folder, "x"), "C:\\logs\\x") << folder;
  EXPECT_EQ(JoinPath("C:\\", "x"), "C:\\x");
  EXPECT_EQ(JoinPath("", ""), "\\");
}

TEST(ShellOpen, KnowsTheCodesOfTheShell) {
  for (const int32_t unknown : {-5, 1, 4, 7, 9, 17, 18, 22, 23, 24, 25})
    EXPECT_EQ(ShellErrorText(unknown), "Unknown error");
  for (const int32_t known :
       {0, 3, 5, 6, 8, 10, 11, 12, 13, 14, 15, 16, 19, 20, 21, 26, 27, 28, 29, 30, 31, 32}) {
    EXPECT_NE(ShellErrorText(known), "Unknown error") << known;
  }
  EXPECT_EQ(ShellErrorText(33), "");
}

}  // namespace
}  // namespace vexa
