// What the program does before its first window: it looks for another one, and for the sample files.
#include "app/single_instance.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <fstream>

#include "app/program_options.h"
#include "app/sample_files.h"
#include "tests/support/test_cards.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::StringLiterals;

constexpr int kOnABusyMachine = 60'000;  // milliseconds

// Another start of the program, while this one's message loop runs.
bool Start(const QString& name, const StartWish& wish, int patience = kOnABusyMachine) {
  bool handed = false;
  const std::unique_ptr<QThread> start(
      QThread::create([&] { handed = SingleInstance::HandOver(name, wish, patience); }));
  start->start();
  EXPECT_TRUE(QTest::qWaitFor([&] { return start->isFinished(); }, 2 * kOnABusyMachine));
  start->wait();
  return handed;
}

TEST(SingleInstance, TakesTheFilesOfOtherStartsAsLongAsItRuns) {
  const QTemporaryDir folder;
  const QString name = folder.filePath(u"socket"_s);
  EXPECT_FALSE(Start(name, {"/a.mlb"})) << "there is none";
  const std::vector<StartWish> said = {
      {"/d/\xFC \n\xC3\xBC.mlb"}, {}, {"/l", StartWish::Deed::Learn}, {{}, StartWish::Deed::NewFile}};
  std::vector<StartWish> heard;
  {
    SingleInstance first(name);
    QObject::connect(&first, &SingleInstance::OtherStart, [&](const StartWish& wish) { heard.push_back(wish); });
    const SingleInstance started_beside(name);
    for (const StartWish& wish : said) EXPECT_TRUE(Start(name, wish));
  }
  EXPECT_TRUE(heard == said && !ToStartWish(std::string_view("/a.mlb?\0", 8)));
  EXPECT_FALSE(Start(name, {"/a.mlb"}));
}

TEST(SingleInstance, ThatDoesNotAnswerIsNotWaitedForLong) {
  const QTemporaryDir folder;
  const QString name = folder.filePath(u"socket"_s);
  QLocalServer silent;
  ASSERT_TRUE(silent.listen(name));
  QElapsedTimer timer;
  timer.start();
  EXPECT_FALSE(Start(name, {"/a.mlb"}, SingleInstance::kPatience));
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
}

TEST(ProgramOptions, SayWhatIsWishedAndRefuseWhatDoesNotFit) {
  const auto read = [](const QString& said) {
    return ReadOptions((u"tessaro "_s + said).split(u' ', Qt::SkipEmptyParts));
  };
  using Deed = StartWish::Deed;
  EXPECT_TRUE(read(u"--new"_s).another && read({}).splash && !read(u"a.mlb"_s).another && !read(u"a.mlb"_s).splash);
  EXPECT_EQ(read(u"--learn a.mlb"_s).wish, (StartWish{"a.mlb", Deed::Learn}));
  EXPECT_EQ(read(u"--new-file"_s).wish, (StartWish{{}, Deed::NewFile}));
  for (const auto& said :
       {u"--new-file a.mlb"_s, u"--new-file --learn"_s, u"a.mlb b.mlb"_s, u"--palette red"_s, u"--x"_s}) {
    EXPECT_FALSE(read(said).mistake.isEmpty()) << said.toStdString();
  }
}

namespace fs = std::filesystem;

class Samples : public testing::Test {
 protected:
  Samples() {
    Write(samples / "Medien" / "bild.png", "picture");
    Write(samples / "Deck.mlb", FileText(std::vector<TestCard>(1)));
    Write(samples / "Deck.ini", "[START]\nMethode=2\n");
    Write(samples / "Medien" / "Ordner" / "bild.png", "not one of its pictures");
  }
  static void Write(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
  }
  static std::string Text(const fs::path& path) { return ReadFile(RealDisk(), path).value_or("missing"); }

  QTemporaryDir folder;
  fs::path root = ToPath(folder.path());
  fs::path samples = root / "share" / "tessaro" / "samples";
  fs::path documents = root / "documents" / "Tessaro";
};

TEST_F(Samples, AreFoundAroundTheProgram) {
  EXPECT_EQ(FindSampleFolder(root / "b" / "c" / "d"), samples);
  EXPECT_EQ(FindSampleFolder(root / "a" / "b" / "c" / "d"), fs::path());
  EXPECT_EQ(SampleFiles(samples), std::vector<fs::path>{samples / "Deck.mlb"});
  EXPECT_EQ(FindHelp(root / "bin"), fs::path());
  Write(root / "help" / "Hilfe.mlb", "help");
  EXPECT_EQ(FindHelp(root / "bin"), root / "help" / "Hilfe.mlb");
}

TEST_F(Samples, AreCopiedWholeAndOpenWithoutAMessage) {
  Write(documents / "Deck.mlb.neu", "what was cut short");
  const std::optional<fs::path> copy = OwnCopyOfSample(samples / "Deck.mlb", documents);
  ASSERT_EQ(copy, documents / "Deck.mlb");
  EXPECT_EQ(Text(*copy), Text(samples / "Deck.mlb"));
  EXPECT_EQ(Text(documents / "Medien" / "bild.png"), "picture");
  EXPECT_EQ(Text(documents / "Deck.ini"), "[START]\nMethode=2\n");
  const OpenReport report = CardFile().Open(*copy);
  EXPECT_EQ(report.result, OpenResult::Opened);
  EXPECT_FALSE(report.learn_index_rebuilt || report.link_index_rebuilt || fs::exists(documents / "Deck.mlb.neu"));
  // What the user has is never replaced.
  Write(documents / "Medien" / "bild.png", "own picture");
  Write(documents / "Deck.mlb", "learned");
  EXPECT_EQ(OwnCopyOfSample(samples / "Deck.mlb", documents), documents / "Deck.mlb");
  EXPECT_EQ(Text(documents / "Deck.mlb"), "learned");
  fs::remove(documents / "Deck.mlb");
  EXPECT_TRUE(OwnCopyOfSample(samples / "Deck.mlb", documents));
  EXPECT_EQ(Text(documents / "Medien" / "bild.png"), "own picture");
  fs::remove_all(samples / "Medien");
  fs::remove(samples / "Deck.ini");
  EXPECT_TRUE(OwnCopyOfSample(samples / "Deck.mlb", root / "without media"));
}

TEST_F(Samples, LeaveNothingBehindWhereTheyCannotBeCopied) {
  Write(root / "documents", "a file where the folder should be");
  EXPECT_FALSE(OwnCopyOfSample(samples / "Deck.mlb", documents));
  Write(samples / "Bad.mlb", "no cards");
  for (const char* name : {"Missing.mlb", "Bad.mlb"})
    EXPECT_FALSE(OwnCopyOfSample(samples / name, root / name)) << name;
  EXPECT_TRUE(SampleFiles(root / "Missing.mlb").empty());
  const fs::path taken[] = {"a/Medien", "b/Medien/bild.png.neu/x", "c/Deck.ini.neu/x", "d/Deck.mlb.neu/x"};
  for (const fs::path& name : taken) {
    Write(root / name, "no file or folder can be made there");
    EXPECT_FALSE(OwnCopyOfSample(samples / "Deck.mlb", root / *name.begin())) << name;
  }
}

}  // namespace
}  // namespace tessaro
