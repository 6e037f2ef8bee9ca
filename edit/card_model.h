#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "platform/clock.h"
#include "store/file/card_file.h"

namespace tessaro {

// The cards of the open file as a table to be looked at. It copies nothing: what is asked for is read from the cards.
// Sorting changes the order of the view, not that of the cards; cards that come later stand behind their neighbour.
class CardModel : public QAbstractTableModel, private CardWatcher {
  Q_OBJECT

 public:
  enum Column { Number, Id, Front, Back, Retention, LastAnswer, Topic, kColumns };

  // The file must live longer.
  CardModel(CardFile& file, QObject* parent);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  // By number: the order of the file.
  void sort(int column, Qt::SortOrder order) override;

  // The row of the card table, and back; -1 for no card.
  int CardRow(int view_row) const;
  int ViewRow(int card_row) const;
  // To be called after answers, which are not told to those who watch.
  void ShowAnew();

 private:
  // How the views are told of a shift: as one run of rows, or as a wholly new table.
  enum class Telling { Insert, Remove, Reset };

  void RowsWillShift(const RowShift& shift) override;
  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;
  bool IsOneRun(const std::vector<int>& rows) const;
  void MapOrder(const RowShift& shift);
  QString TextOf(int card_row, Column column) const;

  CardFile& file_;
  CardWatch watch_;
  std::vector<int> order_;  // card rows as the view has them; empty: that of the file
  Telling telling_ = Telling::Reset;
};

}  // namespace tessaro
