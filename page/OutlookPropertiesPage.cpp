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

  cmdAdd.OnClick = Handler(services_, *this, "cmdAdd_Click", &OutlookPropertiesPage::AddFolderSet);
  cmdChange.OnClick = Handler(services_, *this, "cmdChange_Click", &OutlookPropertiesPage::ChangeFolderSet);
  cmdRemove.OnClick = Handler(services_, *this, "cmdRemove_Click", &OutlookPropertiesPage::RemoveFolderSet);
  cmdTracking.OnClick =
      Handler(services_, *this, "cmdTracking_Click", &OutlookPropertiesPage::ShowTrackingOptions);
  cmdAdvanced.OnClick = Handler(services_, *this, "cmdAdvanced_Click", &OutlookPropertiesPage::ShowAdvanced);
  cmdAbout.OnClick = Handler(services_, *this, "cmdAbout_Click", &OutlookPropertiesPage::ShowAbout);
  cmdRestoreDialogs.OnClick =
      Handler(services_, *this, "cmdRestoreDialogs_Click", &OutlookPropertiesPage::RestoreHiddenDialogs);
  gd.OnSelChange = [this] { UpdateDefaultButton(); };
  gd.OnDoubleClick = [this] {
    if (cmdChange.Enabled()) Raise(cmdChange.OnClick);
  };
  cmdHelp.OnClick = [this] { Trapped([&] { ShowHelp(); }); };
  cmdIDEApply.OnClick = [this] {
    ApplyTrapped();
    cmdIDEApply.SetEnabled(false);
  };
}

OutlookPropertiesPage::~OutlookPropertiesPage() {
  if (addinApp_ != nullptr) Release();
}

void OutlookPropertiesPage::RequireCurrent(const Work& work) const {
  if (work.generation != generation_) throw MakeError(ErrorNumber::ObjectNotSet);
}

void OutlookPropertiesPage::Initialize(const AddinAppRef& addinApp, bool reinitialize) {
  PassOn(Name(), "Initialize", [&] {
    if (hiding_) throw MakeError(ErrorNumber::ObjectNotSet);
    pageActive_ = false;
    const Work work = LoadWorkingCopy(addinApp, reinitialize);
    PassOn(Name(), "FillTrackedContacts", [&] { FillRows(work); });
    ShowAccess(work);
    cmdIDEApply.SetVisible(InDevelopmentMode);
    pageActive_ = true;
  });
}

OutlookPropertiesPage::Work OutlookPropertiesPage::LoadWorkingCopy(const AddinAppRef& addinApp,
                                                                   bool reinitialize) {
  Work work{Share(reinitialize ? addinApp_ : addinApp), nullptr, ++generation_};
  if (!reinitialize) {
    bool open = true;
    work.addin->SetOptionsPageOpen(open);
    if (work.generation != generation_ && addinApp_ == nullptr) {
      // Hidden before it held the add-in, which would take the page for open.
      IgnoreErrors([&] { work.addin->SetOptionsPageOpen(open = false); });
    }
    RequireCurrent(work);
    addinApp_ = work.addin;
  }
  work.settings = services_.objects.CreateRegSettings();
  RequireCurrent(work);
  settings_ = work.settings;
  bool bypassBlocked = Require(work.addin->Utilities()).BypassBlocked();
  bool delayAvailable = Require(work.addin->Utilities()).DelayAvailable();
  Require(work.settings).Load(0, bypassBlocked, delayAvailable);
  RequireCurrent(work);
  return work;
}

void OutlookPropertiesPage::ShowAccess(const Work& work) {
  const bool writable = CanWrite(*work.settings);
  RequireCurrent(work);
  if (!writable) {
    cmdRemove.SetEnabled(false);
    cmdAdd.SetEnabled(false);
    cmdChange.SetCaption(services_.resources.LoadString(StringId::View));
    cmdTracking.SetCaption(services_.resources.LoadString(StringId::View));
  }
  const bool enterprise = work.settings->GetUsingEnterpriseSettings();
  const bool canWrite = CanWrite(*work.settings);
  StringId footer = StringId::None;
  if (enterprise) {
    footer = canWrite ? StringId::ChangesAffectEnterprise : StringId::CannotChangeEnterprise;
  } else if (!canWrite) {
    footer = StringId::CannotMakeChanges;
  } else if (work.settings->GetAllUsersMode()) {
    footer = StringId::ChangesAffectAllUsers;
  }
  RequireCurrent(work);
  if (footer != StringId::None) {
    lblFooter.SetCaption(services_.resources.LoadString(footer));
    lblFooter.SetVisible(true);
  }
}

void OutlookPropertiesPage::PropertyPage_GetPageInfo(std::string& /*helpFile*/, int32_t& /*helpContext*/) {
  // The page has no help of its own in the host's help file: both stay as the host passed them.
}

void OutlookPropertiesPage::PropertyPage_Apply() {
  if (!IsAtWork()) ApplyTrapped();
}

void OutlookPropertiesPage::ApplyTrapped() {
  Trapped([&] { PassOn(Name(), "PropertyPage_Apply", [&] { Apply(); }); });
}

void OutlookPropertiesPage::Apply() {
  if (!pageActive_ || !dirty_) return;
  const AddinAppRef addin = Share(addinApp_);
  RegSettingsRef settings = settings_;
  addin->ApplySettings(settings);
  if (addinApp_ != addin) throw MakeError(ErrorNumber::ObjectNotSet);  // hidden meanwhile
  if (SearchNowPending) {
    Require(addin->Scanner()).StartSearch(SearchStopAtScanned);
    SearchNowPending = false;
  }
  Initialize(nullptr, true);
}

std::string OutlookPropertiesPage::TabTitle() const {
  return services_.resources.LoadString(StringId::ProductName);
}

void OutlookPropertiesPage::UserControl_Hide() { Release(); }

void OutlookPropertiesPage::Release() noexcept {
  if (hiding_) return;
  hiding_ = true;
  IgnoreErrors([&] {
    bool open = false;
    Share(addinApp_)->SetOptionsPageOpen(open);
  });
  ++generation_;
  addinApp_.reset();
  settings_.reset();
  pageActive_ = false;
  hiding_ = false;
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
  return settings_ == nullptr ? std::string() : Share(settings_)->GetErrorLogPath();
}

void OutlookPropertiesPage::ShowTrackingOptions() {
  const Work work = Begin();
  frmTrackingOptions tracking(services_);
  tracking.Initialize(work.addin, work.settings, *this);
  RequireCurrent(work);
  ShowModal(services_, *this, tracking, nullptr);
  SetDirty();  // whatever came of it
}

void OutlookPropertiesPage::ShowAdvanced() {
  const Work work = Begin();
  frmAdvanced advanced(services_);
  advanced.Initialize(work.addin, work.settings, *this);
  RequireCurrent(work);
  // The dialog itself marks the page when it saves.
  ShowModal(services_, *this, advanced, nullptr);
}

void OutlookPropertiesPage::ShowAbout() {
  const Work work = Begin();
  frmAbout about(services_);
  about.AboutInfo = Require(Require(work.addin).Utilities()).AboutInfo();
  about.Initialize(work.settings);
  RequireCurrent(work);
  ShowModal(services_, *this, about, this);
}

void OutlookPropertiesPage::RestoreHiddenDialogs() {
  const MessageAnswer answer =
      services_.Ask(StringId::RestoreHiddenDialogsQuestion, MessageIcon::None, MessageButtons::OkCancel);
  if (answer == MessageAnswer::Ok) Share(settings_)->RestoreHiddenDialogs();
}

void OutlookPropertiesPage::ShowHelp() {
  const std::string folder = Require(Require(Share(addinApp_)->Utilities()).App()).Path();
  const size_t lastComponent = folder.rfind('\\');
  const std::string parent =
      lastComponent == std::string::npos ? std::string() : folder.substr(0, lastComponent);
  ShellOpen(services_.desktop, parent + "\\Help\\" + "Vexa3.chm");
}

}  // namespace vexa
