#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <set>
#include <sstream>
#include <utility>

#include "tests/ScratchFolder.h"
#include "workbench/import/Import.h"

namespace vexa::workbench {
namespace {

namespace fs = std::filesystem;

const fs::path Project = VEXA_PROJECT_DIR;
const fs::path MailboxSample = Project / "build/testdata/pstextractortest@outlook.com.ost";
const fs::path PersonalSample = Project / "build/testdata/enron.pst";

#define REQUIRE_SAMPLE(path)                                                                \
  if (!fs::exists(path)) {                                                                  \
    GTEST_SKIP() << (path) << " is not there; scripts/fetch-test-data fetches the samples"; \
  }

std::string ContentOf(const fs::path& path) {
  std::string content(fs::file_size(path), '\0');
  std::ifstream(path, std::ios::binary).read(content.data(), static_cast<std::streamsize>(content.size()));
  return content;
}

std::string WriteFile(const std::string& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

/// The tree as text: a folder a line, indented, with the number of its item type.
std::string TreeBelow(const World& world, FolderIndex folder, size_t depth) {
  std::string text = std::string(depth, ' ') + world.At(folder).name + " " +
                     std::to_string(static_cast<int>(world.At(folder).itemType)) + "\n";
  for (const FolderIndex child : world.ChildrenOf(folder)) text += TreeBelow(world, child, depth + 1);
  return text;
}
std::string TreeOf(const World& world, uint32_t store = 0) {
  return TreeBelow(world, world.Stores().at(store).root, 0);
}

std::string DefaultFoldersOf(const World& world) {
  std::ostringstream text;
  for (const auto& [number, folder] : world.defaultFolders)
    text << number << " " << world.PathOf(folder) << "\n";
  return text.str();
}

/// What the import says, without the name that it must start with, on one line; "" when it has no objection.
std::string RefusalOf(const std::string& path, const std::function<void()>& import) {
  try {
    import();
    return {};
  } catch (const ProfileError& error) {
    const std::string message = error.what();
    EXPECT_TRUE(message.starts_with(path + ": ")) << message;
    EXPECT_EQ(message.find_first_of("\r\n"), std::string::npos) << message;
    return message.substr(std::min(message.size(), path.size() + 2));
  }
}
std::string Refusal(const std::string& path) {
  return RefusalOf(path, [&] { ImportDataFile(path); });
}

// --- real files

TEST(ImportRealFile, IsWhatTheSampleProfileHoldsOfIt) {
  REQUIRE_SAMPLE(MailboxSample);
  const ScratchFolder directory;
  const std::string moved = directory / MailboxSample.filename().string();
  fs::copy_file(MailboxSample, moved);
  const World world = ImportDataFile(moved).world;
  const World sample = ReadProfile(Project / "workbench/profiles/default.json").world;
  ASSERT_EQ(world.Stores().size(), 1u) << "the account has no public folders";
  EXPECT_EQ(world.Stores()[0].kind, StoreKind::Mailbox);
  EXPECT_EQ(world.Stores()[0].storeID, sample.Stores()[0].storeID);
  EXPECT_EQ(TreeOf(world), TreeOf(sample));
  EXPECT_EQ(DefaultFoldersOf(world), DefaultFoldersOf(sample));
  for (FolderIndex folder = 0; folder < world.FolderNodes().size(); ++folder) {
    const std::string& id = world.At(folder).entryID;
    EXPECT_EQ(world.PathOf(folder), sample.PathOf(sample.Find(id, world.Stores()[0].storeID))) << id;
  }
}

TEST(ImportRealFile, PersonalFoldersFileHasItsDisplayName) {
  REQUIRE_SAMPLE(PersonalSample);
  const World world = ImportDataFile(PersonalSample.string()).world;
  ASSERT_EQ(world.Stores().size(), 1u);
  EXPECT_EQ(world.Stores()[0].kind, StoreKind::PersonalFolders);
  EXPECT_EQ(TreeOf(world),
            "Personal folders 0\n"
            " Deleted Items 0\n"
            " lokay-m 0\n"
            "  MLOKAY (Non-Privileged) 0\n"
            "   TW-Commercial Group 0\n"
            "   Systems 0\n"
            "   Sent Items 0\n"
            "   Personal 0\n");
  EXPECT_EQ(DefaultFoldersOf(world), "3 \\\\Personal folders\\Deleted Items\n")
      << "a folder deeper down that is called Sent Items is not the default one";
  EXPECT_EQ(world.At(world.Stores()[0].root).entryID, "00000000B688AEC0B1E86043A526ADD35FD0674622800000");
}

TEST(ImportRealFile, SearchFoldersAreNoFolders) {
  REQUIRE_SAMPLE(MailboxSample);
  for (const DataFileFolder& folder : ReadDataFile(MailboxSample.string()).folders)
    EXPECT_NE(folder.name, "To-Do Search") << "lies in Finder, above all that is shown";
}

TEST(ImportRealFile, SaysWhyItCannotBeRead) {
  REQUIRE_SAMPLE(PersonalSample);
  const ScratchFolder directory;
  const std::string whole = ContentOf(PersonalSample);
  const auto refusalOf = [&](const std::string& content) {
    return Refusal(WriteFile(directory / "changed.pst", content));
  };
  const auto damagedAt = [&](size_t position) {
    std::string content = whole;
    content.at(position) = static_cast<char>(~content.at(position));
    return refusalOf(content);
  };
  constexpr size_t passwordChecksum = 0x5640;  // of the message store, permuted like all content of this file
  EXPECT_EQ(damagedAt(passwordChecksum), "is protected by a password");
  // First bytes of the blocks with the properties of "Deleted Items" and "lokay-m", and with the tables of
  // the folders below the top, below "lokay-m" and below the folder in it.
  for (const size_t block : {0x4E40u, 0x5740u, 0x4FC0u, 0x57C0u, 0x73C0u})
    EXPECT_TRUE(damagedAt(block).starts_with("is damaged: lib")) << block;
  std::string encrypted = whole.substr(0, 0x10000);
  encrypted[513] = 16;
  encrypted.replace(184, 8, std::string("\0\0\1\0\0\0\0\0", 8));  // the end of the file
  EXPECT_EQ(refusalOf(encrypted), "is encrypted with method 16, which cannot be read");
}

// --- files that are none, or not whole

TEST(ImportBadFile, SaysWhatIsWrong) {
  const ScratchFolder directory;
  EXPECT_EQ(Refusal(directory / "none.pst"), "there is no such file");
  EXPECT_EQ(Refusal(directory / "."), "is a directory, not an Outlook data file");
  EXPECT_EQ(Refusal("/dev/null"), "is not a regular file");
  EXPECT_EQ(Refusal(WriteFile(directory / "empty.ost", "")), "is empty");
  EXPECT_EQ(Refusal(WriteFile(directory / "text.pst", "Dear Sir or Madam,\n")),
            "is not an Outlook data file (.pst, .ost)");
  EXPECT_EQ(Refusal(WriteFile(directory / "short.pst", "!BDN")),
            "is cut short: only 4 bytes of it are there");
  EXPECT_TRUE(Refusal(WriteFile(directory / "zeros.pst", "!BDN" + std::string(4096, '\0')))
                  .starts_with("is damaged: "));

  const std::string twoLines = WriteFile(directory / "two\nlines.pst", "text");
  try {
    ImportDataFile(twoLines);
    ADD_FAILURE();
  } catch (const ProfileError& error) {
    EXPECT_EQ(std::string_view(error.what()).find('\n'), std::string_view::npos);
  }
}

TEST(ImportBadFile, CutShort) {
  REQUIRE_SAMPLE(MailboxSample);
  const ScratchFolder directory;
  const std::string path = directory / "cut.ost";
  fs::copy_file(MailboxSample, path);
  for (const uintmax_t size : {16818175u, 16000000u, 4096000u, 65537u, 4096u, 516u, 515u, 100u, 12u, 5u}) {
    fs::resize_file(path, size);
    EXPECT_EQ(Refusal(path), "is cut short: only " + std::to_string(size) + " bytes of it are there");
  }
}

TEST(ImportBadFile, AnyDamageGivesAnErrorOrAProfileThatCanBeKept) {
  REQUIRE_SAMPLE(PersonalSample);
  constexpr uint32_t seed = 20240607;
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const ScratchFolder directory;
  const std::string whole = ContentOf(PersonalSample);
  // The header; index pages, and the blocks of store and folders.
  const auto anyPosition = [&] { return random() % 20 == 0 ? random() % 564 : 0x4C00 + random() % 0x3100; };
  const std::string path = WriteFile(directory / "damaged.pst", whole);
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  const auto put = [&](size_t position, char value) {
    file.seekp(static_cast<std::streamoff>(position));
    file.put(value);
  };

  size_t refused = 0;
  size_t changed = 0;
  const std::string undamaged = TreeOf(ImportDataFile(path).world);
  for (int round = 0; round < 300; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    std::vector<size_t> damaged;
    for (size_t count = size_t{1} << random() % 5; count > 0; --count) {
      damaged.push_back(anyPosition());
      put(damaged.back(), static_cast<char>(random()));
    }
    ASSERT_TRUE(file.flush());
    const std::string refusal = RefusalOf(path, [&] {
      const Profile profile = ImportDataFile(path);
      const std::string tree = TreeOf(profile.world);
      changed += tree != undamaged;
      const std::string kept = directory / "kept.json";
      WriteProfile(kept, profile);
      EXPECT_EQ(TreeOf(ReadProfile(kept).world), tree);
    });
    refused += !refusal.empty();
    for (const size_t position : damaged) put(position, whole[position]);
  }
  ASSERT_TRUE(file.flush());
  EXPECT_EQ(TreeOf(ImportDataFile(path).world), undamaged);
  EXPECT_GT(refused, 20u) << "the damage did not reach what the import reads";
  EXPECT_LT(refused, 290u) << "the damage was always too coarse";
  EXPECT_GT(changed, 0u) << "the damage reached no name or class";
}

// --- hierarchies for which there is no sample

constexpr uint32_t RootNode = 0x122;

Bytes EntryIdOf(const DataFile& file, uint8_t low, uint8_t high) {
  Bytes id(4);
  std::ranges::copy(file.recordKey, std::back_inserter(id));
  std::ranges::copy(Bytes{low, high, 0, 0}, std::back_inserter(id));
  return id;
}

DataFile OfflineFile() {
  DataFile file;
  file.offline = true;
  file.recordKey = Bytes(16, 0xAB);
  file.passwordChecksum = 0xFFFFFFFF;  // as in each .ost
  file.folders = {{.node = RootNode},
                  {.node = 0x2002, .parent = RootNode, .name = "Root - Public"},
                  {.node = 0x2022, .parent = 0x2002, .name = "IPM_SUBTREE"},
                  {.node = 0x20A2, .parent = RootNode, .name = "Root - Mailbox"},
                  {.node = 0x2142, .parent = 0x20A2, .name = "IPM_SUBTREE"}};
  return file;
}

DataFile PersonalFile() {
  DataFile file;
  file.recordKey = Bytes(16, 0xCD);
  file.displayName = "Archive 2003";
  file.folders = {{.node = RootNode}, {.node = 0x8022, .parent = RootNode, .name = "Dossiers personnels"}};
  file.links[SubtreeLink] = EntryIdOf(file, 0x22, 0x80);
  return file;
}

void Add(DataFile& file, uint32_t node, uint32_t parent, const char* name, const char* containerClass = "") {
  file.folders.push_back({.node = node, .parent = parent, .name = name, .containerClass = containerClass});
}

TEST(ImportHierarchy, PublicFoldersAreAStoreOfTheirOwn) {
  DataFile file = OfflineFile();
  file.owner = "Ann Example";
  Add(file, 0x8022, 0x2022, "Favorites");
  Add(file, 0x8042, 0x2022, "All Public Folders");
  Add(file, 0x8062, 0x8042, "Contacts", "IPF.Contact");
  Add(file, 0x8082, 0x2142, "Inbox", "IPF.Note");
  const World world = ProfileOf(file, "a/mail.ost").world;
  ASSERT_EQ(world.Stores().size(), 2u);
  EXPECT_EQ(world.Stores()[1].kind, StoreKind::PublicFolders);
  EXPECT_EQ(TreeOf(world, 0), "Mailbox - Ann Example 0\n Inbox 0\n");
  EXPECT_EQ(TreeOf(world, 1), "Public Folders 0\n Favorites 0\n All Public Folders 0\n  Contacts 2\n");
  EXPECT_EQ(DefaultFoldersOf(world), "6 \\\\Mailbox - Ann Example\\Inbox\n");

  DataFile other = OfflineFile();
  other.recordKey = Bytes(16, 0xAC);
  const std::set<std::string> storeIds{world.Stores()[0].storeID, world.Stores()[1].storeID,
                                       ProfileOf(file, "a/mail2.ost").world.Stores()[0].storeID,
                                       ProfileOf(other, "b/mail.ost").world.Stores()[0].storeID};
  EXPECT_EQ(storeIds.size(), 4u) << "another store, another id";
}

TEST(ImportHierarchy, DefaultFoldersFollowLinksRatherThanNames) {
  DataFile file = PersonalFile();
  Add(file, 0x8042, 0x8022, "Calendar", "IPF.Appointment");
  Add(file, 0x8062, 0x8042, "Termine", "IPF.Appointment");
  Add(file, 0x8082, 0x8022, "Contacts", "IPF.Task");
  Add(file, 0x80A2, 0x8022, "Boîte de réception");
  Add(file, 0x80C2, 0x8022, "Geheim", "IPF.StickyNote");
  Add(file, 0x80E2, RootNode, "Hidden");
  file.folders[0].links[AppointmentLink] = EntryIdOf(file, 0x62, 0x80);
  file.folders[5].links[NoteLink] = EntryIdOf(file, 0xC2, 0x80);
  file.links[WastebasketLink] = EntryIdOf(file, 0xE2, 0x80);  // not below the top: Outlook does not show it
  file.links[OutboxLink] = {1, 2, 3};
  file.links[SentMailLink] = EntryIdOf(OfflineFile(), 0xA2, 0x80);  // a folder of another file
  EXPECT_EQ(DefaultFoldersOf(ProfileOf(file, "x.pst").world),
            "6 \\\\Archive 2003\\Boîte de réception\n"
            "9 \\\\Archive 2003\\Calendar\\Termine\n"
            "12 \\\\Archive 2003\\Geheim\n");
}

TEST(ImportHierarchy, ServerEntryIdsLeadToFoldersByTheirCount) {
  DataFile file = OfflineFile();
  Bytes link(46);
  link[43] = 0x0D;
  link[42] = 0x01;
  file.folders.push_back(
      {.node = 0x8022, .parent = 0x2142, .name = "Inbox", .links = {{AppointmentLink, link}}});
  file.folders.push_back(
      {.node = 0x8042, .parent = 0x2142, .name = "Local", .serverId = {0, 0, 0, 0, 0, 0, 1, 0x0D}});
  file.folders.push_back(
      {.node = 0x8062, .parent = 0x2142, .name = "Agenda", .serverId = {1, 0, 0, 0, 0, 0, 1, 0x0D}});
  EXPECT_EQ(DefaultFoldersOf(ProfileOf(file, "x.ost").world),
            "6 \\\\Mailbox - x\\Inbox\n9 \\\\Mailbox - x\\Agenda\n");
}

TEST(ImportHierarchy, DepthIsNoLimit) {
  DataFile file = PersonalFile();
  constexpr uint32_t depth = 20000;
  for (uint32_t i = 1; i <= depth; ++i) {
    file.folders.push_back({.node = 0x8022 + 0x20 * i, .parent = 0x8022 + 0x20 * (i - 1), .name = "Deeper"});
  }
  const World world = ProfileOf(file, "deep.pst").world;
  EXPECT_EQ(world.FolderNodes().size(), depth + 1);
  FolderIndex deepest = world.Stores()[0].root;
  size_t levels = 0;
  for (; !world.At(deepest).children.empty(); ++levels) deepest = world.At(deepest).children.front();
  EXPECT_EQ(levels, depth);
}

TEST(ImportHierarchy, NameMustBeUtf8) {
  EXPECT_NO_THROW(ProfileOf(PersonalFile(), "caf\xC3\xA9.pst"));
  EXPECT_THROW(ProfileOf(PersonalFile(), "caf\xE9.pst"), ProfileError);
}

TEST(ImportHierarchy, UnusableContentIsRefused) {
  const auto refusal = [](const DataFile& file) {
    return RefusalOf("x.pst", [&] { ProfileOf(file, "x.pst"); });
  };
  EXPECT_EQ(refusal(PersonalFile()), "");
  EXPECT_EQ(refusal(OfflineFile()), "");
  EXPECT_EQ(refusal(DataFile{}), "is damaged: its store has no record key");
  DataFile file = PersonalFile();
  file.passwordChecksum = 1;
  EXPECT_EQ(refusal(file), "is protected by a password");
  file = PersonalFile();
  file.links.clear();
  EXPECT_EQ(refusal(file), "has no mailbox: the folder at the top of one is missing");
  file.folders.clear();
  EXPECT_EQ(refusal(file), "is damaged: it has no folders");
  file = PersonalFile();
  file.folders.push_back({.node = 0x8042, .parent = 0x8022});
  file.folders.push_back({.node = 0x8042, .parent = 0x8022});
  EXPECT_EQ(refusal(file), "is damaged: two folders have the same entry id");
}

TEST(ImportHierarchy, ItemTypeIsThatOfTheContainerClassOrOneDerivedFromIt) {
  EXPECT_EQ(ItemTypeOf("IPF.Post"), ItemType::Post);
  EXPECT_EQ(ItemTypeOf("IPF.StickyNote"), ItemType::Note);
  for (const char* contact : {"IPF.Contact", "ipf.contact.GalContacts", "IPF.Contact."})
    EXPECT_EQ(ItemTypeOf(contact), ItemType::Contact) << contact;
  for (const char* neither :
       {"", "IPF", "IPF.Contac", "IPF.ContactIPM.Microsoft.OSC.Contact", "XIPF.Contact", "\xFF\xFE.Contact"})
    EXPECT_EQ(ItemTypeOf(neither), ItemType::Mail) << neither;
}

}  // namespace
}  // namespace vexa::workbench
