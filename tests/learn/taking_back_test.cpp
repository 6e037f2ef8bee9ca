#include <limits>
#include <set>
#include <sstream>

#include "cards/card_edit.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

// Scripts of any commands over any cards, broken ones and silly settings among them, with answers taken back and
// restored in between.
class TakingBack : public LearnTest {
 protected:
  int Any(int count) { return static_cast<int>(chance() % static_cast<unsigned>(count)); }

  enum class What { Known, NotKnown, Days, Undo, Home, Back, Link, Turn, Next, Method, Box, Restart };
  struct Command {
    What what = What::Known;
    int number = 0;
    int64_t time = 0;
    size_t draws = 0;
  };
  // What was done to come here, and what it came to.
  struct Moment {
    std::vector<Command> script;
    std::string dump;
    bool undo = false;  // what followed was a press of Undo
  };

  // The whole of the card file and of the run over it, as far as it shows.
  std::string Dump() const {
    std::ostringstream out;
    for (int row = 1; row <= file.cards().RowCount(); ++row) {
      for (int column = 1; column <= file.cards().ColumnCount(); ++column) out << file.cards().Peek(column, row) << '|';
    }
    MemoryDisk index;
    EXPECT_TRUE(file.learn_index().SaveTo(*index.Create("index"), file.cards()));
    const ShownCard& card = run->card();
    const RunFigures& figures = run->figures();
    out << '\n'
        << *index.Content("index") << file.settings().Text() << "\ncursor " << file.cards().CurrentRow() << "\ncard "
        << card.row << ' ' << static_cast<int>(card.status) << card.navigation << card.by_link << card.newest_known
        << ' ' << card.score << ' ' << card.last_answer << ' ' << run->question_shown() << run->moment().answered
        << "\nfigures " << figures.presented << ' ' << figures.answered << ' ' << figures.unknown_count << ' '
        << figures.width << ' ' << figures.drawn_position << ' ' << figures.check_count << ' ' << figures.widened
        << "\nrun " << static_cast<int>(run->moment().stage) << static_cast<int>(run->method())
        << run->moment().leitner.box << run->CanUndo() << run->CanGoBack() << run->AsksBeforeLeaving();
    if (const auto& statistics = run->moment().log.statistics) {
      out << "\nstatistics " << statistics->row << ' ' << statistics->score << ' ' << statistics->history.times[0]
          << ' ' << LettersText(statistics->history.letters) << ' '
          << (statistics->forecast ? statistics->forecast->score : -1);
    }
    return out.str();
  }
  // A small number, or in one of six cases a silly one.
  int64_t AnySetting(int count) {
    const int64_t silly[] = {std::numeric_limits<int64_t>::min(), -5, 0, std::numeric_limits<int64_t>::max()};
    return Any(6) == 0 ? silly[Any(4)] : 1 + Any(count);
  }

  void PutAnyCards() {
    const char* const questions[] = {"Frage", "Frage", "Frage", "Frage", "<navigation>", "<home>", "<+++>"};
    const char* const letters[] = {"", "x", "fw", "w", "ww", "wwfw", "www"};
    const char* const scores[] = {"000000000", "000000001", "x", "000000050", "-7", "", "000900000", "9999999999"};
    std::vector<TestCard> cards(static_cast<size_t>(1 + Any(30)));
    for (TestCard& card : cards) {
      card = {IdText(static_cast<int>(&card - cards.data()) + 1), questions[Any(7)], "", scores[Any(8)]};
      if (Any(20) == 0) card.id = std::array{"#7", "x", "000001"}[static_cast<size_t>(Any(3))];
      card.yes_no_row = Letters(letters[Any(7)]);
      card.topic = std::to_string(Any(4));
      for (int64_t time = kNow + 20 - Any(400); Any(4) != 0; time -= Any(300))
        card.time_row += " " + std::to_string(time);
    }
    disk.Put(kTestFile, FileText(cards));
    disk.Put("/deck/x.ini", "[ROW]\nPos=" + std::to_string(AnySetting(8)) + "\n");
    for (const char* key : {"min", "max", "chn"}) settings.SetInt("RNG", key, AnySetting(8));
    for (const char* key : {"n", "wi", "max"}) settings.SetInt("CHK", key, AnySetting(5));
    random = ScriptedRandom(chance);
  }
  void Begin(int options) {
    run.reset();
    file.Close();
    ASSERT_EQ(file.Open(kTestFile).result, OpenResult::Opened);
    ASSERT_TRUE(file.RebuildIndexes());
    run = std::make_unique<LearningRun>(file, settings, clock, random);
    run->Set(&RunOptions::time_lock, options % 2 == 0);
    run->Set(&RunOptions::no_new_cards, options % 3 == 0);
    run->SetAnswerWindowVisible(options % 5 == 0);
    clock.now = kNow;
    random.draws = 0;
    run->Start();
  }
  Command AnyCommand() {
    // Answers are more frequent than the rest.
    return {static_cast<What>(Any(3) == 0 ? Any(4) : Any(12)), Any(60), clock.now + Any(60), random.draws};
  }
  bool IsAnswer(const Command& command) const {
    if (command.what == What::Undo) return run->CanUndo();
    const bool rates = command.what <= What::Days ||
                       (command.what >= What::Home && command.what <= What::Link && command.number % 3 < 2);
    return rates && run->card().row != 0 && !CardReader(file).IsNavigation(run->card().row);
  }
  void Perform(const Command& command) {
    clock.now = command.time;
    random.draws = command.draws;
    const int number = command.number;
    constexpr Rating kRatings[] = {Rating::Known, Rating::NotKnown, Rating::None};
    const Rating rating = kRatings[number % 3];
    const BoxOrder box_order = BuildBoxOrder(file, clock.now).value_or(BoxOrder{});
    const std::function<StepResult()> commands[] = {
        [&] { return run->Known(); },
        [&] { return run->NotKnown(); },
        [&] { return run->Known(number); },
        [&] { return run->Undo(); },
        [&] { return run->GoHome(rating); },
        [&] { return run->GoBack(rating); },
        [&] { return run->FollowLink(number / 2, rating); },
        [&] { return run->Turn(); },
        [&] { return run->ShowNext(); },
        [&] { return run->SetMethod(static_cast<Method>(number % 3)), StepResult(); },
        [&] {
          return run->StartBox({1 + number % 3, number % 4, box_order}), run->ShowNext();
        },
        [&] { return run->RestartRowOrder(), StepResult(); }};
    told += commands[static_cast<size_t>(command.what)]();
  }
  void Exchange(std::vector<Moment>& from, std::vector<Moment>& to) {
    Moment now = {script, Dump()};
    const bool taking_back = &from == &back;
    EXPECT_TRUE((taking_back ? run->TakeBackAnswer() : run->RestoreAnswer()).drawn_anew);
    // A press of Undo goes with the answer that it undid, and one more.
    for (int wanted = 1; wanted > 0 && !from.empty(); --wanted) {
      now.undo = from.back().undo;
      if (taking_back && now.undo) wanted += 2;
      to.push_back(now);
      now = from.back();
      from.pop_back();
    }
    script = now.script;
    EXPECT_EQ(Dump(), now.dump);
  }

  std::mt19937 chance{4};
  std::vector<Command> script;
  std::vector<Moment> back, again;
};

// Each time the whole is what it was then. In the end it is what a run comes to that was only given what stands.
TEST_F(TakingBack, LeavesNothingOfWhatWasTakenBack) {
  int exchanges = 0;
  for (int round = 0; round < 120 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    script.clear(), back.clear(), again.clear();
    PutAnyCards();
    const int options = Any(30);
    Begin(options);
    for (int step = 0; step < 40 && !HasFailure(); ++step) {
      ASSERT_EQ(run->CanTakeBackAnswer(), !back.empty());
      ASSERT_EQ(run->CanRestoreAnswer(), !again.empty());
      std::vector<Moment>& from = Any(2) == 0 ? back : again;
      if (Any(3) == 0 && !from.empty()) {
        Exchange(from, &from == &back ? again : back);
        ++exchanges;
        continue;
      }
      const Command command = AnyCommand();
      const int boxes_done = told.boxes_done;
      if (IsAnswer(command)) back.push_back({script, Dump(), command.what == What::Undo}), again.clear();
      script.push_back(command);
      Perform(command);
      if (command.what == What::Box || told.boxes_done > boxes_done) again.clear();
      const int row = run->card().row;
      ASSERT_TRUE(row == 0 || (row >= kFirstCardRow && row < file.cards().RowCount()));
      ASSERT_FALSE(run->moment().answered);
      ASSERT_GE(run->figures().unknown_count, 0);
    }
    const std::string dump = Dump();
    Begin(options);
    for (const Command& command : script) Perform(command);
    EXPECT_EQ(Dump(), dump);
  }
  EXPECT_GT(exchanges, 500);
}

TEST_F(TakingBack, AnUndoThatShowedACardThatIsGoneIsLost) {
  Open(Numbered(3, NewCard));
  run->SetMethod(Method::RowOrder);
  run->Start();
  run->Known();
  ASSERT_EQ(run->card().row, 3);
  run->Undo();
  ASSERT_TRUE(run->CanTakeBackAnswer());
  CardCommand command;
  command.Remove(3);
  ASSERT_TRUE(CardEdit(file).Apply(command));
  EXPECT_FALSE(run->CanTakeBackAnswer()) << "it would bring back what is not there";
  EXPECT_EQ(run->card().row, 2);
}

// Other scores and a rebuilt index: the places that were noted do not fit it.
TEST_F(TakingBack, ARebuiltIndexStaysInOrder) {
  settings.SetInt("RNG", "chn", 99);
  random.numbers = {1, 9, 17};
  Open(Numbered(30, [](int i) { return i % 3 == 0 ? KnownCard(i, i % 4, 5000 + i) : WrongCard(i); }));
  run->Start();
  for (int i = 0; i < 12; ++i, clock.now += 9) run->Known();
  for (int row = 2; row < 25; ++row) ASSERT_TRUE(file.cards().Poke(file.columns().score, row, "000000999"));
  ASSERT_TRUE(file.RebuildIndexes());
  for (int i = 0; i < 6; ++i) run->TakeBackAnswer();
  ExpectIndexesFit(file);
  ASSERT_TRUE(run->CanTakeBackAnswer());
  run->CardsReplaced();
  EXPECT_FALSE(run->CanTakeBackAnswer()) << "the cards may be others";
}

// Runs during which cards come, go and change. Each card bears a name of its own as its answer, so that it can be told
// from all others wherever it stands.
class FollowingCards : public TakingBack, private CardWatcher {
 protected:
  void IndexesRebuilt() override { ++rebuilt; }
  using Names = std::vector<std::string>;

  std::string NameOf(int64_t row) const {
    const CardReader cards(file);
    return cards.IsCardRow(row) ? std::string(cards.Answer(static_cast<int>(row))) : "none";
  }
  void Learn(int steps) {
    for (int step = 0; step < steps; ++step, clock.now += Any(900)) {
      // After Undo the index waits for the next answer.
      if (const Command command = AnyCommand(); command.what != What::Undo) Perform(command);
    }
  }
  // The cards that a moment of the run means, by what it means them for.
  Names Meant() const {
    const RunMoment& moment = run->moment();
    Names names = {"shown " + NameOf(moment.card.row), "next in order " + NameOf(moment.row_order.position),
                   "next new card " + NameOf(moment.leitner.scan_row)};
    if (moment.check_position > 1)
      names.push_back("checked " + NameOf(file.learn_index().BoxPos(static_cast<int>(moment.check_position))));
    for (BackStack way = moment.back; !way.Empty();) names.push_back("back " + NameOf(way.Pop()));
    return names;
  }
  // What answers have made of each card, and the order of the index.
  std::map<std::string, std::string> Learned() const {
    std::map<std::string, std::string> learned;
    for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row)
      learned[NameOf(row)] = Score(row) + YesNoRow(row) + TimeRow(row) + Topic(row);
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
      ExpectIndexesFit(file);
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
    std::set<std::string> all;
    for (const auto& [name, columns] : learned) all.insert(name);
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
    EXPECT_TRUE(rebuilt != 0 || IndexOrder(all) == order);
    exact += rebuilt == 0 ? 1 : 0;
    ExpectIndexesFit(file);
  }
  EXPECT_GT(exact, 20);
}

TEST_F(FollowingCards, WhatTakesAwayAnAnsweredCardOrItsHistoryEndsTakingBack) {
  settings.SetInt("CHK", "n", 0);
  Open(Numbered(9, NewCard));
  const std::tuple<const char*, int, int, int> cases[] = {
      {"after the third answer it would go on to the card that is gone", 3, 0, 1},
      {"its score", 9, file.columns().score, 0},
      {"its text", 2, file.columns().question, 3}};
  for (const auto& [what, row, changed, steps] : cases) {
    Open(Numbered(9, NewCard));
    run->SetMethod(Method::RowOrder);
    run->Start();
    for (int i = 0; i < 3; ++i) run->Known();
    CardCommand command;
    changed == 0 ? command.Remove(row) : command.Replace(row, {{changed, "000000005"}});
    EXPECT_TRUE(CardEdit(file).Apply(std::move(command)).has_value());
    int taken_back = 0;
    for (; run->CanTakeBackAnswer(); ++taken_back) run->TakeBackAnswer();
    EXPECT_EQ(taken_back, steps) << what;
  }
}

}  // namespace
}  // namespace tessaro
