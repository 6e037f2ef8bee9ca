#include "edit/command_stack.h"

#include <gtest/gtest.h>

#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

TEST(CommandStack, TellsWhenItsMemoryDidNotHoldAll) {
  using enum CommandStack::Forgotten;
  MemoryDisk disk;
  CardFile file(disk);
  OpenTestFile(disk, file, {{.id = "000001", .question = "a"}});
  CommandStack stack(file, 20000);
  const auto change = [&](const std::string& text) {
    CardCommand command;
    command.Replace(2, {{file.columns().question, text}});
    EXPECT_TRUE(stack.Do(EditKind::LineBreaks, std::move(command), 2));
    return stack.TakeForgotten();
  };
  EXPECT_EQ(change("b"), Nothing);
  int steps = 0;
  while (change(std::string(1000, steps % 2 == 0 ? 'c' : 'd')) == Nothing && steps < 100) ++steps;
  EXPECT_GT(steps, 3);
  EXPECT_LT(steps, 100);
  EXPECT_TRUE(stack.CanUndo()) << "only the oldest are forgotten";
  change(std::string(50000, 'f'));
  EXPECT_EQ(change("g"), All) << "already one is too long";
  EXPECT_FALSE(stack.CanUndo());
  EXPECT_EQ(stack.TakeForgotten(), Nothing);
}

}  // namespace
}  // namespace tessaro
