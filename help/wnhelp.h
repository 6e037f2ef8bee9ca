#pragma once

#include <QWidget>
#include <memory>

#include "cards/navigation.h"
#include "help/help_deck.h"
#include "settings/program_settings.h"

class QListWidgetItem;

namespace Ui {
class TF_wnhelp;
}

namespace tessaro {

class CardPages;
class Messages;

// The help: a list of its cards, or of those that a search finds, and beside it the card shown.
class TF_wnhelp : public QWidget {
  Q_OBJECT

 public:
  // The settings keep the place of the window; all must live longer. No card is shown yet.
  TF_wnhelp(HelpDeck deck, ProgramSettings& settings, Messages& messages);
  ~TF_wnhelp() override;

  const HelpDeck& deck() const { return deck_; }
  // Shows a card, from which Back leads to the one before. Nothing happens where there is none of that number.
  void ShowCard(int64_t number);
  int shown_card() const { return shown_; }
  // Comes to the front; where a dialog waits for an answer (it may be null), so that both can be used.
  void Bring(const QWidget* dialog);

  void BtBackClick();
  void BtPrintClick();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void DressButtons();
  void MakeKeys();
  void Show(int number);
  void FillList();
  void ListChapters();
  void ListFound(const QString& wanted);
  void AddEntry(int number);
  void AddHeading(const QString& text);
  void MarkShown();
  void OpenEntry(const QListWidgetItem* entry);
  bool IsMine(const QWidget* dialog) const;

  std::unique_ptr<Ui::TF_wnhelp> ui_;
  HelpDeck deck_;
  ProgramSettings& settings_;
  Messages& messages_;
  CardPages* pages_ = nullptr;
  BackStack back_;
  int shown_ = 0;
};

}  // namespace tessaro
