#include "dialogs/frmTrackingOptions.h"

#include <array>
#include <span>
#include <utility>

#include "dialogs/frmFolders.h"

namespace vexa {

/// The controls beside the settings that they stand for.
struct TrackingSettings {
  struct Method {
    OptionButton frmTrackingOptions::*option;
    int32_t number;
  };
  /// Number 1 has no option: it is shown as none chosen.
  static constexpr std::array<Method, 4> Methods{{
      {&frmTrackingOptions::optDefault, 0},
      {&frmTrackingOptions::optPersonal, 2},
      {&frmTrackingOptions::optCustom, 3},
      {&frmTrackingOptions::optWindowMode, 4},
  }};

  struct Flag {
    CheckBox frmTrackingOptions::*box;
    bool (RegSettings::*get)();
    void (RegSettings::*let)(const bool&);
  };
  /// In the order in which they are read.
  static constexpr std::array<Flag, 8> Flags{{
      {&frmTrackingOptions::chkAudit, &RegSettings::GetMaintainAuditTrail,
       &RegSettings::LetMaintainAuditTrail},
      {&frmTrackingOptions::chkUpdateLogged, &RegSettings::GetUpdateLoggedItems,
       &RegSettings::LetUpdateLoggedItems},
      {&frmTrackingOptions::chkUpdateShared, &RegSettings::GetUpdateSharedItems,
       &RegSettings::LetUpdateSharedItems},
      {&frmTrackingOptions::chkScanInbox, &RegSettings::GetScanInboxAtStartup,
       &RegSettings::LetScanInboxAtStartup},
      {&frmTrackingOptions::chkStripAttachments, &RegSettings::GetStripAttachments,
       &RegSettings::LetStripAttachments},
      {&frmTrackingOptions::chkIgnoreInternal, &RegSettings::GetIgnoreInternalSenders,
       &RegSettings::LetIgnoreInternalSenders},
      {&frmTrackingOptions::chkEnableBlanketDomain, &RegSettings::GetEnableBlanketDomain,
       &RegSettings::LetEnableBlanketDomain},
      {&frmTrackingOptions::chkIgnorePrivate, &RegSettings::GetIgnorePrivateContacts,
       &RegSettings::LetIgnorePrivateContacts},
  }};
  /// The last one is written behind the categories.
  static constexpr std::span FlagsBeforeCategories = std::span(Flags).first<7>();
  static constexpr const Flag& FlagAfterCategories = Flags.back();
};

frmTrackingOptions::frmTrackingOptions(const Services& services)
    : Dialog("frmTrackingOptions"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::TrackingOptions));
  LoadCaptions(services.resources);
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);

  for (OptionButton* method : methods) method->OnClick = [this] { MethodChosen(); };
  for (const TrackingSettings::Flag& flag : TrackingSettings::Flags)
    (this->*flag.box).OnClick = [this] { SetDirty(); };
  optCustom.OnGotFocus = [this] { SetDefaultButton(cmdFolders); };
  optCustom.OnLostFocus = [this] { SetDefaultButton(cmdOk); };
  txtCategories.OnChange = [this] {
    if (loaded_) SetDirty();
  };
  txtCategories.OnLostFocus = Handler(services_, *this, "txtCategories_LostFocus", [this] {
    txtCategories.SetText(services_.desktop.LowerCase(txtCategories.Text()));
  });
  cmdFolders.OnClick = Handler(services_, *this, "cmdFolders_Click", &frmTrackingOptions::ChooseFolders);
  chkSearchNow.OnClick =
      Handler(services_, *this, "chkSearchNow_Click", &frmTrackingOptions::SearchNowChanged);
  cmdOk.OnClick = Handler(services_, *this, "cmdOk_Click", &frmTrackingOptions::Ok);
  cmdCancel.OnClick = [this] { End(true); };
}

void frmTrackingOptions::Initialize(AddinAppRef vexaAddin, RegSettingsRef tempRegSettings,
                                    OptionsPage& theParent) {
  PassOn(Name(), "Initialize", [&] {
    addin_ = std::move(vexaAddin);
    settings_ = std::move(tempRegSettings);
    page_ = &theParent;
    Load();
    cmdOk.SetEnabled(false);
    if (!CanWrite(*Share(settings_))) Lock();
    loaded_ = true;
  });
}

void frmTrackingOptions::Load() {
  const RegSettingsRef own = Share(settings_);
  RegSettings& settings = *own;
  const int32_t method = settings.GetLoggingMethod();
  for (const TrackingSettings::Method& known : TrackingSettings::Methods) {
    if (known.number == method) (this->*known.option).Select();
  }
  cmdFolders.SetEnabled(optCustom.Selected());
  for (const TrackingSettings::Flag& flag : TrackingSettings::Flags)
    (this->*flag.box).SetChecked((settings.*flag.get)());
  const bool scanning = Require(Share(addin_)->Scanner()).IsScanning();
  chkSearchNow.SetEnabled(!scanning);
  chkSearchNow.SetChecked(page_->SearchNowPending || scanning);
  txtCategories.SetText(settings.GetTrackedCategories());
}

void frmTrackingOptions::Lock() {
  // The folders can still be looked at, and a search be asked for: neither changes a setting.
  cmdOk.SetEnabled(false);
  for (OptionButton* method : methods) method->SetEnabled(false);
  for (const TrackingSettings::Flag& flag : TrackingSettings::Flags) (this->*flag.box).SetEnabled(false);
  txtCategories.SetEnabled(false);
  cmdFolders.SetCaption(services_.resources.LoadString(StringId::View));
}

void frmTrackingOptions::MethodChosen() {
  cmdFolders.SetEnabled(optCustom.Selected());
  SetDirty();
}

void frmTrackingOptions::ChooseFolders() {
  frmFolders picker(services_);
  picker.Initialize(addin_, settings_, *this);
  ShowModal(services_, *this, picker, this);
}

void frmTrackingOptions::SearchNowChanged() {
  if (!loaded_ || unchecking_) return;
  SetDirty();
  if (!chkSearchNow.Checked()) return;
  const MessageAnswer answer = services_.Ask(StringId::SearchNowQuestion, MessageIcon::Question,
                                             MessageButtons::YesNoCancel, StringId::SearchNowTitle);
  if (answer == MessageAnswer::Cancel) {
    const ScopedFlag unchecking(unchecking_);
    chkSearchNow.SetChecked(false);
  } else {
    stopAtScanned_ = answer == MessageAnswer::Yes;
  }
}

void frmTrackingOptions::Ok() {
  const RegSettingsRef settings = Share(settings_);
  OptionsPage& page = Require(page_);
  for (const TrackingSettings::Method& method : TrackingSettings::Methods) {
    if ((this->*method.option).Selected()) settings->LetLoggingMethod(method.number);
  }
  const auto write = [&](const TrackingSettings::Flag& flag) {
    ((*settings).*flag.let)((this->*flag.box).CheckedAndEnabled());
  };
  for (const TrackingSettings::Flag& flag : TrackingSettings::FlagsBeforeCategories) write(flag);
  if (txtCategories.Enabled())
    settings->LetTrackedCategories(services_.desktop.LowerCase(txtCategories.Text()));
  write(TrackingSettings::FlagAfterCategories);
  page.SearchNowPending = chkSearchNow.CheckedAndEnabled();
  page.SearchStopAtScanned = stopAtScanned_ && page.SearchNowPending;
  End(false);
}

void frmTrackingOptions::DropReferences() {
  addin_.reset();
  settings_.reset();
  page_ = nullptr;
}

}  // namespace vexa
