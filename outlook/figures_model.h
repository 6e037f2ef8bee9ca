#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <vector>

namespace tessaro {

// Figures as text: the first column says of what, the others are numbers.
struct FigureTable {
  QStringList headers;
  std::vector<QStringList> rows;
};

class FiguresModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;
  void Show(FigureTable table);
  // With tabs between the columns, headers first: what spreadsheets paste.
  QString Text() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  FigureTable table_;
};

}  // namespace tessaro
