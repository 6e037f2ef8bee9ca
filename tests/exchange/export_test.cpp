#include "exchange/card_export.h"

#include "exchange/separators.h"
#include "platform/memory_file.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

// The text of an export, with what it says of itself behind it.
std::string Table(const CardTable& cards, TextFileForm form = {}) {
  MemoryWriter file;
  const ExportResult result = WriteTableExport(cards, ';', '\'', form, file);
  return file.TakeText() + std::to_string(result.cards) + (result.end == ExportEnd::UnfitSeparator ? " unfit" : "");
}

std::string Text(const CardTable& cards, TextFileForm form = {}) {
  MemoryWriter file;
  const ExportResult result = WriteTextExport(cards, ';', '|', form, file);
  const bool unfit = result.end == ExportEnd::UnfitSeparator;
  return file.TakeText() + std::to_string(result.cards) + (unfit ? std::string(" unfit ") + result.separator : "");
}

TestCard Card(const std::string& question, const std::string& answer, const std::string& id = "000001") {
  return {.id = id, .question = question, .answer = answer, .yes_no_row = "wf", .time_row = "7 0"};
}

TEST(CardExport, TableHasARowForEachCardWithItsTextsEscaped) {
  EXPECT_EQ(Table(MakeCards({Card("a\"b\\c\n", "\r\x0F")})),
            "@@;;;;;;;\n000001;00;a'b\\\\c\\n;\r\x0F;000000001;0;wf;7 0\n2");
}

TEST(CardExport, TextKeepsLineBreaksAndQuotesAndDoublesBackslashes) {
  EXPECT_EQ(Text(MakeCards({Card("a\"b\\c\nd", "e")})), ";\n|\na\"b\\\\c\nd;\ne|\n2");
}

TEST(CardExport, WalkEndsBeforeTheFirstIdThatBeginsWithANumberSign) {
  const CardTable cards = MakeCards({Card("a", "b"), Card("c", "d", "#00002"), Card("e", "f")});
  EXPECT_EQ(Text(cards), ";\n|\na;\nb|\n2");
  EXPECT_EQ(Table(cards), "@@;;;;;;;\n000001;00;a;b;000000001;0;wf;7 0\n2");
}

TEST(CardExport, UnfitSeparatorEndsItBehindTheCardsBefore) {
  EXPECT_EQ(Table(MakeCards({Card("a", "b;")})), "@@;;;;;;;\n1 unfit");
  EXPECT_EQ(Text(MakeCards({Card("a", "b"), Card("a|", "b;")})), ";\n|\na;\nb|\n2 unfit ;");
  EXPECT_EQ(Text(MakeCards({Card("a", "b|")})), ";\n|\n1 unfit |");
  EXPECT_EQ(Table(MakeCards({{.topic = ";"}})).find("unfit"), std::string::npos);
}

TEST(CardExport, FileFormDecidesAboutLineEndsAndUtf8) {
  EXPECT_EQ(Text(MakeCards({Card("\xE4", "x\ny")}), {.cr_lf = true, .utf8 = true}),
            ";\r\n|\r\n\xC3\xA4;\r\nx\r\ny|\r\n2");
}

TEST(CardExport, FailedDiskAndCancelledWorkLeaveTheOldFile) {
  const CardTable cards = MakeCards(std::vector<TestCard>(3000, Card("Frage", "Antwort")));
  MemoryDisk disk;
  disk.Put("/x.txt", "old");
  const auto run = [&](const WorkObserver& observer) {
    return ExportToFile(disk, "/x.txt",
                        [&](WritableFile& file) { return WriteTextExport(cards, ';', '|', {}, file, observer); })
        .end;
  };
  EXPECT_EQ(run([](int64_t) { return false; }), ExportEnd::Cancelled);
  EXPECT_EQ(disk.Content("/x.txt"), "old");
  for (int n = 1;; ++n) {
    disk.FailAt(n);
    const ExportEnd end = run({});
    const bool whole = disk.Content("/x.txt") != "old";
    EXPECT_EQ(end, whole ? ExportEnd::Done : ExportEnd::WriteFailed) << n;
    EXPECT_EQ(disk.Exists("/x.txt.tmp") && whole, false) << n;
    if (n > disk.operations()) break;
    disk.Put("/x.txt", "old");
  }
}

TEST(CardExport, NameGetsTheEndingUnlessItIsSomewhereInIt) {
  EXPECT_EQ(WithTextEnding("/d/karten.TXT.bak"), "/d/karten.TXT.bak");
  EXPECT_EQ(WithTextEnding("/d/karten.csv"), "/d/karten.csv.txt");
  EXPECT_EQ(WithTextEnding("/d/karten.Txt"), "/d/karten.Txt.txt");
}

TEST(Separators, CodeIsTheByteAsSignedNumber) {
  EXPECT_EQ(CodeText('\xA4'), "-92");
  EXPECT_EQ(CodeText('|'), "124");
  EXPECT_EQ(CodeText(std::nullopt), "0");
  const std::pair<const char*, int> codes[] = {{"180", 180}, {"-92", 164}, {" 9x", 9}, {"265", 9},
                                               {"-256", 0},  {"0", 0},     {"", 0},    {"x", 0}};
  for (const auto& [code, byte] : codes) {
    EXPECT_EQ(static_cast<unsigned char>(CharacterOfCode(code).value_or('\0')), byte) << code;
  }
}

TEST(Separators, ThoseThatCannotBeReadBackAreToldApart) {
  const std::pair<char, SeparatorFault> faults[] = {{'\xA4', SeparatorFault::None},    {'\t', SeparatorFault::None},
                                                    {'\\', SeparatorFault::Backslash}, {'n', SeparatorFault::LetterN},
                                                    {'5', SeparatorFault::InColumns},  {'w', SeparatorFault::InColumns},
                                                    {'"', SeparatorFault::Quote},      {'\r', SeparatorFault::LineEnd}};
  for (const auto& [separator, fault] : faults) {
    EXPECT_EQ(FaultOf(separator), fault) << separator;
    EXPECT_EQ(FaultOf(';', separator), fault) << separator;
  }
  EXPECT_EQ(FaultOf(';', ';'), SeparatorFault::Same);
}

}  // namespace
}  // namespace tessaro
