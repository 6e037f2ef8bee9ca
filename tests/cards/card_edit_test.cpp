#include "cards/card_edit.h"

#include "cards/card_writer.h"
#include "tests/cards/card_edit_model.h"
#include "tests/support/clock_and_chance.h"

namespace tessaro {
namespace {

constexpr const char* kJournal = "/deck/x.mlj";
class CardEditTest : public ::testing::Test {
 protected:
  size_t Below(size_t bound) { return random_() % bound; }

  std::string RandomText(size_t column) {
    constexpr std::array kIds = {"", "000003", "999999", "#4", "x", "-5", "1000000", "000000"};
    constexpr std::array kScores = {"000000000", "000000001", "7", "", "-3", "999999999", "99999999999", "000000300"};
    constexpr std::array kTexts = {"", "-", "a\nb", "a\x0F\\n", "<navigation>", "Frage"};
    if (column == 0) return Below(3) > 0 ? std::to_string(1'000'000 + ++ids_).substr(1) : kIds[Below(kIds.size())];
    if (column == 4) return kScores[Below(kScores.size())];
    return std::string(kTexts[Below(kTexts.size())]) + (Below(4) == 0 ? std::to_string(Below(100)) : "");
  }

  void Start(size_t cards) {
    model_.cards.clear();
    disk_.FailAt(0);
    watch_.reset();
    file_.reset();
    for (size_t i = 0; i < cards; ++i) model_.cards.push_back(RandomCard());
    disk_.Put(kTestFile, model_.Text());
    (void)disk_.Remove(kJournal);
    Reopen();
    ASSERT_TRUE(file_->RebuildIndexes());
  }

  // As after a crash, unless the file was closed.
  OpenReport Reopen() {
    watch_.reset();
    file_ = std::make_unique<CardFile>(disk_, clock_);
    file_->journal().SetFailureObserver([] {});
    const OpenReport report = file_->Open(kTestFile);
    EXPECT_EQ(report.result, OpenResult::Opened);
    watch_.emplace(file_->watchers(), model_);
    highest_ = 0;
    return report;
  }

  ModelCard RandomCard() {
    ModelCard card;
    card.name = ++names_;
    for (size_t column = 0; column < kColumns; ++column) card.texts[column] = RandomText(column);
    return card;
  }

  // Up to `most` cards go, come and change.
  void RandomCommand(size_t most) {
    CardCommand command;
    ModelUndo undo;
    std::vector<ModelCard> after;
    model_.HoldAll();
    const size_t parts = Below(8);
    const size_t chance = model_.cards.size() / (most + 1) + 2;
    // Keeps what the fields point to.
    std::vector<std::unique_ptr<ModelCard>> texts;
    for (size_t i = 0; i <= model_.cards.size(); ++i) {
      const int row = static_cast<int>(i) + 1;
      if (i > 0) {
        ModelCard card = model_.cards[i - 1];
        const bool goes = (parts & 1) != 0 && i > 1 && Below(chance) == 0;
        if (goes) {
          command.Remove(row);
          undo.removed.emplace_back(i - 1, card);
        } else if ((parts & 2) != 0 && Below(chance) == 0) {
          texts.push_back(std::make_unique<ModelCard>(RandomCard()));
          for (size_t times = Below(3) + 1; times > 0; --times) {
            const size_t column = Below(kColumns);
            const std::string& text = texts.back()->texts[column];
            if (card.texts[column] != text) undo.texts.push_back({card.name, column, card.texts[column], {}});
            card.texts[column] = text;
            command.Replace(row, {{static_cast<int>(column) + 1, text}});
          }
        }
        if (!goes) after.push_back(card);
      }
      if ((parts & 4) == 0 || Below(chance) != 0) continue;
      for (size_t times = Below(3) + 1; times > 0; --times) {
        after.push_back(RandomCard());
        std::vector<FieldView> fields;
        texts.push_back(std::make_unique<ModelCard>(after.back()));
        for (size_t c = 0; c < kColumns; ++c) fields.push_back({static_cast<int>(c) + 1, texts.back()->texts[c]});
        command.InsertBehind(row, fields);
        undo.inserted.insert(after.back().name);
      }
    }
    model_.cards = std::move(after);
    for (ModelUndo::Text& text : undo.texts) text.left = model_.Named(text.name)->Learned();
    std::optional<CardEditDone> done = CardEdit(*file_).Apply(std::move(command));
    ASSERT_TRUE(done);
    for (const int row : done->shift.inserted())
      EXPECT_GE(file_->highest_id(), LeadingNumber(file_->cards().Peek(1, row)));
    inverses_.emplace_back(std::move(done->inverse), std::move(undo));
  }

  void TakeBackOrAgain() {
    if (inverses_.empty()) return;
    auto [command, undo] = std::move(inverses_.back());
    inverses_.pop_back();
    const bool keep = Below(2) == 0;
    for (int times = keep ? 2 : 1; times > 0; --times) {
      model_.HoldAll();
      undo = model_.TakeBack(undo);
      std::optional<CardEditDone> done = CardEdit(*file_).Apply(std::move(command));
      ASSERT_TRUE(done);
      command = std::move(done->inverse);
      ExpectAsInModel();
    }
    if (keep) inverses_.emplace_back(std::move(command), std::move(undo));
  }

  void Answer() {
    const size_t card = Below(model_.cards.size());
    const int row = static_cast<int>(card) + kFirstCardRow;
    const auto score = static_cast<int64_t>(Below(1000));
    model_.cards[card].texts[4] = ScoreText(score);
    file_->cards().Poke(5, row, ScoreText(score));
    file_->learn_index().Update(row, score);
    file_->RowChanged(row, std::array{5});
  }

  void ExpectAsInModel() {
    ASSERT_EQ(FileText(file_->cards()), model_.Text());
    ExpectIndexesFit(*file_);
    EXPECT_EQ(file_->link_index().RowOfId(999998), 0);
    EXPECT_GE(file_->highest_id(), highest_);
    highest_ = file_->highest_id();
    for (const auto& [name, row] : model_.held) {
      ASSERT_LE(row, file_->CardCount() + 1);
      EXPECT_EQ(model_.cards[static_cast<size_t>(row - kFirstCardRow)].name, name);
    }
    model_.held.clear();
  }

  MemoryDisk disk_;
  FixedClock clock_;
  std::unique_ptr<CardFile> file_;
  Model model_;
  std::optional<CardWatch> watch_;
  std::mt19937 random_{7};
  std::vector<std::pair<CardCommand, ModelUndo>> inverses_;
  int ids_ = 0;
  int names_ = 0;
  int64_t highest_ = 0;
};

TEST_F(CardEditTest, AnySequenceGivesTheCardsOfAPlainModel) {
  const std::pair<size_t, int> rounds[] = {{0, 30}, {1, 100}, {6, 200}, {15, 200}, {1300, 8}};
  for (const auto& [cards, steps] : rounds) {
    Start(std::max<size_t>(cards, 1));
    inverses_.clear();
    for (int step = 0; step < steps && !HasFatalFailure(); ++step) {
      SCOPED_TRACE(std::to_string(cards) + " cards, step " + std::to_string(step));
      const size_t dice = Below(10);
      if (dice < 4) RandomCommand(dice == 0 ? 1 : cards);
      if (dice >= 4 && dice < 7) TakeBackOrAgain();
      if (dice == 7) Answer();
      if (dice == 8) {
        ASSERT_EQ(file_->Save(), SaveResult::Saved);
        const int rows = file_->cards().RowCount();
        const bool all_learned = file_->learn_index().RowCount() == rows;
        const bool all_linked = file_->link_index().RowCount() == rows;
        const OpenReport report = Reopen();
        EXPECT_FALSE(report.unsaved || report.learn_index_rebuilt == all_learned ||
                     report.link_index_rebuilt == all_linked);
      }
      if (dice == 9) {
        const bool unsaved = file_->changed();
        ASSERT_EQ(Reopen().unsaved.has_value(), unsaved && disk_.Exists(kJournal));
        ASSERT_TRUE(!unsaved || file_->TakeOverUnsaved());
      }
      ExpectAsInModel();
    }
    ASSERT_TRUE(CardEdit(*file_).Finish() && !file_->NeedsRebuild());
  }
}

TEST_F(CardEditTest, RefusesWhatNamesNoCards) {
  Start(3);
  const std::string text = model_.Text();
  // What is done ("-" removed, "=" replaced, "+" inserted behind) to which row; at "!" with a column that is none.
  for (const std::string parts :
       {"-1", "-5", "-3-2", "-2-2", "-2-3-4", "-3=3", "=1", "=4=2", "=2!", "+0", "+5", "+2!"}) {
    CardCommand command;
    const int column = parts.back() == '!' ? 9 : 3;
    for (size_t i = 0; i + 1 < parts.size(); i += 2) {
      const int row = parts[i + 1] - '0';
      if (parts[i] == '-') command.Remove(row);
      if (parts[i] == '=') command.Replace(row, {{column, "x"}});
      if (parts[i] == '+') command.InsertBehind(row, {{column, "x"}});
    }
    EXPECT_FALSE(CardEdit(*file_).Apply(std::move(command))) << parts;
  }
  EXPECT_TRUE(FileText(file_->cards()) == text && !file_->changed());
}

TEST_F(CardEditTest, ReplayEndsWhereTheOldIdsDiffer) {
  Start(1);
  disk_.Put(kTestFile, FileText({{.id = "000001"}, {.id = "000002"}, {.id = "000003"}}));
  const auto replay = [&](const std::vector<JournalRecord>& records) {
    (void)disk_.Remove(kJournal);
    (void)Reopen();
    std::string journal = JournalHead(file_->stamp());
    for (const JournalRecord& record : records) journal += JournalText(record);
    disk_.Put(kJournal, journal);
    EXPECT_TRUE(Reopen().unsaved && file_->TakeOverUnsaved());
    std::string ids;
    for (int row = kFirstCardRow; row <= file_->CardCount() + 1; ++row) ids += file_->cards().Peek(1, row).back();
    return ids;
  };
  EditChange cut = {.row_count = 5, .old_ids = {}, .edit = {}};
  cut.edit.removed = {3};
  cut.old_ids.AddRow({{1, "000002"}});
  const JournalRecord later = {2, RowChange{2, {{1, "000009"}}}};
  EXPECT_EQ(replay({{1, cut}, later}), "93");
  EditChange other = cut;
  other.row_count = 6;
  EXPECT_EQ(replay({{1, other}, later}), "123");
  other = cut;
  other.edit.removed = {2};
  EXPECT_EQ(replay({{1, other}, later}), "123");
  EXPECT_EQ(replay({later, {1, cut}, {3, cut}, later}), "93");
}

}  // namespace
}  // namespace tessaro
