#pragma once

#include <QDialog>
#include <functional>
#include <memory>

#include "edit/card_tools.h"
#include "platform/clock.h"
#include "platform/disk.h"
#include "settings/program_settings.h"
#include "widgets/messages.h"

namespace Ui {
class TF_autolink;
}
class QLineEdit;

namespace tessaro {

struct OverviewMachine {
  ProgramSettings& settings;
  Messages& messages;
  Disk& disk;
  const Clock& clock;
};

// Makes the overviews of all cards, and of the cards of a topic.
class TF_autolink : public QDialog {
  Q_OBJECT

 public:
  // `row` is where the user is.
  TF_autolink(CardFile& file, CommandStack& commands, const OverviewMachine& machine, int row, QWidget* parent);
  ~TF_autolink() override;

  // Where the overview that was made last begins; 0: none was made.
  int start_row() const { return start_row_; }
  // What the user was told last; empty: nothing was done.
  QString told() const;

 private:
  OverviewSymbols Symbols() const;
  // False: a symbol is not one that a card can hold; the user knows.
  bool SymbolsFit();
  void ChooseSymbol(QLineEdit& edit);
  void UseStandardSymbols();
  void ShowTopics();
  void BitBtnVisualMapClick();
  void BitBtnAutoThemaClick();
  void BitBtnTransferClick();
  // Shows how far the tool is, and lets the user end it.
  ToolResult Run(const QString& title, const std::function<ToolResult(const KeepGoing&)>& tool);
  void Tell(const ToolResult& result, bool row_order);

  CardFile& file_;
  CommandStack& commands_;
  OverviewMachine machine_;
  int row_;
  int start_row_ = 0;
  std::unique_ptr<Ui::TF_autolink> ui_;
};

}  // namespace tessaro
