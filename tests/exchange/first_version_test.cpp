#include "exchange/first_version.h"

#include <gtest/gtest.h>

#include "platform/memory_file.h"
#include "store/file/ini_file.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

using first_version::ReadTopics;
using first_version::Topics;
using first_version::WriteCards;

constexpr std::string_view kHead = "ID|Topic|Question|Answer|Score|TimeLearned|YesNoRow|TimeRow\n@@|||||||\n";
constexpr std::string_view kEnd = "##|||||||\n";

std::string Converted(const std::string& lines) {
  MemoryWriter file;
  EXPECT_TRUE(WriteCards("one\ntwo\n" + lines, ';', file).good);
  const std::string text = WithBars(file.TakeText());
  EXPECT_TRUE(text.starts_with(kHead) && text.ends_with(kEnd)) << text;
  return text.substr(kHead.size(), text.size() - kHead.size() - kEnd.size());
}

TEST(FirstVersion, LinesAreConverted) {
  EXPECT_EQ(Converted("1;a||b\\;|||\x0F\n"), "1|a\\nb\\\\|\\n||\n");
  EXPECT_EQ(Converted("1;a"), "1|a\n");
  EXPECT_EQ(Converted(""), "");
  MemoryWriter file;
  EXPECT_EQ(WriteCards("only one line", ';', file).lines, 0);
}

TEST(FirstVersion, LongLineComesInPieces) {
  const std::string front(first_version::kPiece - 1, 'a');
  EXPECT_EQ(Converted(front + "||b\n"), front + "||b\n");  // a break that is cut is none
  EXPECT_EQ(Converted(front + "a999999 * x* y\nlast\n"), front + "alast\n");
}

TEST(FirstVersion, TopicsStandBetweenMarks) {
  const Topics topics =
      ReadTopics("999999;  ** Tiere* " + std::string(20, 'b') + "* " + std::string(21, 'c') + "**x*", ';');
  EXPECT_EQ(topics.names[0], "Tiere");  // the mark in column 9 is none
  EXPECT_EQ(topics.names[1], std::string(20, 'b'));
  EXPECT_EQ(topics.names[2], "...");
  EXPECT_EQ(topics.names[3], "...");  // a mark directly behind a mark
  EXPECT_EQ(topics.names[5], "...");
  std::string line = "9999990000";
  for (int i = 0; i < 30; ++i) line += "* " + std::to_string(i);
  EXPECT_EQ(ReadTopics(line, ';').names[19], "19");
  EXPECT_EQ(ReadTopics(line, ';').name, "20");
  EXPECT_EQ(ReadTopics(line.insert(40, ";"), ';').name, "...");
  EXPECT_EQ(ReadTopics("9999990000* a* b" + std::string(490, ' ') + "* c* d", ';').names[1], "...");
}

TEST(FirstVersion, TopicsReplaceTheirSectionOnly) {
  IniFile settings;
  settings.Parse("[A]\nx=1\n[topic]\n0=old\nq=old\n[B]\ny=2\n");
  Topics topics;
  topics.names.fill("...");
  topics.names[0] = "Tiere";
  topics.name = " Namen";
  first_version::Put(topics, settings);
  EXPECT_EQ(settings.GetString("TOPIC", "0"), "Tiere");
  EXPECT_EQ(settings.GetString("TOPIC", "19"), "...");
  EXPECT_EQ(settings.GetString("TOPIC", "name"), " Namen");
  EXPECT_FALSE(settings.Has("TOPIC", "q"));
  EXPECT_EQ(settings.GetString("A", "x") + settings.GetString("B", "y"), "12");
}

}  // namespace
}  // namespace tessaro
