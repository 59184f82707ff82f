// A walk over all screens, drawn from a seed: a user who tries everything, an add-in and an Outlook that do
// as they like, folders that vanish, access that comes and goes, calls that fail. After every step the
// invariants are looked at; a walk that breaks one is cut down to the steps that it takes.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/ScratchFolder.h"
#include "tests/walk/Invariants.h"

namespace vexa::workbench {

/// One more thing that must hold after every step; what it says does not hold, or nothing.
using ExtraInvariant = std::function<std::string(FedConsole&)>;

struct WalkResult {
  std::vector<Step> steps;                // that were carried out
  std::string flaw;                       // empty for none; of the last step
  std::map<std::string, size_t> screens;  // how many of the steps were taken on which
  int64_t faults = 0;                     // calls that failed
};

/// Walks `count` steps from `seed`. The current folder is a scratch one, as for the next two.
WalkResult Walk(uint64_t seed, size_t count, const ExtraInvariant& extra);

/// Takes those of the steps that can be taken as things stand.
WalkResult Replay(const std::vector<Step>& steps, const ExtraInvariant& extra);

/// The least of `failed` that still has its flaw: no single step can be left out.
WalkResult Shrink(WalkResult failed, const ExtraInvariant& extra);

}  // namespace vexa::workbench
