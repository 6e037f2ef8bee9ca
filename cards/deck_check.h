#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hypertext/media.h"
#include "store/file/card_file.h"

namespace tessaro {

// What can be wrong with the cards of a file that is otherwise whole. Navigation cards and cards with "#" in the ID
// have no history to be looked at.
enum class DeckFault {
  MissingId,     // the ID is no number
  DoubleId,      // a card before this one has the same number
  DeadLink,      // a link to a number that no card has
  FutureAnswer,  // the newest answer is later than now: the next one would wipe the card's statistics
  TimeOrder,     // an answer is later than the one after it
  Letters,       // YesNoRow is not 64 letters "w" and "f"
  Times,         // TimeRow is not 64 numbers from 0 to kMostInHistory, or 63 as after an undo
  Score,         // no number from 0 to kMaxScore
  TimeLearned,   // no number from 0 to kMostInHistory
  EmptySide,     // a side of a card that is learned shows nothing
  MissingMedia,  // a side names a picture, video, sound or text file that is not there
};
inline constexpr int kDeckFaults = 11;
inline constexpr int64_t kMostInHistory = 999'999'999'999'999'999;

struct DeckFinding {
  DeckFault fault = DeckFault::MissingId;
  int row = 0;                 // of the card table
  int64_t number = 0;          // DoubleId: the card's number; DeadLink: the link's target, 0 when it is no card number
  bool can_repair = false;     // see RepairDeck
  bool links_lead_to = false;  // DoubleId: links lead to this number, so it cannot be told which card they mean
  std::string name = {};       // MissingMedia: as the card writes it
};

struct DeckReport {
  std::vector<DeckFinding> findings;          // by row
  std::array<int64_t, kDeckFaults> counts{};  // by fault
  int cards = 0;
  int64_t Count(DeckFault fault) const { return counts[static_cast<size_t>(fault)]; }
};

// Looks through the cards in small steps, so that it can be done beside other work. It reads and never changes.
class DeckCheck {
 public:
  // `now` in seconds since 1970. `file` must live longer. Fields may change between steps; when rows come or go, or
  // another file is opened, the check is to be begun anew.
  DeckCheck(const CardFile& file, int64_t now);
  // Looks for the files that the cards name, too; `disk` must live longer.
  void LookForMedia(const Disk& disk, const MediaFolders& folders) { media_.emplace(disk, folders); }

  // Looks at the next `rows` rows; false when there is nothing more to look at.
  bool Step(int rows);
  // How far it has come, up to Range().
  int64_t Position() const;
  int64_t Range() const { return int64_t{2} * rows_; }
  // The table's rows at the beginning.
  int RowCount() const { return rows_; }
  // Complete when Step has returned false.
  DeckReport TakeReport();

 private:
  void ReadId(int row);
  void LookAt(int row);
  void LookAtSide(int row, std::string_view side);
  void LookAtTags(int row, std::string_view side);
  void AddMissing(int row, const std::string& name);
  void LookAtHistory(int row);
  bool HasCard(int64_t number) const;
  // The row of the first card with this number; the place is made when there is none.
  int& FirstRow(int64_t number);
  void Add(DeckFault fault, int row, int64_t number = 0);
  bool CanRepair(const DeckFinding& finding) const;

  const CardFile& file_;
  int64_t now_;
  int rows_;
  int next_id_;              // rows whose ID is read
  int next_row_;             // rows whose texts are looked at
  std::vector<int> row_of_;  // by number, for those that links can lead to; 0 = no card
  std::unordered_map<int64_t, int> row_of_others_;
  std::vector<bool> linked_;  // by number
  int64_t highest_ = 0;       // number of a card
  DeckReport report_;
  std::optional<MediaFinder> media_;
};

// Cards whose newest answer lies in the future.
int64_t CountFutureAnswers(const CardFile& file, int64_t now);

// Repairs what is safe to repair, for the findings given that can be repaired:
// - a missing number, and a double one to which no link leads, becomes a new number;
// - letters, times, score and learning time are written as the program reads them anyway: what is missing is filled up
//   with "f" and 0, what is no letter or number becomes "f" or 0, what is too much is left off;
// - times later than now become now, which is right only when the clock is.
// Nothing else about a card changes. Marks the file as changed and rebuilds the indexes. Returns how many were
// repaired.
int RepairDeck(CardFile& file, const std::vector<DeckFinding>& findings, int64_t now);

}  // namespace tessaro
