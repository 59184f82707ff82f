#include "dialogs/frmBackgroundAdjust.h"

#include <utility>

#include "core/Numbers.h"

namespace vexa {

frmBackgroundAdjust::frmBackgroundAdjust(const Services& services)
    : Dialog("frmBackgroundAdjust"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::BackgroundTitle));
  LoadCaptions(services.resources);
  txtDelay.SetEnabled(false);
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);

  const auto onNumber = [&](TextBox& box, std::string_view procedure, double most, StringId message) {
    box.OnGotFocus = [&box] { box.SelectAll(); };
    box.OnChange = [this] { cmdOk.SetEnabled(true); };
    box.OnValidate = Validation(services_, *this, procedure, [this, &box, most, message] {
      if (IsNumberBetween(box.Text(), 1, most)) return true;
      services_.Tell(message, MessageIcon::Critical);
      return false;
    });
  };
  // The interval goes up to 60000 although its message, the work time's, says 2000: deliberately so.
  onNumber(txtInterval, "txtInterval_Validate", 60000, StringId::WorkTimeOutOfRange);
  onNumber(txtTime, "txtTime_Validate", 2000, StringId::WorkTimeOutOfRange);
  onNumber(txtDelay, "txtDelay_Validate", 60000, StringId::DelayOutOfRange);
  chkDelay.OnClick = Handler(services_, *this, "chkDelay_Click", &frmBackgroundAdjust::DelayBoxChanged);
  cmdOk.OnClick = Handler(services_, *this, "cmdOk_Click", &frmBackgroundAdjust::Ok);
  cmdCancel.OnClick = [this] { End(true); };
}

void frmBackgroundAdjust::Initialize(AddinAppRef vexaAddin, RegSettingsRef theRegSettings) {
  PassOn(Name(), "Initialize", [&] {
    addin_ = std::move(vexaAddin);
    settings_ = std::move(theRegSettings);
    Load(*Share(settings_));
    cmdOk.SetEnabled(false);
    if (!CanWrite(*Share(settings_))) {
      for (Control* control : std::initializer_list<Control*>{&txtInterval, &txtTime, &txtDelay, &chkDelay}) {
        control->SetEnabled(false);
      }
    }
  });
}

void frmBackgroundAdjust::Load(RegSettings& settings) {
  constexpr int32_t suggestedDelay = 2000;
  const ScopedFlag initializing(initializing_);
  txtTime.SetText(std::to_string(settings.GetBackgroundWorkTime()));
  txtInterval.SetText(std::to_string(settings.GetBackgroundInterval()));
  const int32_t delay = settings.GetDelayNewItems();
  txtDelay.SetText(std::to_string(delay != 0 ? delay : suggestedDelay));
  txtDelay.SetEnabled(delay != 0);
  chkDelay.SetChecked(delay != 0);
}

void frmBackgroundAdjust::DelayBoxChanged() {
  if (initializing_) return;
  txtDelay.SetEnabled(chkDelay.Checked());
  cmdOk.SetEnabled(true);
  if (!chkDelay.Checked() || !Require(Share(addin_)->Utilities()).DelayAvailable()) return;
  const MessageAnswer answer =
      services_.Ask(StringId::DelaySlowsOutlook, MessageIcon::Exclamation, MessageButtons::OkCancel);
  if (answer == MessageAnswer::Cancel) chkDelay.SetChecked(false);
}

void frmBackgroundAdjust::Ok() {
  const RegSettingsRef own = Share(settings_);
  RegSettings& settings = *own;
  settings.LetBackgroundWorkTime(ToInt32(LeadingNumber(txtTime.Text())));
  settings.LetBackgroundInterval(ToInt32(LeadingNumber(txtInterval.Text())));
  settings.LetDelayNewItems(chkDelay.Checked() ? ToInt32(LeadingNumber(txtDelay.Text())) : 0);
  End(false);
}

void frmBackgroundAdjust::DropReferences() {
  addin_.reset();
  settings_.reset();
}

}  // namespace vexa
