// The modal message box of the desktop, as far as the core needs it: to show an error, ask a question.
#pragma once

#include <string>

namespace vexa {

enum class MessageIcon { None, Critical, Question, Exclamation, Information };
enum class MessageButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class MessageAnswer { Ok, Cancel, Yes, No };

class MessageBoxes {
 public:
  MessageBoxes() = default;
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;
  virtual ~MessageBoxes() = default;

  /// Shows the box and waits for an answer, which is always one of `buttons` (closing a box that has a
  /// Cancel button answers Cancel).
  virtual MessageAnswer Show(const std::string& text, MessageIcon icon, MessageButtons buttons,
                             const std::string& title) = 0;
};

}  // namespace vexa
