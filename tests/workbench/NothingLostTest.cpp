// What is stored survives whatever ends or hinders the one who stores it: processes killed in the midst of
// Apply, disks without room, two writers at once. --gtest_repeat does it more often.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <random>
#include <thread>

#include "tests/ScratchFolder.h"
#include "tests/screens/Scene.h"
#include "workbench/AtomicFile.h"
#include "workbench/FileDescriptor.h"

namespace vexa::workbench {
namespace {

namespace fs = std::filesystem;

/// A folder with a profile of some size and an error log beside it.
class Place {
 public:
  Place() {
    Profile profile;
    const uint32_t store = profile.world.AddStore("S", StoreKind::PublicFolders);
    const FolderIndex root = profile.world.AddFolder(store, NoFolder, "P", "R", ItemType::Mail);
    for (int i = 0; i < 300; ++i)
      profile.world.AddFolder(store, root, "Folder " + std::to_string(i), "F" + std::to_string(i),
                              ItemType::Mail);
    profile.settings.ErrorLogPath = "C:\\VEXAERRORS.MDB";
    Number(profile.settings, 0);
    WriteProfile(File(), profile);
  }

  std::string File() const { return folder_ / "p.json"; }
  std::string Log() const { return WindowsFiles(File()).PlaceOf("C:\\VEXAERRORS.MDB"); }
  size_t FilesBeside() const { return folder_.Files().size() - 1; }

  /// Settings that say which ones they are, at their start and at their end.
  static void Number(SettingsData& settings, int32_t number) {
    settings.BackgroundWorkTime = number;
    settings.TrackedCategories = std::string(static_cast<size_t>(number % 5000), 'a');
    settings.QuickscanHours = number;
  }
  /// The number of the settings that the profile holds; -1 when they are not of one piece.
  int32_t Stored() const {
    const Profile profile = ReadProfile(File());
    SettingsData expected = profile.settings;
    Number(expected, profile.settings.BackgroundWorkTime);
    const bool whole = expected == profile.settings && profile.world.FolderCount() == 301;
    return whole ? profile.settings.BackgroundWorkTime : -1;
  }

 private:
  ScratchFolder folder_;
};

/// Outlook with the page open, and an add-in that logs.
class Session {
 public:
  explicit Session(const std::string& file) : scene_(1033, file, ReadProfile(file)) { scene_.Open(); }
  /// Applies settings of this number, and logs a record.
  void Apply(int32_t number) {
    Place::Number(scene_.Working(), number);
    scene_.Page().SetDirty();
    scene_.Page().PropertyPage_Apply();
    CachedError(Error(number, std::string(20000, 'e'), "test")).Log(scene_.stage.errorLog);
  }

 private:
  Scene scene_;
};

void Apply(const std::string& file, int32_t number) { Session(file).Apply(number); }

/// Runs `body` in a process of its own.
template <typename Body>
pid_t InChild(Body body) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  try {
    ::_exit(body());
  } catch (...) {
    ::_exit(99);
  }
}

int StatusOf(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

/// The records of the log; every line that was begun behind a whole one must be a record, or the torn end of
/// a writer that was killed.
size_t RecordsIn(const std::string& log, size_t& torn) {
  std::ifstream file(log);
  size_t records = 0;
  torn = 0;
  for (std::string line; std::getline(file, line);) {
    const bool whole = nlohmann::json::accept(line);
    torn += whole ? 0U : 1U;
    records += whole && line.find("\"number\"") != std::string::npos ? 1U : 0U;
  }
  return records;
}

TEST(NothingLost, WhenApplyIsKilledAtAnyMoment) {
  static std::mt19937 random(1);  // goes on when the test is repeated
  const Place place;
  const auto start = std::chrono::steady_clock::now();
  {
    Session session(place.File());
    for (int32_t number = 1; number <= 5; ++number) session.Apply(number);
  }
  const auto usual =
      std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start) / 5;
  int32_t done = 5;
  int midst = 0;
  int replaced = 0;
  for (int kill = 0; kill < 100; ++kill) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const pid_t writer = InChild([&] {
      Session session(place.File());
      for (int32_t number = done + 1;; ++number) {
        if (::write(pipe[1], "b", 1) != 1) return 1;
        session.Apply(number);
        if (::write(pipe[1], "d", 1) != 1) return 1;
      }
    });
    ::close(pipe[1]);
    char said = 0;
    ASSERT_EQ(::read(pipe[0], &said, 1), 1);
    std::this_thread::sleep_for(
        std::chrono::microseconds(random() % static_cast<unsigned long>(2 * usual.count() + 1)));
    ::kill(writer, SIGKILL);
    ASSERT_EQ(StatusOf(writer), -SIGKILL);
    int32_t begun = done + 1;
    int32_t ended = done;
    for (char more = 0; ::read(pipe[0], &more, 1) == 1;) {
      if (more == 'd') ++ended;
      if (more == 'b') ++begun;
    }
    ::close(pipe[0]);
    const int32_t stored = place.Stored();
    ASSERT_TRUE(stored == ended || stored == begun)
        << stored << " is neither the old " << ended << " nor the new " << begun;
    midst += ended < begun ? 1 : 0;
    replaced += stored > ended ? 1 : 0;
    done = stored;
  }
  EXPECT_GE(midst, 50) << "the test must hit what it aims at";
  size_t torn = 0;
  const size_t before = RecordsIn(place.Log(), torn);
  EXPECT_GE(before, 5U);
  Apply(place.File(), done + 1);
  EXPECT_EQ(place.Stored(), done + 1);
  EXPECT_EQ(RecordsIn(place.Log(), torn), before + 1) << "the log takes records as before";
  EXPECT_LE(torn, 100U);
  EXPECT_EQ(place.FilesBeside(), 0U) << "what the killed ones left is gone";
  std::cout << midst << " of 100 killed in the midst of Apply, " << replaced
            << " with the new settings in place, " << torn << " torn lines in the log\n";
}

TEST(NothingLost, WhenARecordIsTorn) {
  const Place place;
  Session session(place.File());
  session.Apply(1);
  const auto whole = fs::file_size(place.Log());
  session.Apply(2);
  const auto size = fs::file_size(place.Log());
  for (const uintmax_t left : {whole + 1, (whole + size) / 2, size - 2, size - 1}) {
    fs::resize_file(place.Log(), left);
    size_t torn = 0;
    const size_t before = RecordsIn(place.Log(), torn);
    session.Apply(3);
    EXPECT_EQ(RecordsIn(place.Log(), torn), before + 1) << left;
    EXPECT_LE(torn, 4U);
  }
}

TEST(NothingLost, WhenTheDiskIsFull) {
  const Place place;
  Apply(place.File(), 1);
  Apply(place.File(), 2);
  const auto size = fs::file_size(place.File());
  for (const auto limit : {uintmax_t{0}, uintmax_t{1}, uintmax_t{4096}, size / 2, size - 1}) {
    const pid_t child = InChild([&] {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit files{limit, limit};
      if (::setrlimit(RLIMIT_FSIZE, &files) != 0) return 2;
      EXPECT_THROW(WriteProfile(place.File(), ReadProfile(place.File())), ProfileError);
      Apply(place.File(), 3);  // tells of its failure, and does not throw
      return testing::Test::HasFailure() ? 1 : 0;
    });
    EXPECT_EQ(StatusOf(child), 0) << limit;
    EXPECT_EQ(place.Stored(), 2) << "the old profile, with room for " << limit;
    EXPECT_EQ(place.FilesBeside(), 0U);
  }
  // A file system with hardly any room, where this process may mount one.
  const std::string small = place.File() + ".small";
  fs::create_directories(small);
  constexpr uintmax_t page = 4096;
  const std::string room = "size=" + std::to_string((size + page - 1) / page * page * 3 / 2);
  if (::mount("tmpfs", small.c_str(), "tmpfs", 0, room.c_str()) != 0) {
    std::cout << "no small file system can be mounted here: only file sizes were limited\n";
    return;
  }
  const std::string file = small + "/p.json";
  fs::copy_file(place.File(), file);  // there is no room for a second one
  const std::string old = ReadWholeFile(file);
  EXPECT_EQ(old.size(), size);
  EXPECT_THROW(WriteProfile(file, ReadProfile(file)), ProfileError);
  EXPECT_EQ(ReadWholeFile(file), old);
  Apply(file, 3);  // and a log that has no room, either
  EXPECT_EQ(ReadWholeFile(file), old);
  EXPECT_EQ(::umount(small.c_str()), 0);
}

TEST(NothingLost, WhenTwoWriteAtOnce) {
  const Place place;
  std::array<pid_t, 2> writers{};
  for (int which = 0; which < 2; ++which) {
    writers[static_cast<size_t>(which)] = InChild([&] {
      Session session(place.File());
      for (int32_t i = 1; i <= 50; ++i) session.Apply(2 * i + which);
      return 0;
    });
  }
  for (int look = 0; look < 100; ++look) {
    ASSERT_GE(place.Stored(), 0) << "a profile of one piece, at every look";
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  for (const pid_t writer : writers) EXPECT_EQ(StatusOf(writer), 0);
  EXPECT_GE(place.Stored(), 100) << "one of the last two";
  size_t torn = 0;
  EXPECT_EQ(RecordsIn(place.Log(), torn), 100U);
  EXPECT_EQ(torn, 0U);
  EXPECT_EQ(place.FilesBeside(), 0U);
}

TEST(NothingLost, ARecordWaitsUntilNobodyElseHasTheLog) {
  const Place place;
  WindowsFiles files(place.File());
  const auto log = [&](const std::string& text) { files.Append("C:\\VEXAERRORS.MDB", text); };
  log("first\n");
  const pid_t other = InChild([&] {
    const FileDescriptor file(place.Log(), FileDescriptor::Use::Append);
    file.Lock();
    file.WriteAll("sec");
    std::this_thread::sleep_for(std::chrono::milliseconds(200));  // time enough for one who does not wait
    file.WriteAll("ond\n");
    return 0;
  });
  for (int look = 0; look < 10000 && !ReadWholeFile(place.Log()).ends_with("sec"); ++look) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  log("third\n");
  EXPECT_EQ(StatusOf(other), 0);
  EXPECT_EQ(ReadWholeFile(place.Log()), "first\nsecond\nthird\n");
}

}  // namespace
}  // namespace vexa::workbench
