#include <random>
#include <set>

#include "cards/card_edit.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

// Runs during which cards come, go and change. Each card bears a name of its own as its answer, so that it can be told
// from all others wherever it stands.
class FollowingCards : public LearnTest, private CardWatcher {
 protected:
  void IndexesRebuilt() override { ++rebuilt; }
  using Names = std::vector<std::string>;

  int Any(int count) { return static_cast<int>(chance() % static_cast<unsigned>(count)); }
  std::string NameOf(int64_t row) const {
    const CardReader cards(file);
    return cards.IsCardRow(row) ? std::string(cards.Answer(static_cast<int>(row))) : "none";
  }
  void Learn(int steps) {
    for (int step = 0; step < steps; ++step, clock.now += Any(900)) {
      const int what = Any(12);
      const int id = 1 + Any(file.CardCount());
      if (what < 4) run->Known();
      if (what >= 4 && what < 7) run->NotKnown();
      if (what == 7) run->FollowLink(id);
      if (what == 8) run->GoBack();
      if (what == 9) run->SetMethod(Any(2) == 0 ? Method::RowOrder : Method::Standard);
      if (what == 10) run->StartBox({1, 2, BuildBoxOrder(file, clock.now).value()}), run->ShowNext();
      if (what == 11) run->SetMethod(Method::Leitner);
    }
  }
  // The cards that a moment of the run means, by what it means them for.
  Names Meant() const {
    const RunMoment& moment = run->moment();
    Names names = {"shown " + NameOf(moment.card.row), "next in order " + NameOf(moment.row_order.position),
                   "next new card " + NameOf(moment.leitner.scan_row)};
    if (moment.check_position > 1) {
      names.push_back("checked " + NameOf(file.learn_index().BoxPos(static_cast<int>(moment.check_position))));
    }
    for (BackStack back = moment.back; !back.Empty();) names.push_back("back " + NameOf(back.Pop()));
    return names;
  }
  // What answers have made of each card, and the order of the index.
  std::map<std::string, std::string> Learned() const {
    std::map<std::string, std::string> learned;
    for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) {
      learned[NameOf(row)] = Score(row) + YesNoRow(row) + TimeRow(row) + Topic(row);
    }
    return learned;
  }
  Names IndexOrder(const std::set<std::string>& of) const {
    Names names;
    for (int row = 2; row < file.learn_index().RowCount(); ++row) {
      if (const std::string name = NameOf(file.learn_index().BoxPos(row)); of.contains(name)) names.push_back(name);
    }
    return names;
  }
  // Removes a card that is not among these, puts one in, gives one another number: each now and then.
  void EditAnyCards(const std::set<std::string>& kept) {
    CardCommand command;
    const CardColumns& columns = file.columns();
    for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) {
      const std::string name = "new" + std::to_string(++made);
      const char* question = std::array{"Frage", "<navigation>", "x<+++>"}[static_cast<size_t>(Any(3))];
      const std::vector<FieldView> fields = {
          {columns.id, "000000"},      {columns.question, question},
          {columns.answer, name},      {columns.score, Any(2) == 0 ? "000000000" : "7"},
          {columns.time_row, "0"},     {columns.yes_no_row, ""},
          {columns.time_learned, "0"}, {columns.topic, "0"}};
      const int what = Any(20);
      const bool answered = CardReader(file).WasAnswered(row) || row == run->card().row;
      if (what == 0 && !answered && !kept.contains(NameOf(row))) {
        command.Remove(row);
      } else if (what == 1) {
        command.Replace(row, {{columns.id, IdText(1 + Any(99))}});
      } else if (what == 2) {
        command.Replace(row, {{columns.question, question}});
      }
      if (Any(40) == 0) command.InsertBehind(row, fields);
    }
    if (command.empty()) return;
    ASSERT_TRUE(CardEdit(file).Apply(std::move(command)).has_value());
  }
  static std::set<std::string> All(const std::map<std::string, std::string>& learned) {
    std::set<std::string> names;
    for (const auto& [name, columns] : learned) names.insert(name);
    return names;
  }
  void Begin() {
    const auto any_card = [this](int i) {
      TestCard card = Any(2) == 0 ? NewCard(i) : Any(2) == 0 ? WrongCard(i) : KnownCard(i, Any(2000), Any(3000));
      if (Any(9) == 0) card.question = "<+++>";
      card.answer = "card" + std::to_string(i);
      card.topic = std::to_string(Any(3));
      return card;
    };
    settings.SetInt("CHK", "n", 2);
    random = ScriptedRandom(chance);
    run.reset();
    file.Close();
    Open(Numbered(3 + Any(60), any_card));
    run->Start();
  }

  CardWatch watch{file.watchers(), *this};
  int rebuilt = 0;
  std::mt19937 chance{11};
  int made = 0;
};

TEST_F(FollowingCards, WhatTheRunMeansStaysTheSameCards) {
  for (int round = 0; round < 80 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    Begin();
    for (int edit = 0; edit < 4; ++edit) {
      Learn(8);
      const Names meant = Meant();
      std::set<std::string> kept;
      for (const std::string& name : meant) kept.insert(name.substr(name.rfind(' ') + 1));
      EditAnyCards(kept);
      EXPECT_EQ(Meant(), meant);
      EXPECT_EQ(run->figures().check_count, run->moment().check_position - 1);
      Learn(3);
      ExpectIndexFits();
    }
  }
}

// Cards that came, others that went, and numbers that changed are no hindrance to taking answers back.
TEST_F(FollowingCards, AnswersAreTakenBackExactlyAcrossEdits) {
  int exact = 0;
  for (int round = 0; round < 80 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    Begin();
    const std::map<std::string, std::string> learned = Learned();
    const std::set<std::string> all = All(learned);
    const Names order = IndexOrder(all);
    rebuilt = 0;
    for (int part = 0; part < 3; ++part) {
      Learn(6);
      EditAnyCards(all);
    }
    Learn(3);
    while (run->CanTakeBackAnswer()) run->TakeBackAnswer();
    std::map<std::string, std::string> now = Learned();
    std::erase_if(now, [&](const auto& entry) { return !all.contains(entry.first); });
    EXPECT_EQ(now, learned);
    // An index that was built anew has an order of its own among equal scores.
    if (rebuilt == 0) {
      EXPECT_EQ(IndexOrder(all), order);
    }
    exact += rebuilt == 0 ? 1 : 0;
    ExpectIndexFits();
  }
  EXPECT_GT(exact, 20);
}

TEST_F(FollowingCards, WhatTakesAwayAnAnsweredCardOrItsHistoryEndsTakingBack) {
  settings.SetInt("CHK", "n", 0);
  const auto answered_in_order = [&] {
    Open(Numbered(9, NewCard));
    run->SetMethod(Method::RowOrder);
    run->Start();
    for (int i = 0; i < 3; ++i) run->Known();
    return CardCommand();
  };
  const auto steps_after = [&](CardCommand command) {
    EXPECT_TRUE(CardEdit(file).Apply(std::move(command)).has_value());
    int steps = 0;
    for (; run->CanTakeBackAnswer(); ++steps) run->TakeBackAnswer();
    return steps;
  };
  CardCommand command = answered_in_order();
  command.Remove(3);
  EXPECT_EQ(steps_after(std::move(command)), 1) << "only the third answer, after that to the card that is gone";
  command = answered_in_order();
  command.Replace(9, {{file.columns().score, "000000005"}});
  EXPECT_EQ(steps_after(std::move(command)), 0);
  command = answered_in_order();
  command.Replace(2, {{file.columns().question, "neu"}});
  EXPECT_EQ(steps_after(std::move(command)), 3);
}

TEST_F(FollowingCards, AShownCardThatGoesLeavesNoCard) {
  Open({NewCard(1), NewCard(2)});
  run->FollowLink(2);
  CardCommand command;
  command.Remove(3);
  ASSERT_TRUE(CardEdit(file).Apply(std::move(command)).has_value());
  EXPECT_EQ(run->card().row, 0);
  EXPECT_FALSE(run->Known().answer.has_value());
  EXPECT_EQ(run->card().row, 2);
}

}  // namespace
}  // namespace tessaro
