#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmAbout() {
  static const Layout layout{.form = "frmAbout",
                             .width = 190,
                             .height = 60,
                             .margin = distance::DialogMargin,
                             .content = Column({
                                 Prose("lblProduct"),
                                 Prose("lblVersion"),
                                 Prose("lblInfo").Gap(distance::Unrelated),
                                 Prose("lblEnterprise").Gap(distance::Unrelated),
                                 Filler().High().Gap(0),
                                 EndButtons({}, {Item("cmdOk"), Item("cmdSysInfo")}),
                             })};
  return layout;
}

}  // namespace vexa::windows
