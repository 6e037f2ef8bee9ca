#pragma once

#include "edit/side_field.h"
#include "edit/wned.h"
#include "tests/support/test_cards.h"
#include "tests/support/window_test.h"

namespace tessaro {

// An editor over a card file in memory.
class CardEditor : public WindowTest {
 protected:
  void Open(const std::vector<TestCard>& cards = {{.id = "000001", .question = "Ofen"},
                                                  {.id = "000002", .question = "Topf <a href=\"000001\">x</a>"},
                                                  {.id = "000003", .question = "Herd"}}) {
    window.reset();
    file.Close();
    OpenTestFile(disk, file, cards);
    window = std::make_unique<TF_wned>(file, settings, EditorMachine{clock, disk, messages, keep}, made);
    window->resize(1300, 800);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    Front().setFocus();
  }
  QWidget& Tested() override { return *window; }
  SideField& Front() { return Find<SideField>(u"RichEditKarteVorne"_s); }
  SideField& Back() { return Find<SideField>(u"RichEditKarteHinten"_s); }
  void Type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  std::string Stored(int row, bool front = true) {
    const CardColumns& columns = file.columns();
    return std::string(file.cards().Peek(front ? columns.question : columns.answer, row));
  }
  QString Status() { return Text(u"LabelStatus"_s); }

  CardFile file{disk};
  ProgramSettings settings;
  int64_t made = 0;
  int kept = 0;
  const std::function<bool(QWidget*)> keep = [this](QWidget*) { return kept++ > 0; };  // refused the first time
  std::unique_ptr<TF_wned> window;
};

}  // namespace tessaro
