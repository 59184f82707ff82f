# Cross-compiles the Windows half for 32-bit Outlook.
set(VEXA_MINGW i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR X86)
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")
