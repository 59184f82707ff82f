#include "core/ComponentReport.h"

namespace vexa {

const std::vector<Component>& ComponentReport::Components() {
  if (!components_) components_ = source_();
  return *components_;
}

std::string ComponentReport::Text() {
  std::string text;
  for (const Component& component : Components()) {
    if (!text.empty()) text += ", ";
    text += component.name;
    if (!component.version.empty()) text += " " + component.version;
  }
  return text;
}

std::vector<Component> WithFileVersions(std::vector<Component> components, FileVersions& versions) {
  for (Component& component : components) {
    if (component.version.empty() && !component.path.empty()) {
      component.version = versions.FileVersion(component.path).value_or("");
    }
  }
  return components;
}

}  // namespace vexa
