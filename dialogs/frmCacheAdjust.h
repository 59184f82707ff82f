// Fine-tuning of the cache of tracked contact folders: how much is downloaded at a time, whether the cache
// follows the server, whether it is filled on while Outlook exits. OK writes into the working copy at once;
// the advanced settings make it and show it.
#pragma once

#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/CheckBox.h"
#include "display/Label.h"
#include "display/TextBox.h"

namespace vexa {

class frmCacheAdjust final : public Dialog {
 public:
  explicit frmCacheAdjust(const Services& services);

  void Initialize(AddinAppRef vexaAddin, RegSettingsRef theRegSettings);

  Label lblNumRecords{*this, "lblNumRecords", StringId::RecordsPerDownload};
  TextBox txtNumRecords{*this, "txtNumRecords"};
  Label lblTip{*this, "lblTip", StringId::RecordsTip};
  CheckBox chkSync{*this, "chkSync", StringId::KeepCacheSynchronized};
  CheckBox chkFillOnExit{*this, "chkFillOnExit", StringId::FillCacheOnExit};
  Button cmdOk{*this, "cmdOk", StringId::Ok};
  Button cmdCancel{*this, "cmdCancel", StringId::Cancel};

 private:
  bool ValidateNumRecords();
  void Ok();
  void DropReferences() override;

  const Services& services_;
  AddinAppRef addin_;
  RegSettingsRef settings_;
};

}  // namespace vexa
