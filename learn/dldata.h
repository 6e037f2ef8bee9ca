#pragma once

#include <QWidget>
#include <memory>
#include <span>
#include <string_view>

#include "learn/answer_log.h"

class QTableWidget;

namespace Ui {
class TF_dldata;
}

namespace tessaro {

struct StatisticsTexts;
struct TrendTexts;

// The statistics of the card answered last: its history, the two lines through the intervals between its answers, and
// the retention time that follows. Stays beside the learning window while it is switched on.
class TF_dldata : public QWidget {
  Q_OBJECT

 public:
  explicit TF_dldata(QWidget* parent = nullptr);
  ~TF_dldata() override;

  // Before the first answer, and after one was taken back.
  void Clear();
  // `title`: of the card.
  void Show(const AnswerStatistics& statistics, const QString& title);
  // How likely the card is known now and later, in a line; empty: nothing is said.
  void ShowRecall(const QString& text);

 Q_SIGNALS:
  void Closed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void ShowHistory(const StatisticsTexts& texts, std::span<const int64_t> times);
  static void ShowSeries(QTableWidget* table, const TrendTexts& texts);

  std::unique_ptr<Ui::TF_dldata> ui_;
};

}  // namespace tessaro
