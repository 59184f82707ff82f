// An error on its way out through ten procedures, each of which adds itself to the trail.
#include <stdexcept>

#include "benchmarks/Contest.h"
#include "core/Error.h"
#include "core/Handlers.h"

namespace vexa::bench {
namespace {

constexpr int Levels = 10;

// Levels of one procedure that calls itself: inlined into one function they would have nothing to pass.

[[gnu::noinline]] void PassOnLevels(int level) {
  if (level == 0) throw Error(1001, "Something broke", "VexaAddin");
  PassOn("Module", "Procedure", [&] { PassOnLevels(level - 1); });
}

[[gnu::noinline]] void RethrowLevels(int level) {
  if (level == 0) throw Error(1001, "Something broke", "VexaAddin");
  try {
    RethrowLevels(level - 1);
  } catch (...) {
    throw;
  }
}

/// What the standard library has for it.
[[gnu::noinline]] void NestLevels(int level) {
  if (level == 0) throw std::runtime_error("Something broke");
  try {
    NestLevels(level - 1);
  } catch (...) {
    std::throw_with_nested(std::runtime_error("Module.Procedure"));
  }
}

void Walk(const std::exception& exception, std::string& trail) {
  trail.insert(0, exception.what());
  trail.insert(0, "-->");
  try {
    std::rethrow_if_nested(exception);
  } catch (const std::exception& inner) {
    Walk(inner, trail);
  }
}

template <void Raise(int)>
double Caught() {
  return PerUnit(1, [] {
    try {
      Raise(Levels);
    } catch (const Error& error) {
      Keep(error.Source);
    }
  });
}

double Nested() {
  return PerUnit(1, [] {
    try {
      NestLevels(Levels);
    } catch (const std::exception& exception) {
      std::string trail;
      Walk(exception, trail);
      Keep(trail);
    }
  });
}

}  // namespace

std::vector<Contest> ErrorContests() {
  using enum Goal::Kind;
  return {{"error through ten levels",
           "ns",
           {{Role::Limit, "plain rethrow, no trail", Caught<RethrowLevels>},
            {Role::Ours, "PassOn", Caught<PassOnLevels>},
            {Role::Peer, "nested exceptions, walked to text", Nested}},
           {{TimesLimit, 1.05}}}};
}

}  // namespace vexa::bench
