#include <QAccessible>
#include <QDateEdit>
#include <QMouseEvent>
#include <QSplitter>

#include "cards/card_edit.h"
#include "outlook/dlkarten.h"
#include "outlook/number_texts.h"
#include "outlook/wneval.h"
#include "outlook/wnprog.h"
#include "tests/outlook/outlook_fixture.h"
#include "tests/support/window_test.h"

namespace tessaro {
namespace {

class OutlookWindowTest : public OutlookTest {
 protected:
  void Open(std::vector<TestCard> cards) {
    for (size_t i = 0; i < cards.size(); ++i) {
      cards[i].id = u"%1"_s.arg(i + 1, 6, 10, QChar(u'0')).toStdString();
      cards[i].question = "Wort " + std::to_string(i + 1);
    }
    OutlookTest::Open(cards);
    keys::kPlanMinutes.Write(2, file.settings());  // plans of much work take long
  }
  static void Wait(const OutlookWindow& window) {
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.Working(); }));
  }
  // A window that has worked out its first page.
  template <typename Window>
  struct Shown : Window {
    explicit Shown(OutlookWindowTest& test) : Window(test.file, test.settings, test.clock) {
      this->show();
      this->Renew();
      Wait(*this);
    }
  };
  static OutlookPage& Page(const QWidget& window, const QString& name) { return Control<OutlookPage>(window, name); }
  static QString Sentence(const OutlookPage& page) { return Control<QLabel>(page, u"LabelAntwort"_s).text(); }
  static void GoTo(OutlookWindow& window, int view) {
    Control<QTabWidget>(window, u"Views"_s).setCurrentIndex(view);
    Wait(window);
  }

  ProgramSettings settings;
  FixedClock clock;
};

const char16_t* const kEvaluationPages[] = {u"PageWissen", u"PageGetan", u"PageStimmen", u"PageKosten"};

TEST_F(OutlookWindowTest, ADeckOfNewCardsGetsItsSentences) {
  Open({TestCard{}, TestCard{}});
  Shown<TF_wneval> evaluation(*this);
  const char16_t* const sentences[] = {
      u"Noch keine Karte beantwortet. Nach den ersten Antworten steht hier, was Sie wissen.",
      u"Noch keine Karte beantwortet. Nach den ersten Antworten steht hier, was Sie getan haben.",
      u"Noch zu wenige Antworten (0 von 100). Bis dahin gelten die Vorgabewerte.",
      u"Noch keine Lernzeit gemessen. Hier stehen einmal die Karten, die am meisten Zeit kosten."};
  for (int view = 0; view < 4; ++view) {
    GoTo(evaluation, view);
    OutlookPage& page = Page(evaluation, QString::fromUtf16(kEvaluationPages[view]));
    EXPECT_EQ(Sentence(page), QString::fromUtf16(sentences[view]));
    EXPECT_EQ(page.plot().Count(), 0);
  }
  Shown<TF_wnprog> forecast(*this);
  EXPECT_TRUE(Sentence(Page(forecast, u"PageFaellig"_s)).startsWith(u"Noch keine Karte beantwortet."));
  GoTo(forecast, 1);
  EXPECT_TRUE(Sentence(Page(forecast, u"PagePruefung"_s)).contains(u" von 2 ("));
}

TEST_F(OutlookWindowTest, EveryBarOpensExactlyItsCards) {
  std::vector<TestCard> cards = DrawDeck(41, 60, 8, kStandardWeights);
  for (size_t i = 0; i < cards.size(); ++i) {
    cards[i].time_learned = std::to_string(i * 3);
    cards[i].score = std::to_string(i * 90'000);
  }
  cards.emplace_back();
  Open(cards);
  Shown<TF_wneval> evaluation(*this);
  const auto check = [](OutlookWindow& window, OutlookPage& page) {
    int opened = 0;
    for (int item = 0; item < page.plot().Count(); ++item) {
      page.plot().Select(item);
      if (!Control<QPushButton>(page, u"ButtonKarten"_s).isEnabled()) continue;
      QTest::keyClick(&page.plot(), Qt::Key_Return);
      auto* list = window.findChild<TF_dlkarten*>();
      if (list == nullptr || !list->isVisible()) return -1;
      const QString text = page.plot().TextOf(item);
      const int shown = Control<QTableView>(*list, u"ListCards"_s).model()->rowCount();
      EXPECT_TRUE(!text.contains(u" Karten"_s) || text.contains(CardsText(shown))) << text.toStdString();
      EXPECT_FALSE(Control<QPushButton>(*list, u"ButtonEdit"_s).isVisible()) << "there is no editor";
      opened += shown;
      list->close();
    }
    return opened;
  };
  EXPECT_EQ(check(evaluation, Page(evaluation, u"PageWissen"_s)), 61);
  Control<QRadioButton>(evaluation, u"RbBehaltenszeit"_s).click();
  EXPECT_EQ(check(evaluation, Page(evaluation, u"PageWissen"_s)), 61);
  for (int view = 1; view < 4; ++view) {
    GoTo(evaluation, view);
    if (view == 1) Control<QComboBox>(evaluation, u"CbZeitraum"_s).setCurrentIndex(2);
    if (view == 2) Control<QComboBox>(evaluation, u"CbPruefzeitraum"_s).setCurrentIndex(3);
    Wait(evaluation);
    EXPECT_GT(check(evaluation, Page(evaluation, QString::fromUtf16(kEvaluationPages[view]))), 0) << view;
  }
  Shown<TF_wnprog> forecast(*this);
  EXPECT_EQ(check(forecast, Page(forecast, u"PageFaellig"_s)), 60);
}

// What is under way for a page ends when another page wants its own figures; it is not forgotten.
TEST_F(OutlookWindowTest, PagesAreWorkedOutHoweverFastTheyAreTurned) {
  Open(DrawDeck(61, 60, 6, kStandardWeights, kNow - 200 * kDay));
  Shown<TF_wneval> evaluation(*this);
  auto& tabs = Control<QTabWidget>(evaluation, u"Views"_s);
  for (const int view : {1, 2, 1, 0}) tabs.setCurrentIndex(view);
  evaluation.Renew();
  EXPECT_EQ(Sentence(Page(evaluation, u"PageWissen"_s)), u"Wird berechnet …"_s);
  for (const int view : {2, 1, 0, 1, 3, 2, 0}) tabs.setCurrentIndex(view);
  for (const int view : {2, 1, 0}) {
    GoTo(evaluation, view);
    const QString sentence = Sentence(Page(evaluation, QString::fromUtf16(kEvaluationPages[view])));
    EXPECT_NE(sentence, u"Wird berechnet …"_s) << view;
  }
  Shown<TF_wnprog> forecast(*this);
  EXPECT_EQ(Page(forecast, u"PageFaellig"_s).plot().Count(), 3 + 30) << "a month at first";
  Control<QSpinBox>(forecast, u"SpinRueckstand"_s).setValue(1);
  auto& backlog = Control<QLabel>(forecast, u"LabelRueckstand"_s);
  ASSERT_TRUE(QTest::qWaitFor([&] { return backlog.text() == u"wird berechnet …"_s; }));
  GoTo(forecast, 1);
  GoTo(forecast, 0);
  EXPECT_TRUE(backlog.text().contains(u"mit 30 Sek. "_s)) << backlog.text().toStdString();
  Control<QSpinBox>(forecast, u"SpinRueckstand"_s).setValue(2);
  GoTo(forecast, 1);
  EXPECT_TRUE(Page(forecast, u"PagePruefung"_s).plot().TextOf(2).startsWith(u"2 Min. am Tag: "_s));
  Control<QSpinBox>(forecast, u"SpinMinuten"_s).setValue(4);
  GoTo(forecast, 0);
  EXPECT_TRUE(backlog.text().contains(u"mit 2 Min. "_s)) << "the wish holds for both pages";

  const std::pair<int, int> bars[] = {{0, 3 + 7}, {2, 3 + 13}, {3, 3 + 53}};
  for (const auto& [choice, count] : bars) {
    Control<QComboBox>(forecast, u"CbHorizont"_s).setCurrentIndex(choice);
    Wait(forecast);
    EXPECT_EQ(Page(forecast, u"PageFaellig"_s).plot().Count(), count);
  }
  QSignalSpy learn(&forecast, &TF_wnprog::LearnWanted);
  EXPECT_TRUE(Control<QWidget>(forecast, u"PanelPause"_s).isVisible());
  Press(forecast, u"ButtonLernen"_s);
  EXPECT_EQ(learn.size(), 1);
}

// Cards that change and go, F5, Esc.
TEST_F(OutlookWindowTest, FollowsTheDeckUntilItIsClosed) {
  Open(DrawDeck(71, 30, 5, kStandardWeights));
  Shown<TF_wneval> evaluation(*this);
  OutlookPage& page = Page(evaluation, u"PageWissen"_s);
  const auto list = [&] { return evaluation.findChild<TF_dlkarten*>(); };
  const auto open_list = [&] {
    for (int item = 0; list() == nullptr && item < page.plot().Count(); ++item) {
      page.plot().Select(item);
      QTest::keyClick(&page.plot(), Qt::Key_Return);
    }
  };
  open_list();
  ASSERT_NE(list(), nullptr);
  CardCommand blank;
  blank.Replace(2, {{file.columns().time_row, BlankTimeRow()}});
  ASSERT_TRUE(CardEdit(file).Apply(blank));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Sentence(page).endsWith(u" Eine ist neu."_s); }));
  EXPECT_NE(list(), nullptr) << "it may be in use";
  evaluation.Renew();
  EXPECT_EQ(list(), nullptr) << "it is of the past";
  CardCommand command;
  command.Remove(3);
  ASSERT_TRUE(CardEdit(file).Apply(command));
  EXPECT_FALSE(evaluation.Working()) << "the rows are others now";
  EXPECT_TRUE(QTest::qWaitFor([&] { return Sentence(page).contains(u" von 28 Karten"_s); }));
  double cards = 0;
  for (const PlotBar& bar : page.plot().content().bars) cards += bar.parts[0].value;
  EXPECT_EQ(cards, 29);
  open_list();
  evaluation.resize(evaluation.width(), 640);
  evaluation.close();
  EXPECT_EQ(list(), nullptr);
  TF_wneval again(file, settings, clock);
  again.show();
  EXPECT_EQ(again.height(), 640);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&again));
  QTest::keyClick(&again, Qt::Key_F5);
  EXPECT_TRUE(again.Working());
  QTest::keyClick(&again, Qt::Key_Escape);
  EXPECT_FALSE(again.isVisible());
}

TEST_F(OutlookWindowTest, ChoicesOfThePagesMeanWhatTheySay) {
  const int64_t today = days.DayOf(kNow);
  const int64_t month = days.StartOf(today - 29);
  std::vector<TestCard> cards(1, CardWith({{month - 100 * kDay, 'w'}, {month - 1, 'w'}, {month, 'w'}}));
  cards.push_back(CardWith({{kNow - 9, 'f'}, {kNow - 8, 'f'}, {kNow - 7, 'w'}}, 1, 20));
  cards.push_back(CardWith({{kNow - 40 * kDay, 'f'}}, 1, 10));
  cards.push_back(CardWith({{kNow - 7, 'w'}}, 1, 30));
  Open(cards);
  Shown<TF_wneval> evaluation(*this);
  GoTo(evaluation, 2);
  const std::pair<int, int> answers[] = {{0, 3}, {1, 4}, {3, 4}};
  for (const auto& [choice, count] : answers) {
    Control<QComboBox>(evaluation, u"CbPruefzeitraum"_s).setCurrentIndex(choice);
    Wait(evaluation);
    const QString sentence = Sentence(Page(evaluation, u"PageStimmen"_s));
    EXPECT_TRUE(sentence.contains(u"(%1 von 100)"_s.arg(count))) << sentence.toStdString();
  }
  GoTo(evaluation, 3);
  const char16_t* const first[] = {u"Wort 4: ", u"Wort 2: ", u"Wort 3: "};
  for (int order = 0; order < 3; ++order) {
    Control<QComboBox>(evaluation, u"CbSortierung"_s).setCurrentIndex(order);
    EXPECT_TRUE(Page(evaluation, u"PageKosten"_s).plot().TextOf(0).startsWith(QString::fromUtf16(first[order])));
  }
  // A day of the past is no wish any more.
  ASSERT_TRUE(file.settings().SetString("PROG", "Datum", "2023-11-13"));
  TF_wnprog forecast(file, settings, clock);
  EXPECT_EQ(Control<QDateEdit>(forecast, u"DatePruefung"_s).date(), QDate(1970, 1, 1).addDays(today + 90));
}

TEST_F(OutlookWindowTest, TellsFiguresInWordsAndAsATable) {
  Open({CardWith({{kNow - kDay, 'w'}}), CardWith({{kNow - kDay, 'f'}}), TestCard{}, CardWith({{kNow + 5, 'w'}})});
  Shown<TF_wneval> evaluation(*this);
  OutlookPage& page = Page(evaluation, u"PageWissen"_s);
  // .9331 + .7225, and the root of the sum of p (1 - p).
  EXPECT_EQ(Sentence(page), u"Sie wissen jetzt etwa 2 von 2 Karten (83 %, ± 1). Eine ist neu."_s);
  EXPECT_TRUE(Control<QLabel>(page, u"LabelHinweis"_s).text().contains(u"Eine Karte mit Zeit in der Zukunft"_s));
  page.plot().Select(5);
  EXPECT_EQ(Control<QLabel>(page, u"LabelAuswahl"_s).text(), u"90 bis 95 %: eine Karte, 33 %"_s);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&page.plot())->text(QAccessible::Description),
            u"90 bis 95 %: eine Karte, 33 %"_s);
  Press(page, u"ButtonKopieren"_s);
  const QStringList lines = QGuiApplication::clipboard()->text().split(u'\n');
  EXPECT_EQ(lines[0], u"Gewusst mit\tKarten\tAnteil"_s);
  EXPECT_EQ(lines[4], u"70 bis 80 %\t1\t33 %"_s);
}

TEST_F(OutlookWindowTest, TableGoesWithThePlot) {
  std::vector<TestCard> cards;
  for (int i = 1; i <= 60; ++i) cards.push_back(CardWith({{kNow - kDay, 'w'}}, 1, i));
  Open(cards);
  Shown<TF_wneval> evaluation(*this);
  GoTo(evaluation, 3);
  OutlookPage& page = Page(evaluation, u"PageKosten"_s);
  QApplication::processEvents();
  QTest::keyClick(&page.plot(), Qt::Key_End);
  EXPECT_TRUE(page.plot().visibleRegion().contains(page.plot().FrameOf(49).center())) << "it is scrolled to";
  EXPECT_FALSE(page.TableShown());
  auto& table = Control<QTableView>(page, u"Tabelle"_s);
  QTest::keyClick(&evaluation, Qt::Key_T, Qt::ControlModifier);
  EXPECT_TRUE(page.TableShown() && table.height() > 50);
  EXPECT_EQ(evaluation.focusWidget(), &table);
  table.setCurrentIndex(table.model()->index(7, 0));
  EXPECT_EQ(page.plot().selected(), 7);
  QTest::keyClick(&evaluation, Qt::Key_T, Qt::ControlModifier);
  EXPECT_EQ(evaluation.focusWidget(), &page.plot());
  EXPECT_EQ(table.focusPolicy(), Qt::NoFocus);

  // Pulled up by the mouse, the table stays where it was put.
  auto& splitter = Control<QSplitter>(page, u"Teilung"_s);
  EXPECT_EQ(splitter.sizes().back(), 0);
  const auto pull = [&](QEvent::Type type, int up, Qt::MouseButtons held) {
    const QPoint at = QPoint(5, 1 - up);
    QMouseEvent event(type, at, splitter.handle(1)->mapToGlobal(at), Qt::LeftButton, held, {});
    QApplication::sendEvent(splitter.handle(1), &event);
  };
  pull(QEvent::MouseButtonPress, 0, Qt::LeftButton);
  pull(QEvent::MouseMove, 90, Qt::LeftButton);
  pull(QEvent::MouseButtonRelease, 0, Qt::NoButton);
  EXPECT_TRUE(page.TableShown());
  EXPECT_NEAR(splitter.sizes().back(), 90, 20);

  // The lines of this table are days, not curves.
  Shown<TF_wnprog> forecast(*this);
  GoTo(forecast, 1);
  OutlookPage& plan = Page(forecast, u"PagePruefung"_s);
  auto& days_table = Control<QTableView>(plan, u"Tabelle"_s);
  days_table.setCurrentIndex(days_table.model()->index(2, 0));
  EXPECT_EQ(plan.plot().selected(), -1);
}

TEST_F(OutlookWindowTest, ListSortsAndOpensTheEditor) {
  std::vector<TestCard> cards;
  for (int i = 0; i < 5; ++i) cards.push_back(CardWith({{kNow - (5 - i) * kDay, 'f'}}, 0, i * 200 % 500));
  Open(cards);
  int edited = 0;
  TF_dlkarten list(file, nullptr);
  const auto deck = std::make_shared<const DeckOutlook>(Read());
  list.Show(u"Titel"_s, CardLines(file, deck, {}, {2, 3, 4, 5, 6, 99}), [&](int row) { edited = row; });
  auto& view = Control<QTableView>(list, u"ListCards"_s);
  EXPECT_EQ(view.model()->rowCount(), 5) << "a row that is gone is left out";
  EXPECT_EQ(view.currentIndex().row(), 0);
  for (const int column : {1, 2}) {
    const auto side = view.model()->index(0, column).data(Qt::TextAlignmentRole).value<Qt::Alignment>();
    EXPECT_TRUE(side.testFlag(column == 1 ? Qt::AlignLeft : Qt::AlignRight)) << "figures stand at the right";
  }
  view.sortByColumn(2, Qt::DescendingOrder);
  EXPECT_EQ(view.model()->index(0, 0).data(), u"000005"_s) << "asked last";
  EXPECT_EQ(view.currentIndex().siblingAtColumn(0).data(), u"000001"_s) << "what is selected stays so";
  view.sortByColumn(5, Qt::AscendingOrder);
  view.setCurrentIndex(view.model()->index(4, 0));
  QTest::keyClick(&view, Qt::Key_Return);
  EXPECT_EQ(edited, 4);
  Press(list, u"ButtonText"_s);
  const QStringList lines = QGuiApplication::clipboard()->text().split(u'\n');
  EXPECT_EQ(lines[0], u"Karte\tFrage\tGewusst\tFällig\tFehler\tLernzeit"_s);
  const auto change_question = [&](int row) {
    CardCommand command;
    command.Replace(row, {{file.columns().question, "anders"}});
    QSignalSpy changed(view.model(), &QAbstractItemModel::dataChanged);
    return CardEdit(file).Apply(command) && changed.size() == 1;
  };
  EXPECT_TRUE(change_question(4)) << "what is seen follows";
  EXPECT_EQ(lines[5], u"000003\tWort 3\t65 %\tüberfällig\t1\t7 Min."_s);
}

TEST_F(OutlookWindowTest, ForecastKeepsItsWishesAndNothingElse) {
  Open(DrawDeck(51, 30, 6, kStandardWeights));
  const std::string before = FileText(file.cards());
  {
    Shown<TF_wnprog> forecast(*this);
    EXPECT_FALSE(Sentence(Page(forecast, u"PageFaellig"_s)).isEmpty());
    GoTo(forecast, 1);
    OutlookPage& page = Page(forecast, u"PagePruefung"_s);
    const QString last = Sentence(page);
    Control<QSpinBox>(forecast, u"SpinMinuten"_s).setValue(5);
    Control<QSpinBox>(forecast, u"SpinNeu"_s).setValue(7);
    auto& date = Control<QDateEdit>(forecast, u"DatePruefung"_s);
    const QDate today = QDate(1970, 1, 1).addDays(days.DayOf(kNow));
    const std::pair<int, QString> refused[] = {{-1, u"Der Tag der Prüfung liegt in der Vergangenheit."_s},
                                               {731, u"Der Tag der Prüfung liegt mehr als 730 Tage in der Zukunft."_s},
                                               {730, QString()},
                                               {0, QString()}};
    for (const auto& [ahead, text] : refused) {
      date.setDate(today.addDays(ahead));
      EXPECT_EQ(Control<QLabel>(forecast, u"LabelStatus"_s).text(), text);
      EXPECT_EQ(forecast.Working(), text.isEmpty());
      EXPECT_EQ(Sentence(page) == last, !text.isEmpty()) << "what is shown still holds where nothing else comes";
    }
    for (const char* typed : {"21112023\r", "20.11.2023\r"}) {
      date.setFocus();
      date.setSelectedSection(QDateTimeEdit::DaySection);
      QTest::keyClicks(&date, QLatin1String(typed));
      EXPECT_EQ(date.date(), QDate(2023, 11, 20 + typed[1] - '0')) << typed;
    }
    Wait(forecast);
    EXPECT_TRUE(Sentence(page).startsWith(u"Am 20.11. wissen Sie voraussichtlich "_s)) << Sentence(page).toStdString();
    EXPECT_EQ(page.plot().Count(), 4);
    // Closed in the middle of a plan.
    Control<QSpinBox>(forecast, u"SpinNeu"_s).setValue(8);
    forecast.close();
    EXPECT_FALSE(forecast.Working());
  }
  EXPECT_EQ(file.settings().GetInt("PROG", "Minuten", 0), 5);
  EXPECT_EQ(file.settings().GetInt("PROG", "Neu", 0), 8);
  EXPECT_EQ(file.settings().GetString("PROG", "Datum", ""), "2023-11-20");
  EXPECT_EQ(FileText(file.cards()), before);
  EXPECT_FALSE(file.changed());
  TF_wnprog again(file, settings, clock);
  EXPECT_EQ(Control<QSpinBox>(again, u"SpinMinuten"_s).value(), 5);
}

}  // namespace
}  // namespace tessaro
