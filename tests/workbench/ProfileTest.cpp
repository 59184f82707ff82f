#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tests/ScratchFolder.h"
#include "workbench/AtomicFile.h"
#include "workbench/Profile.h"
#include "workbench/WindowsFiles.h"

namespace vexa::workbench {
namespace {

namespace fs = std::filesystem;

const std::string Head = R"({"format":"vexa-profile","version":1,
)";

/// A profile with one store: its folders begin on line 3.
std::string WithFolders(const std::string& folders) {
  return Head + R"("stores":[{"storeID":"S","kind":"public","folders":[
)" + folders +
         "]}]}";
}

TEST(Profile, IsRefusedWithLineAndReason) {
  struct Row {
    std::string text;
    int line;
    const char* reason;
  };
  const std::string generated = Head + R"("stores":[{"storeID":"S","kind":"public","generated":)";
  const std::vector<Row> rows{
      {"", 1, "not JSON"},
      {"{\"format\":\n\"vexa-profile\",,}", 2, "not JSON"},
      {"[1,2]", 1, "must be an object"},
      {R"({"version":1})", 1, "this is no profile"},
      {R"({"format":"vexa-profile","version":2,"stores":[]})", 1, "must be 1"},
      {Head + "\"stores\":[],\n\"settings\":{\"AllUsersMode\":\n3}}", 4,
       "\"AllUsersMode\" must be true or false"},
      {Head + R"("stores":[],"settings":{"MaxLogSize":32768}})", 2, "from -32768 to 32767"},
      {Head + R"("stores":[],"settings":{"AllUserMode":true}})", 2, "did you mean \"AllUsersMode\"?"},
      {Head + "\"stores\":[],\"settings\":{\"LogLevel\":1,\n\"LogLevel\":1}}", 3, "given twice"},
      {Head + "\"stores\":[],\"settings\":{\"ContactEntryIDs\":[\"a\",\n7]}}", 3, "must be a text"},
      {Head + R"("stores":[],"language":70000})", 2, "Windows language number"},
      {Head + R"("stores":{}})", 2, "a list in square brackets"},
      {Head + R"("stores":[{"kind":"public","folders":[]}]})", 2, "needs a \"storeID\""},
      {Head + R"("stores":[{"storeID":"S","kind":"secret","folders":[]}]})", 2, "\"mailbox\", \"public\" or"},
      {WithFolders(""), 2, "needs a root folder"},
      {WithFolders("{\"name\":\"A\",\"entryID\":\"1\"},\n{\"name\":\"B\",\"entryID\":\"2\"}"), 4,
       "\"A\" on line 3"},
      {WithFolders("{\"name\":\"A\",\"entryID\":\"a\"},\n"
                   "{\"name\":\"B\",\"entryID\":\"A\",\"parent\":\"a\"}"),
       4, "used twice"},
      {WithFolders(R"({"name":"A","entryID":"1"},{"name":"B","entryID":"1","parent":"1"})"), 3,
       "is that of folder \"A\" on line 3"},
      {WithFolders(R"({"name":"A","entryID":"1"},{"name":"B","entryID":"2","parent":"9"})"), 3,
       "\"9\" is none"},
      {WithFolders(R"({"name":"A","entryID":"1"},{"name":"B","entryID":"2","parent":"3"},)"
                   R"({"name":"C","entryID":"3","parent":"2"})"),
       3, "\"B\" lies below itself"},
      {WithFolders(R"({"name":"A"})"), 3, "needs a \"entryID\""},
      {generated + R"({"name":"N","count":0,"breadth":4}}]})", 2, ""},
      {generated + R"({"count":1,"breadth":4}}]})", 2, ""},
      {generated + R"({"name":"N","count":1,"breadth":0}}]})", 2, ""},
      {generated + R"({"name":"N","count":1,"breadth":1},"folders":[{"name":"A","entryID":"1"}]}]})", 2, ""},
      {std::string(100000, '['), 1, "nested too deep"},
  };
  for (const auto& [text, line, reason] : rows) {
    try {
      ParseProfile(text, "p");
      ADD_FAILURE() << "accepted: " << text.substr(0, 200);
    } catch (const ProfileError& error) {
      const std::string message = error.what();
      EXPECT_TRUE(message.starts_with("p:" + std::to_string(line) + ": ")) << message;
      EXPECT_NE(message.find(reason), std::string::npos) << message;
      EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    }
  }
}

TEST(Profile, HoldsDeepAndWideWorlds) {
  std::string folders = "{\"name\":\"F\",\"entryID\":\"0\"}";
  constexpr int depth = 300;
  constexpr int count = 100000;
  for (int i = 1; i <= count; ++i) {
    folders += ",\n{\"name\":\"F\",\"entryID\":\"" + std::to_string(i) + "\",\"parent\":\"" +
               std::to_string(i <= depth ? i - 1 : 0) + "\"}";
  }
  const World world = ParseProfile(WithFolders(folders), "p").world;
  EXPECT_EQ(world.PathOf(world.Find("300", "s")).size(), 2U + (depth + 1) * 2 - 1);
  EXPECT_EQ(world.ChildrenOf(0).size(), 1U + count - depth);
}

TEST(Profile, ComesBackAsItWasWritten) {
  const ScratchFolder scratch;
  Profile profile;
  profile.language = 3084;
  profile.addin.aboutInfo = "\"quoted\" \\ \u20AC";
  profile.addin.scanning = true;
  profile.settings.TrackedCategories = "a, b";
  profile.settings.MaxLogSize = -1;
  profile.settings.ContactEntryIDs = {"", "x"};
  profile.settings.FolderSetFlags = {INT32_MIN, 3};
  profile.machine.outlookUser = "Ren\u00e9e";
  profile.machine.supportAddress = "help@example.com";
  profile.machine.canWriteMachine = false;
  profile.machine.fileVersions["C:\\a.dll"] = "1.2";
  profile.machine.registry["HKEY_CURRENT_USER\\S"] = {{"Text", "x"}, {"Number", -3}};
  World& world = profile.world;
  const uint32_t store = world.AddStore("AB", StoreKind::Mailbox);
  const FolderIndex root = world.AddFolder(store, NoFolder, "Root/\\%", "1", ItemType::Mail);
  world.defaultFolders[6] = world.AddFolder(store, root, "Inbox", "2", static_cast<ItemType>(99));
  world.At(world.AddFolder(store, root, "Secret", "3", ItemType::Note)).unreadable = true;
  world.Delete(world.AddFolder(store, root, "Gone", "4", ItemType::Mail));
  WriteProfile(scratch / "p.json", profile);
  WriteProfile(scratch / "again.json", ReadProfile(scratch / "p.json"));
  EXPECT_EQ(ReadWholeFile(scratch / "p.json"), ReadWholeFile(scratch / "again.json"));
  const Profile read = ReadProfile(scratch / "p.json");
  EXPECT_EQ(read.settings, profile.settings);
  EXPECT_EQ(read.addin.aboutInfo, profile.addin.aboutInfo);
  EXPECT_EQ(read.machine.outlookUser, profile.machine.outlookUser);
  EXPECT_EQ(read.machine.supportAddress, profile.machine.supportAddress);
  EXPECT_FALSE(read.machine.canWriteMachine);
  EXPECT_EQ(read.machine.fileVersions.at("c:\\A.DLL"), "1.2");
  EXPECT_EQ(read.machine.registry, profile.machine.registry);
  EXPECT_EQ(read.world.PathOf(read.world.defaultFolders.at(6)), "\\\\Root%2F%5C%25\\Inbox");
  EXPECT_EQ(read.world.FindPath("Root%2F%5C%25/Secret"), read.world.Find("3", "ab"));
  EXPECT_EQ(read.world.Find("4", "AB"), NoFolder);
}

TEST(AtomicFile, FollowsLinksAndLeavesTheOldFileWholeAndWhatOthersAreWriting) {
  const ScratchFolder scratch;
  const std::string ofAnother = "f.saving-" + std::to_string(::getppid());
  for (const std::string& name : {std::string("f"), ofAnother}) std::ofstream(scratch / name) << "old";
  fs::create_symlink("f", scratch / "link");
  WriteFileAtomically(scratch / "link", [](const TextSink& put) { put("new"); });
  EXPECT_THROW(WriteFileAtomically(scratch / "f",
                                   [](const TextSink& put) {
                                     put("half");
                                     throw std::runtime_error("midway");
                                   }),
               std::runtime_error);
  EXPECT_EQ(ReadWholeFile(scratch / "f"), "new");
  EXPECT_TRUE(fs::is_symlink(scratch / "link"));
  EXPECT_EQ(scratch.Files(), (std::vector<std::string>{"f", ofAnother, "link"}));
}

TEST(WindowsFiles, KeepDrivesBesideTheProfile) {
  const WindowsFiles files("/p/x.json");
  EXPECT_EQ(files.PlaceOf("C:\\Program Files\\a.log"), "/p/x.json.files/C/Program Files/a.log");
  EXPECT_EQ(files.PlaceOf("\\\\server\\share/b"), "/p/x.json.files/server/share/b");
  EXPECT_EQ(files.PlaceOf("C:\\..\\..\\etc\\passwd"), "") << "nothing leads out";
  EXPECT_EQ(files.PlaceOf("/tmp/real"), "/tmp/real");
  EXPECT_EQ(WindowsFiles("").PlaceOf("C:\\a"), "");
}

TEST(WindowsFiles, ExistAsFilesUnderNamesInAnyCase) {
  const ScratchFolder scratch;
  const WindowsFiles files(scratch / "p.json");
  std::string deep = "C:";
  for (int i = 0; i < 10; ++i) deep += "\\" + std::string(30, 'd');
  for (const std::string& path : {std::string("C:\\Mes R\u00e9sultats\\Log.mdb"), std::string("D:\\x"),
                                  deep + "\\x", std::string("\\\\server\\share\\x")}) {
    EXPECT_FALSE(files.Exists(path)) << path;
    files.Write(path, "text");
    EXPECT_TRUE(files.Exists(path)) << path;
  }
  EXPECT_TRUE(files.Exists("c:/mes r\u00c9SULTATS\\LOG.MDB"));
  for (const char* none :
       {"", "C:\\Mes R\u00e9sultats", "C:\\Mes R\u00e9sultats\\", "C:\\", "C:", "C:\\Mes R\u00e9sultats\\*",
        "C:\\Mes R\u00e9sultats\\Log.md?", "D:\\x\\", "D:\\x\\y", "D:\\..\\D\\x"}) {
    EXPECT_FALSE(files.Exists(none)) << none;
    EXPECT_THROW(files.Read(none), Error) << none;
    EXPECT_THROW(files.Remove(none), Error) << none;
  }
  files.Write("d:\\X", "other");
  EXPECT_EQ(files.Read("D:\\x"), "other") << "the same file, not a second one";
  EXPECT_EQ(files.List().size(), 4U);
}

}  // namespace
}  // namespace vexa::workbench
