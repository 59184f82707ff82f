// The thread that owns the windows, as the thread of the script sees it: the script hands it something to do
// and waits until the windows are quiet, so that the two never run at once. Quiet means that the thread waits
// in a message loop, its own or a modal one, with nothing left in its queue.
#pragma once

#include <windows.h>

#include <atomic>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>

namespace vexa::workbench {

class UiThread {
 public:
  /// Made by the thread that owns the windows.
  UiThread();
  UiThread(const UiThread&) = delete;
  UiThread& operator=(const UiThread&) = delete;
  ~UiThread();

  DWORD Id() const { return id_; }

  // --- called by the thread of the windows

  using Handler = std::function<void(MSG& message)>;
  /// Who handles the messages of the loop from now on; none: they are dispatched.
  void HandleWith(Handler handler) { handler_ = std::move(handler); }
  /// Whether a message asks if the windows are quiet. A loop that only works off what waits must leave it.
  static bool IsQuestion(const MSG& message);
  /// Until WM_QUIT.
  void RunLoop();
  /// Has the script's thread run `body` while this one handles messages; returns once it has run, or when the
  /// program ends. A thread that waits here counts as quiet.
  void HandOver(const std::function<void()>& body);

  // --- called by the script's thread

  /// Something that the thread of the windows does; it may run modal loops and take any time.
  class Task {
   public:
    bool IsDone() const { return done_; }
    /// Once it is done: throws what it ended with.
    void Finish() const {
      if (failure_ != nullptr) std::rethrow_exception(failure_);
    }

   private:
    friend class UiThread;
    std::function<void()> body_;
    std::exception_ptr failure_;
    std::atomic<bool> done_ = false;
  };
  using TaskRef = std::shared_ptr<Task>;

  /// Has `body` run from the thread's message loop.
  TaskRef Start(std::function<void()> body);
  /// Waits until the windows are quiet. HostError when they do not become so within a minute.
  void WaitUntilQuiet();
  /// Runs what the thread of the windows has handed over, the oldest first. False when there is nothing.
  bool RunHandedOver();
  /// For what opens nothing: runs it and waits for its end.
  void Run(std::function<void()> body);

 private:
  struct HandedOver {
    std::function<void()> body;
    std::atomic<bool> done = false;
  };

  void RunNext();
  void Handle(MSG& message);
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  DWORD id_ = GetCurrentThreadId();
  Handler handler_;
  std::mutex mutex_;
  std::deque<TaskRef> waiting_;
  std::deque<std::shared_ptr<HandedOver>> handedOver_;
  HWND window_ = nullptr;
  HANDLE quiet_ = nullptr;
};

}  // namespace vexa::workbench
