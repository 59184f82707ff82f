// What an Outlook data file (.pst, .ost) holds of interest here: the properties of its message store and its
// folder hierarchy, as they stand in the file. ReadDataFile is the only place that knows libpff; Import.h
// makes stores and folders out of the result.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vexa::workbench {

using Bytes = std::vector<uint8_t>;

/// Entry ids that point to other folders, by property number.
using FolderLinks = std::map<uint16_t, Bytes>;

struct DataFileFolder {
  uint32_t node = 0;    // node id, unique in the file
  uint32_t parent = 0;  // node id of the folder above; 0 at the root of the file
  std::string name{};
  std::string containerClass{};  // "IPF.Contact"; empty when there is none, or no readable one
  Bytes serverId{};              // 8 bytes, .ost only: what the server's entry ids name the folder by
  FolderLinks links{};
};

struct DataFile {
  bool offline = false;  // .ost: a mailbox kept offline, and not a personal folders file
  Bytes recordKey;       // 16 bytes; part of each entry id of the file
  std::string displayName;
  std::string owner;
  uint32_t passwordChecksum = 0;
  FolderLinks links;
  std::vector<DataFileFolder> folders;  // parents before their children
};

/// The properties of store and folders that are links to default folders.
inline constexpr uint16_t SubtreeLink = 0x35E0;
inline constexpr uint16_t OutboxLink = 0x35E2;
inline constexpr uint16_t WastebasketLink = 0x35E3;
inline constexpr uint16_t SentMailLink = 0x35E4;
inline constexpr uint16_t AppointmentLink = 0x36D0;
inline constexpr uint16_t ContactLink = 0x36D1;
inline constexpr uint16_t JournalLink = 0x36D2;
inline constexpr uint16_t NoteLink = 0x36D3;
inline constexpr uint16_t TaskLink = 0x36D4;
inline constexpr uint16_t DraftsLink = 0x36D7;

/// Search folders are left out. Throws std::exception with what is wrong, without the file's name.
DataFile ReadDataFile(const std::string& path);

}  // namespace vexa::workbench
