#include "app/check_model.h"

#include "app/check_texts.h"
#include "cards/card_reader.h"
#include "hypertext/plain_text.h"
#include "settings/side_settings.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int kQuestionLetters = 60;

}  // namespace

CheckModel::CheckModel(const CardFile& file, const std::vector<DeckFinding>& findings, QObject* parent)
    : QAbstractTableModel(parent), file_(file), findings_(findings), chosen_(findings.size()) {
  for (size_t i = 0; i < findings_.size(); ++i) Choose(i, findings_[i].fault != DeckFault::FutureAnswer);
}

void CheckModel::Choose(size_t finding, bool on) {
  if (!findings_[finding].can_repair || chosen_[finding] == on) return;
  chosen_[finding] = on;
  chosen_count_ += on ? 1 : -1;
}

void CheckModel::ChooseAll(bool on) {
  for (size_t i = 0; i < findings_.size(); ++i) Choose(i, on);
  if (!findings_.empty()) Q_EMIT dataChanged(index(0, Repair), index(rowCount() - 1, Repair), {Qt::CheckStateRole});
  Q_EMIT ChoiceChanged();
}

std::vector<DeckFinding> CheckModel::Chosen() const {
  std::vector<DeckFinding> chosen;
  for (size_t i = 0; i < findings_.size(); ++i) {
    if (chosen_[i]) chosen.push_back(findings_[i]);
  }
  return chosen;
}

int CheckModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(findings_.size());
}

int CheckModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Repair + 1;
}

QString CheckModel::TextOf(const DeckFinding& finding, int column) const {
  const CardReader cards(file_);
  switch (column) {
    case CardId:
      return FromBytes(cards.Id(finding.row));
    case Question:
      return FromBytes(PlainBeginning(cards.Question(finding.row)), ReadCodePages(file_.settings()).front)
          .simplified()
          .left(kQuestionLetters);
    case Fault:
      return FaultText(finding);
    default:
      return RepairText(finding);
  }
}

QVariant CheckModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto at = static_cast<size_t>(index.row());
  const DeckFinding& finding = findings_[at];
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return TextOf(finding, index.column());
  if (role == Qt::CheckStateRole && index.column() == Repair && finding.can_repair) {
    return chosen_[at] ? Qt::Checked : Qt::Unchecked;
  }
  return {};
}

QVariant CheckModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  const QString headers[] = {u"Karte"_s, u"Frage"_s, u"Was auffällt"_s, u"Reparatur"_s};
  return headers[section];
}

Qt::ItemFlags CheckModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  const bool choosable = index.column() == Repair && findings_[static_cast<size_t>(index.row())].can_repair;
  return choosable ? flags | Qt::ItemIsUserCheckable : flags;
}

bool CheckModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || index.column() != Repair) return false;
  Choose(static_cast<size_t>(index.row()), value.toInt() == Qt::Checked);
  Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
  Q_EMIT ChoiceChanged();
  return true;
}

}  // namespace tessaro
