// A form with every kind of control, wired so that each event leaves a line in a log label. Hosts try
// their verbs and views on it; the product does not contain it.
#pragma once

#include <string>

#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/CheckBox.h"
#include "display/ExtLabel.h"
#include "display/Frame.h"
#include "display/Grid.h"
#include "display/Label.h"
#include "display/OptionButton.h"
#include "display/OptionsSection.h"
#include "display/Slider.h"
#include "display/TextBox.h"
#include "display/Tree.h"

namespace vexa::workbench {

class Gallery final : public Dialog {
 public:
  explicit Gallery(const Services& services);

  void CloseWindow() override;
  void KeyDown(int keyCode) override;

  OptionsSection opsGallery{*this, "opsGallery"};
  Label lblEvents{*this, "lblEvents"};
  CheckBox chkFrame{*this, "chkFrame"};
  Frame fraChoices{*this, "fraChoices"};
  OptionGroup choices;
  OptionButton optOne{*this, "optOne", choices};
  OptionButton optTwo{*this, "optTwo", choices};
  OptionButton optThree{*this, "optThree", choices};
  TextBox txtNumber{*this, "txtNumber"};
  TextBox txtLocked{*this, "txtLocked", TextBox::Typing::Locked};
  Slider sldLevel{*this, "sldLevel", 0, 3};
  Grid gdRows{*this, "gdRows", 2};
  Tree tvNodes{*this, "tvNodes"};
  ExtLabel lblHot{*this, "lblHot"};
  Button cmdBrowse{*this, "cmdBrowse"};
  Button cmdHidden{*this, "cmdHidden"};
  Button cmdOk{*this, "cmdOk"};
  Button cmdCancel{*this, "cmdCancel"};

 private:
  void Log(const std::string& event);
  bool NumberIsValid();

  const Services& services_;
};

}  // namespace vexa::workbench
