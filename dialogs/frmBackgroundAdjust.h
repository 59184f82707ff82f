// Fine-tuning of the add-in's background work: how often it works, how long each time at least, and how long
// new items wait. All values are milliseconds. OK writes into the working copy at once; the advanced settings
// make it and show it.
#pragma once

#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/CheckBox.h"
#include "display/Label.h"
#include "display/TextBox.h"

namespace vexa {

class frmBackgroundAdjust final : public Dialog {
 public:
  explicit frmBackgroundAdjust(const Services& services);

  void Initialize(AddinAppRef vexaAddin, RegSettingsRef theRegSettings);

  Label lblInterval{*this, "lblInterval", StringId::BackgroundInterval};
  TextBox txtInterval{*this, "txtInterval"};
  Label lblIntervalUnit{*this, "lblIntervalUnit", StringId::Milliseconds};
  Label lblTime{*this, "lblTime", StringId::BackgroundWorkTime};
  TextBox txtTime{*this, "txtTime"};
  Label lblTimeUnit{*this, "lblTimeUnit", StringId::Milliseconds};
  CheckBox chkDelay{*this, "chkDelay", StringId::DelayNewItems};
  TextBox txtDelay{*this, "txtDelay"};
  Label lblDelayUnit{*this, "lblDelayUnit", StringId::Milliseconds};
  Label lblNote{*this, "lblNote", StringId::BackgroundTakesEffectLater};
  Button cmdOk{*this, "cmdOk", StringId::Ok};
  Button cmdCancel{*this, "cmdCancel", StringId::Cancel};

 private:
  void Load(RegSettings& settings);
  void DelayBoxChanged();
  void Ok();
  void DropReferences() override;

  const Services& services_;
  AddinAppRef addin_;
  RegSettingsRef settings_;
  bool initializing_ = false;
};

}  // namespace vexa
