// What holds after every step, whatever a user, the add-in, Outlook and the world between them do. Before
// and After stand around each step; a step that opens a dialog ends for them when the dialog is open.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "tests/walk/Actions.h"
#include "workbench/SettingsData.h"

namespace vexa::workbench {

class Invariants {
 public:
  void Before(FedConsole& console, const Step& step);
  /// What does not hold, as a sentence; empty when all does. `output` is what the step has printed.
  std::string After(FedConsole& console, const std::string& output);
  /// The same after the end, when everything is closed.
  static std::string AtTheEnd(FedConsole& console);

 private:
  /// What is known of a dialog since it was opened.
  struct Opened {
    std::string name;
    bool readOnly = false;
    bool touched = false;
    bool disturbed = false;  // the world has changed, or something has failed
    bool orphaned = false;   // the page has let go of the settings that it works on, or something has failed
  };

  std::string OfForms(FedConsole& console);
  std::string OfRefusal(FedConsole& console, const std::string& output) const;
  std::string OfWrites(FedConsole& console) const;
  std::string OfPage(FedConsole& console);
  std::string OfFolderSets(FedConsole& console);
  std::string OfPicker(FedConsole& console) const;

  std::map<const Form*, Opened> opened_;

  // As it was before the step.
  Step step_;
  std::vector<std::string> words_;
  std::string pressed_;
  const Form* top_ = nullptr;
  const Form* page_ = nullptr;
  std::string unusable_;  // the control that must refuse
  std::string seen_;      // the top form, when something must refuse
  SettingsData stored_;
  bool hadCopy_ = false;
  SettingsData copy_;
  int64_t faults_ = 0;
  bool dirty_ = false;
  bool active_ = false;
  std::map<std::string, bool> picked_;  // folder nodes of the picker by key, and whether they are checked

  // Of the page's working copy.
  bool calm_ = false;   // loaded in order, and nothing has failed since or changed behind the page's back
  size_t surplus_ = 0;  // routing that removed folder sets have left
};

/// What does not hold of a form at rest: its focus, its pointer, its trees.
std::string FlawOf(const Form& form);

/// The form as the console shows it.
std::string Printed(const Form& form);

/// The member of the settings that a line of the trace changes, with "=" when it is assigned; empty for none.
std::string WriteIn(const std::string& line);

}  // namespace vexa::workbench
