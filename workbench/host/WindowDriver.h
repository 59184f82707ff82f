// The page and its dialogs as real windows, driven by a script. The script runs on a thread of its own; after
// everything that it does it waits until the windows are quiet, and then deals with what has come up: dialogs
// that opened or closed are told, message boxes and the folder picker are answered from the console's queues.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "workbench/Console.h"
#include "workbench/com/Export.h"
#include "workbench/host/OptionsDialog.h"
#include "workbench/host/ProfileMachine.h"
#include "workbench/host/UiThread.h"

namespace vexa::workbench {

class WindowDriver final : public HostDriver {
 public:
  /// `module` is the path of VexaControls.dll.
  WindowDriver(Console& console, Stage& stage, UiThread& ui, const std::wstring& module);
  ~WindowDriver() override;

  std::vector<std::unique_ptr<FormDriver>> OpenForms() const override;
  size_t DialogCount() const override { return dialogs_.size(); }
  bool HasPage() const override { return dialog_ != nullptr; }
  void Create() override;
  void Initialize() override;
  void Reinitialize() override;
  void Apply() override;
  void Hide() override;
  void Release() override;
  bool Dirty() override;
  std::string Title() override;
  PageInfo GetPageInfo(PageInfo passed) override;
  bool PageActive() override;
  void SetDevelopmentMode(bool on) override;
  void OpenGallery() override;
  void ShowNotice(const std::string& title, const std::string& text, const std::vector<std::string>& buttons,
                  const std::function<void(int32_t)>& answered) override;
  void TakePicture(const std::string& file) override;
  void PressKey(const KeyStroke& key) override;
  void TypeLetters(const std::string& text) override;
  std::string KeyboardFocus() override;
  std::optional<FolderIndex> PickFolder() override;
  void RunInsideCall(const std::function<void()>& command) override;

  // --- for the forms

  UiThread& Ui() const { return ui_; }
  /// Waits until the windows are quiet and everything that has come up is dealt with.
  void Settle();
  /// A form carries out an action of the user from here on, until it is the top form again and the windows
  /// are quiet.
  void BeginAction(HWND form) { acting_.push_back({form, callDepth_}); }
  bool IsActing(HWND form) const;
  void EndActions();

 private:
  struct OpenDialog {
    HWND window;
    std::string name;
  };

  struct Acting {
    HWND form;
    int callDepth;  // inside how many outside calls it began
  };

  struct Running {
    UiThread::TaskRef task;
    std::function<void()> afterwards;
    void Finish() const;
  };

  /// Does something on the thread of the windows, and something here once it has ended without an error. Its
  /// error comes out here, or, when a dialog is open by then, is printed once it has ended.
  void Do(std::function<void()> body, std::function<void()> afterwards = {});
  /// Shows dialogs of this program's own in the module's windows.
  void ShowOwn(const std::function<void(const Services& windowed)>& show,
               std::function<void()> afterwards = {});
  /// On the thread of the windows.
  void SetDialog(std::shared_ptr<OptionsDialog> dialog);
  void NoteClosed();
  void NoteOpened(const std::vector<HWND>& windows);
  bool AnswerTop(const std::vector<HWND>& windows);
  void AnswerMessage(HWND window);
  void AnswerPicker(HWND window);
  void CloseDialogs();
  HWND FocusedWindow() const;
  /// Whether the keyboard of the windows has these keys down.
  void HoldDown(const KeyStroke& key, bool down);
  HWND PageWindow() const;

  Console& console_;
  Stage& stage_;
  UiThread& ui_;
  ProfileMachine machine_;
  ExportsRef exports_;
  std::unique_ptr<ClassRegistration> classes_;
  // Made and ended by the thread of the windows. What it does there keeps it: a call of the page may be the
  // one during which the script releases it.
  std::shared_ptr<OptionsDialog> dialog_;
  std::vector<OpenDialog> dialogs_;  // innermost last
  std::vector<Running> running_;
  std::vector<Acting> acting_;
  int callDepth_ = 0;
};

}  // namespace vexa::workbench
