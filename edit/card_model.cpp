#include "edit/card_model.h"

#include <QDateTime>
#include <QFont>
#include <QLocale>
#include <algorithm>

#include "cards/card_reader.h"
#include "edit/card_order.h"
#include "hypertext/plain_text.h"
#include "settings/side_settings.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

// A cell shows the beginning of a side; the rest is not even read.
constexpr size_t kLongestText = 2000;

QString PlainCell(std::string_view side, CodePage page) {
  QString text = FromBytes(PlainText(side.substr(0, kLongestText)), page);
  return text.replace(u'\n', u' ');
}

// As the learning window shows it: days, hours, minutes, seconds.
QString RetentionText(int64_t seconds) {
  const auto two = [](int64_t number) { return QString::number(number).rightJustified(2, u'0'); };
  return u"%1:%2:%3:%4"_s.arg(seconds / 86400).arg(two(seconds / 3600 % 24), two(seconds / 60 % 60), two(seconds % 60));
}

CardOrder OrderOf(int column) {
  switch (column) {
    case CardModel::Id:
      return CardOrder::Id;
    case CardModel::Front:
      return CardOrder::Front;
    case CardModel::Back:
      return CardOrder::Back;
    case CardModel::Retention:
      return CardOrder::Retention;
    case CardModel::LastAnswer:
      return CardOrder::LastAnswer;
    case CardModel::Topic:
      return CardOrder::Topic;
    default:
      return CardOrder::Row;
  }
}

}  // namespace

CardModel::CardModel(CardFile& file, QObject* parent)
    : QAbstractTableModel(parent), file_(file), watch_(file.watchers(), static_cast<CardWatcher&>(*this)) {}

int CardModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : CardReader(file_).Count();
}

int CardModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

int CardModel::CardRow(int view_row) const {
  if (view_row < 0 || view_row >= rowCount()) return -1;
  return order_.empty() ? view_row + kFirstCardRow : order_[static_cast<size_t>(view_row)];
}

int CardModel::ViewRow(int card_row) const {
  if (!CardReader(file_).IsCardRow(card_row)) return -1;
  if (order_.empty()) return card_row - kFirstCardRow;
  return static_cast<int>(std::find(order_.begin(), order_.end(), card_row) - order_.begin());
}

QString CardModel::TextOf(int card_row, Column column) const {
  const CardReader cards(file_);
  switch (column) {
    case Number:
      return QString::number(card_row - 1);
    case Id:
      return FromBytes(cards.Id(card_row));
    case Front:
      return PlainCell(cards.Question(card_row), ReadCodePages(file_.settings()).front);
    case Back:
      return PlainCell(cards.Answer(card_row), ReadCodePages(file_.settings()).back);
    case Retention:
      // The score of a new card is its place among the new ones.
      return cards.WasAnswered(card_row) ? RetentionText(std::max<int64_t>(cards.Score(card_row), 0)) : QString();
    case LastAnswer: {
      const int64_t time = cards.NewestTime(card_row);
      return time <= 0 ? QString() : QLocale().toString(QDateTime::fromSecsSinceEpoch(time), u"dd.MM.yyyy HH:mm"_s);
    }
    case Topic:
      return FromBytes(TopicText(cards.Question(card_row), cards.Answer(card_row)));
    case kColumns:
      break;
  }
  return {};
}

QVariant CardModel::data(const QModelIndex& index, int role) const {
  const int row = CardRow(index.row());
  if (row < 0) return {};
  const auto column = static_cast<Column>(index.column());
  if (role == Qt::DisplayRole) return TextOf(row, column);
  const bool marked = file_.deletion_marks().Has(row);
  if (role == Qt::ToolTipRole && marked) return u"gelöscht"_s;
  if (role == Qt::FontRole && marked) {
    QFont font;
    font.setStrikeOut(true);
    return font;
  }
  if (role == Qt::TextAlignmentRole && (column == Number || column == Retention)) {
    return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  }
  return {};
}

QVariant CardModel::headerData(int section, Qt::Orientation orientation, int role) const {
  static const QStringList kTitles = {
      u"Nr."_s, u"ID"_s, u"Vorderseite"_s, u"Rückseite"_s, u"Behaltenszeit"_s, u"Letzte Antwort"_s, u"Thema"_s};
  if (orientation == Qt::Vertical || role != Qt::DisplayRole) return {};
  return kTitles.value(section);
}

void CardModel::sort(int column, Qt::SortOrder order) {
  Q_EMIT layoutAboutToBeChanged();
  const QModelIndexList old = persistentIndexList();
  std::vector<int> card_rows;
  for (const QModelIndex& index : old) card_rows.push_back(CardRow(index.row()));
  const bool plain = OrderOf(column) == CardOrder::Row && order == Qt::AscendingOrder;
  order_ = plain ? std::vector<int>()
                 : OrderedRows(file_, ReadCodePages(file_.settings()), OrderOf(column), order == Qt::DescendingOrder);
  for (qsizetype i = 0; i < old.size(); ++i) {
    changePersistentIndex(old[i], index(ViewRow(card_rows[static_cast<size_t>(i)]), old[i].column()));
  }
  Q_EMIT layoutChanged();
}

void CardModel::ShowAnew() {
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
}

// Rows that stand together in the view, too.
bool CardModel::IsOneRun(const std::vector<int>& rows) const {
  return !rows.empty() && (rows.size() == 1 || order_.empty()) &&
         rows.back() - rows.front() + 1 == static_cast<int>(rows.size());
}

void CardModel::RowsWillShift(const RowShift& shift) {
  const std::vector<int>& inserted = shift.inserted();
  const std::vector<int>& removed = shift.removed();
  if (removed.empty() && IsOneRun(inserted)) {
    telling_ = Telling::Insert;
    const int place = ViewRow(inserted.front() - 1) + 1;
    beginInsertRows({}, place, place + static_cast<int>(inserted.size()) - 1);
  } else if (inserted.empty() && IsOneRun(removed)) {
    telling_ = Telling::Remove;
    const int place = ViewRow(removed.front());
    beginRemoveRows({}, place, place + static_cast<int>(removed.size()) - 1);
  } else {
    telling_ = Telling::Reset;
    beginResetModel();
  }
}

void CardModel::RowsShifted(const RowShift& shift) {
  if (!order_.empty()) MapOrder(shift);
  if (telling_ == Telling::Insert) endInsertRows();
  if (telling_ == Telling::Remove) endRemoveRows();
  // What was announced may not have happened.
  if (telling_ != Telling::Reset && shift.empty()) beginResetModel();
  if (telling_ == Telling::Reset || shift.empty()) return endResetModel();
  // Those behind have other numbers now.
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, Number), index(rowCount() - 1, Number));
}

void CardModel::MapOrder(const RowShift& shift) {
  for (int& row : order_) row = shift.Map(row);
  std::erase(order_, 0);
  const std::vector<int>& fresh = shift.inserted();
  // Behind the neighbour of a single card; many come at the end.
  const auto neighbour = fresh.size() == 1 ? std::find(order_.begin(), order_.end(), fresh.front() - 1) : order_.end();
  const bool first = fresh.size() == 1 && fresh.front() == kFirstCardRow;
  const auto place = first ? order_.begin() : neighbour == order_.end() ? neighbour : neighbour + 1;
  order_.insert(place, fresh.begin(), fresh.end());
}

void CardModel::CardsChanged(std::span<const int> rows, std::span<const int> /*columns*/) {
  if (rows.size() == 1 && order_.empty()) {
    const int row = ViewRow(rows[0]);
    Q_EMIT dataChanged(index(row, 0), index(row, kColumns - 1));
  } else {
    ShowAnew();
  }
}

}  // namespace tessaro
