#include "benchmarks/Contest.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace vexa::bench {
namespace {

std::string Figure(double value) {
  char text[32];
  std::snprintf(text, sizeof text, value < 10 ? "%.2f" : value < 100 ? "%.1f" : "%.0f", value);
  return text;
}

/// The heap puts off putting together what was freed until somebody asks for a large piece: whoever comes
/// next would pay for the one before.
void TidyHeap() {
  constexpr size_t large = size_t{1} << 20;
  void* volatile piece = std::malloc(large);
  std::free(piece);
}

const char* RoleName(Role role) {
  switch (role) {
    case Role::Limit:
      return "limit";
    case Role::Ours:
    case Role::Also:
      return "OURS";
    case Role::Peer:
      break;
  }
  return "peer";
}

}  // namespace

int64_t Now() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

Spread SpreadOf(std::vector<double> figures) {
  std::ranges::sort(figures);
  const auto at = [&](double share) {
    const double place = share * static_cast<double>(figures.size() - 1);
    const auto below = static_cast<size_t>(place);
    const size_t above = std::min(below + 1, figures.size() - 1);
    return figures[below] + (place - static_cast<double>(below)) * (figures[above] - figures[below]);
  };
  return {at(0.5), at(0.25), at(0.75)};
}

std::vector<Verdict> Run(const Contest& contest, int rounds) {
  const std::vector<Contender>& contenders = contest.contenders;
  const size_t count = contenders.size();
  std::vector<std::vector<double>> figures(count);
  for (int round = -1; round < rounds; ++round) {  // the first one warms up
    for (size_t turn = 0; turn < count; ++turn) {
      const size_t which = (static_cast<size_t>(round + 1) + turn) % count;
      TidyHeap();
      const double figure = contenders[which].run();
      if (round >= 0) figures[which].push_back(figure);
    }
  }

  const auto find = [&](auto&& matches) {
    return static_cast<size_t>(std::ranges::find_if(contenders, matches) - contenders.begin());
  };
  const size_t ours = find([](const Contender& contender) { return contender.role == Role::Ours; });
  const auto ratio = [&](size_t one, size_t other) {
    std::vector<double> ratios;
    for (size_t round = 0; round < figures[one].size(); ++round) {
      ratios.push_back(figures[one][round] / figures[other][round]);
    }
    return SpreadOf(std::move(ratios)).median;
  };

  std::printf("\n%s, %s\n", contest.work.c_str(), contest.unit.c_str());
  for (size_t which = 0; which < count; ++which) {
    const Spread spread = SpreadOf(figures[which]);
    const std::string quartiles = Figure(spread.low) + " - " + Figure(spread.high);
    std::printf("  %-5s %-42s %9s   %-19s", RoleName(contenders[which].role), contenders[which].name.c_str(),
                Figure(spread.median).c_str(), quartiles.c_str());
    if (which != ours) std::printf(" %8s x ours", Figure(ratio(which, ours)).c_str());
    std::printf("\n");
  }

  std::vector<Verdict> verdicts;
  for (const Goal& goal : contest.goals) {
    Verdict verdict;
    switch (goal.kind) {
      case Goal::Kind::TimesLimit: {
        const double times =
            ratio(ours, find([](const Contender& contender) { return contender.role == Role::Limit; }));
        verdict = {"at most " + Figure(goal.value) + " x the limit: " + Figure(times), times <= goal.value};
        break;
      }
      case Goal::Kind::FasterThan: {
        const double times =
            ratio(find([&](const Contender& contender) { return contender.name == goal.name; }), ours);
        verdict = {"at least " + Figure(goal.value) + " x faster than " + goal.name + ": " + Figure(times),
                   times >= goal.value};
        break;
      }
      case Goal::Kind::AtMost: {
        const double figure = SpreadOf(figures[ours]).median;
        verdict = {"at most " + Figure(goal.value) + " " + contest.unit + ": " + Figure(figure),
                   figure <= goal.value};
        break;
      }
    }
    std::printf("  goal  %-70s %s\n", verdict.text.c_str(), verdict.met ? "met" : "NOT MET");
    verdict.text = contest.work + ": " + verdict.text;
    verdicts.push_back(std::move(verdict));
  }
  std::fflush(stdout);
  return verdicts;
}

}  // namespace vexa::bench
