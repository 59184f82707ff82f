#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfFrmTrackingOptions() {
  // Two columns: one below the other the sections are higher than a small screen at 150 %.
  static const Layout layout{
      .form = "frmTrackingOptions",
      .width = 400,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Item("opsLoggingMethod").DefaultPicture(2302),
          Column({
                     Prose("lblInstructions"),
                     Item("optDefault"),
                     Item("optPersonal"),
                     Row({Item("optCustom"), Item("cmdFolders")}),
                     Item("optWindowMode"),
                 })
              .Indent(distance::UnderSection),
          Row({
                  Column({
                             Item("opsLoggingFeatures").DefaultPicture(120),
                             Column({
                                        Item("chkScanInbox"),
                                        Item("chkSearchNow"),
                                        Item("chkIgnoreInternal"),
                                        Item("chkEnableBlanketDomain"),
                                        Item("chkStripAttachments"),
                                    })
                                 .Indent(distance::UnderSection),
                         })
                      .Wide()
                      .FillsRow(),
                  Column({
                             Item("opsChangeMonitoring").DefaultPicture(150),
                             Column({
                                        Item("chkAudit"),
                                        Item("chkUpdateLogged"),
                                        Item("chkUpdateShared"),
                                    })
                                 .Indent(distance::UnderSection),
                             Item("opsContactFiltering").Gap(distance::Sections).DefaultPicture(117),
                             Column({
                                        Item("lblContactFiltering"),
                                        Item("txtCategories"),
                                        Item("chkIgnorePrivate"),
                                    })
                                 .Indent(distance::UnderSection),
                         })
                      .Wide()
                      .FillsRow()
                      .Gap(distance::UnderSection),
              })
              .Gap(distance::Sections),
          EndButtons({}, {Item("cmdOk"), Item("cmdCancel")}),
      })};
  return layout;
}

}  // namespace vexa::windows
