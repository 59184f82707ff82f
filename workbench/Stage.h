// Everything that an options page needs around it, put together over one profile: the workbench's objects,
// the texts in a language, the error log, and the page itself. Consoles, tests and benchmarks set their
// scene with it and supply the two human parts: who shows windows and who answers.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "core/JsonErrorLog.h"
#include "page/OutlookPropertiesPage.h"
#include "resources/CompiledResources.h"
#include "workbench/WindowsFiles.h"
#include "workbench/Workbench.h"

namespace vexa::workbench {

class Stage {
 public:
  /// `profilePath` is where Apply saves the profile; empty: nowhere. Texts are in `language`, or in the
  /// profile's when none is given.
  Stage(Profile profile, const std::string& profilePath, std::optional<int32_t> language,
        ModalWindows& windows, UserAnswers& user);

  OutlookPropertiesPage& CreatePage();
  OutlookPropertiesPage* Page() const { return page_.get(); }
  /// Keeps the page alive while an action of it runs: the host may release it meanwhile.
  std::shared_ptr<OutlookPropertiesPage> SharedPage() const { return page_; }
  /// Releases the page. If one of its actions is running, which keeps it alive, the page is hidden first.
  void DestroyPage();

  /// Every form that is shown gets this view: it draws nothing and traces that it was asked to.
  FormView& View() { return view_; }

  CallLog calls;
  Workbench workbench;
  WindowsFiles& files;
  CompiledResources resourceSource;
  Resources resources;
  ComponentReport components;
  JsonErrorLog errorLog;
  Services services;
  /// Whether the page's container is a page site.
  bool hasSite = true;

 private:
  class TracingView final : public FormView {
   public:
    explicit TracingView(CallLog& calls) : calls_(calls) {}
    void Changed(Control& /*control*/) override {}
    void FocusMoved(Form& /*form*/) override {}
    void StateChanged(Form& form) override;
    void Refresh(Form& form) override { Trace(form.Name()); }
    void Refresh(Control& control) override { Trace(control.Name()); }

   private:
    void Trace(const std::string& name);
    CallLog& calls_;
  };

  std::string ErrorLogPath() const;

  TracingView view_;
  std::shared_ptr<OutlookPropertiesPage> page_;
};

}  // namespace vexa::workbench
