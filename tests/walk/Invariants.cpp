#include "tests/walk/Invariants.h"

#include <algorithm>
#include <set>
#include <sstream>

#include "dialogs/frmFolders.h"
#include "display/OptionButton.h"
#include "workbench/FormState.h"

namespace vexa::workbench {
namespace {

std::vector<size_t> SizesOf(const SettingsData& data, bool routing) {
  std::vector<size_t> sizes;
  VisitSettings(data, [&]<typename Value>(std::string_view name, const Value& value) {
    if constexpr (!std::is_arithmetic_v<Value> && !std::is_same_v<Value, std::string>) {
      const bool isRouting = name.starts_with("Shared") || name == "FolderSetFlags";
      if (!name.starts_with("Monitored") && isRouting == routing) sizes.push_back(value.size());
    }
  });
  return sizes;
}

bool AllAre(const std::vector<size_t>& sizes, size_t size) {
  return std::ranges::all_of(sizes, [&](size_t each) { return each == size; });
}

bool IsFolder(std::string_view key) {
  return !key.empty() && key != DefaultFoldersRoot && key != ChildPlaceholder;
}

}  // namespace

std::string Printed(const Form& form) {
  std::ostringstream text;
  Print(text, StateOf(form));
  return text.str();
}

std::string WriteIn(const std::string& line) {
  const size_t end = line.find_first_of(" (:");
  const std::string member = line.substr(0, end);
  if (!member.starts_with("RS.") || end == std::string::npos) return {};
  const std::string_view rest = std::string_view(line).substr(end);
  if (rest.starts_with(" = ") || rest.starts_with(" := ")) return member + "=";
  return member.ends_with(".Add") || member.ends_with(".Remove") ? member : std::string();
}

std::string FlawOf(const Form& form) {
  const Control* const focus = form.Focus();
  if (focus != nullptr && (!focus->IsUsable() || !focus->TakesFocus()))
    return form.Name() + ": the focus is on " + focus->Name() + ", which cannot have it";
  if (focus == nullptr && form.NextInTabOrder(nullptr) != nullptr)
    return form.Name() + ": nothing has the focus";
  if (!form.Enabled()) return form.Name() + " stays disabled";
  if (form.MousePointer() != Form::Pointer::Default) return form.Name() + " keeps the wait pointer";
  const Button* const enter = form.EffectiveDefaultButton();
  if (enter != nullptr && std::ranges::find(form.Controls(), enter) == form.Controls().end())
    return form.Name() + ": Enter presses a button of another form";
  for (const Control* const control : form.Controls()) {
    if (control->Kind() == ControlKind::OptionButton) {
      const auto& group = static_cast<const OptionButton&>(*control);
      int selected = 0;
      for (const Control* const other : form.Controls()) {
        const auto* const option = dynamic_cast<const OptionButton*>(other);
        selected += option != nullptr && &option->Group() == &group.Group() && option->Selected() ? 1 : 0;
      }
      if (selected > 1) return form.Name() + ": two options of one group are chosen";
    }
    if (control->Kind() != ControlKind::Tree) continue;
    const auto& tree = static_cast<const Tree&>(*control);
    size_t checked = 0;
    size_t nodes = 0;
    for (Tree::Node node = tree.FirstChild(Tree::NoNode); node != Tree::NoNode;
         node = tree.NextBelow(Tree::NoNode, node)) {
      ++nodes;
      checked += tree.Checked(node) ? 1U : 0U;
      if (!tree.Key(node).empty() && tree.Find(tree.Key(node)) != node)
        return form.Name() + ": the tree does not find its node " + std::string(tree.Text(node));
    }
    if (nodes != tree.NodeCount() || checked != tree.CheckedCount())
      return form.Name() + ": the tree has miscounted";
  }
  return {};
}

void Invariants::Before(FedConsole& console, const Step& step) {
  step_ = step;
  words_ = WordsOf(step);
  top_ = console.Top();
  page_ = nullptr;
  pressed_.clear();
  unusable_.clear();
  seen_.clear();
  picked_.clear();
  hadCopy_ = false;
  if (words_.front() == "load" || words_.front() == "language") return;
  Stage& stage = console.TheConsole().Stage();
  stage.calls.Clear();
  faults_ = stage.calls.FaultsMet();
  stored_ = stage.workbench.profile.settings;
  if (const SettingsData* const copy = stage.workbench.WorkingCopy()) {
    hadCopy_ = true;
    copy_ = *copy;
  }
  if (OutlookPropertiesPage* const page = stage.Page()) {
    page_ = page;
    dirty_ = page->PropertyPage_Dirty();
    active_ = page->PageActive();
  }
  if (top_ == nullptr || step.form.empty()) return;
  pressed_ = ButtonPressedBy(*top_, step);
  const Control* const control = words_.size() > 1 ? top_->FindControl(words_[1]) : nullptr;
  if (control != nullptr && (!control->IsUsable() || !control->IsShown())) {
    unusable_ = control->Name();
    seen_ = Printed(*top_);
  }
  if (const auto* const picker = dynamic_cast<const frmFolders*>(top_)) {
    const Tree& tree = picker->tvFolders;
    for (Tree::Node node = tree.FirstChild(Tree::NoNode); node != Tree::NoNode;
         node = tree.NextBelow(Tree::NoNode, node)) {
      if (tree.Parent(node) != Tree::NoNode && IsFolder(tree.Key(node)))
        picked_[std::string(tree.Key(node))] = tree.Checked(node);
    }
  }
}

std::string Invariants::After(FedConsole& console, const std::string& output) {
  if (words_.front() == "load" || words_.front() == "language") return {};
  for (std::string flaw : {OfRefusal(console, output), OfWrites(console), OfPicker(console), OfForms(console),
                           OfPage(console), OfFolderSets(console)}) {
    if (!flaw.empty()) return flaw;
  }
  return {};
}

std::string Invariants::OfForms(FedConsole& console) {
  Stage& stage = console.TheConsole().Stage();
  const std::vector<Dialog*>& dialogs = console.TheConsole().OpenDialogs();
  const bool failed = stage.calls.FaultsMet() != faults_;
  const bool disturbed =
      failed || (step_.form.empty() && words_.front() != "ask" && words_.front() != "answer");
  const bool refused = !unusable_.empty();
  if (const auto top = opened_.find(top_); top != opened_.end()) {
    const bool moves = words_.front() == "focus" || words_.front() == "leave" ||
                       (words_.front() == "key" && words_[1] == "9");
    if (!step_.form.empty() && !refused && !moves) top->second.touched = true;
  }
  std::map<const Form*, Opened> now;
  for (const Dialog* const dialog : dialogs) {
    const auto known = opened_.find(dialog);
    const bool isNew = known == opened_.end() || known->second.name != dialog->Name();
    Opened& entry = now[dialog] =
        isNew ? Opened{dialog->Name(), !stage.workbench.profile.addin.canWrite} : known->second;
    entry.disturbed |= disturbed;
    entry.orphaned |= failed || words_.front() == "apply" || words_.front() == "hide";
    const Control* const ok = dialog->FindControl("cmdOk");
    if (ok == nullptr || entry.disturbed || dialog->Name() == "Gallery" || dialog->Name() == "frmNotice")
      continue;
    const bool changes = dialog->Name() != "frmFolders" && dialog->Name() != "frmAbout";
    if (ok->Enabled() && changes && !entry.touched)
      return dialog->Name() + ": OK can be pressed though nothing was changed";
    if (ok->Enabled() && changes && entry.readOnly && dialog->Name() != "frmTrackingOptions")
      return dialog->Name() + ": OK can be pressed though the settings are read-only";
  }
  opened_ = std::move(now);
  if (const Form* const page = stage.Page()) {
    if (std::string flaw = FlawOf(*page); !flaw.empty()) return flaw;
  }
  for (const Dialog* const dialog : dialogs) {
    if (std::string flaw = FlawOf(*dialog); !flaw.empty()) return flaw;
    if (!dialog->IsShowing()) return dialog->Name() + " was closed and is still open";
  }
  return {};
}

std::string Invariants::OfRefusal(FedConsole& console, const std::string& output) const {
  if (unusable_.empty()) return {};
  if (output.find("refused: ") == std::string::npos) return unusable_ + " cannot be used and did not refuse";
  if (console.Top() != top_ || Printed(*top_) != seen_) return unusable_ + " refused, but something changed";
  if (!console.TheConsole().Stage().calls.Lines().empty())
    return unusable_ + " refused, but something was called";
  return {};
}

std::string Invariants::OfWrites(FedConsole& console) const {
  Stage& stage = console.TheConsole().Stage();
  const bool mayWrite = pressed_ == "cmdOk" || pressed_ == "cmdDefault" || pressed_ == "cmdRemove";
  for (const std::string& line : stage.calls.Lines()) {
    if (!mayWrite && !WriteIn(line).empty()) return "a step that stores nothing wrote " + line;
    if (line.starts_with("App.ApplySettings") && words_.front() != "apply")
      return "settings were applied unasked";
  }
  const bool storing = words_.front() == "apply" || words_.front() == "set";
  if (!storing && stage.workbench.profile.settings != stored_)
    return "the stored settings changed without Apply";
  return {};
}

std::string Invariants::OfPage(FedConsole& console) {
  Stage& stage = console.TheConsole().Stage();
  const OutlookPropertiesPage* const page = stage.Page();
  const SettingsData* const copy = stage.workbench.WorkingCopy();
  const bool failed = stage.calls.FaultsMet() != faults_;
  const std::string& verb = words_.front();
  if (verb == "release" && top_ == page_) {
    if (page != nullptr || !console.TheConsole().OpenDialogs().empty())
      return "something is open after the release";
    if (copy != nullptr) return "the working copy outlives the page";
  }
  if (page == nullptr) return {};
  if (verb == "hide") {
    if (page->PageActive()) return "the page is active after it was hidden";
    if (copy != nullptr && console.TheConsole().OpenDialogs().empty())
      return "the working copy outlives the hidden page";
  }
  if (page == page_ && verb != "create" && verb != "open" && dirty_ && !page->PropertyPage_Dirty())
    return "the page is no longer dirty";
  if (verb == "apply" && !failed) {
    const bool applies = active_ && dirty_ && hadCopy_;
    if (applies && stage.workbench.profile.settings != copy_) return "Apply did not store the working copy";
    if (!applies && stage.workbench.profile.settings != stored_)
      return "Apply stored what was not to be applied";
  }
  const Control* const add = page->FindControl("cmdAdd");
  const bool fresh = verb == "open" || (verb == "initialize" && page_ == nullptr);
  if (fresh && !failed && page->PageActive() && add->Enabled() != stage.workbench.profile.addin.canWrite)
    return "Add does not go by the access";
  return {};
}

std::string Invariants::OfFolderSets(FedConsole& console) {
  Stage& stage = console.TheConsole().Stage();
  const OutlookPropertiesPage* const page = stage.Page();
  const SettingsData* const copy = stage.workbench.WorkingCopy();
  const std::string& verb = words_.front();
  const bool failed = stage.calls.FaultsMet() != faults_;
  const bool starts = verb == "open" || verb == "initialize" || verb == "reinitialize" || verb == "apply";
  if (copy == nullptr || page == nullptr || verb == "set") {
    calm_ = false;
    return {};
  }
  const auto count = static_cast<size_t>(std::max(copy->FolderSetCount, 0));
  const std::vector<size_t> folders = SizesOf(*copy, false);
  const std::vector<size_t> routing = SizesOf(*copy, true);
  if (starts) {
    const bool loaded = page->PageActive() && !failed && console.TheConsole().OpenDialogs().empty();
    calm_ = loaded && AllAre(folders, count) && AllAre(routing, routing.front()) && routing.front() >= count;
    surplus_ = routing.front() - std::min(count, routing.front());
  } else if (failed) {
    calm_ = false;
  }
  if (!calm_) return {};
  if (pressed_ == "cmdRemove" && copy->FolderSetCount != copy_.FolderSetCount) ++surplus_;
  if (!AllAre(folders, count)) return "the lists of folders are not as long as there are folder sets";
  if (!AllAre(routing, count + surplus_)) return "the lists of routing are not as long as they were left";
  const auto& grid = static_cast<const OutlookPropertiesPage*>(page)->gd;
  if (static_cast<size_t>(grid.RowCount()) != std::max<size_t>(count, 1))
    return "the page shows another number of folder sets";
  return {};
}

std::string Invariants::OfPicker(FedConsole& console) const {
  const auto entry = opened_.find(top_);
  Stage& stage = console.TheConsole().Stage();
  const SettingsData* const copy = stage.workbench.WorkingCopy();
  const bool closed = console.Top() != top_;
  if (picked_.empty() || pressed_ != "cmdOk" || !closed || copy == nullptr || entry == opened_.end() ||
      entry->second.orphaned || stage.calls.FaultsMet() != faults_)
    return {};
  std::set<std::string> stored;
  for (size_t i = 0; i < copy->MonitoredFolderItemTypes.size(); ++i) {
    const std::string& id = copy->MonitoredFolderEntryIDs[i];
    const bool isDefault = (copy->MonitoredFolderItemTypes[i] & DefaultFolderFlag) != 0;
    stored.insert(isDefault ? DefaultFolderKey(DefFolderIndexToRSIndex(std::stoi("0" + id)))
                            : FolderKey(id, copy->MonitoredFolderStoreIDs[i]));
  }
  const World& world = stage.workbench.profile.world;
  const bool excludes =
      std::ranges::any_of(world.FolderNodes(), [](const FolderNode& node) { return node.excluded; });
  for (const auto& [key, checked] : picked_) {
    if (checked != stored.contains(key) && !(checked && excludes))
      return "the picker shows " + key +
             (checked ? " checked, and it is not stored" : " clear, and it is stored");
  }
  return {};
}

std::string Invariants::AtTheEnd(FedConsole& console) {
  if (!console.TheConsole().OpenDialogs().empty()) return "a dialog is open after the end";
  Stage& stage = console.TheConsole().Stage();
  stage.calls.ForgetFaults();
  stage.DestroyPage();
  return stage.workbench.WorkingCopy() == nullptr ? "" : "the working copy outlives the end";
}

}  // namespace vexa::workbench
