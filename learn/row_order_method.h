#pragma once

#include "learn/selection_method.h"

namespace tessaro {

// Row order: goes through the card file as it stands, passing over what is not yet due. While too many cards are
// unknown it asks to go on (with a draw of the standard method) until none is unknown any more.
class RowOrderMethod : public SelectionMethod {
 public:
  explicit RowOrderMethod(RowOrderPlace& place) : place_(place) {}

  Choice Next(SelectionContext& run) override;
  Choice Failed(SelectionContext& run) override;

  // Goes on at the first card; the position kept with the card file too.
  void Restart(IniFile& settings);
  // Keeps the position with the card file; one that was never read stays as it is kept.
  void Keep(IniFile& settings);

  // Follows the cards after rows moved: the next card, or the one after it that is still there.
  void Follow(const RowShift& shift, IniFile& settings);

  // To be called when the walk was put back from `before` to where it stood in this run: the position kept with the
  // card file goes with it.
  void PutBack(const RowOrderPlace& before, IniFile& settings) const;

 private:
  void KeepPosition(IniFile& settings, int64_t row);
  bool RepeatsUnknown(SelectionContext& run);
  static bool Takes(SelectionContext& run, int row, CardMarks& marks);
  void EndOfFile(SelectionContext& run);

  RowOrderPlace& place_;
  int64_t found_ = kFirstCardRow;  // the position that stood in the settings before this run wrote there
};

}  // namespace tessaro
