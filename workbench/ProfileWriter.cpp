#include <map>
#include <nlohmann/json.hpp>

#include "workbench/AtomicFile.h"
#include "workbench/Names.h"
#include "workbench/Profile.h"

namespace vexa::workbench {

std::string_view StoreKindName(StoreKind kind) {
  switch (kind) {
    case StoreKind::Mailbox:
      return "mailbox";
    case StoreKind::PublicFolders:
      return "public";
    case StoreKind::PersonalFolders:
      return "personal";
  }
  return {};
}

std::optional<StoreKind> StoreKindNamed(std::string_view name) {
  for (const StoreKind kind : {StoreKind::Mailbox, StoreKind::PublicFolders, StoreKind::PersonalFolders}) {
    if (name == StoreKindName(kind)) return kind;
  }
  return std::nullopt;
}

namespace {

std::string JsonText(const nlohmann::ordered_json& value, int indent = -1) {
  return value.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

nlohmann::ordered_json AddinJson(const AddinState& addin) {
  return {{"path", addin.path},
          {"aboutInfo", addin.aboutInfo},
          {"bypassBlocked", addin.bypassBlocked},
          {"delayAvailable", addin.delayAvailable},
          {"scanning", addin.scanning},
          {"canWrite", addin.canWrite}};
}

nlohmann::ordered_json MachineJson(const MachineState& machine) {
  nlohmann::ordered_json json{{"userName", machine.userName},
                              {"computerName", machine.computerName},
                              {"profileName", machine.profileName},
                              {"outlookUser", machine.outlookUser},
                              {"supportAddress", machine.supportAddress},
                              {"canWriteMachine", machine.canWriteMachine}};
  for (const auto& [path, version] : machine.fileVersions) json["fileVersions"][path] = version;
  for (const auto& [key, values] : machine.registry) {
    nlohmann::ordered_json& members = json["registry"][key] = nlohmann::ordered_json::object();
    for (const auto& [name, value] : values) {
      std::visit([&, member = &name](const auto& held) { members[*member] = held; }, value);
    }
  }
  return json;
}

nlohmann::ordered_json SettingsJson(const SettingsData& settings) {
  auto json = nlohmann::ordered_json::object();
  VisitSettings(settings, [&](std::string_view name, const auto& value) { json[std::string(name)] = value; });
  return json;
}

std::string FolderLine(const World& world, const FolderNode& folder) {
  nlohmann::ordered_json json{{"name", folder.name}, {"entryID", folder.entryID}};
  if (folder.parent != NoFolder) json["parent"] = world.At(folder.parent).entryID;
  json["itemType"] = static_cast<int32_t>(folder.itemType);
  if (folder.unreadable) json["unreadable"] = true;
  if (folder.excluded) json["excluded"] = true;
  return JsonText(json);
}

nlohmann::ordered_json GeneratedJson(const GeneratedFolders& rule) {
  return {{"name", rule.name},
          {"count", rule.count},
          {"breadth", rule.breadth},
          {"seed", rule.seed},
          {"itemTypes", rule.itemTypes}};
}

/// The folders of the world that still exist, by store.
std::vector<std::vector<FolderIndex>> FoldersByStore(const World& world) {
  std::vector<std::vector<FolderIndex>> folders(world.Stores().size());
  for (FolderIndex i = 0; i < world.FolderNodes().size(); ++i) {
    if (!world.At(i).deleted) folders[world.At(i).store].push_back(i);
  }
  return folders;
}

void WriteStore(const World& world, uint32_t store, const std::vector<FolderIndex>& folders,
                const TextSink& put) {
  nlohmann::ordered_json defaults = nlohmann::ordered_json::object();
  for (const auto& [number, folder] : world.defaultFolders) {
    if (world.At(folder).store == store) defaults[std::to_string(number)] = world.At(folder).entryID;
  }
  put("    {\"storeID\": " + JsonText(world.Stores()[store].storeID) + ",\n     \"kind\": \"" +
      std::string(StoreKindName(world.Stores()[store].kind)) + "\",\n");
  if (!defaults.empty()) put("     \"defaultFolders\": " + JsonText(defaults) + ",\n");
  if (const auto& rule = world.Stores()[store].generated) {
    put("     \"generated\": " + JsonText(GeneratedJson(*rule)) + "}");
    return;
  }
  put("     \"folders\": [");
  const char* separator = "\n       ";
  for (const FolderIndex folder : folders) {
    put(separator + FolderLine(world, world.At(folder)));
    separator = ",\n       ";
  }
  put("\n     ]}");
}

/// A folder a line, so that a message about one can name its line and differences read well.
void WriteProfileText(const Profile& profile, const TextSink& put) {
  put("{\n  \"format\": \"vexa-profile\",\n  \"version\": 1,\n");
  put("  \"language\": " + std::to_string(profile.language) + ",\n");
  put("  \"addin\": " + JsonText(AddinJson(profile.addin)) + ",\n");
  put("  \"machine\": " + JsonText(MachineJson(profile.machine)) + ",\n");
  put("  \"settings\": " + JsonText(SettingsJson(profile.settings), 2) + ",\n");
  put("  \"stores\": [\n");
  const World& world = profile.world;
  const std::vector<std::vector<FolderIndex>> folders = FoldersByStore(world);
  bool first = true;
  for (uint32_t store = 0; store < folders.size(); ++store) {
    if (folders[store].empty()) continue;  // deleted with its root
    if (!first) put(",\n");
    first = false;
    WriteStore(world, store, folders[store], put);
  }
  put("\n  ]\n}\n");
}

}  // namespace

void WriteProfile(const std::string& path, const Profile& profile) {
  try {
    WriteFileAtomically(path, [&](const TextSink& put) { WriteProfileText(profile, put); });
  } catch (const std::exception& failure) {
    throw ProfileError(path + ": cannot be saved: " + failure.what());
  }
}

void MergeWorld(Profile& profile, const Profile& other) {
  const World& from = other.world;
  World& to = profile.world;
  std::vector<uint32_t> stores;
  for (const Store& store : from.Stores()) {
    for (const Store& present : to.Stores()) {
      if (SameName(present.storeID, store.storeID)) {
        throw ProfileError("both profiles have the store with the id " + store.storeID);
      }
    }
    stores.push_back(store.generated ? to.AddGeneratedStore(store.storeID, store.kind, *store.generated)
                                     : to.AddStore(store.storeID, store.kind));
  }
  std::vector<FolderIndex> placed;
  for (const FolderNode& folder : from.FolderNodes()) {  // parents stand before their children
    if (from.Stores()[folder.store].generated) {
      placed.push_back(to.FindInStore(folder.entryID, stores[folder.store]));
      continue;
    }
    const FolderIndex parent = folder.parent == NoFolder ? NoFolder : placed[folder.parent];
    placed.push_back(
        to.AddFolder(stores[folder.store], parent, folder.name, folder.entryID, folder.itemType));
    to.At(placed.back()).unreadable = folder.unreadable;
    to.At(placed.back()).excluded = folder.excluded;
    to.At(placed.back()).deleted = folder.deleted;
  }
  for (const auto& [number, folder] : from.defaultFolders) to.defaultFolders.emplace(number, placed[folder]);
}

}  // namespace vexa::workbench
