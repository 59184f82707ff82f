#include "workbench/Stage.h"

#include <array>
#include <ctime>

namespace vexa::workbench {
namespace {

std::string UtcNow() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
#ifdef _WIN32
  gmtime_s(&parts, &now);
#else
  gmtime_r(&now, &parts);
#endif
  std::array<char, 32> text{};
  const size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  return {text.data(), length};
}

}  // namespace

Stage::Stage(Profile profile, const std::string& profilePath, std::optional<int32_t> language,
             ModalWindows& windows, UserAnswers& user)
    : workbench(std::move(profile), profilePath, calls, user),
      files(profilePath),
      resourceSource(language.value_or(workbench.profile.language)),
      resources(resourceSource),
      errorLog({files, [this] { return page_ == nullptr ? std::string() : page_->ErrorLogPath(); }, UtcNow,
                [] { return std::string("VexaControls " VEXA_VERSION " in the workbench"); }}),
      services{resources, workbench.TheDesktop(), windows, workbench.Objects(), errorLog},
      view_(calls) {}

OutlookPropertiesPage& Stage::CreatePage() {
  page_.reset();  // the host releases one page before it makes the next
  page_ = std::make_unique<OutlookPropertiesPage>(services,
                                                  [this] { return hasSite ? workbench.Site() : nullptr; });
  page_->SetView(&view_);
  return *page_;
}

void Stage::TracingView::Trace(const std::string& name) {
  calls_.Enter("View.Refresh", CallLog::Kind::Action, [&] { return "View.Refresh(" + name + ")"; });
}

}  // namespace vexa::workbench
