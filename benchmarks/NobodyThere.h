// A stage without people: no window is shown and no question asked in a benchmark.
#pragma once

#include "workbench/Stage.h"

namespace vexa::workbench {

class NoWindows final : public ModalWindows {
 public:
  void ShowModal(Dialog& dialog, Form* /*owner*/) override { dialog.Hide(); }
};

class NoAnswers final : public UserAnswers {
 public:
  std::optional<FolderIndex> PickFolder() override { return std::nullopt; }
  MessageAnswer AnswerMessage(const std::string& /*asked*/, MessageButtons /*buttons*/) override {
    return MessageAnswer::Ok;
  }
  BrowseAnswer BrowseForFolder(const std::string& /*prompt*/, const std::string& /*startFolder*/) override {
    return {};
  }
  int32_t OpenDocument(const std::string& /*path*/) override { return 0; }
  void Seen(const std::string& /*line*/) override {}
};

}  // namespace vexa::workbench
