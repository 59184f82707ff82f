#include "workbench/host/UiThread.h"

#include "windows/views/Handles.h"
#include "workbench/HostDriver.h"

namespace vexa::workbench {
namespace {

constexpr UINT RunMessage = WM_APP + 1;    // run the task that waits longest
constexpr UINT QuietMessage = WM_APP + 2;  // lParam: the event to set when nothing else is left in the queue
constexpr DWORD Patience = 60'000;         // milliseconds
constexpr const wchar_t* ClassName = L"VexaUiThread";

}  // namespace

UiThread::UiThread() {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = ClassName;
  windows::Verified(RegisterClassW(&windowClass), "RegisterClassW");
  window_ = windows::Verified(CreateWindowExW(0, ClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                              windowClass.hInstance, nullptr),
                              "CreateWindowExW");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  quiet_ = windows::Verified(CreateEventW(nullptr, FALSE, FALSE, nullptr), "CreateEventW");
}

UiThread::~UiThread() {
  DestroyWindow(window_);
  UnregisterClassW(ClassName, GetModuleHandleW(nullptr));
  CloseHandle(quiet_);
}

UiThread::TaskRef UiThread::Start(std::function<void()> body) {
  auto task = std::make_shared<Task>();
  task->body_ = std::move(body);
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(task);
  }
  windows::Verified(PostMessageW(window_, RunMessage, 0, 0), "PostMessageW");
  return task;
}

void UiThread::WaitUntilQuiet() {
  windows::Verified(PostMessageW(window_, QuietMessage, 0, reinterpret_cast<LPARAM>(quiet_)), "PostMessageW");
  if (WaitForSingleObject(quiet_, Patience) != WAIT_OBJECT_0)
    throw HostError("the windows did not become quiet within a minute");
}

void UiThread::Run(std::function<void()> body) {
  const TaskRef task = Start(std::move(body));
  WaitUntilQuiet();
  if (!task->IsDone()) throw HostError("the windows wait for an answer that nobody gives");
  task->Finish();
}

void UiThread::RunNext() {
  TaskRef task;
  {
    const std::lock_guard lock(mutex_);
    task = std::move(waiting_.front());
    waiting_.pop_front();
  }
  try {
    // What it holds ends on this thread.
    const std::function<void()> body = std::move(task->body_);
    body();
  } catch (...) {
    task->failure_ = std::current_exception();
  }
  task->done_ = true;
}

void UiThread::Handle(MSG& message) {
  if (handler_) {
    const Handler handler = handler_;  // the message may take it away
    handler(message);
  } else {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void UiThread::RunLoop() {
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) Handle(message);
}

void UiThread::HandOver(const std::function<void()>& body) {
  const auto handedOver = std::make_shared<HandedOver>();
  handedOver->body = body;
  {
    const std::lock_guard lock(mutex_);
    handedOver_.push_back(handedOver);
  }
  MSG message{};
  while (!handedOver->done) {
    if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
      PostQuitMessage(static_cast<int>(message.wParam));  // for the outer loops
      return;
    }
    Handle(message);
  }
}

bool UiThread::RunHandedOver() {
  std::shared_ptr<HandedOver> next;
  {
    const std::lock_guard lock(mutex_);
    if (handedOver_.empty()) return false;
    next = std::move(handedOver_.front());
    handedOver_.pop_front();
  }
  const auto end = [&](const HandedOver*) {
    next->done = true;
    PostMessageW(window_, WM_NULL, 0, 0);  // wakes the loop that waits
  };
  const std::unique_ptr<const HandedOver, decltype(end)> atTheEnd(next.get(), end);
  next->body();
  return true;
}

bool UiThread::IsQuestion(const MSG& message) {
  return message.message == QuietMessage &&
         GetWindowLongPtrW(message.hwnd, GWLP_WNDPROC) == reinterpret_cast<LONG_PTR>(Procedure);
}

LRESULT CALLBACK UiThread::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == RunMessage) {
    reinterpret_cast<UiThread*>(GetWindowLongPtrW(window, GWLP_USERDATA))->RunNext();
    return 0;
  }
  if (message == QuietMessage) {
    // What was posted meanwhile comes first, and whatever that posts. Input does not count: posted messages
    // go before it, so that it would wait behind this one for ever.
    constexpr UINT work = QS_POSTMESSAGE | QS_SENDMESSAGE;
    if (HIWORD(GetQueueStatus(work)) != 0) {
      PostMessageW(window, QuietMessage, wParam, lParam);
    } else {
      SetEvent(reinterpret_cast<HANDLE>(lParam));
    }
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace vexa::workbench
