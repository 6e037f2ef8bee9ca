// Saving on a real drive that is full: a small one in memory, which the test mounts for itself alone.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include <QTemporaryDir>
#include <fstream>
#include <set>

#include "app/program.h"
#include "app/wnmain.h"
#include "tests/support/clock_and_chance.h"
#include "tests/support/recorded_messages.h"
#include "tests/support/test_cards.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr uint64_t kKiB = 1024;

class FullDrive : public testing::Test {
 protected:
  void SetUp() override {
    drive = ToPath(places.path()) / "drive";
    fs::create_directory(drive);
    // Mounts in a view of the file system of our own: they end with the test, whatever happens to it.
    mounted = unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
              mount("small", drive.c_str(), "tmpfs", 0, "size=2m") == 0;
    if (!mounted) GTEST_SKIP() << "this machine lets a test mount no drive";
  }
  void TearDown() override {
    program.file().Close();
    if (mounted) umount2(drive.c_str(), MNT_DETACH);
  }
  // Empties the drive but for the card file and something that leaves so much room.
  void FillBut(uint64_t free, const std::string& cards) {
    for (const auto& entry : fs::directory_iterator(drive)) fs::remove(entry.path());
    std::ofstream(drive / "x.mlb", std::ios::binary) << cards;
    const uint64_t left = RealDisk().FreeBytes(drive).value_or(0);
    if (left > free) std::ofstream(drive / "filler", std::ios::binary) << std::string(left - free, 'x');
  }
  std::string Cards() const { return ReadFile(RealDisk(), drive / "x.mlb").value_or("(missing)"); }

  QTemporaryDir places;
  fs::path drive;
  bool mounted = false;
  FixedClock clock;
  ScriptedRandom random;
  RecordedMessages messages;
  Program program{{RealDisk(), clock, random, messages}, {ToPath(places.path()) / "tessaro.ini", {}, {}}};
};

// From no room at all to room for everything: somewhere on the way each of the three files is the one that fails.
TEST_F(FullDrive, AlwaysHoldsAWholeCardFileAndTellsWhatIsMissing) {
  CardTable table = MakeCards(std::vector<TestCard>(3000));
  const std::string old_cards = FileText(table);
  table.Poke(table.ColumnIndex(kAnswer), 2, std::string(20000, 'b'));
  const std::string new_cards = FileText(table);
  const QString cards_failed = u"\nFehler Speichern Kartei.\nSiehe Hilfeindex!\n\nx.mlb"_s;
  std::set<QString> told;
  for (uint64_t free = 0; free <= 640 * kKiB; free += 16 * kKiB) {
    SCOPED_TRACE(free);
    FillBut(free, old_cards);
    messages.errors.clear();
    ASSERT_TRUE(program.main_window().OpenFile(drive / "x.mlb"));
    messages.errors.clear();
    program.file().journal().SetFailureObserver({});
    program.file().RowChanged(2);
    program.file().cards().Poke(program.file().columns().answer, 2, std::string(20000, 'b'));
    const bool saved = program.main_window().FileSaveExecute();
    ASSERT_EQ(messages.errors.size(), saved ? 0 : 1);
    EXPECT_EQ(program.file().changed(), !saved);
    const QString message = saved ? u"saved"_s : messages.errors.first();
    EXPECT_TRUE(Cards() == (message == cards_failed ? old_cards : new_cards));
    EXPECT_FALSE(fs::exists(drive / "x.mlb.tmp"));
    told.insert(message);
    program.file().Close();
  }
  EXPECT_EQ(told, (std::set<QString>{cards_failed, u"\nFehler Speichern Lernindex.\nSiehe Hilfeindex!\n\nx.mlb"_s,
                                     u"\nFehler Speichern Linkindex.\nSiehe Hilfeindex!\n\nx.mlb"_s, u"saved"_s}));
}

}  // namespace
}  // namespace tessaro
