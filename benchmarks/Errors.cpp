// An error on its way out through ten procedures, each of which adds itself to the trail.
#include "core/Error.h"

#include <stdexcept>

#include "benchmarks/Contest.h"
#include "core/Handlers.h"

namespace vexa::bench {
namespace {

constexpr int Levels = 10;

template <int Level>
void PassOnLevels() {
  if constexpr (Level == 0) {
    throw Error(1001, "Something broke", "VexaAddin");
  } else {
    PassOn("Module", "Procedure", [] { PassOnLevels<Level - 1>(); });
  }
}

template <int Level>
void RethrowLevels() {
  if constexpr (Level == 0) {
    throw Error(1001, "Something broke", "VexaAddin");
  } else {
    try {
      RethrowLevels<Level - 1>();
    } catch (...) {
      throw;
    }
  }
}

/// What the standard library has for it.
template <int Level>
void NestLevels() {
  if constexpr (Level == 0) {
    throw std::runtime_error("Something broke");
  } else {
    try {
      NestLevels<Level - 1>();
    } catch (...) {
      std::throw_with_nested(std::runtime_error("Module.Procedure"));
    }
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

template <void Raise()>
double Caught() {
  return PerUnit(1, [] {
    try {
      Raise();
    } catch (const Error& error) {
      Keep(error.Source);
    }
  });
}

double Nested() {
  return PerUnit(1, [] {
    try {
      NestLevels<Levels>();
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
           {{Role::Limit, "plain rethrow, no trail", Caught<RethrowLevels<Levels>>},
            {Role::Ours, "PassOn", Caught<PassOnLevels<Levels>>},
            {Role::Peer, "nested exceptions, walked to text", Nested}},
           {{TimesLimit, 1.05}}}};
}

}  // namespace vexa::bench
