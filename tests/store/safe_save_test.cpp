#include "store/safe_save.h"

#include <gtest/gtest.h>

#include "tests/support/memory_disk.h"

namespace tessaro {
namespace {

bool WriteNew(WritableFile& file) {
  return file.Write("neuer ") && file.Write("Inhalt");
}

constexpr const char* kNew = "neuer Inhalt";

TEST(ReplaceFile, KeepsTheOldFileAsTheOnlyBackup) {
  for (const bool has_links : {true, false}) {
    MemoryDisk disk;
    disk.set_has_links(has_links);
    for (const char* text : {"eins", "zwei", "drei"}) {
      EXPECT_TRUE(ReplaceFile(
          disk, "/d/x.mlb", [&](WritableFile& file) { return file.Write(text); }, "/d/x.ml~"));
    }
    EXPECT_EQ(disk.Content("/d/x.mlb"), "drei");
    EXPECT_EQ(disk.Content("/d/x.ml~"), "zwei");
    EXPECT_EQ(disk.AllNames().size(), 2U);
  }
}

TEST(ReplaceFile, ReplacesWhatASymbolicLinkLeadsTo) {
  MemoryDisk disk;
  disk.Put("/far/t.ini", "alt");
  disk.PutSymbolicLink("/near/t.ini", "/far/t.ini");
  EXPECT_TRUE(ReplaceFile(disk, "/near/t.ini", WriteNew));
  EXPECT_EQ(disk.AllNames(), std::vector<std::string>{"/far/t.ini"});
  EXPECT_EQ(disk.Content("/far/t.ini"), kNew);
}

struct Fault {
  MemoryDisk::WriteFault write;
  bool stays;
  bool has_links;
};

class ReplaceFileFault : public ::testing::TestWithParam<Fault> {
 protected:
  // Saves over an old file with an old backup on a disk that fails at operation `n`.
  bool Save(int n) {
    disk_.Put("/d/x.mlb", "alt");
    disk_.Put("/d/x.ml~", "aelter");
    disk_.set_has_links(GetParam().has_links);
    disk_.stay_broken(GetParam().stays);
    disk_.FailAt(n, GetParam().write);
    return ReplaceFile(disk_, "/d/x.mlb", WriteNew, "/d/x.ml~");
  }

  MemoryDisk disk_;
};

TEST_P(ReplaceFileFault, AtAnyOperationLeavesTheOldOrTheNewFileWhole) {
  int n = 1;
  for (bool reached = true; reached; ++n) {
    disk_ = MemoryDisk();
    const bool saved = Save(n);
    reached = disk_.operations() >= n;
    const std::optional<std::string> backup = disk_.Content("/d/x.ml~");
    if (saved) {
      EXPECT_EQ(disk_.Content("/d/x.mlb"), kNew) << n;
      EXPECT_EQ(backup, "alt") << n;
    } else if (!GetParam().stays || GetParam().has_links) {
      const std::optional<std::string> content = disk_.Content("/d/x.mlb");
      EXPECT_TRUE(content == "alt" || (GetParam().stays && content == kNew)) << n;
      EXPECT_TRUE(backup == "aelter" || !GetParam().has_links) << n;
    } else {
      // Gone between two renames: the old file is the backup.
      EXPECT_TRUE(disk_.Content("/d/x.mlb") == "alt" || backup == "alt") << n;
    }
    // What has the name has reached the disk: a power cut now takes nothing of it away.
    const std::optional<std::string> before = disk_.Content("/d/x.mlb");
    disk_.LoseUnflushed();
    EXPECT_EQ(disk_.Content("/d/x.mlb"), before) << n;
    // A single fault is cleaned up after; only when cleaning up itself fails, one file too many may stay.
    if (!GetParam().stays) {
      EXPECT_LE(disk_.AllNames().size(), saved ? 3U : 2U) << n;
    }
  }
  EXPECT_GT(n, 8);
}

using enum MemoryDisk::WriteFault;
INSTANTIATE_TEST_SUITE_P(Faults, ReplaceFileFault,
                         ::testing::Values(Fault{Nothing, false, true}, Fault{Half, false, true},
                                           Fault{HalfUnnoticed, false, true}, Fault{Half, true, true},
                                           Fault{Nothing, false, false}, Fault{Half, true, false}));

TEST(ReplaceFile, OnAFullDiskLeavesTheOldFile) {
  MemoryDisk disk;
  disk.Put("/d/x.mlb", "alt");
  disk.set_capacity(10);
  EXPECT_FALSE(ReplaceFile(disk, "/d/x.mlb", WriteNew, "/d/x.ml~"));
  EXPECT_EQ(disk.AllNames(), std::vector<std::string>{"/d/x.mlb"});
  EXPECT_EQ(disk.Content("/d/x.mlb"), "alt");
}

}  // namespace
}  // namespace tessaro
