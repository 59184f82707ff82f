// What a user can do to a form, as commands: every verb on every control and every key, whether or not the
// form takes them. New controls and screens are found without being named anywhere.
#pragma once

#include <string>
#include <vector>

#include "display/Form.h"
#include "tests/walk/FedConsole.h"

namespace vexa::workbench {

struct Action {
  Step step;
  const Control* control;  // null for keys and the window's frame
};

std::vector<Action> ActionsOn(const Form& form);

/// The button that the step would press on the form, by its name: the way of a click, of Enter or of Esc.
/// Empty for none; "close" for the window's frame.
std::string ButtonPressedBy(const Form& form, const Step& step);

}  // namespace vexa::workbench
