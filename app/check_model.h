#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "cards/deck_check.h"

namespace tessaro {

// The findings of a check as a table: card, question, what is wrong, and the repair with a box to choose it.
class CheckModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { CardId, Question, Fault, Repair };

  // Chosen are the repairs that are right in any case. `file` must live longer and not change its rows.
  CheckModel(const CardFile& file, const std::vector<DeckFinding>& findings, QObject* parent);

  void ChooseAll(bool on);
  std::vector<DeckFinding> Chosen() const;
  int ChosenCount() const { return chosen_count_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 Q_SIGNALS:
  void ChoiceChanged();

 private:
  QString TextOf(const DeckFinding& finding, int column) const;
  void Choose(size_t finding, bool on);

  const CardFile& file_;
  std::vector<DeckFinding> findings_;
  std::vector<bool> chosen_;  // beside findings_
  int chosen_count_ = 0;
};

}  // namespace tessaro
