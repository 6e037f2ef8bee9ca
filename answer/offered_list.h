#pragma once

#include <QPushButton>
#include <QWidget>
#include <array>
#include <optional>

#include "answer/answer_offer.h"
#include "widgets/theme.h"

namespace tessaro {

// One answer to choose, in a line with its letter; cut where the line is too short, in whole in the tooltip.
class OfferedButton : public QPushButton {
  Q_OBJECT

 public:
  OfferedButton(QChar letter, QWidget* parent);
  void SetAnswer(const QString& answer);
  // As right or wrong, by colour and icon; nothing: not yet.
  void SetVerdict(std::optional<Accent> verdict);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QChar letter_;
  QString answer_;
  std::optional<Accent> verdict_;
};

// The answers that the program offers to a card, one below the other.
class OfferedList : public QWidget {
  Q_OBJECT

 public:
  explicit OfferedList(QWidget* parent = nullptr);
  // The texts are of the code page.
  void Offer(const OfferedAnswers& offered, CodePage page);
  // Shows which one was right, and that `chosen` was not.
  void Mark(size_t chosen, size_t right);
  // The button of "A" or "1" and so on; null when nothing is offered there.
  QPushButton* ButtonOf(const QString& key) const;
  // Brings the focus to the next one or the one before.
  void MoveFocus(bool down);
  QString LastLetter() const;

 Q_SIGNALS:
  void Chosen(size_t place);

 private:
  std::array<OfferedButton*, kMostOffered> buttons_{};
  size_t count_ = 0;
};

}  // namespace tessaro
