#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmFolders() {
  static const Layout layout{
      .form = "frmFolders",
      .width = 370,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Prose("lblInstructions"),
          Row({
                  Column({
                             Item("tvFolders").Lines(14).High(),
                             Item("lblNumTip"),
                         })
                      .Wide()
                      .FillsRow(),
                  Framed("fraItems", Column({
                                         Item("tvItems").Lines(12).High().Width(185),
                                         Row({Item("cmdAll"), Item("cmdNone")}).EqualWidths(),
                                     }))
                      .FillsRow(),
              })
              .High()
              .Gap(distance::Unrelated),
          Prose("lblHotTip").Lines(3).Gap(distance::Unrelated),
          EndButtons({Item("cmdClear")}, {Item("cmdOk"), Item("cmdCancel")}),
      })};
  return layout;
}

}  // namespace vexa::windows
