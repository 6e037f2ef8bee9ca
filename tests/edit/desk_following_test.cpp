// What the desk holds on to follows its cards when rows move before them.

#include <gtest/gtest.h>

#include "edit/card_desk.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

class DeskFollowing : public testing::Test {
 protected:
  DeskFollowing() {
    OpenTestFile(disk, file,
                 {{.id = "000001", .question = "a"},
                  {.id = "000002", .question = "<home>b"},
                  {.id = "000003", .question = "c"},
                  {.id = "000004", .question = "b"}});
    desk.First();
  }
  MemoryDisk disk;
  CardFile file{disk};
  int64_t made = 0;
  CardDesk desk{file, made};
};

TEST_F(DeskFollowing, SearchDoesNotFindTheSameCardAgain) {
  EXPECT_EQ(desk.Search({.first = "b", .second = ""}).row, 3);
  desk.First();
  desk.InsertEmpty();
  EXPECT_EQ(desk.SearchMore().row, 6);
  EXPECT_EQ(desk.SearchMore().row, 0);
}

TEST_F(DeskFollowing, HomeAndMarksKeepTheirCards) {
  desk.Last();
  desk.SetMark(1);
  EXPECT_TRUE(desk.Home());
  desk.SetMark(0);
  desk.First();
  desk.Cut();
  EXPECT_EQ(desk.MarkedRow(0), 2);
  EXPECT_EQ(desk.MarkedRow(1), 4);
  EXPECT_TRUE(desk.Home());
  EXPECT_EQ(desk.id(), "000002");
  desk.Cut();
  EXPECT_EQ(desk.MarkedRow(0), 0);
}

}  // namespace
}  // namespace tessaro
