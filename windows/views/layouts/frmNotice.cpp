#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmNotice() {
  static const Layout layout{.form = "frmNotice",
                             .width = 200,
                             .height = 40,
                             .margin = distance::DialogMargin,
                             .content = Column({
                                 Prose("lblText"),
                                 EndButtons({}, {Item("cmdFirst"), Item("cmdSecond"), Item("cmdThird")}),
                             })};
  return layout;
}

}  // namespace vexa::windows
