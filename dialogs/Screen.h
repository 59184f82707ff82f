// What every screen is handed to work with, and how its procedures treat errors: the page and the dialogs
// have these two things in common and nothing else.
#pragma once

#include <string>
#include <string_view>

#include "contracts/Addin.h"
#include "contracts/Desktop.h"
#include "core/Handlers.h"
#include "core/Resources.h"
#include "core/ScopedFlag.h"
#include "display/Form.h"

namespace vexa {

inline constexpr const char* DefaultSupportAddress = "support@tolvane.example";

struct Services {
  const Resources& resources;
  Desktop& desktop;
  ModalWindows& windows;
  AddinObjectFactory& objects;
  ErrorLog& errorLog;
  /// Where error reports are sent; the host may know another address than the maker's.
  std::string supportAddress = DefaultSupportAddress;

  /// Shows a message box and answers which of its buttons was pressed.
  MessageAnswer Ask(const std::string& text, MessageIcon icon, MessageButtons buttons,
                    StringId title = StringId::ProductName) const;
  MessageAnswer Ask(StringId text, MessageIcon icon, MessageButtons buttons,
                    StringId title = StringId::ProductName) const;
  /// Shows a message box that has an OK button only.
  template <typename Text>
  void Tell(const Text& text, MessageIcon icon, StringId title = StringId::ShortProductName) const {
    Ask(text, icon, MessageButtons::Ok, title);
  }
};

/// Shows a dialog that an action of `opener` has made and waits until it ends. `owner` is the form whose
/// window it belongs to, null for none. Error 91 when the opener is a dialog that was closed meanwhile.
void ShowModal(const Services& services, Form& opener, Dialog& dialog, Form* owner);

/// Whoever opened a dialog and wants to hear that it changed something.
class DialogParent {
 public:
  DialogParent() = default;
  DialogParent(const DialogParent&) = delete;
  DialogParent& operator=(const DialogParent&) = delete;
  virtual ~DialogParent() = default;

  /// Marks the parent as changed.
  virtual void SetDirty() = 0;
};

/// The options page, as the dialogs opened from it see it. Its SetDirty tells the page's host as well.
class OptionsPage : public DialogParent {
 public:
  /// A search of all monitored folders that waits for Apply, and whether it stops at scanned items.
  bool SearchNowPending = false;
  bool SearchStopAtScanned = false;
};

/// An event handler at the top of a user action: runs `body`, shows and logs its error under the form's name
/// and `procedure`.
template <typename Body>
Event Handler(const Services& services, const Form& form, std::string_view procedure, Body body) {
  return [&services, &form, procedure, body] {
    ErrorReporter reporter(services.resources, services.desktop, services.errorLog);
    ShowAndLog(reporter, form.Name(), procedure, body);
  };
}

/// The same for a member of the form.
template <typename Screen>
Event Handler(const Services& services, Screen& form, std::string_view procedure, void (Screen::*member)()) {
  return Handler(services, form, procedure, [&form, member] { (form.*member)(); });
}

/// A text box's validation: runs `body`, which answers whether the entry may stand. When it fails its error
/// is shown and logged, and the entry may not.
template <typename Body>
std::function<bool()> Validation(const Services& services, const Form& form, std::string_view procedure,
                                 Body body) {
  return [&services, &form, procedure, body] {
    bool valid = false;
    ErrorReporter reporter(services.resources, services.desktop, services.errorLog);
    ShowAndLog(reporter, form.Name(), procedure, [&] { valid = body(); });
    return valid;
  };
}

}  // namespace vexa
