// What every screen is handed to work with, and how its procedures treat errors: the page and the dialogs
// have these two things in common and nothing else.
#pragma once

#include <string>
#include <string_view>

#include "contracts/Addin.h"
#include "contracts/Desktop.h"
#include "core/Handlers.h"
#include "core/Resources.h"
#include "display/Form.h"

namespace vexa {

struct Services {
  const Resources& resources;
  Desktop& desktop;
  ModalWindows& windows;
  AddinObjectFactory& objects;
  ErrorLog& errorLog;
};

/// The options page, as the dialogs opened from it see it.
class OptionsPage {
 public:
  OptionsPage() = default;
  OptionsPage(const OptionsPage&) = delete;
  OptionsPage& operator=(const OptionsPage&) = delete;
  virtual ~OptionsPage() = default;

  /// Marks the page as changed and tells its host.
  virtual void SetDirty() = 0;
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

}  // namespace vexa
