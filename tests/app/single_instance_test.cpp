#include "app/single_instance.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QLocalServer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <memory>
#include <vector>

#include "app/program_options.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::StringLiterals;

constexpr int kOnABusyMachine = 60'000;  // milliseconds

// Another start of the program, while this one's message loop runs.
bool Start(const QString& name, const std::filesystem::path& card_file, int patience = kOnABusyMachine) {
  bool handed = false;
  const std::unique_ptr<QThread> start(
      QThread::create([&] { handed = SingleInstance::HandOver(name, card_file, patience); }));
  start->start();
  EXPECT_TRUE(QTest::qWaitFor([&] { return start->isFinished(); }, 2 * kOnABusyMachine));
  start->wait();
  return handed;
}

TEST(SingleInstance, TakesTheFilesOfOtherStartsAsLongAsItRuns) {
  const QTemporaryDir folder;
  const QString name = folder.filePath(u"socket"_s);
  EXPECT_FALSE(Start(name, "/a.mlb")) << "there is none";
  std::vector<std::filesystem::path> files;
  {
    SingleInstance first(name);
    QObject::connect(&first, &SingleInstance::OtherStart, [&](const auto& file) { files.push_back(file); });
    const SingleInstance started_beside(name);
    for (const std::string file : {"/d/\xFC \n\xC3\xBC.mlb", ""}) EXPECT_TRUE(Start(name, file));
  }
  EXPECT_EQ(files, (std::vector<std::filesystem::path>{"/d/\xFC \n\xC3\xBC.mlb", ""}));
  EXPECT_FALSE(Start(name, "/a.mlb"));
}

TEST(SingleInstance, ThatDoesNotAnswerIsNotWaitedForLong) {
  const QTemporaryDir folder;
  const QString name = folder.filePath(u"socket"_s);
  QLocalServer silent;
  ASSERT_TRUE(silent.listen(name));
  QElapsedTimer timer;
  timer.start();
  EXPECT_FALSE(Start(name, "/a.mlb", SingleInstance::kPatience));
  EXPECT_TRUE(timer.elapsed() >= 1500 && timer.elapsed() < kOnABusyMachine / 2) << timer.elapsed();
}

TEST(SingleInstance, HasANameForEachSettingsFileAndDisplay) {
  const QString name = SingleInstance::NameFor("/a.ini");
  EXPECT_EQ(name, SingleInstance::NameFor("/a.ini"));
  EXPECT_NE(name, SingleInstance::NameFor("/b.ini"));
  const QByteArray display = qgetenv("DISPLAY");
  qputenv("DISPLAY", display + "1");
  EXPECT_NE(name, SingleInstance::NameFor("/a.ini"));
  display.isEmpty() ? qunsetenv("DISPLAY") : qputenv("DISPLAY", display);
  EXPECT_TRUE(ReadOptions({u"tessaro"_s, u"--new"_s}).another);
  EXPECT_FALSE(ReadOptions({u"tessaro"_s, u"a.mlb"_s}).another);
}

}  // namespace
}  // namespace tessaro
