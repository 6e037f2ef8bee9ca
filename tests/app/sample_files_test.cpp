#include "app/sample_files.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <fstream>

#include "tests/support/test_cards.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

class Samples : public testing::Test {
 protected:
  Samples() {
    Write(samples / "Medien" / "bild.png", "picture");
    Write(samples / "Deck.mlb", FileText(std::vector<TestCard>(1)));
    Write(samples / "Deck.ini", "[START]\nMethode=2\n");
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
  EXPECT_EQ(FindSampleFolder(root / "bin"), samples);
  EXPECT_EQ(FindSampleFolder(root / "documents" / "a" / "b" / "c" / "d"), fs::path());
  EXPECT_EQ(SampleFiles(samples), std::vector<fs::path>{samples / "Deck.mlb"});
}

TEST_F(Samples, AreCopiedWholeAndOpenWithoutAMessage) {
  const std::optional<fs::path> copy = OwnCopyOfSample(samples / "Deck.mlb", documents);
  ASSERT_EQ(copy, documents / "Deck.mlb");
  EXPECT_EQ(Text(*copy), Text(samples / "Deck.mlb"));
  EXPECT_EQ(Text(documents / "Medien" / "bild.png"), "picture");
  EXPECT_EQ(Text(documents / "Deck.ini"), "[START]\nMethode=2\n");
  const OpenReport report = CardFile().Open(*copy);
  EXPECT_EQ(report.result, OpenResult::Opened);
  EXPECT_FALSE(report.learn_index_rebuilt || report.link_index_rebuilt);
}

TEST_F(Samples, NeverReplaceWhatTheUserHas) {
  Write(documents / "Medien" / "bild.png", "own picture");
  Write(documents / "Deck.mlb", "learned");
  EXPECT_EQ(OwnCopyOfSample(samples / "Deck.mlb", documents), documents / "Deck.mlb");
  EXPECT_EQ(Text(documents / "Deck.mlb"), "learned");
  fs::remove(documents / "Deck.mlb");
  EXPECT_TRUE(OwnCopyOfSample(samples / "Deck.mlb", documents));
  EXPECT_EQ(Text(documents / "Medien" / "bild.png"), "own picture");
}

TEST_F(Samples, LeaveNothingBehindWhereTheyCannotBeCopied) {
  Write(root / "documents", "a file where the folder should be");
  EXPECT_FALSE(OwnCopyOfSample(samples / "Deck.mlb", documents));
  EXPECT_FALSE(OwnCopyOfSample(samples / "Missing.mlb", root / "elsewhere"));
  EXPECT_TRUE(SampleFiles(root / "elsewhere").empty());
}

}  // namespace
}  // namespace tessaro
