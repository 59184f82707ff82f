#include "workbench/Gallery.h"

#include "core/Numbers.h"

namespace vexa::workbench {

Gallery::Gallery(const Services& services) : Dialog("Gallery"), services_(services) {
  SetCaption("Gallery of controls");
  opsGallery.SetCaption("Every kind of control");
  chkFrame.SetCaption("Choices");
  fraChoices.SetCaption("Choices");
  optOne.SetCaption("One");
  optTwo.SetCaption("Two");
  optThree.SetCaption("Three");
  lblHot.SetCaption(
      "[b] Bold, [i] both [i] [b] and [h] the first [h] or [h] the second [h] hot spot; [x] is no tag.");
  cmdBrowse.SetCaption("Browse...");
  cmdHidden.SetCaption("Hidden");
  cmdOk.SetCaption("OK");
  cmdCancel.SetCaption("Cancel");

  for (OptionButton* option : choices) option->SetFrame(&fraChoices);
  fraChoices.SetEnabled(false);
  cmdHidden.SetVisible(false);
  txtNumber.SetText("5");
  txtLocked.SetText("only code writes here");
  gdRows.SetHeaders({"Name", "Value"});
  gdRows.SetRow(1, {"first", "1"});
  gdRows.AddRow({"second\r\nline", "2"});
  const Tree::Node root = tvNodes.Add(Tree::NoNode, "@root", "Root", "@133");
  tvNodes.Add(root, "@leaf", "Leaf/with a slash", "@129");
  tvNodes.Add(root, "@lines", "Two\nlines", "@129");
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdCancel);

  chkFrame.OnClick = [this] {
    Log("chkFrame_Click");
    fraChoices.SetEnabled(chkFrame.Checked());
  };
  for (OptionButton* option : choices) {
    option->OnClick = [this, option] { Log(option->Name() + "_Click"); };
  }
  txtNumber.OnChange = [this] { Log("txtNumber_Change"); };
  txtNumber.OnGotFocus = [this] { Log("txtNumber_GotFocus"); };
  txtNumber.OnLostFocus = [this] { Log("txtNumber_LostFocus"); };
  txtNumber.OnValidate = [this] { return NumberIsValid(); };
  sldLevel.OnChange = [this] { Log("sldLevel_Change"); };
  gdRows.OnSelChange = [this] { Log("gdRows_SelChange"); };
  gdRows.OnDoubleClick = [this] { Log("gdRows_DblClick"); };
  const auto logNode = [this](const char* event) {
    return [this, event](Tree::Node node) { Log(std::string(event).append(" ").append(tvNodes.Key(node))); };
  };
  tvNodes.OnNodeCheck = logNode("tvNodes_NodeCheck");
  tvNodes.OnNodeClick = logNode("tvNodes_NodeClick");
  tvNodes.OnExpand = logNode("tvNodes_Expand");
  lblHot.OnClick = [this](const ExtLabel::WordClick& click) {
    Log("lblHot_Click " + click.word + " " + std::to_string(click.index) + (click.isLink ? " link" : "") +
        " button " + std::to_string(click.button) + " shift " + std::to_string(click.shift));
  };
  cmdBrowse.OnClick = Handler(services_, *this, "cmdBrowse_Click", [this] {
    const auto folder = services_.desktop.BrowseForFolder("Which folder?", "C:\\");
    Log("cmdBrowse_Click " + folder.value_or("(cancelled)"));
  });
  cmdOk.OnClick = [this] { Hide(); };
  cmdCancel.OnClick = [this] {
    Log("cmdCancel_Click");
    Hide();
  };
}

void Gallery::CloseWindow() {
  Log("closed by its window");
  Hide();
}

void Gallery::KeyDown(int keyCode) { Log("KeyDown " + std::to_string(keyCode)); }

void Gallery::Log(const std::string& event) {
  lblEvents.SetCaption(lblEvents.Caption().empty() ? event : lblEvents.Caption() + "; " + event);
}

bool Gallery::NumberIsValid() {
  const double number = LeadingNumber(txtNumber.Text());
  if (number >= 1 && number <= 10) return true;
  services_.desktop.Show("Between 1 and 10, please", MessageIcon::Critical, MessageButtons::Ok, "Gallery");
  return false;
}

}  // namespace vexa::workbench
