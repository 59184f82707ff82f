#include "workbench/Stage.h"

#include <utility>

#include "core/Paths.h"
#include "workbench/SettingsData.h"

namespace vexa::workbench {
namespace {

std::string UtcNow() { return FormattedTime("%Y-%m-%dT%H:%M:%SZ"); }

}  // namespace

Stage::Stage(Profile profile, const std::string& profilePath, std::optional<int32_t> language,
             ModalWindows& windows, UserAnswers& user)
    : workbench(std::move(profile), profilePath, calls, user),
      files(workbench.files),
      resourceSource(language.value_or(workbench.profile.language)),
      resources(resourceSource),
      components([this] {
        return WithFileVersions({{"VexaControls", {}, VEXA_VERSION " in the workbench"},
                                 {"VexaAddin", JoinPath(workbench.profile.addin.path, "VexaAddin.dll"), {}}},
                                workbench.TheDesktop());
      }),
      errorLog({files, [this] { return ErrorLogPath(); }, UtcNow, components}),
      services{resources, workbench.TheDesktop(),
               windows,   workbench.Objects(),
               errorLog,  workbench.profile.machine.supportAddress},
      view_(calls) {}

std::string Stage::ErrorLogPath() const {
  if (page_ != nullptr) return page_->ErrorLogPath();
  // A page that is not the stage's own may have made one.
  const SettingsData* const workingCopy = workbench.WorkingCopy();
  return workingCopy == nullptr ? std::string() : workingCopy->ErrorLogPath;
}

OutlookPropertiesPage& Stage::CreatePage() {
  DestroyPage();  // the host releases one page before it makes the next
  page_ = std::make_shared<OutlookPropertiesPage>(services,
                                                  [this] { return hasSite ? workbench.Site() : nullptr; });
  page_->SetView(&view_);
  return *page_;
}

void Stage::DestroyPage() {
  const std::shared_ptr<OutlookPropertiesPage> page = std::exchange(page_, nullptr);
  if (page.use_count() > 1) page->UserControl_Hide();
}

void Stage::TracingView::StateChanged(Form& form) {
  const bool waits = form.MousePointer() == Form::Pointer::Wait;
  calls_.Note("  " + form.Name() + (form.Enabled() ? " enabled" : " disabled") +
              (waits ? ", wait pointer" : ", normal pointer"));
}

void Stage::TracingView::Trace(const std::string& name) {
  calls_.Enter("View.Refresh", CallLog::Kind::Action, [&] { return "View.Refresh(" + name + ")"; });
}

}  // namespace vexa::workbench
