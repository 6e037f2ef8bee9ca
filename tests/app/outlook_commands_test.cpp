#include "cards/card_edit.h"
#include "edit/wned.h"
#include "learn/wnlern.h"
#include "outlook/dlkarten.h"
#include "outlook/outlook_page.h"
#include "outlook/wneval.h"
#include "settings/keys.h"
#include "tests/app/main_window_fixture.h"

namespace tessaro {
namespace {

class OutlookCommands : public MainWindow {
 protected:
  // Whose answers took so long.
  static TestCard Answered(int number, int64_t seconds) {
    return With(KnownCard(number, 1, 600), &TestCard::time_learned, std::to_string(seconds));
  }
  static TF_wneval* Evaluated() {
    auto* window = OpenWindows<TF_wneval>().value(0);
    return window != nullptr && QTest::qWaitFor([&] { return !window->Working(); }) ? window : nullptr;
  }
};

TEST_F(OutlookCommands, StartPageSaysWhatIsKnownNow) {
  Open({KnownCard(1, 1, 600), TestCard{}});
  const QLabel& line = Find<QLabel>(u"LabelKnownNow"_s);
  const auto is_blank = [&] { return line.text().trimmed().isEmpty(); };
  EXPECT_TRUE(is_blank());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !is_blank(); }));
  EXPECT_EQ(line.text(), u"Sie wissen jetzt etwa 1 von 1 Karten."_s);
  PutDeck({TestCard{}}, "/deck/other.mlb");
  ASSERT_TRUE(window().OpenFile("/deck/other.mlb"));
  EXPECT_TRUE(QTest::qWaitFor(is_blank));
}

TEST_F(OutlookCommands, CountedCardsAreOpenedInTheEditorAndFollowWhatItDoes) {
  Open({Answered(1, 20), Answered(2, 50), TestCard{.id = "000003"}});
  Trigger(u"AuswertungExecute"_s);
  TF_wneval* evaluation = Evaluated();
  ASSERT_NE(evaluation, nullptr);
  Control<QTabWidget>(*evaluation, u"Views"_s).setCurrentIndex(3);
  auto& costs = Control<OutlookPage>(*evaluation, u"PageKosten"_s);
  costs.plot().Select(0);
  QTest::keyClick(&costs.plot(), Qt::Key_Return);
  auto* editor = OpenWindows<TF_wned>().value(0);
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(editor->row(), 3) << "the costliest card";
  QTest::keyClick(evaluation, Qt::Key_T, Qt::ControlModifier);
  ASSERT_TRUE(costs.TableShown());
  auto& table = Control<QTableView>(costs, u"Tabelle"_s);
  table.setCurrentIndex(table.model()->index(1, 0));
  EXPECT_EQ(costs.plot().selected(), 1);
  QTest::keyClick(&table, Qt::Key_Return);
  EXPECT_EQ(editor->row(), 2);
  Control<QPushButton>(costs, u"ButtonKarten"_s).click();
  auto* list = evaluation->findChild<TF_dlkarten*>();
  ASSERT_NE(list, nullptr) << "of all that are shown";
  auto& cards = Control<QTableView>(*list, u"ListCards"_s);
  EXPECT_EQ(cards.model()->rowCount(), 2);

  // The first card goes and two come before the others: the list still opens the right one.
  CardCommand command;
  command.Remove(kFirstCardRow);
  for (int i = 0; i < 2; ++i) command.InsertBehind(1, {});
  ASSERT_TRUE(CardEdit(program.file()).Apply(command));
  EXPECT_EQ(Control<QLabel>(*list, u"LabelCount"_s).text(), u"eine Karte"_s);
  EXPECT_FALSE(Control<QPushButton>(costs, u"ButtonKarten"_s).isEnabled()) << "rows of the past are not offered";
  cards.setCurrentIndex(cards.model()->index(0, 0));
  QTest::keyClick(&cards, Qt::Key_Return);
  EXPECT_EQ(editor->row(), 4);
  EXPECT_TRUE(QTest::qWaitFor([&] { return costs.plot().Count() == 1; })) << "the figures follow by themselves";
  EXPECT_TRUE(list->isVisible());
}

TEST_F(OutlookCommands, EndOfARunLeadsToTheEvaluation) {
  keys::kRowOrder.Write(true, program.settings().ini);
  Open({TestCard{}});
  program.OpenLearning();
  auto* learning = OpenWindows<TF_wnlern>().value(0);
  ASSERT_NE(learning, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(learning));
  QApplication::processEvents();
  EXPECT_FALSE(Control<QPushButton>(*learning, u"ButtonAuswertung"_s).isVisible());
  Control<QAction>(*learning, u"Weiss_ich"_s).trigger();
  EXPECT_EQ(Control<QLabel>(*learning, u"LabelHeute"_s).text(), u"Heute: eine Antwort, 100 % gewusst"_s);
  auto& button = Control<QPushButton>(*learning, u"ButtonAuswertung"_s);
  ASSERT_TRUE(button.isVisible());
  button.click();
  EXPECT_NE(Evaluated(), nullptr);
}

}  // namespace
}  // namespace tessaro
