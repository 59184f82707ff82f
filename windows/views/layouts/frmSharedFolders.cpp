#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmSharedFolders() {
  static const Layout layout{
      .form = "frmSharedFolders",
      .width = 280,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Item("opsShared"),
          Column({
                     Prose("lblSharedInstr"),
                     Table({
                               Row({Item("chkSCal"), Item("txtSCal").Wide(), Item("cmdSelSCal")}),
                               Row({Item("chkSJourn"), Item("txtSJourn"), Item("cmdSelSJourn")}),
                               Row({Item("chkSTask"), Item("txtSTask"), Item("cmdSelSTask")}),
                           })
                         .Gap(distance::Unrelated),
                     Item("chkLog").Gap(distance::Unrelated),
                     Item("chkLeaveCopy"),
                 })
              .Indent(distance::UnderSection),
          EndButtons({}, {Item("cmdOk"), Item("cmdCancel")}),
      })};
  return layout;
}

}  // namespace vexa::windows
