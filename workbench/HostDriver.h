// The container of the options page, as the console plays it: it makes the page and lets go of it, passes on
// what Outlook and the add-in say, and knows which forms are open. One implementation keeps the page in this
// process without windows, one embeds the real control. Errors of the page come out as Error.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "workbench/FormDriver.h"
#include "workbench/KeyStroke.h"
#include "workbench/Stage.h"
#include "workbench/Words.h"

namespace vexa::workbench {

class Console;

/// The host itself no longer works; ends the run.
class HostError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class HostDriver {
 public:
  HostDriver() = default;
  HostDriver(const HostDriver&) = delete;
  HostDriver& operator=(const HostDriver&) = delete;
  virtual ~HostDriver() = default;

  /// The page first, then the dialogs, innermost last.
  virtual std::vector<std::unique_ptr<FormDriver>> OpenForms() const = 0;
  virtual size_t DialogCount() const = 0;
  virtual bool HasPage() const = 0;

  /// The page, made anew.
  virtual void Create() = 0;
  // What follows needs a page.
  virtual void Initialize() = 0;
  virtual void Reinitialize() = 0;
  virtual void Apply() = 0;
  virtual void Hide() = 0;
  virtual void Release() = 0;

  struct PageInfo {
    std::string helpFile;
    int32_t helpContext;
  };
  virtual bool Dirty() = 0;
  virtual std::string Title() = 0;
  virtual PageInfo GetPageInfo(PageInfo passed) = 0;

  // What only a console within the library's process can do; OtherHostsOnly elsewhere.
  virtual bool PageActive() = 0;
  virtual void SetDevelopmentMode(bool on) = 0;

  /// Opens a form that has every kind of control.
  virtual void OpenGallery() = 0;
  /// Writes a bitmap of the top form's window; ScriptError where there are no windows.
  virtual void TakePicture(const std::string& file) = 0;

  // The keyboard, on the window that has the focus, whichever it is; ScriptError where there are no windows.
  virtual void PressKey(const KeyStroke& key) = 0;
  virtual void TypeLetters(const std::string& text) = 0;
  /// The control that has the focus; a window of the container by its text, in quotes; empty for none.
  virtual std::string KeyboardFocus() = 0;

  /// Shows a notice above all windows; `answered` hears, once it is closed, which button was pressed.
  virtual void ShowNotice(const std::string& title, const std::string& text,
                          const std::vector<std::string>& buttons,
                          const std::function<void(int32_t)>& answered) = 0;
  /// Shows Outlook's folder picker to whoever answers.
  virtual std::optional<FolderIndex> PickFolder() = 0;

  /// Inside an outside call, on the thread that makes it: runs `command` on the script's thread, then
  /// returns. The windows remain usable meanwhile.
  virtual void RunInsideCall(const std::function<void()>& command) = 0;
};

/// Makes the driver for a stage that was just set. The driver is gone before the stage is.
using HostDriverMaker = std::function<std::unique_ptr<HostDriver>(Console&, Stage&)>;

/// The driver over the library's models.
std::unique_ptr<HostDriver> MakeModelDriver(Console& console, Stage& stage);

}  // namespace vexa::workbench
