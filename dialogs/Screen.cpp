#include "dialogs/Screen.h"

namespace vexa {

MessageAnswer Services::Ask(const std::string& text, MessageIcon icon, MessageButtons buttons,
                            StringId title) const {
  return desktop.Show(text, icon, buttons, resources.LoadString(title));
}

MessageAnswer Services::Ask(StringId text, MessageIcon icon, MessageButtons buttons, StringId title) const {
  return Ask(resources.LoadString(text), icon, buttons, title);
}

void ShowModal(const Services& services, Form& opener, Dialog& dialog, Form* owner) {
  const auto* const openingDialog = dynamic_cast<const Dialog*>(&opener);
  if (openingDialog != nullptr && !openingDialog->IsShowing()) throw MakeError(ErrorNumber::ObjectNotSet);
  struct Waiting {
    Waiting(Form& form, const Dialog& dialog) : form_(form) { form_.SetOpenDialog(&dialog); }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;
    ~Waiting() { form_.SetOpenDialog(nullptr); }
    Form& form_;
  };
  const Waiting waiting(opener, dialog);
  services.windows.ShowModal(dialog, owner);
}

}  // namespace vexa
