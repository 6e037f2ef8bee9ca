// Kills an editing program at random moments, over and over, and looks each time whether the cards are what they were
// after the last command that was done, or after the one that was under way. What that is tells the same script, done
// again from the same cards without being killed.
// Usage: edit_kill_test [NUMBER OF KILLS] [SEED]
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "edit/card_desk.h"
#include "edit/overview_cards.h"
#include "edit/renumbering.h"
#include "store/index/card_ids.h"
#include "tests/crash/killed_program.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr int kCards = 60;

// Opens the file as the program does, taking over what an earlier run left.
bool OpenAfterCrash(CardFile& file, const fs::path& path) {
  const OpenReport report = file.Open(path);
  if (report.result != OpenResult::Opened) Fail("the card file cannot be opened");
  if (report.end_missing || !report.put_aside.empty()) Fail("the card file or its journal is not whole");
  if (report.unsaved && !file.TakeOverUnsaved()) Fail("the indexes cannot be built");
  const CardIds ids(file.cards());
  if (!file.learn_index().Fits(ids) || !file.link_index().Fits(ids)) Fail("an index does not fit");
  return report.unsaved.has_value();
}

std::string StateOf(const CardFile& file) {
  std::string state;
  for (int row = 1; row <= file.cards().RowCount(); ++row) {
    for (int column = 1; column <= file.cards().ColumnCount(); ++column) {
      state.append(file.cards().Peek(column, row)) += '|';
    }
    state += '\n';
  }
  return state;
}

// One user at the desk. The same seed does the same to the same cards.
class Script {
 public:
  Script(CardFile& file, uint32_t seed) : file_(file), desk_(file, made_), random_(seed) { desk_.First(); }

  void Step() {
    desk_.GoTo(kFirstCardRow + Below(file_.CardCount()));
    ++step_;
    switch (Below(9)) {
      case 0:
        return (void)desk_.InsertEmpty();
      case 1:
        return (void)desk_.Cut();
      case 2:
        desk_.Copy();
        return (void)desk_.Paste();
      case 3:
        return (void)desk_.ToggleDeletion();
      case 4:
        return (void)desk_.RemoveMarked();
      case 5:
        return (void)Renumber(file_, desk_.commands(), {1 + step_ % 3}, desk_.row());
      case 6:
        return (void)desk_.Undo();
      case 7:
        if (Below(3) == 0 && file_.Save() != SaveResult::Saved) Fail("cannot save");
        return;
      default:
        return (void)desk_.Store("Frage " + std::to_string(step_) + " <a href=\"000007\">x</a>", "Antwort\nzwei");
    }
  }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<uint32_t>(limit)); }

  CardFile& file_;
  int64_t made_ = 0;
  CardDesk desk_;
  std::mt19937 random_;
  int step_ = 0;
};

[[noreturn]] void EditUntilKilled(const fs::path& path, uint32_t seed, int news) {
  CardFile file;
  OpenAfterCrash(file, path);
  Script script(file, seed);
  for (;;) {
    script.Step();
    if (write(news, "=", 1) != 1) std::_Exit(EXIT_FAILURE);
  }
}

// Kills one run; returns how many commands it had done.
void CopyDeck(const fs::path& from, const fs::path& to) {
  fs::remove_all(to);
  fs::copy(from, to);
}

// True when the state of the killed deck is that after `done` commands, or after one more.
bool IsExplained(const fs::path& before, uint32_t seed, int done, const std::string& found) {
  CardFile file;
  OpenAfterCrash(file, before);
  Script script(file, seed);
  for (int i = 0; i < done; ++i) script.Step();
  if (StateOf(file) == found) return true;
  script.Step();
  return StateOf(file) == found;
}

int Run(int kills, uint32_t seed, const fs::path& folder) {
  const fs::path deck = folder / "deck";
  fs::create_directories(deck);
  std::vector<TestCard> cards(kCards);
  for (int i = 0; i < kCards; ++i) cards[static_cast<size_t>(i)].id = IdText(i + 1);
  if (!MakeCards(cards).SaveToFile(deck / "x.mlb")) Fail("cannot write");
  std::mt19937 random(seed);
  int commands = 0;
  int taken_over = 0;
  int lost = 0;
  for (int i = 0; i < kills; ++i) {
    CopyDeck(deck, folder / "before");
    const auto script = static_cast<uint32_t>(random());
    const int done = KillAtRandom([&](int news) { EditUntilKilled(deck / "x.mlb", script, news); }, 50, 4000, random);
    commands += done;
    CopyDeck(deck, folder / "after");
    CardFile file;
    taken_over += OpenAfterCrash(file, folder / "after" / "x.mlb") ? 1 : 0;
    if (!IsExplained(folder / "before" / "x.mlb", script, done, StateOf(file))) ++lost;
  }
  std::printf("%d kills, %d commands done, %d journals taken over, %d states lost\n", kills, commands, taken_over,
              lost);
  return lost == 0 && taken_over > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace tessaro

int main(int argc, char** argv) {
  return tessaro::RunKills(argc, argv, tessaro::Run);
}
