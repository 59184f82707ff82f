#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmAdvanced() {
  static const Layout layout{
      .form = "frmAdvanced",
      .width = 340,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Prose("lblWarning"),
          Item("opsOptions").Gap(distance::Unrelated).DefaultPicture(2011),
          Column({
                     Item("chkShow"),
                     Item("chkAssume"),
                     Item("chkSearchEmail"),
                     Item("chkOnlySearch").Indent(distance::UnderSection),
                     Item("chkBypass"),
                     Item("chkDontEdit"),
                     Item("chkMakeWorking"),
                     Row({Item("chkQuickscanHours"), Item("txtQuickscanHours")}),
                 })
              .Indent(distance::UnderSection),
          Item("opsPerformance").Gap(distance::Sections).DefaultPicture(127),
          Table({
                    Row({Item("chkCache").Wide(), Item("cmdAdjCache")}),
                    Row({Item("chkWork"), Item("cmdAdjBackground")}),
                })
              .Indent(distance::UnderSection),
          Item("opsErrorLog").Gap(distance::Sections).DefaultPicture(138),
          Column(
              {
                  Item("lblLogLevel"),
                  Item("sldLogLevel").OverColumns(4),
                  Row({Item("lblNothing").Wide().Centred().Gap(0),
                       Item("lblOnlyErrors").Wide().Centred().Gap(0),
                       Item("lblErrorsWarnings").Wide().Centred().Gap(0),
                       Item("lblEverything").Wide().Centred().Gap(0)})
                      .EqualWidths()
                      .Gap(0),
                  Row({Item("lblMaxSize"), Item("sldMaxSize").Wide(), Item("lblSize").Width(30)}),
                  Row({Item("lblLogPath"), Item("txtLogPath").Wide(), Item("cmdLocation"), Item("cmdEmail")}),
                  Item("chkErrReporting"),
              })
              .Indent(distance::UnderSection),
          Item("opsEnterprise").Gap(distance::Sections).DefaultPicture(133),
          Column({Item("chkUseEnterprise"), Item("chkAllUsers")}).Indent(distance::UnderSection),
          EndButtons({Item("cmdDefault")}, {Item("cmdOk"), Item("cmdCancel")}),
      })};
  return layout;
}

}  // namespace vexa::windows
