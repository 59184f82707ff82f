// A form that is open, as the console acts on it and looks at it: verbs of a user, and what a user sees. One
// implementation stands over the library's models, one over real windows. Controls go by their names, which
// must be those of the form.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "display/UserActions.h"
#include "workbench/FormState.h"

namespace vexa::workbench {

class FormDriver {
 public:
  FormDriver() = default;
  FormDriver(const FormDriver&) = delete;
  FormDriver& operator=(const FormDriver&) = delete;
  virtual ~FormDriver() = default;

  virtual std::string Name() const = 0;
  virtual std::string Caption() const = 0;

  struct ControlName {
    std::string name;
    ControlKind kind;
  };
  /// In tab order.
  virtual std::vector<ControlName> Controls() const = 0;
  virtual FormState State() const = 0;
  virtual ControlState StateOf(const std::string& control) const = 0;

  /// The control that has the focus; empty for none.
  virtual std::string Focus() const = 0;
  /// The buttons that Enter and Esc would press now; empty for none.
  virtual std::string EnterButton() const = 0;
  virtual std::string EscapeButton() const = 0;

  /// A node of a tree, in whatever way the driver numbers them.
  using Node = uint64_t;
  static constexpr Node NoNode = 0;
  /// The first node below `parent` (NoNode: at the root) whose text reads `encodedText` in a path.
  virtual Node FindNode(const std::string& tree, Node parent, std::string_view encodedText) const = 0;

  // The verbs of UserActions. The form may be gone when one of them returns.
  virtual Outcome Click(const std::string& control) = 0;
  virtual Outcome DoubleClick(const std::string& control) = 0;
  virtual Outcome SetChecked(const std::string& box, bool checked) = 0;
  virtual Outcome Choose(const std::string& option) = 0;
  virtual Outcome Type(const std::string& box, const std::string& text) = 0;
  virtual Outcome Slide(const std::string& slider, int32_t position) = 0;
  virtual Outcome SelectCell(const std::string& grid, int32_t row, int32_t column) = 0;
  virtual Outcome ClickNode(const std::string& tree, Node node) = 0;
  virtual Outcome CheckNode(const std::string& tree, Node node, bool checked) = 0;
  virtual Outcome Expand(const std::string& tree, Node node, bool expanded) = 0;
  /// `hotSpot` counts from 0.
  virtual Outcome ClickHotSpot(const std::string& label, int32_t hotSpot) = 0;
  virtual Outcome Focus(const std::string& control) = 0;
  virtual Outcome Leave() = 0;
  virtual Outcome Press(int keyCode, bool shift) = 0;
  virtual Outcome Enter() = 0;
  virtual Outcome Escape() = 0;
  /// Closes a dialog by its window. False for a form that is none.
  virtual bool CloseWindow() = 0;
};

}  // namespace vexa::workbench
