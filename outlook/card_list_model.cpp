#include "outlook/card_list_model.h"

#include <QDateTime>
#include <algorithm>
#include <utility>

#include "cards/card_reader.h"
#include "outlook/number_texts.h"
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

CardListModel::CardListModel(CardFile& file, std::vector<CardLine> lines, int64_t now, QObject* parent)
    : QAbstractTableModel(parent),
      file_(file),
      watch_(file.watchers(), static_cast<CardWatcher&>(*this)),
      lines_(std::move(lines)),
      now_(now) {}

void CardListModel::RowsShifted(const RowShift& shift) {
  for (CardLine& line : lines_) line.row = shift.Map(line.row);
  const auto is_gone = [](const CardLine& line) { return line.row == 0; };
  const auto first = std::find_if(lines_.begin(), lines_.end(), is_gone);
  if (first == lines_.end()) return;
  if (std::find_if(first + 1, lines_.end(), is_gone) == lines_.end()) {
    const auto place = static_cast<int>(first - lines_.begin());
    beginRemoveRows({}, place, place);
    lines_.erase(first);
    return endRemoveRows();
  }
  beginResetModel();
  std::erase_if(lines_, is_gone);
  endResetModel();
}

void CardListModel::CardsChanged(std::span<const int> /*rows*/, std::span<const int> /*columns*/) {
  if (!lines_.empty()) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
}

QString CardListModel::Text() const {
  QStringList rows;
  QStringList cells;
  for (int column = 0; column < kColumns; ++column) {
    cells << headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  }
  rows << cells.join(u'\t');
  for (const CardLine& line : lines_) {
    cells.clear();
    for (int column = 0; column < kColumns; ++column) cells << TextOf(line, column);
    rows << cells.join(u'\t');
  }
  return rows.join(u'\n') + u'\n';
}

int CardListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

int CardListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QString CardListModel::TextOf(const CardLine& line, int column) const {
  switch (column) {
    case Number:
      return FromBytes(CardReader(file_).Id(line.row));
    case Question:
      return FromBytes(QuestionStart(file_, line.row));
    case Recall:
      return line.recall ? PercentText(*line.recall) : QString();
    case Due:
      return DueText(line.due, now_);
    case Misses:
      return NumberText(int64_t{line.misses});
    default:
      return SpanText(static_cast<double>(std::max<int64_t>(line.seconds, 0)));
  }
}

QVariant CardListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::DisplayRole) return TextOf(lines_[static_cast<size_t>(index.row())], index.column());
  if (role != Qt::TextAlignmentRole) return {};
  const bool left = index.column() <= Question;
  return QVariant::fromValue(Qt::Alignment(Qt::AlignVCenter | (left ? Qt::AlignLeft : Qt::AlignRight)));
}

QVariant CardListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  const QString headers[] = {u"Karte"_s, u"Frage"_s, u"Gewusst"_s, u"Fällig"_s, u"Fehler"_s, u"Lernzeit"_s};
  return headers[section];
}

// Selected stays what was, wherever it comes to stand.
void CardListModel::sort(int column, Qt::SortOrder order) {
  if (column < 0) return;
  Q_EMIT layoutAboutToBeChanged();
  const bool descending = order == Qt::DescendingOrder;
  const std::vector<int> places = OrderedPlaces(file_, lines_, static_cast<CardLineKey>(column), descending);
  std::vector<CardLine> ordered;
  ordered.reserve(places.size());
  for (const int place : places) ordered.push_back(lines_[static_cast<size_t>(place)]);
  lines_ = std::move(ordered);
  for (const QModelIndex& old : persistentIndexList()) {
    const auto now = std::find(places.begin(), places.end(), old.row());
    changePersistentIndex(old, index(static_cast<int>(now - places.begin()), old.column()));
  }
  Q_EMIT layoutChanged();
}

}  // namespace tessaro
