// The main function of every Windows test program. What runs it turns a crash into a failure.
#include <windows.h>
// windows.h first
#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>

#include <cstdio>

int main(int argc, char** argv) {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);  // no box that waits for somebody
  // A harness that reads the names of tests expects lines that end in LF alone.
  _setmode(_fileno(stdout), _O_BINARY);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
