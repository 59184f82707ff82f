# What both bitnesses share; VEXA_MINGW is the prefix of the tools. The variant with POSIX threads is the one
# whose standard library has std::thread and std::mutex.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${VEXA_MINGW}-gcc-posix)  # of the test framework
set(CMAKE_CXX_COMPILER ${VEXA_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${VEXA_MINGW}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${VEXA_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Tests run under Wine, in the prefix of the build.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine")
