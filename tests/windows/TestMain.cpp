// The main function of every Windows test program. A crash must end with a status that no harness takes for
// success: Windows would report the exception's code, whose low byte may be 0.
#include <windows.h>
// windows.h first
#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>

#include <cstdio>

namespace {

constexpr UINT CrashStatus = 99;

LONG WINAPI EndCrashed(EXCEPTION_POINTERS* exception) {
  const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
  std::fprintf(stderr, "crashed: exception %08lX at %p\n", record.ExceptionCode, record.ExceptionAddress);
  std::fflush(nullptr);
  TerminateProcess(GetCurrentProcess(), CrashStatus);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

int main(int argc, char** argv) {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);  // no box that waits for somebody
  SetUnhandledExceptionFilter(EndCrashed);
  // A harness that reads the names of tests expects lines that end in LF alone.
  _setmode(_fileno(stdout), _O_BINARY);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS() == 0 ? 0 : 1;
}
