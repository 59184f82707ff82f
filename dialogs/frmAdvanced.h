// The advanced settings: how items are matched and copied, performance, the error log, enterprise and
// all-users settings. The page makes it on its working copy and shows it; OK writes the copy and marks the
// page as changed. Only restoring the defaults writes some values at once.
#pragma once

#include <span>

#include "dialogs/Screen.h"
#include "display/Button.h"
#include "display/CheckBox.h"
#include "display/Label.h"
#include "display/OptionsSection.h"
#include "display/Slider.h"
#include "display/TextBox.h"

namespace vexa {

class frmAdvanced final : public Dialog {
 public:
  explicit frmAdvanced(const Services& services);

  /// Errors of the add-in's objects come through. The page outlives the dialog.
  void Initialize(AddinAppRef vexaAddin, RegSettingsRef theRegSettings, OptionsPage& page);
  /// Does nothing while the dialog is there to be looked at only.
  void EnableOk();

  Label lblWarning{*this, "lblWarning", StringId::ReadDocumentationFirst};
  OptionsSection opsOptions{*this, "opsOptions", StringId::AdvancedOptions};
  CheckBox chkShow{*this, "chkShow", StringId::ShowVexa2Buttons};
  CheckBox chkAssume{*this, "chkAssume", StringId::AssumeUniqueEmailAddresses};
  CheckBox chkSearchEmail{*this, "chkSearchEmail", StringId::SearchEmailAddresses};
  CheckBox chkOnlySearch{*this, "chkOnlySearch", StringId::OnlySearchIfNoLinks};
  CheckBox chkBypass{*this, "chkBypass", StringId::BypassObjectModel};
  CheckBox chkDontEdit{*this, "chkDontEdit", StringId::DontEditFolderFields};
  CheckBox chkMakeWorking{*this, "chkMakeWorking", StringId::MakeWorkingCopy};
  CheckBox chkQuickscanHours{*this, "chkQuickscanHours", StringId::QuickscanHours};
  TextBox txtQuickscanHours{*this, "txtQuickscanHours"};
  OptionsSection opsPerformance{*this, "opsPerformance", StringId::PerformanceTuning};
  CheckBox chkCache{*this, "chkCache", StringId::CacheContactFolders};
  Button cmdAdjCache{*this, "cmdAdjCache", StringId::Adjust};
  CheckBox chkWork{*this, "chkWork", StringId::WorkInBackground};
  Button cmdAdjBackground{*this, "cmdAdjBackground", StringId::Adjust};
  OptionsSection opsErrorLog{*this, "opsErrorLog", StringId::ErrorLogging};
  Label lblLogLevel{*this, "lblLogLevel", StringId::LogLevel};
  Slider sldLogLevel{*this, "sldLogLevel", 0, 3};
  // The captions of the slider's positions, from 3 down to 0.
  Label lblEverything{*this, "lblEverything", StringId::LogEverything};
  Label lblErrorsWarnings{*this, "lblErrorsWarnings", StringId::LogErrorsAndWarnings};
  Label lblOnlyErrors{*this, "lblOnlyErrors", StringId::LogOnlyErrors};
  Label lblNothing{*this, "lblNothing", StringId::LogNothing};
  Label lblMaxSize{*this, "lblMaxSize", StringId::MaximumLogSize};
  Slider sldMaxSize{*this, "sldMaxSize", 0, 2048};  // megabytes; from 32 on OK overflows
  Label lblSize{*this, "lblSize"};
  Label lblLogPath{*this, "lblLogPath", StringId::LogPath};
  TextBox txtLogPath{*this, "txtLogPath", TextBox::Typing::Locked};
  Button cmdLocation{*this, "cmdLocation", StringId::ChangeLogLocation};
  Button cmdEmail{*this, "cmdEmail", StringId::EmailLog};
  CheckBox chkErrReporting{*this, "chkErrReporting", StringId::AutomaticErrorReporting};
  OptionsSection opsEnterprise{*this, "opsEnterprise", StringId::EnterpriseSettings};
  CheckBox chkUseEnterprise{*this, "chkUseEnterprise", StringId::UseEnterpriseSettings};
  CheckBox chkAllUsers{*this, "chkAllUsers", StringId::ApplyToAllUsers};
  Button cmdDefault{*this, "cmdDefault", StringId::RestoreDefaults};
  Button cmdOk{*this, "cmdOk", StringId::Ok};
  Button cmdCancel{*this, "cmdCancel", StringId::Cancel};

 private:
  struct Option;
  static std::span<const Option> Options();
  bool IsUsable(const Option& option);
  bool BypassIsUsable();
  bool CacheIsUsable();

  void Load();
  void LoadOptions(RegSettings& settings);
  void LoadErrorLog(RegSettings& settings);
  void LoadScope(RegSettings& settings);
  void ShowReadOnly();
  void ShowSize();

  bool Prompts() const { return IsShowing() && !suppressPrompts_; }
  void UpdateCache();
  void AssumeBoxChanged();
  void SearchEmailBoxChanged();
  void CacheBoxChanged();
  void WorkBoxChanged();
  void HoursBoxChanged();
  void HoursLeft();

  void RestoreDefaults();
  void RestoreOptions(RegSettings& settings);
  void ChooseLogFolder();
  void EmailLog();
  void AdjustCache();
  void AdjustBackground();

  void Ok();
  void WriteOptions(RegSettings& settings);
  void WriteHours(RegSettings& settings);
  void WriteRest(RegSettings& settings);
  void DropReferences() override;

  const Services& services_;
  AddinAppRef addin_;
  RegSettingsRef settings_;
  OptionsPage* page_ = nullptr;
  bool canWrite_ = false;
  bool loading_ = false;
  bool suppressPrompts_ = false;
  bool insideHandler_ = false;
};

}  // namespace vexa
