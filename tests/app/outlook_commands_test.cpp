#include <QLabel>
#include <QPushButton>

#include "outlook/wneval.h"
#include "outlook/wnprog.h"
#include "tests/app/main_window_fixture.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

template <typename Window>
Window* OpenWindow() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* found = qobject_cast<Window*>(widget); found != nullptr && found->isVisible()) return found;
  }
  return nullptr;
}

class OutlookCommands : public MainWindow {};

TEST_F(OutlookCommands, WindowsStandOverTheirCardFileAndGoWithIt) {
  Open({TestCard{}});
  const std::string before = disk.Content(kTestFile).value_or("");
  Trigger(u"AuswertungExecute"_s);
  Trigger(u"PrognoseExecute"_s);
  Trigger(u"PrognoseExecute"_s);
  auto* evaluation = OpenWindow<TF_wneval>();
  auto* forecast = OpenWindow<TF_wnprog>();
  ASSERT_NE(evaluation, nullptr);
  ASSERT_NE(forecast, nullptr);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !evaluation->Working() && !forecast->Working(); }));
  PutDeck({TestCard{}}, "/deck/other.mlb");
  ASSERT_TRUE(window().OpenFile("/deck/other.mlb"));
  EXPECT_EQ(OpenWindow<TF_wneval>(), nullptr);
  EXPECT_EQ(OpenWindow<TF_wnprog>(), nullptr);
  EXPECT_EQ(disk.Content(kTestFile), before);
}

TEST_F(OutlookCommands, StartPageSaysWhatIsKnownNow) {
  TestCard card;
  card.yes_no_row[0] = 'w';
  card.time_row = std::to_string(kNow - 600) + " 0";
  Open({card, TestCard{}});
  const QLabel& line = Find<QLabel>(u"LabelKnownNow"_s);
  EXPECT_TRUE(line.isHidden());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !line.isHidden(); }));
  EXPECT_EQ(line.text(), u"Sie wissen jetzt etwa 1 von 1 Karten."_s);
  PutDeck({TestCard{}}, "/deck/other.mlb");
  ASSERT_TRUE(window().OpenFile("/deck/other.mlb"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return line.isHidden(); }));
}

}  // namespace
}  // namespace tessaro
