// The letters that together with Alt reach the controls of one screen. The texts carry no marks, so the
// letters are chosen here, for each language anew: an initial of a word when one is free, else another
// letter. A field has no text of its own; the control that names it lends its letter. Buttons that end a
// dialog have Enter and Esc, and no letter. Made anew whenever a caption changes.
#pragma once

#include <map>
#include <string>

#include "display/Form.h"
#include "windows/views/Layout.h"

namespace vexa::windows {

class AccessKeys {
 public:
  AccessKeys(const Form& form, const Layout& layout);

  /// In capitals; 0 for none.
  wchar_t KeyOf(const Control& control) const;
  /// The control's caption as Windows' controls take it: the letter marked, real ampersands doubled.
  std::wstring MarkedCaption(const Control& control) const;
  /// What the letter reaches: the control that shows it, or the field that this one names. Null for none.
  Control* Target(wchar_t key) const;
  /// Every letter in use.
  std::wstring Letters() const;

 private:
  struct Wish;
  using Takers = std::map<wchar_t, size_t>;
  static bool Assign(size_t wish, const std::vector<Wish>& wishes, Takers& takers, std::vector<bool>& tried);

  std::map<const Control*, wchar_t> keys_;
  std::map<wchar_t, Control*> targets_;
};

/// Whether controls of this kind have no text of their own to be named by.
bool IsField(ControlKind kind);

/// The control whose caption names `field`: the label, check box or frame before it, else the section that it
/// stands in. Null when there is none, and for other controls.
const Control* NamingControl(const Form& form, const Layout& layout, const Control& field);

/// A window's text as the user reads it: without the mark, ampersands single. For controls whose texts
/// take marks.
std::wstring PlainText(const std::wstring& windowText);

}  // namespace vexa::windows
