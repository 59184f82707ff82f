#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmBackgroundAdjust() {
  static const Layout layout{
      .form = "frmBackgroundAdjust",
      .width = 220,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Table({
              Row({Item("lblInterval").Wide(), Item("txtInterval"), Item("lblIntervalUnit")}),
              Row({Item("lblTime"), Item("txtTime"), Item("lblTimeUnit")}),
              Row({Item("chkDelay"), Item("txtDelay"), Item("lblDelayUnit")}),
          }),
          Prose("lblNote").Gap(distance::Unrelated),
          EndButtons({}, {Item("cmdOk"), Item("cmdCancel")}),
      })};
  return layout;
}

}  // namespace vexa::windows
