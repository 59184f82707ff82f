#include "windows/views/AccessKeys.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "windows/com/Text.h"

namespace vexa::windows {
namespace {

bool IsProse(const Layout& layout, const Control& control) {
  const Box* box = FindBox(layout.content, control.Name());
  return box != nullptr && box->prose;
}

bool EndsDialog(const Form& form, const Control& control) {
  return &control == form.CancelButton() || control.CaptionId() == StringId::Ok ||
         control.CaptionId() == StringId::Cancel || control.Name() == "cmdOk" ||
         control.Name() == "cmdCancel";
}

wchar_t Capital(wchar_t letter) {
  std::array<wchar_t, 2> text{letter, 0};
  CharUpperW(text.data());
  return text[0];
}

bool IsInitial(std::wstring_view text, size_t at) {
  return at == 0 || (IsCharAlphaNumericW(text[at - 1]) == FALSE && text[at - 1] != L'\'');
}

/// How well a letter serves, 0 best: every keyboard types the basic letters, and thin letters and those with
/// a tail hardly show the line below them.
int Rank(std::wstring_view text, size_t at) {
  constexpr std::wstring_view poor = L"gijlpqy";
  if (text[at] >= 0x80) return 3;
  if (IsInitial(text, at)) return 0;
  return poor.find(text[at]) == std::wstring_view::npos ? 1 : 2;
}

/// Where in `text` the mark of `key` goes.
size_t PositionOf(std::wstring_view text, wchar_t key) {
  size_t best = std::wstring_view::npos;
  for (size_t at = 0; at < text.size(); ++at) {
    if (Capital(text[at]) != key) continue;
    if (best == std::wstring_view::npos || Rank(text, at) < Rank(text, best)) best = at;
  }
  return best;
}

}  // namespace

bool IsField(ControlKind kind) {
  return kind == ControlKind::TextBox || kind == ControlKind::Slider || kind == ControlKind::Grid ||
         kind == ControlKind::Tree;
}

/// A control that wants a letter, with those that it can have, best first.
struct AccessKeys::Wish {
  const Control* shown;
  Control* target;
  std::wstring letters;
  size_t initials = 0;  // how many of the letters are first choice
};

AccessKeys::AccessKeys(const Form& form, const Layout& layout) {
  std::vector<Wish> wishes;
  const auto add = [&](const Control& shown, Control& target) {
    const std::wstring text = ToUtf16(shown.Caption());
    std::vector<size_t> positions;
    for (size_t at = 0; at < text.size(); ++at) {
      if (IsCharAlphaNumericW(text[at])) positions.push_back(at);
    }
    std::ranges::stable_sort(positions, {}, [&](size_t at) { return Rank(text, at); });
    Wish wish{&shown, &target, {}};
    for (const size_t at : positions) {
      const wchar_t letter = Capital(text[at]);
      if (wish.letters.find(letter) != std::wstring::npos) continue;
      wish.letters.push_back(letter);
      if (Rank(text, at) == 0) ++wish.initials;
    }
    wishes.push_back(std::move(wish));
  };
  for (Control* control : form.Controls()) {
    switch (control->Kind()) {
      case ControlKind::Button:
      case ControlKind::CheckBox:
      case ControlKind::OptionButton:
        if (!EndsDialog(form, *control)) add(*control, *control);
        break;
      default:
        if (const Control* naming = NamingControl(form, layout, *control)) {
          // A check box keeps its letter for itself, and the first field takes that of its section.
          const bool taken = std::ranges::any_of(wishes, [&](const Wish& w) { return w.shown == naming; });
          if (!taken) add(*naming, *control);
        }
        break;
    }
  }

  Takers takers;
  for (size_t wish = 0; wish < wishes.size(); ++wish) {
    for (const wchar_t letter : wishes[wish].letters.substr(0, wishes[wish].initials)) {
      if (takers.try_emplace(letter, wish).second) break;
    }
  }
  for (size_t wish = 0; wish < wishes.size(); ++wish) {
    if (std::ranges::any_of(takers, [&](const auto& taker) { return taker.second == wish; })) continue;
    std::vector<bool> tried(wishes.size());
    Assign(wish, wishes, takers, tried);
  }
  for (const auto& [letter, wish] : takers) {
    keys_[wishes[wish].shown] = letter;
    targets_[letter] = wishes[wish].target;
  }
}

bool AccessKeys::Assign(size_t wish, const std::vector<Wish>& wishes, Takers& takers,
                        std::vector<bool>& tried) {
  for (const wchar_t letter : wishes[wish].letters) {
    if (takers.try_emplace(letter, wish).second) return true;
  }
  // All are taken: one of the takers may do with another letter.
  tried[wish] = true;
  for (const wchar_t letter : wishes[wish].letters) {
    const size_t taker = takers[letter];
    if (tried[taker]) continue;
    if (Assign(taker, wishes, takers, tried)) {
      takers[letter] = wish;
      return true;
    }
  }
  return false;
}

wchar_t AccessKeys::KeyOf(const Control& control) const {
  const auto found = keys_.find(&control);
  return found == keys_.end() ? L'\0' : found->second;
}

std::wstring AccessKeys::MarkedCaption(const Control& control) const {
  const std::wstring text = ToUtf16(control.Caption());
  const wchar_t key = KeyOf(control);
  const size_t position = key == 0 ? std::wstring::npos : PositionOf(text, key);
  std::wstring marked;
  for (size_t at = 0; at < text.size(); ++at) {
    if (at == position || text[at] == L'&') marked.push_back(L'&');
    marked.push_back(text[at]);
  }
  return marked;
}

Control* AccessKeys::Target(wchar_t key) const {
  const auto found = targets_.find(Capital(key));
  return found == targets_.end() ? nullptr : found->second;
}

std::wstring AccessKeys::Letters() const {
  std::wstring letters;
  for (const auto& [letter, target] : targets_) letters.push_back(letter);
  return letters;
}

const Control* NamingControl(const Form& form, const Layout& layout, const Control& field) {
  if (!IsField(field.Kind())) return nullptr;
  const std::vector<Control*>& controls = form.Controls();
  bool adjacent = true;
  for (auto at = std::ranges::find(controls, &field); at != controls.begin(); adjacent = false) {
    const Control* const control = *--at;
    const ControlKind kind = control->Kind();
    if (kind == ControlKind::Section || (adjacent && kind == ControlKind::Frame)) return control;
    if (adjacent && kind == ControlKind::CheckBox) return control;
    if (adjacent && kind == ControlKind::Label && !IsProse(layout, *control)) return control;
  }
  return nullptr;
}

std::wstring PlainText(const std::wstring& windowText) {
  std::wstring plain;
  for (size_t at = 0; at < windowText.size(); ++at) {
    if (windowText[at] == L'&' && at + 1 < windowText.size()) ++at;
    plain.push_back(windowText[at]);
  }
  return plain;
}

}  // namespace vexa::windows
