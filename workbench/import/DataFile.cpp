#include "workbench/import/DataFile.h"

#include <libpff.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace vexa::workbench {
namespace {

// Property numbers and value types of Outlook's property sets.
constexpr uint16_t RecordKey = 0x0FF9;
constexpr uint16_t DisplayName = 0x3001;
constexpr uint16_t ContainerClass = 0x3613;
constexpr uint16_t MailboxOwnerName = 0x661C;
constexpr uint16_t FolderId = 0x67F4;
constexpr uint16_t PasswordChecksum = 0x67FF;
constexpr uint32_t Integer32Type = 0x0003;
constexpr uint32_t Integer64Type = 0x0014;
constexpr uint32_t AnsiTextType = 0x001E;
constexpr uint32_t TextType = 0x001F;
constexpr uint32_t BinaryType = 0x0102;

constexpr std::array FolderLinkProperties{SubtreeLink,     OutboxLink,  WastebasketLink, SentMailLink,
                                          AppointmentLink, ContactLink, JournalLink,     NoteLink,
                                          TaskLink,        DraftsLink};

class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Owner of a libpff object.
template <typename Handle, int (*Free)(Handle**, libpff_error_t**)>
class Owner {
 public:
  Owner() = default;
  Owner(Owner&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Owner& operator=(Owner&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Owner() {
    if (handle_ != nullptr) Free(&handle_, nullptr);  // a failure to free leaves nothing to be done
  }
  Handle* Get() const { return handle_; }
  Handle** Out() { return &handle_; }

 private:
  Handle* handle_ = nullptr;
};

using PffFile = Owner<libpff_file_t, libpff_file_free>;
using Item = Owner<libpff_item_t, libpff_item_free>;
using RecordSet = Owner<libpff_record_set_t, libpff_record_set_free>;
using RecordEntry = Owner<libpff_record_entry_t, libpff_record_entry_free>;

/// Owner of libpff's record of what went wrong.
class ErrorRecord {
 public:
  ErrorRecord() = default;
  ErrorRecord(const ErrorRecord&) = delete;
  ErrorRecord& operator=(const ErrorRecord&) = delete;
  ~ErrorRecord() { libpff_error_free(&error_); }
  libpff_error_t** Out() { return &error_; }

  /// The innermost of libpff's messages, which names the cause.
  std::string Text() const {
    std::array<char, 4096> text{};
    if (libpff_error_backtrace_sprint(error_, text.data(), text.size() - 1) < 1) return "unknown cause";
    const std::string_view lines(text.data());
    return std::string(lines.substr(0, lines.find('\n')));
  }

 private:
  libpff_error_t* error_ = nullptr;
};

/// Calls a function of libpff; false when it says "not there", a Failure when it fails.
template <typename Function, typename... Arguments>
bool Call(Function function, Arguments... arguments) {
  ErrorRecord error;
  const int result = function(arguments..., error.Out());
  if (result != 0 && result != 1) throw Failure("is damaged: " + error.Text());
  return result == 1;
}

template <typename Function, typename... Arguments>
void Demand(const char* what, Function function, Arguments... arguments) {
  if (!Call(function, arguments...)) throw Failure(std::string("is damaged: it has no ") + what);
}

// --- properties

/// The properties of one item.
class Properties {
 public:
  explicit Properties(libpff_item_t* item) {
    int sets = 0;
    Call(libpff_item_get_number_of_record_sets, item, &sets);
    if (sets > 0) Call(libpff_item_get_record_set_by_index, item, 0, set_.Out());
  }

  /// Empty when there is none.
  Bytes Data(uint16_t property, uint32_t type) const {
    const RecordEntry entry = Find(property, type);
    Bytes data(SizeOf(entry));
    if (!data.empty()) Call(libpff_record_entry_get_data, entry.Get(), data.data(), data.size());
    return data;
  }

  /// Text as UTF-8; empty when there is none.
  std::string Text(uint16_t property) const {
    RecordEntry entry = Find(property, TextType);
    if (entry.Get() == nullptr) entry = Find(property, AnsiTextType);
    size_t size = 0;
    if (SizeOf(entry) == 0 || !Call(libpff_record_entry_get_data_as_utf8_string_size, entry.Get(), &size))
      return {};
    Bytes text(size + 1);
    Call(libpff_record_entry_get_data_as_utf8_string, entry.Get(), text.data(), size);
    return {text.begin(), std::ranges::find(text, uint8_t{0})};
  }

  uint32_t Integer(uint16_t property) const {
    const RecordEntry entry = Find(property, Integer32Type);
    uint32_t value = 0;
    if (entry.Get() != nullptr) Call(libpff_record_entry_get_data_as_32bit_integer, entry.Get(), &value);
    return value;
  }

  FolderLinks Links() const {
    FolderLinks links;
    for (const uint16_t property : FolderLinkProperties) {
      if (Bytes link = Data(property, BinaryType); !link.empty()) links.emplace(property, std::move(link));
    }
    return links;
  }

 private:
  RecordEntry Find(uint16_t property, uint32_t type) const {
    RecordEntry entry;
    if (set_.Get() != nullptr) {
      Call(libpff_record_set_get_entry_by_type, set_.Get(), uint32_t{property}, type, entry.Out(),
           uint8_t{0});
    }
    return entry;
  }

  static size_t SizeOf(const RecordEntry& entry) {
    size_t size = 0;
    if (entry.Get() != nullptr) Call(libpff_record_entry_get_data_size, entry.Get(), &size);
    return size;
  }

  RecordSet set_;
};

// --- the file as a whole

uint64_t LittleEndian(std::string_view header, size_t position, size_t size) {
  uint64_t value = 0;
  for (size_t i = size; i-- > 0;) value = value << 8 | static_cast<uint8_t>(header[position + i]);
  return value;
}

/// Refuses before libpff sees it what libpff has no good words for, or would take in silence.
void CheckFile(const std::string& path) {
  namespace fs = std::filesystem;
  const fs::file_status status = fs::status(path);
  if (!fs::exists(status)) throw Failure("there is no such file");
  if (fs::is_directory(status)) throw Failure("is a directory, not an Outlook data file");
  if (!fs::is_regular_file(status)) throw Failure("is not a regular file");
  const uint64_t size = fs::file_size(path);
  if (size == 0) throw Failure("is empty");

  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw Failure("cannot be read: " + std::generic_category().message(errno));
  std::string header(516, '\0');
  stream.read(header.data(), static_cast<std::streamsize>(header.size()));
  if (!header.starts_with("!BDN")) throw Failure("is not an Outlook data file (.pst, .ost)");

  // Header layout: [MS-PST] 2.2.2.6, "HEADER". Up to version 15 the file has 32-bit positions.
  const bool narrow = LittleEndian(header, 10, 2) <= 15;
  const uint64_t end = narrow ? LittleEndian(header, 168, 4) : LittleEndian(header, 184, 8);
  if (size < header.size() || size < end) {
    throw Failure("is cut short: only " + std::to_string(size) + " bytes of it are there");
  }
  constexpr uint64_t strongestKnown = 2;  // 0 none, 1 permuted, 2 cyclic; 16 needs the organization's keys
  const uint64_t encryption = LittleEndian(header, narrow ? 461 : 513, 1);
  if (encryption > strongestKnown) {
    throw Failure("is encrypted with method " + std::to_string(encryption) + ", which cannot be read");
  }
}

bool IsOffline(libpff_file_t* file) {
  uint8_t type = 0;
  Demand("content type", libpff_file_get_content_type, file, &type);
  if (type != LIBPFF_FILE_CONTENT_TYPE_OST && type != LIBPFF_FILE_CONTENT_TYPE_PST) {
    throw Failure("is an address book, not an Outlook data file (.pst, .ost)");
  }
  return type == LIBPFF_FILE_CONTENT_TYPE_OST;
}

// --- folders

DataFileFolder ReadFolder(libpff_item_t* item, uint32_t node, uint32_t parent) {
  const Properties properties(item);
  DataFileFolder folder;
  folder.node = node;
  folder.parent = parent;
  folder.name = properties.Text(DisplayName);
  try {
    folder.containerClass = properties.Text(ContainerClass);
  } catch (const Failure&) {
    folder.containerClass.clear();  // real files hold classes that are no text; Outlook shows such folders
  }
  folder.serverId = properties.Data(FolderId, Integer64Type);
  folder.links = properties.Links();
  return folder;
}

uint32_t NodeOf(libpff_item_t* item) {
  uint32_t node = 0;
  Demand("node of a folder", libpff_item_get_identifier, item, &node);
  return node;
}

/// Depth-first with a stack of its own: folders may lie deeper than the machine's stack reaches.
std::vector<DataFileFolder> ReadFolders(Item root) {
  constexpr uint32_t nodeTypeMask = 0x1F;
  constexpr uint32_t searchFolder = 3;
  struct Pending {
    Item item;
    uint32_t parent;
  };
  std::vector<DataFileFolder> folders;
  std::unordered_set<uint32_t> seen;
  std::vector<Pending> pending;
  pending.push_back({std::move(root), 0});
  while (!pending.empty()) {
    const Pending here = std::move(pending.back());
    pending.pop_back();
    const uint32_t node = NodeOf(here.item.Get());
    if ((node & nodeTypeMask) == searchFolder) continue;
    if (!seen.insert(node).second)
      throw Failure("is damaged: node " + std::to_string(node) + " is two folders");
    folders.push_back(ReadFolder(here.item.Get(), node, here.parent));
    int children = 0;
    Call(libpff_folder_get_number_of_sub_folders, here.item.Get(), &children);
    for (int child = children - 1; child >= 0; --child) {
      Item item;
      Demand("such folder", libpff_folder_get_sub_folder, here.item.Get(), child, item.Out());
      pending.push_back({std::move(item), node});
    }
  }
  return folders;
}

}  // namespace

DataFile ReadDataFile(const std::string& path) {
  CheckFile(path);
  PffFile file;
  Demand("memory", libpff_file_initialize, file.Out());
  Demand("content", libpff_file_open, file.Get(), path.c_str(), libpff_get_access_flags_read());

  DataFile result;
  result.offline = IsOffline(file.Get());
  Item store;
  Demand("message store", libpff_file_get_message_store, file.Get(), store.Out());
  const Properties properties(store.Get());
  result.recordKey = properties.Data(RecordKey, BinaryType);
  result.displayName = properties.Text(DisplayName);
  result.owner = properties.Text(MailboxOwnerName);
  result.passwordChecksum = properties.Integer(PasswordChecksum);
  result.links = properties.Links();
  Item root;
  Demand("root folder", libpff_file_get_root_folder, file.Get(), root.Out());
  result.folders = ReadFolders(std::move(root));
  return result;
}

}  // namespace vexa::workbench
