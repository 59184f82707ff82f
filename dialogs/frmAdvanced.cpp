#include "dialogs/frmAdvanced.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/Numbers.h"
#include "core/Paths.h"
#include "dialogs/ErrorLogTools.h"
#include "dialogs/frmBackgroundAdjust.h"
#include "dialogs/frmCacheAdjust.h"

namespace vexa {

/// A box that stands for one setting. The table drives loading, writing, locking and the defaults.
struct frmAdvanced::Option {
  CheckBox frmAdvanced::*box;
  bool (RegSettings::*get)();
  void (RegSettings::*let)(const bool&);
  bool byDefault;
  bool inverted = false;
  /// Whether the box can be used; null: always.
  bool (frmAdvanced::*usable)() = nullptr;
};

namespace {

constexpr const char* AddinRegistryKey = "SOFTWARE\\Microsoft\\Office\\Outlook\\Addins\\VexaAddin.Connect";
constexpr int32_t LevelNothing = 3;  // the stored level of slider position 0
constexpr int32_t KilobytesPerMegabyte = 1024;

}  // namespace

std::span<const frmAdvanced::Option> frmAdvanced::Options() {
  // In the order in which they are read and written.
  static constexpr std::array<Option, 9> options{{
      {&frmAdvanced::chkShow, &RegSettings::GetShowVexa2Buttons, &RegSettings::LetShowVexa2Buttons, false},
      {&frmAdvanced::chkAssume, &RegSettings::GetAssumeUniqueEmailAddresses,
       &RegSettings::LetAssumeUniqueEmailAddresses, true},
      {&frmAdvanced::chkSearchEmail, &RegSettings::GetSearchEmailAddresses,
       &RegSettings::LetSearchEmailAddresses, true},
      {&frmAdvanced::chkOnlySearch, &RegSettings::GetOnlySearchIfNoLinks,
       &RegSettings::LetOnlySearchIfNoLinks, false},
      {&frmAdvanced::chkBypass, &RegSettings::GetBypassObjectModel, &RegSettings::LetBypassObjectModel, true,
       false, &frmAdvanced::BypassIsUsable},
      {&frmAdvanced::chkDontEdit, &RegSettings::GetEditFolderFields, &RegSettings::LetEditFolderFields, false,
       true},
      {&frmAdvanced::chkMakeWorking, &RegSettings::GetMakeWorkingCopy, &RegSettings::LetMakeWorkingCopy,
       false},
      {&frmAdvanced::chkCache, &RegSettings::GetCacheContactFolders, &RegSettings::LetCacheContactFolders,
       true, false, &frmAdvanced::CacheIsUsable},
      {&frmAdvanced::chkWork, &RegSettings::GetWorkInBackground, &RegSettings::LetWorkInBackground, true},
  }};
  return options;
}

frmAdvanced::frmAdvanced(const Services& services) : Dialog("frmAdvanced"), services_(services) {
  SetCaption(services.resources.LoadString(StringId::AdvancedTitle));
  LoadCaptions(services.resources);
  txtQuickscanHours.SetEnabled(false);
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);

  for (const Option& option : Options()) (this->*option.box).OnClick = [this] { EnableOk(); };
  for (Event* changed : {&chkErrReporting.OnClick, &chkUseEnterprise.OnClick, &chkAllUsers.OnClick,
                         &sldLogLevel.OnChange, &txtQuickscanHours.OnChange}) {
    *changed = [this] { EnableOk(); };
  }
  const auto on = [&](Event& event, std::string_view procedure, void (frmAdvanced::*handler)()) {
    event = Handler(services_, *this, procedure, [this, handler] {
      if (!loading_) (this->*handler)();  // Load sets what depends on what itself
    });
  };
  on(chkAssume.OnClick, "chkAssume_Click", &frmAdvanced::AssumeBoxChanged);
  on(chkSearchEmail.OnClick, "chkSearchEmail_Click", &frmAdvanced::SearchEmailBoxChanged);
  on(chkCache.OnClick, "chkCache_Click", &frmAdvanced::CacheBoxChanged);
  on(chkWork.OnClick, "chkWork_Click", &frmAdvanced::WorkBoxChanged);
  on(chkQuickscanHours.OnClick, "chkQuickscanHours_Click", &frmAdvanced::HoursBoxChanged);
  on(txtQuickscanHours.OnLostFocus, "txtQuickscanHours_LostFocus", &frmAdvanced::HoursLeft);
  txtQuickscanHours.OnGotFocus = [this] { txtQuickscanHours.SelectAll(); };
  sldMaxSize.OnChange = Handler(services_, *this, "sldMaxSize_Change", [this] {
    ShowSize();
    EnableOk();
  });
  on(cmdAdjCache.OnClick, "cmdAdjCache_Click", &frmAdvanced::AdjustCache);
  on(cmdAdjBackground.OnClick, "cmdAdjBackground_Click", &frmAdvanced::AdjustBackground);
  on(cmdLocation.OnClick, "cmdLocation_Click", &frmAdvanced::ChooseLogFolder);
  on(cmdEmail.OnClick, "cmdEmail_Click", &frmAdvanced::EmailLog);
  on(cmdDefault.OnClick, "cmdDefault_Click", &frmAdvanced::RestoreDefaults);
  on(cmdOk.OnClick, "cmdOk_Click", &frmAdvanced::Ok);
  cmdCancel.OnClick = [this] { End(true); };
}

void frmAdvanced::EnableOk() {
  if (canWrite_) cmdOk.SetEnabled(true);
}

// --- loading

void frmAdvanced::Initialize(AddinAppRef vexaAddin, RegSettingsRef theRegSettings, OptionsPage& page) {
  PassOn(Name(), "Initialize", [&] {
    addin_ = std::move(vexaAddin);
    settings_ = std::move(theRegSettings);
    page_ = &page;
    const ScopedFlag loading(loading_);
    Load();
  });
}

void frmAdvanced::Load() {
  const RegSettingsRef own = Share(settings_);
  RegSettings& settings = *own;
  LoadOptions(settings);
  LoadErrorLog(settings);
  const int32_t hours = settings.GetQuickscanHours();
  chkQuickscanHours.SetChecked(hours > 0);
  txtQuickscanHours.SetText(std::to_string(hours));
  LoadScope(settings);
  cmdEmail.SetEnabled(services_.desktop.FileExists(txtLogPath.Text()));
  canWrite_ = CanWrite(settings);
  txtQuickscanHours.SetEnabled(chkQuickscanHours.Checked());
  if (!canWrite_) ShowReadOnly();
  cmdOk.SetEnabled(false);
}

void frmAdvanced::LoadOptions(RegSettings& settings) {
  for (const Option& option : Options()) {
    CheckBox& box = this->*option.box;
    const bool checked = (settings.*option.get)() != option.inverted;
    box.SetEnabled(IsUsable(option));
    box.SetChecked(checked && box.Enabled());
  }
  chkOnlySearch.SetEnabled(chkSearchEmail.Checked());
  cmdAdjCache.SetEnabled(chkCache.Checked());
  cmdAdjBackground.SetEnabled(chkWork.Checked());
}

bool frmAdvanced::IsUsable(const Option& option) {
  return option.usable == nullptr || (this->*option.usable)();
}

bool frmAdvanced::BypassIsUsable() { return !Require(Share(addin_)->Utilities()).BypassBlocked(); }

bool frmAdvanced::CacheIsUsable() { return chkSearchEmail.Checked() && chkAssume.Checked(); }

void frmAdvanced::LoadErrorLog(RegSettings& settings) {
  const int32_t level = settings.GetLogLevel();
  // Anything unknown shows as everything.
  sldLogLevel.SetPosition(level >= 1 && level <= LevelNothing ? LevelNothing - level : LevelNothing);
  sldMaxSize.SetPosition(ToInt32(static_cast<double>(settings.GetMaxLogSize()) / KilobytesPerMegabyte));
  ShowSize();  // a slider that stands there already raises no change
  txtLogPath.SetText(settings.GetErrorLogPath());
  chkErrReporting.SetChecked(settings.GetAutomaticErrorReporting());
}

void frmAdvanced::LoadScope(RegSettings& settings) {
  const bool ignored = settings.GetIgnoreEnterpriseSettings();
  const bool present = settings.GetEnterpriseSettingsPresent();
  chkUseEnterprise.SetChecked(!(ignored && present));
  chkUseEnterprise.SetEnabled(present);
  chkAllUsers.SetChecked(settings.GetAllUsersMode());
  chkAllUsers.SetEnabled(services_.desktop.CanWriteRegistry(RegistryRoot::LocalMachine, AddinRegistryKey));
}

void frmAdvanced::ShowReadOnly() {
  for (const Option& option : Options()) (this->*option.box).SetEnabled(false);
  chkQuickscanHours.SetEnabled(false);
  txtQuickscanHours.SetEnabled(false);
  cmdAdjCache.SetCaption(services_.resources.LoadString(StringId::View));
  cmdAdjBackground.SetCaption(services_.resources.LoadString(StringId::View));
}

void frmAdvanced::ShowSize() {
  lblSize.SetCaption(std::to_string(sldMaxSize.Position()) +
                     services_.resources.LoadString(StringId::Megabytes));
}

// --- the rules that tie controls together

void frmAdvanced::UpdateCache() {
  chkCache.SetEnabled(CacheIsUsable());
  if (!chkCache.Enabled()) chkCache.SetChecked(false);
  cmdAdjCache.SetEnabled(chkCache.CheckedAndEnabled());
}

void frmAdvanced::AssumeBoxChanged() {
  if (insideHandler_) return;
  const ScopedFlag inside(insideHandler_);
  if (Prompts() && chkCache.Checked() && !chkAssume.Checked()) {
    const MessageAnswer answer = services_.Ask(StringId::CachingMustBeDisabled, MessageIcon::Exclamation,
                                               MessageButtons::OkCancel, StringId::ShortProductName);
    if (answer == MessageAnswer::Ok) {
      chkCache.SetChecked(false);
    } else {
      chkAssume.SetChecked(true);
    }
  }
  UpdateCache();
  EnableOk();
}

void frmAdvanced::SearchEmailBoxChanged() {
  if (insideHandler_) return;
  const ScopedFlag inside(insideHandler_);
  if (Prompts() && chkSearchEmail.Checked() && !chkCache.Checked()) {
    const MessageAnswer answer =
        services_.Ask(StringId::ShouldTurnOnCaching, MessageIcon::Question, MessageButtons::YesNo);
    if (answer == MessageAnswer::Yes) {
      chkCache.SetChecked(true);
      chkAssume.SetChecked(true);
    }
  }
  UpdateCache();
  chkOnlySearch.SetEnabled(chkSearchEmail.Checked());
  EnableOk();
}

void frmAdvanced::CacheBoxChanged() {
  cmdAdjCache.SetEnabled(chkCache.Checked());
  EnableOk();
}

void frmAdvanced::WorkBoxChanged() {
  if (Prompts()) services_.Tell(StringId::TakesEffectLater, MessageIcon::Information);
  cmdAdjBackground.SetEnabled(chkWork.Checked());
  EnableOk();
}

void frmAdvanced::HoursBoxChanged() {
  EnableOk();
  txtQuickscanHours.SetEnabled(chkQuickscanHours.Checked() && CanWrite(*Share(settings_)));
}

void frmAdvanced::HoursLeft() {
  const double hours = LeadingNumber(txtQuickscanHours.Text());
  txtQuickscanHours.SetText(std::to_string(hours < 0 ? 0 : ToInt16(hours)));
}

// --- buttons

void frmAdvanced::RestoreDefaults() {
  const MessageAnswer answer =
      services_.Ask(StringId::RestoreDefaultsQuestion, MessageIcon::None, MessageButtons::OkCancel);
  if (answer != MessageAnswer::Ok) return;
  constexpr int32_t defaultMegabytes = 2048;  // more than OK can store: it overflows until the user lowers it
  const ScopedFlag suppress(suppressPrompts_);
  EnableOk();  // some values are written at once, even when no control changes
  const RegSettingsRef own = Share(settings_);
  RegSettings& settings = *own;
  if (CanWrite(settings)) RestoreOptions(settings);
  chkUseEnterprise.SetChecked(true);
  sldLogLevel.SetPosition(LevelNothing);
  sldMaxSize.SetPosition(defaultMegabytes);
  const std::string folder = Require(Require(Share(addin_)->Utilities()).App()).Path();
  txtLogPath.SetText(JoinPath(folder, ErrorLogName));
  chkErrReporting.SetChecked(false);
}

void frmAdvanced::RestoreOptions(RegSettings& settings) {
  const auto restore = [&](const Option& option) {
    (this->*option.box).SetChecked(option.byDefault && IsUsable(option));
  };
  const std::span<const Option> options = Options();
  std::ranges::for_each(options.first(options.size() - 1), restore);
  chkQuickscanHours.SetChecked(false);
  txtQuickscanHours.SetText("0");
  settings.LetRecordsPerDownload(100);
  settings.LetKeepCacheSynchronized(true);
  settings.LetStopCacheFillOnExit(false);
  restore(options.back());
  settings.LetBackgroundWorkTime(10);
  settings.LetBackgroundInterval(10);
}

void frmAdvanced::ChooseLogFolder() {
  if (const auto path = ErrorLogTools(services_, *this).ChooseLocation(txtLogPath.Text())) {
    txtLogPath.SetText(*path);
    EnableOk();
  }
  cmdEmail.SetEnabled(services_.desktop.FileExists(txtLogPath.Text()));
}

void frmAdvanced::EmailLog() { ErrorLogTools(services_, *this).Email(addin_, txtLogPath.Text()); }

void frmAdvanced::AdjustCache() {
  frmCacheAdjust adjust(services_);
  adjust.Initialize(addin_, settings_);
  ShowModal(services_, *this, adjust, this);
}

void frmAdvanced::AdjustBackground() {
  frmBackgroundAdjust adjust(services_);
  adjust.Initialize(addin_, settings_);
  ShowModal(services_, *this, adjust, this);
}

// --- OK and Cancel

void frmAdvanced::Ok() {
  const RegSettingsRef own = Share(settings_);
  RegSettings& settings = *own;
  OptionsPage& page = Require(page_);
  if (CanWrite(settings)) WriteOptions(settings);
  WriteRest(settings);
  // Before the dialog ends: when it fails the dialog stays as it is.
  page.SetDirty();
  End(false);
}

void frmAdvanced::WriteOptions(RegSettings& settings) {
  for (const Option& option : Options()) {
    const CheckBox& box = this->*option.box;
    if (&box == &chkCache) WriteHours(settings);
    const bool checked = option.usable == nullptr ? box.Checked() : box.CheckedAndEnabled();
    (settings.*option.let)(checked != option.inverted);
  }
}

void frmAdvanced::WriteHours(RegSettings& settings) {
  settings.LetQuickscanHours(chkQuickscanHours.Checked() ? ToInt32(LeadingNumber(txtQuickscanHours.Text()))
                                                         : 0);
}

void frmAdvanced::WriteRest(RegSettings& settings) {
  settings.LetAllUsersMode(chkAllUsers.Checked());
  settings.LetIgnoreEnterpriseSettings(!chkUseEnterprise.Checked() &&
                                       settings.GetEnterpriseSettingsPresent());
  settings.LetLogLevel(LevelNothing - sldLogLevel.Position());
  settings.LetMaxLogSize(ToInt16(static_cast<double>(sldMaxSize.Position()) * KilobytesPerMegabyte));
  // The setting reads as the whole path and takes the folder alone.
  std::string_view folder = FolderPart(txtLogPath.Text());
  if (folder.ends_with('\\') || folder.ends_with('/')) folder.remove_suffix(1);
  settings.LetErrorLogPath(std::string(folder));
  settings.LetAutomaticErrorReporting(chkErrReporting.Checked());
}

void frmAdvanced::DropReferences() {
  addin_.reset();
  settings_.reset();
  page_ = nullptr;
}

}  // namespace vexa
