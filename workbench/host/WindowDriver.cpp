#include "workbench/host/WindowDriver.h"

#include <algorithm>
#include <array>
#include <utility>

#include "dialogs/frmNotice.h"
#include "windows/com/Text.h"
#include "windows/desktop/WindowsDesktop.h"
#include "windows/views/AccessKeys.h"
#include "windows/views/Handles.h"
#include "windows/views/WindowsModals.h"
#include "workbench/Gallery.h"
#include "workbench/host/ControlWindow.h"
#include "workbench/host/FolderPicker.h"
#include "workbench/host/GalleryLayout.h"
#include "workbench/host/MessageBox.h"
#include "workbench/host/Picture.h"
#include "workbench/host/WindowForm.h"

namespace vexa::workbench {
namespace {

using windows::Send;

BOOL CALLBACK AddIfVisible(HWND window, LPARAM list) {
  if (IsWindowVisible(window) != FALSE) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

/// The visible top-level windows of a thread, the frontmost first.
std::vector<HWND> TopWindows(DWORD thread) {
  std::vector<HWND> found;
  EnumThreadWindows(thread, AddIfVisible, reinterpret_cast<LPARAM>(&found));
  return found;
}

/// The item of the picker's tree that stands for a folder.
HTREEITEM FindItem(HWND tree, HTREEITEM item, FolderIndex folder) {
  const auto next = [&](HTREEITEM from, WPARAM relation) {
    return reinterpret_cast<HTREEITEM>(Send(tree, TVM_GETNEXTITEM, relation, from));
  };
  for (; item != nullptr; item = next(item, TVGN_NEXT)) {
    TVITEMW read{};
    read.mask = TVIF_PARAM;
    read.hItem = item;
    Send(tree, TVM_GETITEMW, 0, &read);
    if (static_cast<FolderIndex>(read.lParam) == folder) return item;
    if (const HTREEITEM below = FindItem(tree, next(item, TVGN_CHILD), folder)) return below;
  }
  return nullptr;
}

}  // namespace

WindowDriver::WindowDriver(Console& console, Stage& stage, UiThread& ui, const std::wstring& module)
    : console_(console), stage_(stage), ui_(ui), machine_(stage, module) {
  ui_.Run([&] {
    exports_ = Exports::Make(stage.workbench, module);
    classes_ = std::make_unique<ClassRegistration>(exports_);
  });
}

WindowDriver::~WindowDriver() {
  try {
    CloseDialogs();
    ui_.Run([&] {
      SetDialog(nullptr);
      classes_.reset();
      exports_.reset();
    });
    if (LivingObjects::Count() != 0) {
      console_.Seen("note: " + std::to_string(LivingObjects::Count()) +
                    " object(s) of the workbench were never released");
    }
  } catch (const std::exception& failure) {
    console_.Seen(failure.what());
  }
}

void WindowDriver::Settle() {
  for (;;) {
    ui_.WaitUntilQuiet();
    const std::vector<HWND> windows = TopWindows(ui_.Id());
    NoteClosed();
    NoteOpened(windows);
    if (!AnswerTop(windows) && !ui_.RunHandedOver()) break;
  }
  EndActions();
  std::vector<Running> done;
  std::erase_if(running_, [&](const Running& running) {
    if (running.task->IsDone()) done.push_back(running);
    return running.task->IsDone();
  });
  for (const Running& running : done) console_.AsHost([&] { running.Finish(); });
}

bool WindowDriver::IsActing(HWND form) const {
  return std::ranges::find(acting_, form, &Acting::form) != acting_.end();
}

void WindowDriver::EndActions() {
  const HWND top = dialogs_.empty() ? PageWindow() : dialogs_.back().window;
  std::erase_if(acting_, [&](const Acting& acting) {
    // One that an outside call has interrupted goes on.
    return acting.callDepth >= callDepth_ && (acting.form == top || IsWindow(acting.form) == FALSE);
  });
}

void WindowDriver::RunInsideCall(const std::function<void()>& command) {
  ui_.HandOver([&] {
    ++callDepth_;
    command();
    --callDepth_;
  });
}

void WindowDriver::Running::Finish() const {
  task->Finish();
  if (afterwards) afterwards();
}

void WindowDriver::Do(std::function<void()> body, std::function<void()> afterwards) {
  const Running running{ui_.Start(std::move(body)), std::move(afterwards)};
  Settle();
  if (running.task->IsDone()) {
    running.Finish();
  } else {
    running_.push_back(running);
  }
}

void WindowDriver::NoteClosed() {
  while (!dialogs_.empty() && IsWindowVisible(dialogs_.back().window) == FALSE) {
    console_.Seen("[" + dialogs_.back().name + " closes]");
    dialogs_.pop_back();
  }
}

void WindowDriver::NoteOpened(const std::vector<HWND>& windows) {
  // Owned windows stand before their owners: the outermost new one is told first.
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    const std::string name = FormNameOf(*window);
    const auto isKnown = [&](const OpenDialog& open) { return open.window == *window; };
    if (name.empty() || std::ranges::any_of(dialogs_, isKnown)) continue;
    console_.Seen("[" + name + " opens: " + QuotedText(windows::ToUtf8(TextOfWindow(*window))) + "]");
    dialogs_.push_back({*window, name});
  }
}

bool WindowDriver::AnswerTop(const std::vector<HWND>& windows) {
  for (const HWND window : windows) {
    if (IsWindowEnabled(window) == FALSE) continue;  // behind another modal one
    if (ClassOfWindow(window) == FolderPickerClass) {
      AnswerPicker(window);
      return true;
    }
    if (ReadMessageBox(window)) {
      AnswerMessage(window);
      return true;
    }
  }
  return false;
}

void WindowDriver::AnswerMessage(HWND window) {
  const ShownMessage message = *ReadMessageBox(window);
  std::string line = MessageLine(message.text, message.icon, message.buttons, message.title);
  const MessageAnswer answer = console_.AnswerMessage(line, message.buttons);
  line.append(" -> ").append(AnswerWord(answer));
  console_.Seen(line);
  stage_.calls.Note(line);
  AnswerMessageBox(window, answer);
}

void WindowDriver::AnswerPicker(HWND window) {
  const std::optional<FolderIndex> answer = console_.AnswerPick();
  const HWND tree = GetDlgItem(window, FolderPickerTree);
  if (answer) {
    const auto first = reinterpret_cast<HTREEITEM>(Send(tree, TVM_GETNEXTITEM, TVGN_ROOT));
    Send(tree, TVM_SELECTITEM, TVGN_CARET, FindItem(tree, first, *answer));
  }
  PostMessageW(GetDlgItem(window, answer ? IDOK : IDCANCEL), BM_CLICK, 0, 0);
}

void WindowDriver::CloseDialogs() {
  while (!dialogs_.empty()) {
    const size_t before = dialogs_.size();
    PostMessageW(dialogs_.back().window, WM_CLOSE, 0, 0);
    Settle();
    if (dialogs_.size() >= before) throw std::runtime_error(dialogs_.back().name + " does not close");
  }
}

HWND WindowDriver::PageWindow() const {
  return dialog_ == nullptr ? nullptr : FindFormWindow(dialog_->Window());
}

std::vector<std::unique_ptr<FormDriver>> WindowDriver::OpenForms() const {
  std::vector<std::unique_ptr<FormDriver>> forms;
  auto& self = const_cast<WindowDriver&>(*this);  // forms act through the driver
  if (const HWND page = PageWindow()) forms.push_back(std::make_unique<WindowForm>(self, page));
  for (const OpenDialog& open : dialogs_) forms.push_back(std::make_unique<WindowForm>(self, open.window));
  return forms;
}

void WindowDriver::SetDialog(std::shared_ptr<OptionsDialog> dialog) {
  ui_.HandleWith(nullptr);
  if (const std::shared_ptr<OptionsDialog> former = std::exchange(dialog_, std::move(dialog)))
    former->ReleasePage();
  if (dialog_ != nullptr) ui_.HandleWith([shown = dialog_](MSG& message) { shown->Handle(message); });
}

void WindowDriver::Create() {
  Do([this] {
    SetDialog(nullptr);  // the host releases one page before it makes the next
    OptionsDialog::Events events;
    events.isPageSite = [this] { return stage_.hasSite; };
    events.statusChanged = [this] { stage_.workbench.Site()->OnStatusChange(); };
    // The dialog is still at work when it says so.
    events.closed = [this] { ui_.Start([this] { SetDialog(nullptr); }); };
    SetDialog(std::make_shared<OptionsDialog>(std::move(events)));
  });
}

void WindowDriver::Initialize() {
  Do([this, dialog = dialog_] {
    VARIANT_BOOL again = VARIANT_FALSE;
    const windows::ComPtr<IVexaAddin> addin = exports_->Addin();
    windows::Call(dialog->Page(), &IOutlookPropertiesPage::Initialize, addin.Get(), &again);
  });
}

void WindowDriver::Reinitialize() {
  Do([dialog = dialog_] {
    VARIANT_BOOL again = VARIANT_TRUE;
    windows::Call(dialog->Page(), &IOutlookPropertiesPage::Initialize, nullptr, &again);
  });
}

void WindowDriver::Apply() {
  Do([dialog = dialog_] { dialog->ApplyPage(); });
}

void WindowDriver::Hide() {
  Do([dialog = dialog_] { dialog->HidePage(); });
}

void WindowDriver::Release() {
  Do([this] { SetDialog(nullptr); });
}

bool WindowDriver::Dirty() {
  bool dirty = false;
  ui_.Run([&] { dirty = dialog_->IsDirty(); });
  return dirty;
}

std::string WindowDriver::Title() {
  std::string title;
  ui_.Run([&] { title = windows::ToUtf8(dialog_->Caption()); });
  return title;
}

HostDriver::PageInfo WindowDriver::GetPageInfo(PageInfo passed) {
  ui_.Run([&] {
    windows::Bstr helpFile(passed.helpFile);
    BSTR file = helpFile.Detach();
    LONG context = passed.helpContext;
    const windows::ComPtr<IOutlookPropertiesPage> page = dialog_->Page();
    const HRESULT outcome = page->PropertyPage_GetPageInfo(&file, &context);
    passed = {windows::TextOf(file), context};
    SysFreeString(file);
    windows::Check(outcome, page);
  });
  return passed;
}

bool WindowDriver::PageActive() {
  throw OtherHostsOnly("whether the page is active cannot be seen from outside");
}

void WindowDriver::SetDevelopmentMode(bool /*on*/) {
  throw OtherHostsOnly("the module has no development mode");
}

void WindowDriver::ShowOwn(const std::function<void(const Services& windowed)>& show,
                           std::function<void()> afterwards) {
  Do(
      [this, show] {
        windows::WindowsDesktop desktop;
        // Their pictures are the product's.
        windows::WindowsModals modals(machine_.Module(), [](std::string_view form) -> const windows::Layout& {
          return form == "Gallery" ? LayoutOfGallery() : windows::FindLayout(form);
        });
        const Services& services = stage_.services;
        show({services.resources, desktop, modals, services.objects, services.errorLog});
      },
      std::move(afterwards));
}

void WindowDriver::OpenGallery() {
  ShowOwn([](const Services& windowed) {
    Gallery gallery(windowed);
    windowed.windows.ShowModal(gallery, nullptr);
  });
}

void WindowDriver::ShowNotice(const std::string& title, const std::string& text,
                              const std::vector<std::string>& buttons,
                              const std::function<void(int32_t)>& answered) {
  const auto answer = std::make_shared<int32_t>(0);
  ShowOwn(
      [=](const Services& windowed) {
        frmNotice notice;
        notice.Initialize(title, text, buttons);
        windowed.windows.ShowModal(notice, nullptr);
        *answer = notice.Answer();
      },
      [answered, answer] { answered(*answer); });
}

void WindowDriver::TakePicture(const std::string& file) {
  const HWND form = dialogs_.empty() ? PageWindow() : dialogs_.back().window;
  if (form == nullptr) throw ScriptError("no window is open");
  ui_.Run([&] { SavePicture(GetAncestor(form, GA_ROOT), windows::ToUtf16(file)); });
}

// --- the keyboard

HWND WindowDriver::FocusedWindow() const {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  if (GetGUIThreadInfo(ui_.Id(), &info) == FALSE) return nullptr;
  return info.hwndFocus != nullptr ? info.hwndFocus : info.hwndActive;
}

void WindowDriver::HoldDown(const KeyStroke& key, bool down) {
  ui_.Run([&] {
    std::array<BYTE, 256> keys{};
    GetKeyboardState(keys.data());
    const auto hold = [&](bool held, int code) { keys[static_cast<size_t>(code)] = held && down ? 0x80 : 0; };
    hold(key.shift, VK_SHIFT);
    hold(key.control, VK_CONTROL);
    hold(key.alt, VK_MENU);
    hold(true, key.code);
    SetKeyboardState(keys.data());
  });
}

void WindowDriver::PressKey(const KeyStroke& key) {
  constexpr LPARAM altIsDown = 1 << 29;
  constexpr LPARAM goesUp = -0x40000000;  // the two highest of 32 bits
  const auto post = [&](bool down, int code) {
    const auto scan = static_cast<LPARAM>(MapVirtualKeyW(static_cast<UINT>(code), MAPVK_VK_TO_VSC));
    const LPARAM state = 1 | scan << 16 | (key.alt ? altIsDown : 0) | (down ? 0 : goesUp);
    const UINT message = key.alt ? (down ? WM_SYSKEYDOWN : WM_SYSKEYUP) : (down ? WM_KEYDOWN : WM_KEYUP);
    // What went down on one window comes up on the one that has the focus by then.
    if (const HWND focused = FocusedWindow())
      PostMessageW(focused, message, static_cast<WPARAM>(code), state);
    Settle();
  };
  HoldDown(key, true);
  if (key.alt) post(true, VK_MENU);
  post(true, key.code);
  HoldDown(key, false);
  post(false, key.code);
  if (key.alt) post(false, VK_MENU);
}

void WindowDriver::TypeLetters(const std::string& text) {
  for (const wchar_t letter : windows::ToUtf16(text)) {
    const SHORT key = VkKeyScanW(letter);
    if (key != -1) {
      const int held = HIBYTE(key);
      PressKey({LOBYTE(key), (held & 1) != 0, (held & 2) != 0, (held & 4) != 0});
    } else if (const HWND focused = FocusedWindow()) {  // this keyboard has it not
      PostMessageW(focused, WM_CHAR, letter, 1);
      Settle();
    }
  }
}

std::string WindowDriver::KeyboardFocus() {
  const HWND focused = FocusedWindow();
  if (focused == nullptr) return {};
  const std::string control = ControlNameOf(focused);
  const std::string form = FormNameOf(focused);
  if (!control.empty() || !form.empty()) return control.empty() ? form : control;
  return QuotedText(windows::ToUtf8(windows::PlainText(TextOfWindow(focused))));
}

std::optional<FolderIndex> WindowDriver::PickFolder() {
  return ShowFolderPicker(GetActiveWindow(), stage_.workbench.profile.world);
}

}  // namespace vexa::workbench
