// The walk finds what is wrong and says how to repeat it.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/walk/Walk.h"

namespace vexa::workbench {
namespace {

/// A fault planted from outside: two settings that must never be on together.
std::string Planted(FedConsole& console) {
  const SettingsData* const working = console.TheConsole().Stage().workbench.WorkingCopy();
  const bool wrong = working != nullptr && working->MaintainAuditTrail && working->LoggingMethod != 0;
  return wrong ? "an audit trail beside another method" : "";
}

TEST(Walk, IsCutDownToAScriptThatRepeatsItsFault) {
  ScratchFolder folder;
  folder.Enter();
  WalkResult found;
  for (uint64_t seed = 1; found.flaw.empty() && seed < 200; ++seed) found = Walk(seed, 200, Planted);
  ASSERT_EQ(found.flaw, "an audit trail beside another method");
  const size_t length = found.steps.size();
  const WalkResult shrunk = Shrink(std::move(found), Planted);
  const std::string script = ScriptOf(shrunk.steps);
  EXPECT_GT(length, 3 * shrunk.steps.size()) << script;
  // The profile, the page, the dialog, the two boxes and OK; nothing of it can be missing.
  EXPECT_LE(shrunk.steps.size(), 6U) << script;
  for (size_t i = 0; i < shrunk.steps.size(); ++i) {
    std::vector<Step> rest = shrunk.steps;
    rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(i));
    EXPECT_NE(Replay(rest, Planted).flaw, shrunk.flaw) << "without " << shrunk.steps[i].line;
  }

  std::istringstream in(script);
  std::ostringstream out;
  Console console(CommandSource{in, "script"}, out);
  EXPECT_EQ(console.Run(), 0) << out.str();
  const SettingsData* const working = console.Stage().workbench.WorkingCopy();
  ASSERT_NE(working, nullptr) << script;
  EXPECT_TRUE(working->MaintainAuditTrail && working->LoggingMethod != 0) << script;
}

TEST(Walk, IsTheSameForTheSameSeed) {
  ScratchFolder folder;
  folder.Enter();
  const WalkResult one = Walk(7, 300, {});
  EXPECT_EQ(one.flaw, "");
  EXPECT_EQ(ScriptOf(one.steps), ScriptOf(Walk(7, 300, {}).steps));
  EXPECT_EQ(ScriptOf(one.steps), ScriptOf(Replay(one.steps, {}).steps)) << "and can be repeated";
}

}  // namespace
}  // namespace vexa::workbench
