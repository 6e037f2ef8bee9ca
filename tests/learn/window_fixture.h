#pragma once

#include "learn/wnlern.h"
#include "tests/learn/learn_fixture.h"
#include "tests/support/window_test.h"
#include "widgets/htmlview.h"

namespace tessaro {

inline const std::vector<TestCard> kThreeCards = {
    {.id = "000001", .question = "Eins", .answer = "One", .score = "000000000"},
    {.id = "000002", .question = "Zwei", .answer = "Two <a href=\"000003\">weiter</a>", .score = "000000000"},
    {.id = "000003", .question = "<navigation><home>Start", .answer = "-"},
};

class LearningWindow : public WindowTest {
 protected:
  void Open(const std::vector<TestCard>& cards = kThreeCards) {
    file.Close();
    OpenTestFile(disk, file, cards);
    Show();
  }
  void Show() {
    window = std::make_unique<TF_wnlern>(file, settings, clock, random, messages, gate);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QApplication::processEvents();
  }
  QWidget& Tested() override { return *window; }
  std::string_view Field(std::string_view column, int row) {
    return file.cards().FieldAt(file.cards().ColumnIndex(column), row);
  }
  std::string OnScreen() { return Find<TFrameHtml>(QStringLiteral("FrameHtml")).layout().fragments.at(0).text; }
  void FollowFirstLink() {
    const LinkArea area = Find<TFrameHtml>(QStringLiteral("FrameHtml")).layout().links.areas().front();
    QTest::mouseClick(&Find<QWidget>(QStringLiteral("PaintBox")), Qt::LeftButton, {},
                      QPoint(area.left + 2, area.top + 2));
  }
  // How many cards have been answered.
  int Logged() {
    int logged = 0;
    for (int row = kFirstCardRow; row < file.cards().RowCount(); ++row) logged += Field(kTimeRow, row)[0] != '0';
    return logged;
  }

  CardFile file{disk};
  ProgramSettings settings;
  AnswerGate gate{clock};
  std::unique_ptr<TF_wnlern> window;
};

}  // namespace tessaro
