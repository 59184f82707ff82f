// Outlook's Options dialog: OK, Cancel, Apply and two tabs, one of them the options page, embedded through
// OLE. It exists as long as the page does; whoever opens it runs the thread's message loop.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "VexaControls.h"
#include "workbench/host/PageSite.h"

namespace vexa::workbench {

class OptionsDialog {
 public:
  struct Events {
    std::function<bool()> isPageSite;
    std::function<void()> statusChanged;
    std::function<void()> closed;  // the user has ended the dialog; it is still there
  };

  /// Makes the control by its name, embeds and shows it. The add-in initialises it afterwards.
  explicit OptionsDialog(Events events);
  OptionsDialog(const OptionsDialog&) = delete;
  OptionsDialog& operator=(const OptionsDialog&) = delete;
  ~OptionsDialog();

  HWND Window() const { return window_; }
  const windows::ComPtr<IOutlookPropertiesPage>& Page() const { return page_; }

  /// What Outlook does with the page. Errors are the page's.
  void ApplyPage();
  bool IsDirty() const;
  std::wstring Caption() const;
  void HidePage();
  /// Shows the page's tab, and its title on it.
  void ShowPage();

  /// Ends the page and hides the dialog. A caller in the middle of a call on it keeps the dialog object.
  void ReleasePage();

  /// One message of the thread's loop.
  void Handle(MSG& message);

 private:
  enum Tab { OutlooksOwn, VexaPage };

  void CreateWindows();
  void EmbedPage();
  void SelectTab(int tab);
  void UpdateApply();
  void Command(int id);
  void FocusOutside(bool backwards);
  bool TranslateForPage(MSG& message);
  bool PressMnemonic(MSG& message);
  HWND Child(const wchar_t* windowClass, const wchar_t* text, DWORD style, DWORD extendedStyle, int id);
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  Events events_;
  HWND window_ = nullptr;
  HWND tabs_ = nullptr;
  HWND area_ = nullptr;   // the page's window is its child
  HWND notes_ = nullptr;  // all there is on the other tab
  HWND ok_ = nullptr;
  HWND apply_ = nullptr;

  windows::ComPtr<PageFrame> frame_;
  windows::ComPtr<PageSite> site_;
  windows::ComPtr<IOutlookPropertiesPage> page_;
  windows::ComPtr<IOleObject> object_;
};

}  // namespace vexa::workbench
