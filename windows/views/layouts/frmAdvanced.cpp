#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmAdvanced() {
  // Two columns: one below the other the sections are higher than a small screen at 150 %.
  const auto level = [](std::string_view caption) {
    return Prose(caption).WrapAt(54).Centred().FillsRow().Gap(0);
  };
  static const Layout layout{
      .form = "frmAdvanced",
      .width = 340,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Prose("lblWarning"),
          Row({
                  Column({
                             Item("opsOptions").DefaultPicture(2011),
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
                         })
                      .Wide()
                      .FillsRow(),
                  Column({
                             Item("opsErrorLog").DefaultPicture(138),
                             Column({
                                        Item("lblLogLevel"),
                                        Item("sldLogLevel").OverColumns(4),
                                        Row({level("lblNothing"), level("lblOnlyErrors"),
                                             level("lblErrorsWarnings"), level("lblEverything")})
                                            .EqualWidths()
                                            .Gap(0),
                                        Row({Item("lblMaxSize"), Item("sldMaxSize").Wide(),
                                             Item("lblSize").Width(30)}),
                                        Row({Item("lblLogPath"), Item("txtLogPath").Wide()}),
                                        Row({Filler(),
                                             Row({Item("cmdLocation"), Item("cmdEmail")}).EqualWidths()}),
                                        Item("chkErrReporting"),
                                    })
                                 .Indent(distance::UnderSection),
                             Item("opsEnterprise").Gap(distance::Sections).DefaultPicture(133),
                             Column({Item("chkUseEnterprise"), Item("chkAllUsers")})
                                 .Indent(distance::UnderSection),
                         })
                      .Wide()
                      .FillsRow()
                      .Gap(distance::UnderSection),
              })
              .Gap(distance::Unrelated),
          EndButtons({Item("cmdDefault")}, {Item("cmdOk"), Item("cmdCancel")}),
      })};
  return layout;
}

}  // namespace vexa::windows
