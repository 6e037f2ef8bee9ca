#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "outlook/deck_outlook.h"
#include "outlook/sliced_work.h"
#include "settings/learning_parameters.h"
#include "settings/program_settings.h"

namespace tessaro {

class OutlookPage;
class TF_dlkarten;

// What evaluation and forecast have in common: they read the deck beside whatever goes on, show what it came to at a
// time, renew it by F5, and open the cards behind a figure.
class OutlookWindow : public QWidget {
  Q_OBJECT

 public:
  using EditCard = std::function<void(int row)>;

  // All must live longer.
  OutlookWindow(const CardFile& file, ProgramSettings& settings, const Clock& clock, std::string_view place_suffix);
  ~OutlookWindow() override;

  // Opens a card in the editor; without it that is not offered.
  void SetEditor(EditCard edit) { edit_ = std::move(edit); }
  // Reads the deck anew.
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
  bool deck_is_read() const { return deck_is_read_; }
  LearningParameters Parameters() const { return ReadParameters(settings_.ini); }

  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;

  const CardFile& file_;
  ProgramSettings& settings_;
  const Clock& clock_;
  LocalDays days_;
  DeckOutlook deck_;
  SlicedWork work_;
  EditCard edit_;

 private:
  bool RowsChanged() const { return rows_ != file_.cards().RowCount(); }

  std::string place_suffix_;
  bool deck_is_read_ = false;
  int rows_ = -1;  // of the table when it was read
  QPointer<TF_dlkarten> list_;
};

}  // namespace tessaro
