// The page and its dialogs without windows: what the user does goes straight to the forms' models. A dialog
// runs the console's commands until it closes, nested in the command that opened it.
#include <algorithm>

#include "dialogs/frmNotice.h"
#include "display/CheckBox.h"
#include "display/ExtLabel.h"
#include "display/Grid.h"
#include "display/OptionButton.h"
#include "display/Slider.h"
#include "display/TextBox.h"
#include "workbench/Console.h"
#include "workbench/Gallery.h"
#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

constexpr const char* NoKeyboard = "a console without windows has no keyboard; \"key\" presses keys on forms";

std::string NameOf(const Control* control) { return control == nullptr ? std::string() : control->Name(); }

class ModelForm final : public FormDriver {
 public:
  /// What `keptAlive` owns lives at least as long as this.
  ModelForm(Form& form, std::shared_ptr<void> keptAlive) : keptAlive_(std::move(keptAlive)), form_(form) {}

  std::string Name() const override { return form_.Name(); }
  std::string Caption() const override { return form_.Caption(); }
  std::vector<ControlName> Controls() const override {
    std::vector<ControlName> names;
    for (const Control* control : form_.Controls()) names.push_back({control->Name(), control->Kind()});
    return names;
  }
  FormState State() const override { return workbench::StateOf(form_); }
  ControlState StateOf(const std::string& control) const override {
    return workbench::StateOf(form_, Find<Control>(control));
  }
  std::string Focus() const override { return NameOf(form_.Focus()); }
  std::string EnterButton() const override { return NameOf(form_.EffectiveDefaultButton()); }
  std::string EscapeButton() const override { return NameOf(form_.CancelButton()); }

  Node FindNode(const std::string& name, Node parent, std::string_view encodedText) const override {
    const auto& tree = Find<Tree>(name);
    for (const Tree::Node child : tree.Children(ToTree(parent))) {
      if (EncodedName(tree.Text(child)) == encodedText) return Node{child} + 1;
    }
    return NoNode;
  }

  Outcome Click(const std::string& control) override { return user_.Click(Find<Control>(control)); }
  Outcome DoubleClick(const std::string& control) override {
    return user_.DoubleClick(Find<Control>(control));
  }
  Outcome SetChecked(const std::string& box, bool checked) override {
    return user_.SetChecked(Find<CheckBox>(box), checked);
  }
  Outcome Choose(const std::string& option) override { return user_.Choose(Find<OptionButton>(option)); }
  Outcome Type(const std::string& box, const std::string& text) override {
    return user_.Type(Find<TextBox>(box), text);
  }
  Outcome Slide(const std::string& slider, int32_t position) override {
    return user_.Slide(Find<Slider>(slider), position);
  }
  Outcome SelectCell(const std::string& grid, int32_t row, int32_t column) override {
    return user_.SelectCell(Find<Grid>(grid), row, column);
  }
  Outcome ClickNode(const std::string& tree, Node node) override {
    return user_.ClickNode(Find<Tree>(tree), ToTree(node));
  }
  Outcome CheckNode(const std::string& tree, Node node, bool checked) override {
    return user_.CheckNode(Find<Tree>(tree), ToTree(node), checked);
  }
  Outcome Expand(const std::string& tree, Node node, bool expanded) override {
    return user_.Expand(Find<Tree>(tree), ToTree(node), expanded);
  }
  Outcome ClickHotSpot(const std::string& label, int32_t hotSpot) override {
    return user_.ClickHotSpot(Find<ExtLabel>(label), hotSpot);
  }
  Outcome Focus(const std::string& control) override { return user_.Focus(Find<Control>(control)); }
  Outcome Leave() override { return user_.Leave(); }
  Outcome Press(int keyCode, bool shift) override { return user_.Press(keyCode, shift); }
  Outcome Enter() override { return user_.Enter(); }
  Outcome Escape() override { return user_.Escape(); }
  bool CloseWindow() override {
    auto* const dialog = dynamic_cast<Dialog*>(&form_);
    if (dialog == nullptr) return false;
    dialog->CloseWindow();
    return true;
  }

 private:
  static Tree::Node ToTree(Node node) {
    return node == NoNode ? Tree::NoNode : static_cast<Tree::Node>(node - 1);
  }
  template <typename Kind>
  Kind& Find(const std::string& name) const {
    return dynamic_cast<Kind&>(Require(form_.FindControl(name)));
  }

  std::shared_ptr<void> keptAlive_;
  Form& form_;
  UserActions user_{form_};
};

class ModelDriver final : public HostDriver {
 public:
  ModelDriver(Console& console, Stage& stage) : console_(console), stage_(stage) {}

  std::vector<std::unique_ptr<FormDriver>> OpenForms() const override {
    std::vector<std::unique_ptr<FormDriver>> forms;
    const std::shared_ptr<OutlookPropertiesPage> page = stage_.SharedPage();
    if (page != nullptr) forms.push_back(std::make_unique<ModelForm>(*page, page));
    // Dialogs belong to the page's actions, and those keep the page.
    for (Form* dialog : console_.OpenDialogs()) forms.push_back(std::make_unique<ModelForm>(*dialog, page));
    return forms;
  }
  size_t DialogCount() const override { return console_.OpenDialogs().size(); }
  bool HasPage() const override { return stage_.Page() != nullptr; }

  void Create() override { stage_.CreatePage(); }
  void Initialize() override { Page()->Initialize(stage_.workbench.Addin()); }
  void Reinitialize() override { Page()->Initialize(nullptr, true); }
  void Apply() override { Page()->PropertyPage_Apply(); }
  void Hide() override { Page()->UserControl_Hide(); }
  void Release() override { stage_.DestroyPage(); }

  bool Dirty() override { return Page()->PropertyPage_Dirty(); }
  std::string Title() override { return Page()->TabTitle(); }
  PageInfo GetPageInfo(PageInfo passed) override {
    Page()->PropertyPage_GetPageInfo(passed.helpFile, passed.helpContext);
    return passed;
  }
  bool PageActive() override { return Page()->PageActive(); }
  void SetDevelopmentMode(bool on) override { InDevelopmentMode = on; }

  void OpenGallery() override {
    Gallery gallery(stage_.services);
    console_.ShowModal(gallery, nullptr);
  }
  void PressKey(const KeyStroke& /*key*/) override { throw ScriptError(NoKeyboard); }
  void TypeLetters(const std::string& /*text*/) override { throw ScriptError(NoKeyboard); }
  std::string KeyboardFocus() override { throw ScriptError(NoKeyboard); }
  void TakePicture(const std::string& /*file*/) override {
    throw ScriptError("a console without windows takes no pictures");
  }
  void ShowNotice(const std::string& title, const std::string& text, const std::vector<std::string>& buttons,
                  const std::function<void(int32_t)>& answered) override {
    frmNotice notice;
    notice.Initialize(title, text, buttons);
    console_.ShowModal(notice, nullptr);
    answered(notice.Answer());
  }
  std::optional<FolderIndex> PickFolder() override { return console_.AnswerPick(); }
  void RunInsideCall(const std::function<void()>& command) override { command(); }

 private:
  /// A copy: a call on the page may be the one during which the host releases it.
  std::shared_ptr<OutlookPropertiesPage> Page() { return stage_.SharedPage(); }

  Console& console_;
  Stage& stage_;
};

}  // namespace

std::unique_ptr<HostDriver> MakeModelDriver(Console& console, Stage& stage) {
  return std::make_unique<ModelDriver>(console, stage);
}

}  // namespace vexa::workbench
