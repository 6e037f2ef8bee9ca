#include "outlook/card_list_model.h"

#include <QDateTime>
#include <utility>
#include <vector>

#include "cards/card_reader.h"
#include "outlook/number_texts.h"
#include "settings/side_settings.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int64_t kLastShown = 32'503'680'000;  // the year 3000

QString DueText(int64_t due, int64_t now) {
  if (due == 0) return u"neu"_s;
  if (due < now) return u"überfällig"_s;
  if (due > kLastShown) return u"später"_s;
  return QDateTime::fromSecsSinceEpoch(due).toString(u"dd.MM.yyyy"_s);
}

}  // namespace

CardListModel::CardListModel(CardFile& file, CardLines lines, QObject* parent)
    : QAbstractTableModel(parent),
      file_(file),
      watch_(file.watchers(), static_cast<CardWatcher&>(*this)),
      lines_(std::move(lines)) {}

void CardListModel::RowsShifted(const RowShift& shift) {
  const std::vector<int> gone = lines_.Follow(shift);
  if (gone.empty()) return;
  if (gone.size() == 1) {
    beginRemoveRows({}, gone.front(), gone.front());
    lines_.DropGone();
    return endRemoveRows();
  }
  beginResetModel();
  lines_.DropGone();
  endResetModel();
}

void CardListModel::CardsChanged(std::span<const int> /*rows*/, std::span<const int> /*columns*/) {
  if (lines_.Count() > 0) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
}

QString CardListModel::Text() const {
  QStringList rows;
  QStringList cells;
  for (int column = 0; column < kColumns; ++column) {
    cells << headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  }
  rows << cells.join(u'\t');
  for (int place = 0; place < lines_.Count(); ++place) {
    cells.clear();
    for (int column = 0; column < kColumns; ++column) cells << TextOf(place, column);
    rows << cells.join(u'\t');
  }
  return rows.join(u'\n') + u'\n';
}

int CardListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : lines_.Count();
}

int CardListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QString CardListModel::TextOf(int place, int column) const {
  switch (column) {
    case Number:
      return FromBytes(CardReader(file_).Id(lines_.Row(place)));
    case Question:
      return FromBytes(QuestionStart(file_, lines_.Row(place)), ReadCodePages(file_.settings()).front);
    case Recall:
      return RecallText(lines_.Recall(place));
    case Due:
      return DueText(lines_.Due(place), lines_.now());
    case Misses:
      return NumberText(int64_t{lines_.Misses(place)});
    default:
      return SpanText(static_cast<double>(lines_.Seconds(place)));
  }
}

QVariant CardListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::DisplayRole) return TextOf(index.row(), index.column());
  if (role != Qt::TextAlignmentRole) return {};
  const bool left = index.column() <= Question;
  return QVariant::fromValue(Qt::Alignment(Qt::AlignVCenter | (left ? Qt::AlignLeft : Qt::AlignRight)));
}

QVariant CardListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  const QString headers[] = {u"Karte"_s, u"Frage"_s, u"Gewusst"_s, u"Fällig"_s, u"Fehler"_s, u"Lernzeit"_s};
  return headers[section];
}

// What is selected stays so, wherever it comes to stand.
void CardListModel::sort(int column, Qt::SortOrder order) {
  if (column < 0) return;
  Q_EMIT layoutAboutToBeChanged();
  const QModelIndexList old = persistentIndexList();
  std::vector<int> rows;
  for (const QModelIndex& place : old) rows.push_back(RowOf(place));
  lines_.Sort(static_cast<CardLineKey>(column), order == Qt::DescendingOrder);
  for (qsizetype i = 0; i < old.size(); ++i) {
    changePersistentIndex(old[i], index(lines_.PlaceOf(rows[static_cast<size_t>(i)]), old[i].column()));
  }
  Q_EMIT layoutChanged();
}

}  // namespace tessaro
