#include <QElapsedTimer>
#include <cstdlib>
#include <ctime>

#include "tests/app/main_window_fixture.h"

// A walk through the windows that no person would take: keys, clicks, commands and new sizes by chance, in whatever
// window or dialog happens to be open. Nothing may crash or hang, and afterwards the card file must be whole.
// TESSARO_WALK_SECONDS makes it longer, TESSARO_WALK_SEED begins elsewhere.
namespace tessaro {
namespace {

constexpr int kStandardSeconds = 15;
constexpr qint64 kLongestWork = 3000;    // ms of the processor
constexpr qint64 kLongestWait = 20'000;  // ms; the machine may be busy with other tests

int FromEnvironment(const char* name, int otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : std::atoi(value);
}

// Milliseconds that this thread has worked.
qint64 ProcessorTime() {
  timespec time = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return time.tv_sec * 1000 + time.tv_nsec / 1'000'000;
}

// Boxes are real ones, which stay open until the walk comes by; files are chosen by chance.
class WalkMessages : public BoxMessages {
 public:
  explicit WalkMessages(std::mt19937& chance) : chance_(chance) {}
  QString ChooseFileToOpen(QWidget*, const QString&, const QString&, const QString&) override { return AnyFile(); }
  QString ChooseFileToSave(QWidget*, const QString&, const QString&, const QString&) override { return AnyFile(); }
  QString ChooseFolder(QWidget*, const QString&, const QString&) override { return {}; }

 private:
  QString AnyFile() {
    const QStringList files = {
        QString(),          QLatin1StringView(kTestFile), QLatin1StringView(kOther), u"/deck/fehlt.mlb"_s,
        u"/deck/neu.mlb"_s, u"/deck/text.txt"_s};
    return files[static_cast<qsizetype>(chance_() % static_cast<size_t>(files.size()))];
  }
  std::mt19937& chance_;
};

class RandomWalk : public testing::Test {
 protected:
  RandomWalk() : chance_(static_cast<unsigned>(FromEnvironment("TESSARO_WALK_SEED", 1))), messages_(chance_) {
    QApplication::setQuitOnLastWindowClosed(false);
    disk_.Put(kTestFile, FileText({NewCard(1),
                                   WrongCard(2, 500),
                                   KnownCard(3, 100, 500),
                                   {.id = "000004", .question = "Eins <a href=\"000001\">weiter</a>", .answer = "b"},
                                   NavigationCard(5, "<navigation><home>Start <a href=\"000002\">zwei</a>")}));
    disk_.Put(kOther, FileText({{.id = "000007"}, {.id = "000008"}}));
    disk_.Put("/deck/text.txt", "eins\ttwo\r\nzwei\ttwo\r\n");
    program_ = std::make_unique<Program>(
        Machine{disk_, clock_, random_, messages_},
        ProgramPlaces{.settings = "/tessaro.ini", .samples = {}, .documents = "/documents", .backups = "/backups"});
  }

  size_t Any(size_t bound) { return chance_() % bound; }
  int AnyInt(int bound) { return static_cast<int>(Any(static_cast<size_t>(bound))); }
  template <typename Item>
  Item& AnyOf(QList<Item*>& items) {
    return *items[AnyInt(static_cast<int>(items.size()))];
  }

  // Says what comes, for the case that it lasts too long.
  void Doing(const QString& what, const QWidget& where, int how) {
    doing_ = u"%1 %2 at %3 \"%4\""_s.arg(what).arg(how).arg(QLatin1StringView(where.metaObject()->className()),
                                                            where.objectName());
  }

  // A window or dialog that takes input now.
  QWidget* Somewhere() {
    if (QWidget* popup = QApplication::activePopupWidget()) return popup;
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    QWidgetList windows = QApplication::topLevelWidgets();
    windows.removeIf([](const QWidget* w) { return !w->isVisible() || !w->isEnabled() || w->width() < 2; });
    if (windows.isEmpty()) {
      program_->main_window().show();
      return &program_->main_window();
    }
    return &AnyOf(windows);
  }

  void PressKey(QWidget& window) {
    // From these on one of so many that follow one another; keys that do much come twice.
    static constexpr std::pair<Qt::Key, int> kKeys[] = {
        {Qt::Key_Return, 1}, {Qt::Key_Return, 1}, {Qt::Key_Space, 1}, {Qt::Key_Space, 1}, {Qt::Key_Escape, 8},
        {Qt::Key_Tab, 1},    {Qt::Key_Home, 8},   {Qt::Key_Home, 8},  {Qt::Key_F1, 12},   {Qt::Key_A, 26},
        {Qt::Key_A, 26},     {Qt::Key_0, 10},     {Qt::Key_Less, 1},  {Qt::Key_Period, 1}};
    static constexpr Qt::KeyboardModifier kModifiers[] = {Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier};
    QWidget* target = window.focusWidget() != nullptr ? window.focusWidget() : &window;
    const auto [first, count] = kKeys[Any(std::size(kKeys))];
    const auto key = static_cast<Qt::Key>(first + AnyInt(count));
    const Qt::KeyboardModifiers modifiers = Any(2) == 0 ? Qt::KeyboardModifiers() : kModifiers[Any(3)];
    Doing(u"key"_s, *target, QKeyCombination(modifiers, key).toCombined());
    QTest::keyClick(target, key, modifiers);
  }

  // What the press leads to may take the widget away.
  void Click(QWidget* target, Qt::MouseButton button, const QPoint& place) {
    Doing(u"mouse"_s, *target, static_cast<int>(button));
    const QPointer<QWidget> alive(target);
    QTest::mousePress(target, button, {}, place);
    if (alive != nullptr) QTest::mouseRelease(target, button, {}, place);
  }

  void ClickSomewhere(QWidget& window) {
    const QPoint place(AnyInt(window.width()), AnyInt(window.height()));
    QWidget* target = window.childAt(place);
    if (target == nullptr) target = &window;
    const auto button = Any(8) == 0 ? Qt::RightButton : Qt::LeftButton;
    Click(target, button, target->mapFrom(&window, place));
  }

  void PressAnyButton(QWidget& window) {
    QList<QAbstractButton*> buttons = window.findChildren<QAbstractButton*>();
    buttons.removeIf([](const QAbstractButton* b) { return !b->isVisible() || !b->isEnabled(); });
    if (buttons.isEmpty()) return;
    QAbstractButton& button = AnyOf(buttons);
    Click(&button, Qt::LeftButton, button.rect().center());
  }

  void TriggerAnyCommand(QWidget& window) {
    QList<QAction*> actions = window.findChildren<QAction*>();
    actions.removeIf([](const QAction* a) { return !a->isEnabled() || a->menu() != nullptr || a->isSeparator(); });
    if (actions.isEmpty()) return;
    QAction& action = AnyOf(actions);
    Doing(u"command "_s + action.text(), window, 0);
    action.trigger();
  }

  void DoAnything() {
    QWidget& window = *Somewhere();
    clock_.now += AnyInt(100);
    const size_t dice = Any(12);
    if (dice == 0) return window.resize(100 + AnyInt(900), 100 + AnyInt(700));
    if (dice <= 2) return PressAnyButton(window);
    if (dice == 3) return TriggerAnyCommand(window);
    if (dice == 4) return ClickSomewhere(window);
    if (dice > 6) return PressKey(window);
    if (dice == 5 && Any(8) == 0) window.close();
    if (dice == 6 && !program_->file().IsOpen()) program_->main_window().OpenLater(kTestFile);
  }

  // Dialogs run their own loops inside an action, so each action has asked for the next one before it begins, and what
  // is watched is the time from one to the next.
  void Step() {
    QTimer::singleShot(0, &steps_, [this] { Step(); });
    ++actions_;
    const qint64 wait = since_last_.restart();
    const qint64 work = ProcessorTime() - std::exchange(worked_, ProcessorTime());
    EXPECT_TRUE(work < kLongestWork && wait < kLongestWait) << doing_.toStdString() << ": " << work << " of " << wait;
    doing_ = u"something else"_s;
    if (all_.elapsed() < seconds_ * 1000) return DoAnything();
    if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
  }

  std::mt19937 chance_;
  MemoryDisk disk_;
  FixedClock clock_;
  WalkMessages messages_;
  ScriptedRandom random_{chance_};
  std::unique_ptr<Program> program_;

  int seconds_ = FromEnvironment("TESSARO_WALK_SECONDS", kStandardSeconds);
  int actions_ = 0;
  QString doing_;
  qint64 worked_ = ProcessorTime();
  QElapsedTimer since_last_;
  QElapsedTimer all_;
  QObject steps_;  // with it the waiting steps end
};

TEST_F(RandomWalk, LeavesEverythingWhole) {
  program_->main_window().show();
  program_->main_window().OpenLater(kTestFile);
  since_last_.start();
  all_.start();
  Step();
  while (all_.elapsed() < seconds_ * 1000) QTest::qWait(20);
  EXPECT_GT(actions_, 100);
  CardFile& file = program_->file();
  if (file.IsOpen()) {
    EXPECT_TRUE(file.RebuildIndexes());
    EXPECT_EQ(file.Save(), SaveResult::Saved);
  }
  program_.reset();
  for (const char* path : {kTestFile, kOther}) {
    CardFile again(disk_);
    EXPECT_EQ(again.Open(path).result, OpenResult::Opened) << path;
  }
}

}  // namespace
}  // namespace tessaro
