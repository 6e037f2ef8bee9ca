#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "outlook/card_lines.h"
#include "settings/learning_parameters.h"
#include "settings/program_settings.h"
#include "widgets/sliced_work.h"

namespace tessaro {

class OutlookPage;
class TF_dlkarten;

// What evaluation and forecast have in common: they read the deck beside whatever goes on, show what it came to at a
// time, renew it by F5 and after cards were changed, and open the cards behind a figure.
class OutlookWindow : public QWidget, private CardWatcher {
  Q_OBJECT

 public:
  using EditCard = std::function<void(int row)>;

  // All must live longer.
  OutlookWindow(CardFile& file, ProgramSettings& settings, const Clock& clock, std::string_view place_suffix);
  ~OutlookWindow() override;

  // Opens a card in the editor; without it that is not offered.
  void SetEditor(EditCard edit) { edit_ = std::move(edit); }
  // Reads the deck anew; a list of cards that is open is of the past then and goes.
  void Renew();
  bool Working() const { return work_.Running(); }

 Q_SIGNALS:
  void Closed();

 protected:
  virtual OutlookPage& CurrentPage() = 0;
  // The deck was read: what was shown is out of date.
  virtual void DeckRead() = 0;

  // Ties a page's cards to the list, and its keys to this window.
  void TiePage(OutlookPage& page);
  void OpenCards(const QString& title, const std::vector<int>& rows);
  void OpenCard(const QString& title, int row);
  bool deck_is_read() const { return deck_is_read_; }
  LearningParameters Parameters() const { return ReadParameters(settings_.ini); }
  const DeckOutlook& deck() const { return *deck_; }
  CardLines Lines(const std::vector<int>& rows) const;

  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;

  CardFile& file_;
  ProgramSettings& settings_;
  const Clock& clock_;
  LocalDays days_;
  SlicedWork work_;
  EditCard edit_;

 private:
  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;
  void Read();

  std::shared_ptr<const DeckOutlook> deck_;  // lists hold on to theirs
  std::optional<CardWatch> watch_;           // until it is closed
  QTimer read_later_;
  std::string place_suffix_;
  bool placed_ = false;
  bool deck_is_read_ = false;
  std::vector<OutlookPage*> pages_;
  QPointer<TF_dlkarten> list_;
};

}  // namespace tessaro
