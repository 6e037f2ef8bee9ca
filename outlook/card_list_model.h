#pragma once

#include <QAbstractTableModel>

#include "outlook/card_lines.h"

namespace tessaro {

// Counted cards as a sortable table. It follows them when rows come and go; cards that are removed leave it.
class CardListModel : public QAbstractTableModel, private CardWatcher {
  Q_OBJECT

 public:
  enum Column { Number, Question, Recall, Due, Misses, Time, kColumns };  // as CardLineKey

  // `file` must live longer.
  CardListModel(CardFile& file, CardLines lines, QObject* parent);
  int RowOf(const QModelIndex& index) const { return lines_.Row(index.row()); }
  QString Text() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 private:
  QString TextOf(int place, int column) const;
  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;

  const CardFile& file_;
  CardWatch watch_;
  CardLines lines_;
};

}  // namespace tessaro
