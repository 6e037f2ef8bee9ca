#pragma once

#include "learn/selection_method.h"

namespace tessaro {

// Row order: goes through the card file as it stands, passing over what is not yet due. While too many cards are
// unknown it asks to go on (with a draw of the standard method) until none is unknown any more.
class RowOrderMethod : public SelectionMethod {
 public:
  Choice Next(SelectionContext& run) override;
  Choice Failed(SelectionContext& run) override;

  // Goes on at the first card; the position kept with the card file too.
  void Restart(IniFile& settings);
  // Keeps the position with the card file; one that was never read stays as it is kept.
  void Keep(IniFile& settings) const;

 private:
  static void KeepPosition(IniFile& settings, int64_t row);
  bool RepeatsUnknown(SelectionContext& run);
  static bool Takes(SelectionContext& run, int row, CardMarks& marks);
  void EndOfFile(SelectionContext& run);

  int64_t position_ = kFirstCardRow;  // the card row to look at next
  bool first_step_ = true;
  bool repeating_ = false;  // unknown cards are repeated before the walk goes on
};

}  // namespace tessaro
