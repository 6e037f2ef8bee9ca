#pragma once

#include <QKeyEvent>

#include "learn/wnlern.h"
#include "tests/app/main_window_fixture.h"

namespace tessaro {

inline TestCard AskedCard(int number, const std::string& question, const std::string& answer) {
  return {.id = "00000" + std::to_string(number), .question = question, .answer = answer};
}

// Learns in row order, with the answer mode switched on by its key.
class AnswerModesTest : public MainWindow {
 protected:
  ~AnswerModesTest() override { (void)program.CloseLearning(); }

  void Learn(const std::vector<TestCard>& cards, Qt::Key mode) {
    keys::kRowOrder.Write(true, program.settings().ini);
    Open(cards);
    program.OpenLearning();
    lern = OpenWindows<TF_wnlern>().value(0);
    ASSERT_TRUE(QTest::qWaitForWindowActive(lern));
    QApplication::processEvents();
    Key(mode, Qt::ControlModifier);
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    MainWindow::Key(key, modifiers);
    clock.milliseconds += 200;
  }
  void Type(const char* text) {
    for (const char* letter = text; *letter != '\0'; ++letter) QTest::keyClick(QApplication::focusWidget(), *letter);
    clock.milliseconds += 200;
  }
  // As a key that is held down sends it.
  static void Repeat(Qt::Key key, const QString& text = {}) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text, true);
    QApplication::sendEvent(QApplication::focusWidget(), &event);
  }
  QWidget& Tested() override { return *lern; }
  QString Line(const QString& name) { return Find<QLineEdit>(name).text(); }
  QString Status() { return Text(u"DisplayStatus"_s); }
  QColor Colour(const QString& name, QPalette::ColorRole role = QPalette::Base) {
    return Find<QWidget>(name).palette().color(role);
  }
  QString Focused() {
    return QApplication::focusWidget() != nullptr ? QApplication::focusWidget()->objectName() : QString();
  }
  // What is marked of the text that is copied, behind its place.
  QString Marked() {
    const QTextCursor mark = Find<QPlainTextEdit>(u"Text"_s).extraSelections().value(0).cursor;
    return QString::number(mark.selectionStart()) + u' ' + mark.selectedText();
  }
  // The newest answers of the cards, a letter each, "-" for none.
  std::string Answers() {
    CardFile& file = program.file();
    std::string letters;
    for (int row = kFirstCardRow; row < file.cards().RowCount(); ++row) {
      const bool answered = file.cards().Peek(file.columns().time_row, row)[0] != '0';
      letters += answered ? file.cards().Peek(file.columns().yes_no_row, row)[0] : '-';
    }
    return letters;
  }

  TF_wnlern* lern = nullptr;
};

}  // namespace tessaro
