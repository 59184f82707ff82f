// The program of ./bench: the contests, all in one run.
//   vexa-benchmarks [ROUNDS [PART OF A CONTEST'S NAME | calls | scale [PICTURE.svg]]]
#include <malloc.h>

#include <QApplication>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "benchmarks/Contest.h"

int main(int argc, char** argv) {
  using namespace vexa::bench;
  // Nobody's memory goes back to the system between two runs, so nobody waits for it.
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);

  const int rounds = argc > 1 ? std::atoi(argv[1]) : 11;
  if (rounds < 1) {
    std::fprintf(stderr, "vexa-benchmarks: \"%s\" is no number of rounds; try 11\n", argv[1]);
    return 2;
  }
  const std::string_view only = argc > 2 ? argv[2] : "";
  std::printf("Medians over %d rounds, with quartiles; ratios are medians of the rounds' ratios.\n", rounds);
  std::vector<Verdict> verdicts;
  const auto take = [&](std::vector<Verdict> more) {
    for (Verdict& verdict : more) verdicts.push_back(std::move(verdict));
  };
  const auto run = [&](std::vector<Contest> (*contests)()) {
    for (const Contest& contest : contests()) {
      if (contest.work.find(only) != std::string::npos) take(Run(contest, rounds));
    }
  };
  for (auto* const contests : {TextContests, TreeContests, CollectionContests, GridContests, ErrorContests})
    run(contests);
  if (only.empty() || only == "calls") take(CountOutsideCalls());
  if (only.empty() || only == "scale") take(MeasureScale(argc > 3 ? argv[3] : ""));
  run(LargeTreeContests);  // what they leave on the heap would be in the others' way
  if (verdicts.empty()) {
    std::fprintf(stderr, "vexa-benchmarks: no contest has \"%s\" in its name\n", argv[2]);
    return 2;
  }
  int missed = 0;
  for (const Verdict& verdict : verdicts) {
    if (!verdict.met) std::printf("%sNOT MET: %s\n", missed++ == 0 ? "\n" : "", verdict.text.c_str());
  }
  std::printf("\n%zu of %zu goals met.\n", verdicts.size() - static_cast<size_t>(missed), verdicts.size());
  return 0;
}
