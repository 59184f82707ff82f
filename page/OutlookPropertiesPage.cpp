#include "page/OutlookPropertiesPage.h"

#include <utility>

#include "dialogs/frmAbout.h"
#include "dialogs/frmAdvanced.h"
#include "dialogs/frmTrackingOptions.h"

namespace vexa {
namespace {

/// Runs `body`, whose errors end here; in development mode they surface instead.
template <typename Body>
void Trapped(Body&& body) {
  if (InDevelopmentMode) {
    body();
  } else {
    IgnoreErrors(body);
  }
}

}  // namespace

OutlookPropertiesPage::OutlookPropertiesPage(const Services& services, SiteSource site)
    : Form("OutlookPropertiesPage"), services_(services), site_(std::move(site)) {
  LoadCaptions(services.resources);
  lblFooter.SetVisible(false);
  cmdIDEApply.SetVisible(false);
  cmdChange.SetEnabled(false);
  cmdRemove.SetEnabled(false);
  SetDefaultButton(cmdAdd);
  FocusFirst();

  const auto on = [&](Event& event, std::string_view procedure, void (OutlookPropertiesPage::*handler)()) {
    event = Handler(services_, *this, procedure, [this, handler] { (this->*handler)(); });
  };
  on(cmdAdd.OnClick, "cmdAdd_Click", &OutlookPropertiesPage::AddFolderSet);
  on(cmdChange.OnClick, "cmdChange_Click", &OutlookPropertiesPage::ChangeFolderSet);
  on(cmdRemove.OnClick, "cmdRemove_Click", &OutlookPropertiesPage::RemoveFolderSet);
  on(cmdTracking.OnClick, "cmdTracking_Click", &OutlookPropertiesPage::ShowTrackingOptions);
  on(cmdAdvanced.OnClick, "cmdAdvanced_Click", &OutlookPropertiesPage::ShowAdvanced);
  on(cmdAbout.OnClick, "cmdAbout_Click", &OutlookPropertiesPage::ShowAbout);
  on(cmdRestoreDialogs.OnClick, "cmdRestoreDialogs_Click", &OutlookPropertiesPage::RestoreHiddenDialogs);
  gd.OnSelChange = [this] { UpdateDefaultButton(); };
  gd.OnDoubleClick = [this] {
    if (cmdChange.Enabled()) Raise(cmdChange.OnClick);
  };
  cmdHelp.OnClick = [this] { Trapped([&] { ShowHelp(); }); };
  cmdIDEApply.OnClick = [this] {
    PropertyPage_Apply();
    cmdIDEApply.SetEnabled(false);
  };
}

OutlookPropertiesPage::~OutlookPropertiesPage() {
  if (addinApp_ != nullptr) Release();
}

void OutlookPropertiesPage::Initialize(AddinAppRef addinApp, bool reinitialize) {
  PassOn(Name(), "Initialize", [&] {
    pageActive_ = false;
    LoadWorkingCopy(std::move(addinApp), reinitialize);
    FillTrackedContacts();
    ShowAccess();
    cmdIDEApply.SetVisible(InDevelopmentMode);
    pageActive_ = true;
  });
}

void OutlookPropertiesPage::LoadWorkingCopy(AddinAppRef addinApp, bool reinitialize) {
  if (!reinitialize) {
    bool open = true;
    Require(addinApp).SetOptionsPageOpen(open);
    addinApp_ = std::move(addinApp);
  }
  settings_ = services_.objects.CreateRegSettings();
  bool bypassBlocked = Require(Require(addinApp_).Utilities()).BypassBlocked();
  bool delayAvailable = Require(addinApp_->Utilities()).DelayAvailable();
  Require(settings_).Load(0, bypassBlocked, delayAvailable);
}

void OutlookPropertiesPage::ShowAccess() {
  if (!CanWrite(*settings_)) {
    cmdRemove.SetEnabled(false);
    cmdAdd.SetEnabled(false);
    cmdChange.SetCaption(services_.resources.LoadString(StringId::View));
    cmdTracking.SetCaption(services_.resources.LoadString(StringId::View));
  }
  const bool enterprise = settings_->GetUsingEnterpriseSettings();
  const bool canWrite = CanWrite(*settings_);
  StringId footer = StringId::None;
  if (enterprise) {
    footer = canWrite ? StringId::ChangesAffectEnterprise : StringId::CannotChangeEnterprise;
  } else if (!canWrite) {
    footer = StringId::CannotMakeChanges;
  } else if (settings_->GetAllUsersMode()) {
    footer = StringId::ChangesAffectAllUsers;
  }
  if (footer != StringId::None) {
    lblFooter.SetCaption(services_.resources.LoadString(footer));
    lblFooter.SetVisible(true);
  }
}

void OutlookPropertiesPage::PropertyPage_GetPageInfo(std::string& /*helpFile*/, int32_t& /*helpContext*/) {
  // The page has no help of its own in the host's help file: both stay as the host passed them.
}

void OutlookPropertiesPage::PropertyPage_Apply() {
  Trapped([&] { PassOn(Name(), "PropertyPage_Apply", [&] { Apply(); }); });
}

void OutlookPropertiesPage::Apply() {
  if (!pageActive_ || !dirty_) return;
  Require(addinApp_).ApplySettings(settings_);
  if (SearchNowPending) {
    Require(addinApp_->Scanner()).StartSearch(SearchStopAtScanned);
    SearchNowPending = false;
  }
  Initialize(nullptr, true);
}

std::string OutlookPropertiesPage::TabTitle() const {
  return services_.resources.LoadString(StringId::ProductName);
}

void OutlookPropertiesPage::UserControl_Hide() { Release(); }

void OutlookPropertiesPage::Release() noexcept {
  IgnoreErrors([&] {
    bool open = false;
    Require(addinApp_).SetOptionsPageOpen(open);
  });
  addinApp_.reset();
  settings_.reset();
  pageActive_ = false;
}

void OutlookPropertiesPage::SetDirty() {
  dirty_ = true;
  // A container that is no Outlook dialog has no page site, and then there is nobody to tell.
  if (const std::shared_ptr<PropertyPageSite> site = site_()) site->OnStatusChange();
  if (InDevelopmentMode) cmdIDEApply.SetEnabled(true);
}

void OutlookPropertiesPage::Refresh() {
  if (View() == nullptr) return;
  IgnoreErrors([&] { View()->Refresh(*this); });
  for (Control* control : Controls()) IgnoreErrors([&] { control->Refresh(); });
}

void OutlookPropertiesPage::KeyDown(int keyCode) {
  constexpr int f5 = 116;
  if (keyCode == f5) Refresh();
}

std::string OutlookPropertiesPage::ErrorLogPath() {
  return settings_ == nullptr ? std::string() : settings_->GetErrorLogPath();
}

void OutlookPropertiesPage::ShowTrackingOptions() {
  frmTrackingOptions tracking(services_);
  tracking.Initialize(addinApp_, settings_, *this);
  services_.windows.ShowModal(tracking, nullptr);
  SetDirty();  // whatever came of it
}

void OutlookPropertiesPage::ShowAdvanced() {
  frmAdvanced advanced(services_);
  advanced.Initialize(addinApp_, settings_, *this);
  // The dialog itself marks the page when it saves.
  services_.windows.ShowModal(advanced, nullptr);
}

void OutlookPropertiesPage::ShowAbout() {
  frmAbout about(services_);
  about.AboutInfo = Require(Require(addinApp_).Utilities()).AboutInfo();
  about.Initialize(Require(settings_));
  services_.windows.ShowModal(about, this);
}

void OutlookPropertiesPage::RestoreHiddenDialogs() {
  const MessageAnswer answer = services_.desktop.Show(
      services_.resources.LoadString(StringId::RestoreHiddenDialogsQuestion), MessageIcon::None,
      MessageButtons::OkCancel, services_.resources.LoadString(StringId::ProductName));
  if (answer == MessageAnswer::Ok) Require(settings_).RestoreHiddenDialogs();
}

void OutlookPropertiesPage::ShowHelp() {
  const std::string folder = Require(Require(Require(addinApp_).Utilities()).App()).Path();
  const size_t lastComponent = folder.rfind('\\');
  const std::string parent =
      lastComponent == std::string::npos ? std::string() : folder.substr(0, lastComponent);
  ShellOpen(services_.desktop, parent + "\\Help\\" + "Vexa3.chm");
}

}  // namespace vexa
