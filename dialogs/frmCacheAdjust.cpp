#include "dialogs/frmCacheAdjust.h"

#include <utility>

#include "core/Numbers.h"

namespace vexa {

frmCacheAdjust::frmCacheAdjust(const Services& services) : Dialog("frmCacheAdjust"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::CacheTitle));
  LoadCaptions(services.resources);
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);

  for (Event* changed : {&txtNumRecords.OnChange, &chkSync.OnClick, &chkFillOnExit.OnClick}) {
    *changed = [this] { cmdOk.SetEnabled(true); };
  }
  txtNumRecords.OnValidate =
      Validation(services_, *this, "txtNumRecords_Validate", [this] { return ValidateNumRecords(); });
  cmdOk.OnClick = Handler(services_, *this, "cmdOk_Click", &frmCacheAdjust::Ok);
  cmdCancel.OnClick = [this] { End(true); };
}

void frmCacheAdjust::Initialize(AddinAppRef vexaAddin, RegSettingsRef theRegSettings) {
  PassOn(Name(), "Initialize", [&] {
    addin_ = std::move(vexaAddin);
    settings_ = std::move(theRegSettings);
    const RegSettingsRef own = Share(settings_);
    RegSettings& settings = *own;
    txtNumRecords.SetText(std::to_string(settings.GetRecordsPerDownload()));
    chkSync.SetChecked(settings.GetKeepCacheSynchronized());
    chkFillOnExit.SetChecked(!settings.GetStopCacheFillOnExit());
    cmdOk.SetEnabled(false);
    if (!CanWrite(settings)) {
      for (Control* control : std::initializer_list<Control*>{&txtNumRecords, &chkSync, &chkFillOnExit}) {
        control->SetEnabled(false);
      }
    }
  });
}

bool frmCacheAdjust::ValidateNumRecords() {
  if (IsNumberBetween(txtNumRecords.Text(), 1, 10000)) return true;
  // There is a Cancel button; either answer leaves the focus in the box.
  services_.Ask(StringId::RecordsOutOfRange, MessageIcon::Critical, MessageButtons::OkCancel,
                StringId::ShortProductName);
  return false;
}

void frmCacheAdjust::Ok() {
  constexpr double recommended = 100;
  const RegSettingsRef own = Share(settings_);
  RegSettings& settings = *own;
  const double records = LeadingNumber(txtNumRecords.Text());
  if (records > recommended) {
    const MessageAnswer answer = services_.Ask(StringId::ManyRecordsWarning, MessageIcon::Exclamation,
                                               MessageButtons::Ok, StringId::ShortProductName);
    // Cannot happen: the text offers Cancel, the box has no such button. Both stay as they are.
    if (answer == MessageAnswer::Cancel) return;
  }
  settings.LetRecordsPerDownload(ToInt16(records));
  settings.LetKeepCacheSynchronized(chkSync.Checked());
  settings.LetStopCacheFillOnExit(!chkFillOnExit.Checked());
  End(false);
}

void frmCacheAdjust::DropReferences() {
  addin_.reset();
  settings_.reset();
}

}  // namespace vexa
