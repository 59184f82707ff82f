#include "workbench/host/MessageBox.h"

#include <array>
#include <vector>

#include "windows/com/Text.h"
#include "windows/views/Handles.h"

namespace vexa::workbench {
namespace {

using windows::Send;

constexpr int TextId = 0xFFFF;
constexpr DWORD StaticType = 0x1F;  // the bits of a static control's style that say what it is

std::vector<HWND> ChildrenOf(HWND window) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    children.push_back(child);
  return children;
}

bool IsSeen(HWND window) { return (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0; }

bool IsIcon(HWND child) {
  return ClassOfWindow(child) == WC_STATICW &&
         (static_cast<DWORD>(GetWindowLongPtrW(child, GWL_STYLE)) & StaticType) == SS_ICON;
}

MessageIcon IconOf(HWND window) {
  struct Known {
    LPCWSTR name;
    MessageIcon icon;
  };
  const auto known = std::to_array<Known>({{IDI_ERROR, MessageIcon::Critical},
                                           {IDI_QUESTION, MessageIcon::Question},
                                           {IDI_WARNING, MessageIcon::Exclamation},
                                           {IDI_INFORMATION, MessageIcon::Information}});
  for (const HWND child : ChildrenOf(window)) {
    if (!IsIcon(child) || !IsSeen(child)) continue;
    const auto shown = reinterpret_cast<HICON>(Send(child, STM_GETICON));
    for (const Known& candidate : known) {
      if (LoadIconW(nullptr, candidate.name) == shown) return candidate.icon;  // the system's are shared
    }
  }
  return MessageIcon::None;
}

int IdOf(MessageAnswer answer) {
  switch (answer) {
    case MessageAnswer::Ok:
      return IDOK;
    case MessageAnswer::Cancel:
      return IDCANCEL;
    case MessageAnswer::Yes:
      return IDYES;
    case MessageAnswer::No:
      return IDNO;
  }
  return IDOK;
}

}  // namespace

std::wstring TextOfWindow(HWND window) {
  const auto length = static_cast<size_t>(Send(window, WM_GETTEXTLENGTH));
  std::wstring text(length + 1, L'\0');
  text.resize(static_cast<size_t>(Send(window, WM_GETTEXT, text.size(), text.data())));
  return text;
}

std::wstring ClassOfWindow(HWND window) {
  std::array<wchar_t, 256> name{};
  const int length = GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return {name.data(), static_cast<size_t>(length)};
}

std::optional<ShownMessage> ReadMessageBox(HWND window) {
  if (ClassOfWindow(window) != L"#32770") return std::nullopt;
  const auto has = [&](int id) {
    const HWND button = GetDlgItem(window, id);
    return button != nullptr && IsSeen(button);
  };
  ShownMessage message;
  const HWND text = GetDlgItem(window, TextId);
  if (text == nullptr) return std::nullopt;
  if (has(IDYES)) {
    message.buttons = has(IDCANCEL) ? MessageButtons::YesNoCancel : MessageButtons::YesNo;
  } else if (has(IDOK)) {
    message.buttons = has(IDCANCEL) ? MessageButtons::OkCancel : MessageButtons::Ok;
  } else if (!has(IDCANCEL)) {  // the only button of a box that tells may go by either number
    return std::nullopt;
  }
  message.text = windows::ToUtf8(TextOfWindow(text));
  message.title = windows::ToUtf8(TextOfWindow(window));
  message.icon = IconOf(window);
  return message;
}

void AnswerMessageBox(HWND window, MessageAnswer answer) {
  HWND button = GetDlgItem(window, IdOf(answer));
  if (button == nullptr || !IsSeen(button)) button = GetDlgItem(window, IDCANCEL);
  PostMessageW(button, BM_CLICK, 0, 0);
}

}  // namespace vexa::workbench
