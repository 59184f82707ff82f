// What a user sees of a form, as plain data: read from the library's models here, from real windows by a
// windowed host. Printing works on this alone, so that both print the same.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "display/Form.h"

namespace vexa::workbench {

struct NodeState {
  int depth = 0;
  std::string text;
  std::string image;
  bool checked = false;
  bool selected = false;
  bool expanded = false;
  bool hasChildren = false;
};

struct ControlState {
  std::string name;
  ControlKind kind = ControlKind::Label;
  std::string text;  // caption (of a formatted label with its tags), or what stands in a text box
  bool visible = true;
  bool enabled = true;
  bool focused = false;
  bool isDefault = false;
  bool checked = false;   // check box, option button
  bool readOnly = false;  // text box
  int32_t pictureId = 0;
  int32_t position = 0, minimum = 0, maximum = 0;  // slider
  std::vector<std::vector<std::string>> rows;      // grid; the first one is the header
  int32_t currentRow = 0, currentColumn = 0;
  std::vector<NodeState> nodes;  // tree: what is to be seen, top down
};

struct FormState {
  std::string name;
  std::string caption;
  std::vector<ControlState> controls;
};

ControlState StateOf(const Form& form, const Control& control);
FormState StateOf(const Form& form);

/// The word for a kind, as it is printed and used in messages.
std::string_view KindName(ControlKind kind);

void Print(std::ostream& out, const ControlState& control);
void Print(std::ostream& out, const FormState& form);

/// The controls of `form` that are known from `before` and print otherwise now.
FormState ChangesOf(const FormState& form, const FormState& before);
/// The same, of grids and trees only the lines that differ.
void PrintChanges(std::ostream& out, const FormState& form, const FormState& before);

}  // namespace vexa::workbench
