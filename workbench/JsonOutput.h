// Forms and settings for other programs to read: one line of JSON each. Members keep their names and meaning;
// new ones may join them.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/FormState.h"
#include "workbench/SettingsData.h"

namespace vexa::workbench {

std::string JsonLine(const FormState& form);
/// Names and captions alone.
std::string JsonLine(const std::vector<FormState>& forms);
/// `whose` are stored or working ones; those that are wanted.
std::string JsonLine(const SettingsData& settings, std::string_view whose,
                     const std::function<bool(std::string_view name)>& isWanted);

}  // namespace vexa::workbench
