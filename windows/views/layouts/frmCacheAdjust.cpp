#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmCacheAdjust() {
  static const Layout layout{.form = "frmCacheAdjust",
                             .width = 220,
                             .height = 0,
                             .margin = distance::DialogMargin,
                             .content = Column({
                                 Row({Item("lblNumRecords"), Item("txtNumRecords")}),
                                 Prose("lblTip"),
                                 Item("chkSync").Gap(distance::Unrelated),
                                 Item("chkFillOnExit"),
                                 EndButtons({}, {Item("cmdOk"), Item("cmdCancel")}),
                             })};
  return layout;
}

}  // namespace vexa::windows
