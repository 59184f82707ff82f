#include "workbench/Settings.h"

#include <vector>

#include "workbench/Names.h"
#include "workbench/Workbench.h"

namespace vexa::workbench {
namespace {

using Kind = CallLog::Kind;

/// A collection of the settings object. It keeps its owner alive, as the real ones do.
template <typename Value>
class SettingsCollection final : public Collection<Value> {
 public:
  SettingsCollection(std::shared_ptr<WorkbenchSettings> owner, std::vector<Value>& values, CallLog& calls,
                     std::string_view name)
      : owner_(std::move(owner)), values_(values), calls_(calls), name_("RS." + std::string(name)) {}

  int32_t Count() override {
    calls_.Enter(name_ + ".Count", Kind::Read);
    return Size();
  }
  Value Item(int32_t position) override {
    calls_.Enter(name_ + ".Item", Kind::Read, [&] { return name_ + "(" + std::to_string(position) + ")"; });
    return values_[CheckedPosition(position)];
  }
  void Add(const Value& value) override { Insert(value, Size(), ""); }
  void AddBefore(const Value& value, int32_t before) override {
    Insert(value, before - 1, ", before=" + std::to_string(before), before);
  }
  void AddAfter(const Value& value, int32_t after) override {
    Insert(value, after, ", after=" + std::to_string(after), after);
  }
  void Remove(int32_t position) override {
    calls_.Enter(name_ + ".Remove", Kind::Action,
                 [&] { return name_ + ".Remove(" + std::to_string(position) + ")"; });
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(CheckedPosition(position)));
  }

 private:
  int32_t Size() const { return static_cast<int32_t>(values_.size()); }
  size_t CheckedPosition(int32_t position) const {
    if (position < 1 || position > Size()) throw MakeError(ErrorNumber::SubscriptOutOfRange);
    return static_cast<size_t>(position - 1);
  }
  /// `beside` is the position of the present item that the new one goes next to; 0 for none.
  void Insert(const Value& value, int32_t offset, const std::string& where, int32_t beside = 0) {
    calls_.Enter(name_ + ".Add", Kind::Action,
                 [&] { return name_ + ".Add(" + ValueText(value) + where + ")"; });
    if (!where.empty()) CheckedPosition(beside);
    values_.insert(values_.begin() + offset, value);
  }

  std::shared_ptr<WorkbenchSettings> owner_;
  std::vector<Value>& values_;
  CallLog& calls_;
  std::string name_;
};

template <typename Value>
std::vector<Value> ItemsOf(const CollectionRef<Value>& collection) {
  std::vector<Value> items;
  Collection<Value>& from = Require(collection);
  const int32_t count = from.Count();
  for (int32_t i = 1; i <= count; ++i) items.push_back(from.Item(i));
  return items;
}

}  // namespace

// NOLINTBEGIN(bugprone-macro-parentheses): a type cannot stand in parentheses.
#define VEXA_READ(place, Name, Type)                   \
  Type WorkbenchSettings::Get##Name() {                \
    workbench_.Calls().Enter("RS." #Name, Kind::Read); \
    return data.Name;                                  \
  }
#define VEXA_READ_ONLY(place, Name, Type) VEXA_READ(place, Name, Type)
#define VEXA_PROPERTY(place, Name, Type)                                            \
  VEXA_READ(place, Name, Type)                                                      \
  void WorkbenchSettings::Let##Name(const Type& value) {                            \
    workbench_.Calls().Enter("RS." #Name "=", Kind::Action,                         \
                             [&] { return "RS." #Name " = " + ValueText(value); }); \
    LetSetting(#Name, data.Name, value);                                            \
  }
#define VEXA_COLLECTION(place, Name, Type)                                                               \
  CollectionRef<Type> WorkbenchSettings::Get##Name() {                                                   \
    if (workbench_.Calls().Enter("RS." #Name, Kind::Read)) return nullptr;                               \
    return std::make_shared<SettingsCollection<Type>>(shared_from_this(), data.Name, workbench_.Calls(), \
                                                      #Name);                                            \
  }                                                                                                      \
  void WorkbenchSettings::Let##Name(const CollectionRef<Type>& value) {                                  \
    workbench_.Calls().Enter("RS." #Name "=", Kind::Action, [] { return "RS." #Name " = collection"; }); \
    data.Name = ItemsOf(value);                                                                          \
  }                                                                                                      \
  void WorkbenchSettings::Set##Name(const CollectionRef<Type>& value) {                                  \
    workbench_.Calls().Enter("RS." #Name ":=", Kind::Action, [] { return "RS." #Name " := new"; });      \
    data.Name = ItemsOf(value);                                                                          \
  }
#include "contracts/RegSettings.members.inc"
// NOLINTEND(bugprone-macro-parentheses)

void WorkbenchSettings::RestoreHiddenDialogs() {
  workbench_.Calls().Enter("RS.RestoreHiddenDialogs", Kind::Action,
                           [] { return "RS.RestoreHiddenDialogs()"; });
}

void WorkbenchSettings::Load(int32_t first, bool& bypassBlocked, bool& delayAvailable) {
  workbench_.Calls().Enter("RS.Load", Kind::Action, [&] {
    return "RS.Load(" + std::to_string(first) + ", " + ValueText(bypassBlocked) + ", " +
           ValueText(delayAvailable) + ")";
  });
  data = workbench_.profile.settings;
}

bool WorkbenchSettings::CanWrite(int32_t& argument) {
  workbench_.Calls().Enter("RS.CanWrite", Kind::Read,
                           [&] { return "RS.CanWrite(" + std::to_string(argument) + ")"; });
  return workbench_.profile.addin.canWrite;
}

Variant WorkbenchSettings::FindFolderSet(const std::string& entryId, const std::string& storeId,
                                         const ObjectRef& /*context*/) {
  workbench_.Calls().Enter("RS.FindFolderSet", Kind::Action, [&] {
    return "RS.FindFolderSet(" + QuotedText(entryId) + ", " + QuotedText(storeId) + ", context)";
  });
  for (size_t i = 0; i < data.ContactEntryIDs.size() && i < data.ContactStoreIDs.size(); ++i) {
    if (SameName(data.ContactEntryIDs[i], entryId) && SameName(data.ContactStoreIDs[i], storeId)) {
      return static_cast<int32_t>(i + 1);
    }
  }
  return 0;
}

}  // namespace vexa::workbench
