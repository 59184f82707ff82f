// Measures contenders for the same work side by side. Every round runs each of them once, the limit, the
// library and its peers in turn, and every round begins with another one, so that what disturbs the machine
// disturbs all alike. Ratios are taken within a round; medians and quartiles over the rounds are reported.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::bench {

/// Keeps the compiler from leaving out what computes `value`.
template <typename Value>
void Keep(const Value& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

/// Processor time of this thread in nanoseconds: what other programs take of the machine does not count.
int64_t Now();

/// Nanoseconds for `body`, once.
template <typename Body>
double Timed(Body&& body) {
  const int64_t start = Now();
  body();
  return static_cast<double>(Now() - start);
}

/// Nanoseconds for one of the `units` that `body` works off; it is run over and over for some milliseconds.
/// What `prepare` does before each run does not count.
template <typename Prepare, typename Body>
double PerUnit(size_t units, Prepare&& prepare, Body&& body) {
  constexpr double enough = 4e6;
  double spent = 0;
  size_t runs = 0;
  for (; spent < enough; ++runs) {
    prepare();
    spent += Timed(body);
  }
  return spent / static_cast<double>(runs * units);
}
template <typename Body>
double PerUnit(size_t units, Body&& body) {
  return PerUnit(
      units, [] {}, std::forward<Body>(body));
}

enum class Role { Limit, Ours, Also, Peer };  // Also: the library in other circumstances

struct Contender {
  Role role;
  std::string name;
  std::function<double()> run;  // one figure, in the unit of the contest
};

struct Goal {
  enum class Kind {
    TimesLimit,  // the library takes at most `value` times what the limit takes
    FasterThan,  // `name` takes at least `value` times what the library takes
    AtMost,      // the library's figure itself
  };
  Kind kind;
  double value;
  std::string name = {};
};

struct Contest {
  std::string work;
  std::string unit;
  std::vector<Contender> contenders;
  std::vector<Goal> goals;
};

struct Spread {
  double median = 0;
  double low = 0;   // first quartile
  double high = 0;  // third quartile
};
Spread SpreadOf(std::vector<double> figures);

/// A goal as it came out.
struct Verdict {
  std::string text;
  bool met;
};

/// Runs the contest and prints its rows of the table.
std::vector<Verdict> Run(const Contest& contest, int rounds);

// The contests, one source a group.
std::vector<Contest> TextContests();
std::vector<Contest> TreeContests();
std::vector<Contest> LargeTreeContests();
std::vector<Contest> CollectionContests();
std::vector<Contest> GridContests();
std::vector<Contest> ErrorContests();

/// Prints the calls that each action makes on Outlook and the add-in, beside the fewest.
std::vector<Verdict> CountOutsideCalls();

/// Measures the picker at sizes up to a million folders and draws it into the SVG file `picture`, if any.
std::vector<Verdict> MeasureScale(const std::string& picture);

}  // namespace vexa::bench
