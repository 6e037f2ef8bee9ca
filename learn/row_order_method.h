#pragma once

#include <optional>

#include "learn/selection_method.h"

namespace tessaro {

// Row order: goes through the card file as it stands, passing over what is not yet due. While too many cards are
// unknown it asks to go on (with a draw of the standard method) until none is unknown any more.
class RowOrderMethod : public SelectionMethod {
 public:
  // Where the walk stands.
  struct Place {
    int64_t position = kFirstCardRow;  // the card row to look at next
    bool first_step = true;
    bool repeating = false;       // unknown cards are repeated before the walk goes on
    std::optional<int64_t> kept;  // the position that this run wrote into the settings last
  };

  Choice Next(SelectionContext& run) override;
  Choice Failed(SelectionContext& run) override;

  // Goes on at the first card; the position kept with the card file too.
  void Restart(IniFile& settings);
  // Keeps the position with the card file; one that was never read stays as it is kept.
  void Keep(IniFile& settings);

  const Place& place() const { return place_; }
  // Goes back to a place where the walk stood in this run; the position kept with the card file too.
  void SetPlace(const Place& place, IniFile& settings);

 private:
  void KeepPosition(IniFile& settings, int64_t row);
  bool RepeatsUnknown(SelectionContext& run);
  static bool Takes(SelectionContext& run, int row, CardMarks& marks);
  void EndOfFile(SelectionContext& run);

  Place place_;
  int64_t found_ = kFirstCardRow;  // the position that stood in the settings before this run wrote there
};

}  // namespace tessaro
