#include "workbench/JsonOutput.h"

#include <nlohmann/json.hpp>

namespace vexa::workbench {
namespace {

using Json = nlohmann::ordered_json;

std::string Line(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

Json NodesJson(const std::vector<NodeState>& nodes) {
  Json json = Json::array();
  for (const NodeState& node : nodes) {
    json.push_back({{"depth", node.depth},
                    {"text", node.text},
                    {"picture", node.image},
                    {"checked", node.checked},
                    {"selected", node.selected},
                    {"expanded", node.expanded},
                    {"hasChildren", node.hasChildren}});
  }
  return json;
}

Json ControlJson(const ControlState& control) {
  Json json{{"name", control.name}, {"kind", KindName(control.kind)}};
  // Of the others a window's text is a name for screen readers.
  const bool hasText = control.kind != ControlKind::Slider && control.kind != ControlKind::Grid &&
                       control.kind != ControlKind::Tree;
  if (hasText) json["text"] = control.text;
  json["visible"] = control.visible;
  json["enabled"] = control.enabled;
  json["focus"] = control.focused;
  json["default"] = control.isDefault;
  if (control.pictureId != 0) json["picture"] = control.pictureId;
  switch (control.kind) {
    case ControlKind::CheckBox:
    case ControlKind::OptionButton:
      json["checked"] = control.checked;
      break;
    case ControlKind::TextBox:
      json["readOnly"] = control.readOnly;
      break;
    case ControlKind::Slider:
      json["position"] = control.position;
      json["minimum"] = control.minimum;
      json["maximum"] = control.maximum;
      break;
    case ControlKind::Grid:
      json["headers"] = control.rows.front();
      json["rows"] = std::vector(control.rows.begin() + 1, control.rows.end());
      json["currentRow"] = control.currentRow;
      json["currentColumn"] = control.currentColumn;
      break;
    case ControlKind::Tree:
      json["nodes"] = NodesJson(control.nodes);
      break;
    default:
      break;
  }
  return json;
}

Json HeadJson(const FormState& form) { return {{"form", form.name}, {"caption", form.caption}}; }

}  // namespace

std::string JsonLine(const FormState& form) {
  Json json = HeadJson(form);
  json["controls"] = Json::array();
  for (const ControlState& control : form.controls) json["controls"].push_back(ControlJson(control));
  return Line(json);
}

std::string JsonLine(const std::vector<FormState>& forms) {
  Json json{{"forms", Json::array()}};
  for (const FormState& form : forms) json["forms"].push_back(HeadJson(form));
  return Line(json);
}

std::string JsonLine(const SettingsData& settings, std::string_view whose,
                     const std::function<bool(std::string_view name)>& isWanted) {
  Json json{{"settings", whose}, {"values", Json::object()}};
  VisitSettings(settings, [&](std::string_view name, const auto& value) {
    if (isWanted(name)) json["values"][std::string(name)] = value;
  });
  return Line(json);
}

}  // namespace vexa::workbench
