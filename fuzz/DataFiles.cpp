// Outlook data files, whole or damaged, and hierarchies that no Outlook would write: refused with a message,
// or made into a profile that can be written and read.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "fuzz/Fuzz.h"
#include "workbench/import/DataFile.h"
#include "workbench/import/Import.h"

using vexa::fuzz::Input;
using namespace vexa::workbench;

namespace {

Bytes BytesOf(std::string_view text) { return {text.begin(), text.end()}; }

DataFile Imagine(Input& input) {
  DataFile file;
  file.offline = input.Byte() % 2 == 0;
  file.recordKey = BytesOf(input.Text());
  file.displayName = input.Text();
  file.owner = input.Text();
  for (uint16_t links = input.Byte() % 8; links > 0; --links) {
    file.links[static_cast<uint16_t>(SubtreeLink + input.Byte() % 4)] = BytesOf(input.Text());
  }
  while (!input.IsUsedUp()) {
    DataFileFolder folder;
    folder.node = input.Byte();
    folder.parent = input.Byte();
    folder.name = input.Text();
    folder.containerClass = input.Text();
    folder.serverId = BytesOf(input.Text());
    if (input.Byte() % 4 == 0) folder.links[AppointmentLink] = BytesOf(input.Text());
    file.folders.push_back(std::move(folder));
  }
  return file;
}

void Import(const std::string& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
  try {
    ImportDataFile(path);
  } catch (const ProfileError&) {
  }
  std::filesystem::remove(path);
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string path =
      (std::filesystem::temp_directory_path() / ("vexa-fuzz-" + std::to_string(getpid()) + ".pst")).string();
  Input input(data, size);
  if (input.Byte() % 2 == 0) {
    Import(path, input.Rest());
    return 0;
  }
  try {
    ProfileOf(Imagine(input), "file.pst");
  } catch (const ProfileError&) {
  }
  return 0;
}
