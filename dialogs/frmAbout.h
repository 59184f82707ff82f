// The about box: product and version, what the add-in says about itself, and the path of the enterprise
// settings when they are in use; a button starts the system information tool. The page makes it, hands it the
// add-in's information and shows it.
#pragma once

#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/Label.h"

namespace vexa {

class frmAbout final : public Dialog {
 public:
  explicit frmAbout(const Services& services);

  /// The add-in's AboutInfo; to be set before Initialize.
  Variant AboutInfo;

  void Initialize(const RegSettingsRef& theRegSettings);

  Label lblProduct{*this, "lblProduct", StringId::AboutProduct};
  Label lblVersion{*this, "lblVersion"};
  Label lblInfo{*this, "lblInfo"};
  Label lblEnterprise{*this, "lblEnterprise"};
  Button cmdOk{*this, "cmdOk", StringId::Ok};
  Button cmdSysInfo{*this, "cmdSysInfo", StringId::SystemInfo};

 private:
  void ShowSystemInfo();

  const Services& services_;
};

}  // namespace vexa
