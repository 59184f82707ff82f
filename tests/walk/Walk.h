// A walk over all screens, drawn from a seed: a user who tries everything, an add-in and an Outlook that do
// as they like, folders that vanish, access that comes and goes, calls that fail. After every step the
// invariants are looked at; a walk that breaks one is cut down to the steps that it takes.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

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

/// Walks `count` steps from `seed`. Needs a ScratchFolder, as the next two do.
WalkResult Walk(uint64_t seed, size_t count, const ExtraInvariant& extra);

/// Takes those of the steps that can be taken as things stand.
WalkResult Replay(const std::vector<Step>& steps, const ExtraInvariant& extra);

/// The least of `failed` that still has its flaw: no single step can be left out.
WalkResult Shrink(WalkResult failed, const ExtraInvariant& extra);

/// The current folder is a fresh one for as long as it lives. Walks start there.
class ScratchFolder {
 public:
  ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();

 private:
  std::string former_;
  std::string folder_;
};

}  // namespace vexa::workbench
