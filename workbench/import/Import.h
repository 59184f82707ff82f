// Makes a profile of an Outlook data file: one store for the mailbox (.ost) or the personal folders (.pst),
// and one for the public folders that a mailbox has offline. Ids, names and kinds of folders are the file's
// own, so that what is tried out with the profile is what Outlook would show.
#pragma once

#include <string>
#include <string_view>

#include "workbench/Profile.h"
#include "workbench/import/DataFile.h"

namespace vexa::workbench {

/// Error: ProfileError, one line.
Profile ImportDataFile(const std::string& path);

/// The second half of the import: `path` gives the stores' names and ids their part, it is not opened.
/// Error: ProfileError, one line.
Profile ProfileOf(const DataFile& file, const std::string& path);

/// By Outlook's container class, such as "IPF.Contact" or "IPF.Contact.GalContacts"; mail for any other.
ItemType ItemTypeOf(std::string_view containerClass);

}  // namespace vexa::workbench
