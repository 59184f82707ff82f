#include "windows/views/IconCache.h"

namespace vexa::windows {

HICON IconCache::Find(int32_t id) {
  if (id <= 0 || id > UINT16_MAX) return nullptr;
  const auto found = icons_.find(id);
  if (found != icons_.end()) return found->second.Get();
  const HANDLE icon =
      LoadImageW(module_, MAKEINTRESOURCEW(static_cast<WORD>(id)), IMAGE_ICON, size_, size_, LR_DEFAULTCOLOR);
  return icons_.emplace(id, IconHandle(static_cast<HICON>(icon))).first->second.Get();
}

}  // namespace vexa::windows
