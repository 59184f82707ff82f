#include "windows/views/layouts/Layouts.h"

namespace vexa::windows {

using namespace boxes;

const Layout& LayoutOfOutlookPropertiesPage() {
  static const Layout layout{
      .form = "OutlookPropertiesPage",
      .width = 252,
      .height = 0,
      .margin = distance::DialogMargin,
      .content = Column({
          Item("opsTrackedContacts"),
          Column({
                     Prose("lblTrackedContacts"),
                     Row({
                             Item("gd").Wide().FillsRow().Lines(6),
                             Column({Item("cmdAdd"), Item("cmdChange"), Item("cmdRemove")}).FillsRow(),
                         })
                         .High(),
                 })
              .High()
              .Indent(distance::UnderSection),
          Item("opsTrackingOptions").Gap(distance::Sections),
          Row({Prose("lblTrackingOptions"), Item("cmdTracking")}).Indent(distance::UnderSection),
          Item("opsOther").Gap(distance::Sections),
          Row({Item("cmdAdvanced"), Item("cmdAbout"), Item("cmdRestoreDialogs"), Item("cmdHelp")})
              .Indent(distance::UnderSection),
          Row({Prose("lblFooter"), Item("cmdIDEApply")}).Gap(distance::Unrelated),
      })};
  return layout;
}

}  // namespace vexa::windows
