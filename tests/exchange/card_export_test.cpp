#include "exchange/card_export.h"

#include <random>

#include "exchange/foreign_text.h"
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

TEST(CardExport, MarksAreSeenWhereverTheyStandInASide) {
  const std::pair<char, std::string> marks[] = {{'\\', "\\\\"}, {'\n', "\\n"}, {'"', "'"}, {';', ""}};
  for (size_t size = 1; size < 40; ++size) {
    for (size_t at = 0; at < size; ++at) {
      for (const auto& [mark, written] : marks) {
        std::string side(size, 'x');
        side[at] = mark;
        const std::string before = "@@;;;;;;;\n000001;00;", behind = ";b;000000001;0;wf;7 0\n2";
        const std::string fit = before + std::string(at, 'x') + written + std::string(size - at - 1, 'x') + behind;
        EXPECT_EQ(Table(MakeCards({Card(side, "b")})), mark == ';' ? "@@;;;;;;;\n1 unfit" : fit) << side;
      }
    }
  }
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

// So many are written by two threads, and each has more than one turn.
constexpr int kManyCards = 17'000;

TEST(CardExport, ManyCardsComeInTheirOrderUpToAnUnfitOne) {
  for (const int unfit : {kManyCards, 5000, 9000}) {
    std::vector<TestCard> cards;
    std::string expected = ";\n|\n";
    for (int i = 0; i < kManyCards; ++i) {
      cards.push_back(
          Card(std::to_string(i) + std::string(i % 3000 == 2999 ? 400'000 : 0, 'x'), i == unfit ? ";" : "b"));
      if (i < unfit) expected += cards.back().question + ";\nb|\n";
    }
    expected += std::to_string(unfit + 1) + (unfit < kManyCards ? " unfit ;" : "");
    EXPECT_TRUE(Text(MakeCards(cards)) == expected) << unfit;
  }
}

TEST(CardExport, FileFormDecidesAboutLineEndsAndUtf8) {
  EXPECT_EQ(Text(MakeCards({Card("\xE4", "x\ny")}), {.cr_lf = true, .utf8 = true}),
            ";\r\n|\r\n\xC3\xA4;\r\nx\r\ny|\r\n2");
}

TEST(CardExport, FailedDiskAndCancelledWorkLeaveTheOldFile) {
  const CardTable cards = MakeCards(std::vector<TestCard>(kManyCards, Card("Frage", "Antwort")));
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

// Both exports of cards, in UTF-8 or each side in its code page.
std::array<std::string, 2> Exports(const CardTable& cards, TextFileForm form) {
  MemoryWriter text;
  MemoryWriter table;
  EXPECT_EQ(WriteTextExport(cards, kUsualFieldSeparator, '|', form, text).end, ExportEnd::Done);
  EXPECT_EQ(WriteTableExport(cards, ';', kUsualQuoteSubstitute, form, table).end, ExportEnd::Done);
  return {text.TakeText(), table.TakeText()};
}

TEST(CardsOfOtherScripts, AreWrittenAsTheirCharactersAndComeBackAsTheirBytes) {
  const SideCodePages pages = {CodePage(), CodePage(CharacterSet::Cyrillic)};
  CardTable cards = MakeCards({{.question = "Stra\xDF"
                                            "e",
                                .answer = "\xF3\xEB\xE8\xF6\xE0 \"\xBA\""}});
  const auto [text, table] = Exports(cards, {.utf8 = true, .pages = pages});
  EXPECT_NE(text.find("Straße¤\nулица \"є\"|\n"), std::string::npos) << text;
  EXPECT_NE(table.find("Straße;улица ¦є¦;"), std::string::npos) << table;
  const auto back = [&](std::string_view utf8, FieldPages fields) {
    return ReadForeignText(std::string(utf8), fields);
  };
  const FieldPages as_text = FieldPages::OfText(pages, kUsualFieldSeparator, '|', false);
  EXPECT_NE(back(text, as_text)
                .bytes.find("Stra\xDF"
                            "e\xA4\n\xF3\xEB\xE8\xF6\xE0 \"\xBA\"|\n"),
            std::string::npos);
  // The front is to become the back.
  EXPECT_EQ(back("мир¤ö|", FieldPages::OfText(pages, kUsualFieldSeparator, '|', true)).bytes, "\xEC\xE8\xF0\xA4\xF6|");
  EXPECT_EQ(back("\xD0\xB8\xCC\x86¤ö|", as_text).replaced, 3) << "no Cyrillic on the front";
  EXPECT_EQ(back("a¤\xD0\xB8\xCC\x86 ö|", as_text).bytes, "a\xA4\xE9 ?|") << "an accent of its own";
  // This letter has the byte of the separator.
  EXPECT_EQ(
      back("a¤ค|", FieldPages::OfText({{}, CodePage(CharacterSet::Thai)}, kUsualFieldSeparator, '|', false)).bytes,
      "a\xA4?|");
  EXPECT_EQ(back("1;0;x\\;ö;мир;", FieldPages::OfTable(pages, ';', '|')).bytes, "1;0;x\\;\xF6;\xEC\xE8\xF0;");
  // The Euro sign is another byte on the back, but would be the same character in the file.
  CardTable euro = MakeCards({{.answer = "\x88"}});
  MemoryWriter file;
  EXPECT_EQ(WriteTextExport(euro, '\x80', '|', {.utf8 = true, .pages = pages}, file).end, ExportEnd::UnfitSeparator);
  EXPECT_EQ(WriteTextExport(euro, '\x80', '|', {.pages = pages}, file).end, ExportEnd::Done);
}

TEST(CardsOfOtherScripts, ComeBackWhateverTheirBytes) {
  std::minstd_rand random(7);
  const auto side = [&random] {
    std::string text;
    while (text.size() < 30) {
      const auto c = static_cast<char>(random() % 256);
      if (std::string_view("\0\r;|\"\x0F\xA4\xA6", 8).find(c) == std::string_view::npos) text += c;
    }
    return text;
  };
  for (size_t i = 0; i < kCharacterSets * kCharacterSets; ++i) {
    const SideCodePages pages = {CodePage(static_cast<CharacterSet>(i / kCharacterSets)),
                                 CodePage(static_cast<CharacterSet>(i % kCharacterSets))};
    CardTable cards = MakeCards({{.question = side(), .answer = side()}, {.question = side(), .answer = side()}});
    const auto [text, table] = Exports(cards, {.utf8 = true, .pages = pages});
    const auto [text_bytes, table_bytes] = Exports(cards, {.pages = pages});
    const FieldPages as_text = FieldPages::OfText(pages, kUsualFieldSeparator, '|', false);
    EXPECT_EQ(ReadForeignText(text, as_text).bytes, text_bytes) << i;
    EXPECT_EQ(ReadForeignText(table, FieldPages::OfTable(pages, ';', kUsualQuoteSubstitute)).bytes, table_bytes) << i;
  }
}

}  // namespace
}  // namespace tessaro
