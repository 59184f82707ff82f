#include "core/ShellOpen.h"

#include "core/Error.h"

namespace vexa {
namespace {

constexpr int32_t FirstSuccessCode = 33;

}  // namespace

int32_t ShellOpen(DocumentShell& shell, const std::string& path) {
  const int32_t code = shell.ShellExecuteOpen(path);
  if (code >= FirstSuccessCode) return code;
  Error error = MakeError(ErrorNumber::PathFileAccess);
  error.Description = ShellErrorText(code) + ", while trying to open \"" + path + "\"";
  throw error;
}

std::string ShellErrorText(int32_t code) {
  switch (code) {
    case 0:
      return "System out of memory, executable file corrupt, or relocations invalid";
    case 2:
      return "File not found";
    case 3:
      return "Path not found";
    case 5:
      return "Access denied (attempt was made to dynamically link to a task, or there was a sharing or "
             "network-protection error)";
    case 6:
      return "Library required separate data segments for each task";
    case 8:
      return "Out of memory";
    case 10:
      return "Windows version incorrect";
    case 11:
      return "Executable file invalid (either it is not a Windows application, or there is an error in the "
             ".exe image)";
    case 12:
      return "Application is designed for a different operating system";
    case 13:
      return "Application is designed for MS-DOS 4.0";
    case 14:
      return "Type of executable file is unknown";
    case 15:
      return "Attempt made to load a real-mode application (developed for an earlier version of Windows)";
    case 16:
      return "Attempt made to load a second instance of an executable file containing multiple data segments "
             "that are not marked read-only";
    case 19:
      return "Attempt made to load a compressed executable file (the file must be decompressed before it can "
             "be loaded)";
    case 20:
      return "One of the DLLs required to run this application is corrupt";
    case 21:
      return "Application requires Microsoft Windows 32-bit extensions";
    case 26:
      return "A sharing violation occurred";
    case 27:
      return "Incomplete or invalid file association";
    case 28:
      return "DDE Time out";
    case 29:
      return "DDE transaction failed";
    case 30:
      return "DDE busy";
    case 31:
      return "No association for file extension";
    case 32:
      return "DLL not found";
    default:
      return code < FirstSuccessCode ? "Unknown error" : "";
  }
}

}  // namespace vexa
