#include "edit/card_model.h"

#include <QDateTime>
#include <QFont>
#include <QLocale>
#include <algorithm>

#include "cards/card_reader.h"
#include "edit/card_order.h"
#include "hypertext/plain_text.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

// A cell shows the beginning of a side; the rest is not even read.
constexpr size_t kLongestText = 2000;

QString PlainCell(std::string_view side) {
  QString text = FromBytes(PlainText(side.substr(0, kLongestText)));
  return text.replace(u'\n', u' ');
}

// As the learning window shows it: days, hours, minutes, seconds.
QString DurationText(int64_t seconds) {
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
      return PlainCell(cards.Question(card_row));
    case Back:
      return PlainCell(cards.Answer(card_row));
    case Retention:
      return DurationText(std::max<int64_t>(cards.Score(card_row), 0));
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
  sorted_by_ = column;
  sort_order_ = order;
  const bool plain = OrderOf(column) == CardOrder::Row && order == Qt::AscendingOrder;
  order_ = plain ? std::vector<int>() : OrderedRows(file_, OrderOf(column), order == Qt::DescendingOrder);
  for (qsizetype i = 0; i < old.size(); ++i) {
    changePersistentIndex(old[i], index(ViewRow(card_rows[static_cast<size_t>(i)]), old[i].column()));
  }
  Q_EMIT layoutChanged();
}

void CardModel::ShowAnew() {
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
}

void CardModel::RowsWillShift(const RowShift& /*shift*/) {
  beginResetModel();
}

void CardModel::RowsShifted(const RowShift& /*shift*/) {
  if (!order_.empty()) order_ = OrderedRows(file_, OrderOf(sorted_by_), sort_order_ == Qt::DescendingOrder);
  endResetModel();
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
