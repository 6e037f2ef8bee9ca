#include "outlook/figures_model.h"

#include <utility>

namespace tessaro {

void FiguresModel::Show(FigureTable table) {
  beginResetModel();
  table_ = std::move(table);
  endResetModel();
}

QString FiguresModel::Text() const {
  QString text = table_.headers.join(u'\t') + u'\n';
  for (const QStringList& row : table_.rows) text += row.join(u'\t') + u'\n';
  return text;
}

int FiguresModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(table_.rows.size());
}

int FiguresModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(table_.headers.size());
}

QVariant FiguresModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const QStringList& row = table_.rows[static_cast<size_t>(index.row())];
  if (role == Qt::DisplayRole) return row.value(index.column());
  if (role != Qt::TextAlignmentRole) return {};
  return QVariant::fromValue(Qt::Alignment(Qt::AlignVCenter | (index.column() == 0 ? Qt::AlignLeft : Qt::AlignRight)));
}

QVariant FiguresModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return table_.headers.value(section);
}

}  // namespace tessaro
