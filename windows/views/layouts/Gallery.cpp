#include "windows/views/layouts/Gallery.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfGallery() {
  static const Layout layout{
      .form = "Gallery",
      .width = 300,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Item("opsGallery"),
          Prose("lblEvents").Lines(3).Indent(distance::UnderSection),
          Row({
              Column({
                  Item("chkFrame"),
                  Framed("fraChoices", Column({Item("optOne"), Item("optTwo"), Item("optThree")})),
                  Item("txtNumber"),
                  Item("txtLocked"),
                  Item("sldLevel"),
              }).Width(110),
              Column({Item("gdRows").Lines(5).High()}).Wide().FillsRow(),
              Column({Item("tvNodes").Lines(5).High()}).Wide().FillsRow(),
          }).High().Indent(distance::UnderSection),
          EndButtons({Item("cmdBrowse"), Item("cmdHidden")}, {Item("cmdOk"), Item("cmdCancel")}),
      })};
  return layout;
}

}  // namespace vexa::windows
