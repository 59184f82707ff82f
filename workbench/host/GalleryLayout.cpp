#include "workbench/host/GalleryLayout.h"

namespace vexa::workbench {

using namespace windows::boxes;
namespace distance = windows::distance;

const windows::Layout& LayoutOfGallery() {
  static const windows::Layout layout{
      .form = "Gallery",
      .width = 300,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Item("opsGallery"),
          Prose("lblHot").Indent(distance::UnderSection),
          Prose("lblEvents").Lines(3).Indent(distance::UnderSection),
          Row({
                  Column({
                             Item("chkFrame"),
                             Framed("fraChoices", Column({Item("optOne"), Item("optTwo"), Item("optThree")})),
                             Item("txtNumber"),
                             Item("txtLocked"),
                             Item("sldLevel"),
                         })
                      .Width(110),
                  Column({Item("gdRows").Lines(5).High()}).Wide().FillsRow(),
                  Column({Item("tvNodes").Lines(5).High()}).Wide().FillsRow(),
              })
              .High()
              .Indent(distance::UnderSection),
          EndButtons({Item("cmdBrowse"), Item("cmdHidden")}, {Item("cmdOk"), Item("cmdCancel")}),
      })};
  return layout;
}

}  // namespace vexa::workbench
