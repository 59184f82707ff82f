#include "workbench/SettingsData.h"

namespace vexa::workbench {

SettingsData SettingsData::Defaults() {
  SettingsData data;
  data.ErrorLogPath = "C:\\ProgramData\\Tolvane\\Vexa\\VEXAERRORS.MDB";
  data.MaxLogSize = 2048;
  data.SearchEmailAddresses = true;
  data.WorkInBackground = true;
  data.BackgroundInterval = 10;
  data.BackgroundWorkTime = 10;
  data.CacheContactFolders = true;
  data.KeepCacheSynchronized = true;
  data.AssumeUniqueEmailAddresses = true;
  data.RecordsPerDownload = 100;
  data.EditFolderFields = true;
  data.EnterpriseSettingsPath = "HKEY_LOCAL_MACHINE\\Software\\Policies\\Tolvane\\Vexa";
  return data;
}

}  // namespace vexa::workbench
