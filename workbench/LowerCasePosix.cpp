#include <clocale>
#include <cwchar>
#include <cwctype>
#include <locale>
#include <stdexcept>

#include "workbench/LowerCase.h"

namespace vexa::workbench {
namespace {

/// Characters as UTF-8 in the calling thread, whatever language the process runs in.
class Utf8Locale {
 public:
  Utf8Locale() : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
    if (locale_ == nullptr) throw std::runtime_error("the system has no locale C.UTF-8");
    former_ = uselocale(locale_);
  }
  Utf8Locale(const Utf8Locale&) = delete;
  Utf8Locale& operator=(const Utf8Locale&) = delete;
  ~Utf8Locale() {
    uselocale(former_);
    freelocale(locale_);
  }

 private:
  locale_t locale_;
  locale_t former_ = nullptr;
};

}  // namespace

std::string LowerCase(std::string_view text) {
  const Utf8Locale utf8;
  std::string lower;
  while (!text.empty()) {
    std::mbstate_t state{};
    wchar_t letter = 0;
    const size_t length = std::mbrtowc(&letter, text.data(), text.size(), &state);
    if (length == 0 || length > text.size()) {  // a zero, or no character
      lower += text.front();
      text.remove_prefix(1);
      continue;
    }
    std::string bytes(MB_CUR_MAX, '\0');
    state = {};
    bytes.resize(
        std::wcrtomb(bytes.data(), static_cast<wchar_t>(std::towlower(static_cast<wint_t>(letter))), &state));
    lower += bytes;
    text.remove_prefix(length);
  }
  return lower;
}

}  // namespace vexa::workbench
