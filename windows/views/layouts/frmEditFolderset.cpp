#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmEditFolderset() {
  static const Layout layout{
      .form = "frmEditFolderset",
      .width = 260,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Item("opsContacts").DefaultPicture(127),
          Column({
                     Prose("lblHelpContact"),
                     Row({Item("txtContact").Wide(), Item("cmdSelContact")}),
                 })
              .Indent(distance::UnderSection),
          Item("opsAssoc").Gap(distance::Sections).DefaultPicture(128),
          Column({
                     Prose("lblHelpAssoc"),
                     Table({
                         Row({Item("lblPublicJourn"), Item("txtJourn").Wide(), Item("cmdSelJourn")}),
                         Row({Item("chkEmail"), Item("txtEmail"), Item("cmdSelEmail")}),
                     }),
                 })
              .Indent(distance::UnderSection),
          EndButtons({Item("cmdShared")}, {Item("cmdOk"), Item("cmdCancel")}),
      })};
  return layout;
}

}  // namespace vexa::windows
