// The icons of a module's resources as handles, each loaded once at the size it is first asked for. Owned
// by the window that shows them, which gives back all of them together when it goes or its resolution
// changes.
#pragma once

#include <windows.h>

#include <cstdint>
#include <map>

#include "windows/views/Handles.h"

namespace vexa::windows {

class IconCache {
 public:
  /// `size` is the width and height of every icon, in pixels.
  IconCache(HMODULE module, int size) : module_(module), size_(size) {}

  int Size() const { return size_; }
  /// Null when the module has no such icon: a window without a picture is better than none.
  HICON Find(int32_t id);

 private:
  HMODULE module_;
  int size_;
  std::map<int32_t, IconHandle> icons_;
};

}  // namespace vexa::windows
