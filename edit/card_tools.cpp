#include "edit/card_tools.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "cards/card_reader.h"
#include "cards/navigation.h"
#include "edit/landmark_settings.h"
#include "edit/markup_tools.h"
#include "edit/new_card.h"
#include "edit/picture_cards.h"
#include "edit/topics.h"
#include "platform/other_thread.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

bool Holds(std::string_view text, std::string_view tag) {
  return text.find(tag) != std::string_view::npos;
}

// What an overview is made of: found in one walk over the cards.
struct OverviewPlan {
  PackedFields ids;  // of the entries
  std::vector<int> removed;
  int last_kept = 1;   // the row behind which cards are added
  int index_card = 0;  // the first card with "<index>" that was not generated

  // Adds what was found among the cards behind.
  void Append(OverviewPlan behind) {
    ids.Append(std::move(behind.ids));
    removed.insert(removed.end(), behind.removed.begin(), behind.removed.end());
    last_kept = std::max(last_kept, behind.last_kept);
    if (index_card == 0) index_card = behind.index_card;
  }
};

// What decides about a card: its row, and its front, which is at hand.
using RowTest = std::function<bool(int row, std::string_view front)>;

// Which cards an overview is of. `replaced` is only asked about cards with tags, and `is_entry` about cards that stay
// and are learned; both by two threads.
struct OverviewChoice {
  RowTest replaced;
  RowTest is_entry;
};

OverviewPlan PlanPart(const CardFile& file, const OverviewChoice& choice, int first, int end, TwoPartsGoOn& goes_on) {
  const std::array columns = {file.columns().id, file.columns().question};
  OverviewPlan plan;
  plan.ids.Reserve(PackedFields::kCountedRow * static_cast<size_t>(file.CardCount()));
  for (int row = first; row < end && goes_on(row); ++row) {
    file.cards().Expect(row + CardTable::kAhead);
    std::array<std::string_view, 2> texts;
    file.cards().PeekAll(row, columns, texts);
    const auto& [id, front] = texts;
    const bool has_tags = front.find('<') != std::string_view::npos;
    if (has_tags && choice.replaced(row, front)) {
      plan.removed.push_back(row);
      continue;
    }
    plan.last_kept = row;
    if (plan.index_card == 0 && has_tags && Holds(front, kIndexTag) && !Holds(front, kAutomapTag)) {
      plan.index_card = row;
    }
    if (!(has_tags && IsNavigation(front)) && choice.is_entry(row, front)) plan.ids.AddRow({{1, id}});
  }
  return plan;
}

std::optional<OverviewPlan> PlanOverview(const CardFile& file, const OverviewChoice& choice,
                                         const KeepGoing& keep_going) {
  const int end = CardReader(file).LastCardRow() + 1;
  TwoPartsGoOn goes_on(keep_going, end);
  auto [plan, behind] = InTwoParts(
      kFirstCardRow, end, [&](int first, int part_end) { return PlanPart(file, choice, first, part_end, goes_on); });
  if (goes_on.ended()) return std::nullopt;
  plan.Append(std::move(behind));
  return std::move(plan);
}

// Generates the cards of an overview and says where it begins.
using Generate = std::function<int64_t(const TakeGenerated& take)>;

// Puts an overview in the place of the old one; `face`: of the link to it on the index card.
ToolResult Put(CardFile& file, CommandStack& commands, const OverviewPlan& plan, const Generate& generate,
               std::string_view face, int row) {
  CardCommand command;
  for (const int removed : plan.removed) command.Remove(removed);
  constexpr size_t kUsualEntry = 36;  // bytes
  command.ReserveInserted(kUsualEntry * plan.ids.rows());
  const int64_t start = generate([&](int64_t id, std::string_view question) {
    command.InsertBehind(plan.last_kept, NewCard(file, id, question, kBlankSide).fields());
  });
  if (plan.index_card != 0) {
    const int column = file.columns().question;
    const std::string_view front = file.cards().Peek(column, plan.index_card);
    command.Replace(plan.index_card, {{column, WithOverviewLink(front, start, face)}});
  }
  ToolResult result;
  result.cards = static_cast<int>(plan.ids.rows());
  result.linked = plan.index_card != 0;
  result.start_id = start;
  if (!commands.Do(EditKind::Overview, std::move(command), row)) return {ToolOutcome::Failed};
  result.start_row = file.RowOfId(start);
  return result;
}

}  // namespace

ToolResult TransferAllLineBreaks(CardFile& file, CommandStack& commands, int row, const KeepGoing& keep_going) {
  const CardReader cards(file);
  const CardColumns& columns = file.columns();
  CardCommand command;
  ToolResult result;
  for (int card = kFirstCardRow; card <= cards.LastCardRow(); ++card) {
    if (!GoesOn(keep_going, card)) return {ToolOutcome::Cancelled};
    const std::string front = TransferLineBreaks(cards.Question(card));
    const std::string back = TransferLineBreaks(cards.Answer(card));
    std::vector<FieldView> fields;
    if (front != cards.Question(card)) fields.push_back({columns.question, front});
    if (back != cards.Answer(card)) fields.push_back({columns.answer, back});
    if (fields.empty()) continue;
    command.Replace(card, fields);
    ++result.cards;
  }
  if (!commands.Do(EditKind::LineBreaks, std::move(command), row)) return {ToolOutcome::Failed};
  return result;
}

ToolResult MakeRowOrderOverview(CardFile& file, CommandStack& commands, const OverviewSymbols& symbols, int row,
                                const KeepGoing& keep_going) {
  const RowTest generated = [](int /*card*/, std::string_view front) { return Holds(front, kAutomapTag); };
  const RowTest any = [](int /*card*/, std::string_view /*front*/) { return true; };
  const auto plan = PlanOverview(file, {generated, any}, keep_going);
  if (!plan) return {ToolOutcome::Cancelled};
  if (plan->ids.rows() == 0) return {ToolOutcome::Nothing};
  const int64_t id = NextId(file, RowOrderCards(static_cast<int64_t>(plan->ids.rows())));
  if (id == 0) return {ToolOutcome::NoNumberLeft};
  commands.KeepSettings();
  const auto generate = [&](const TakeGenerated& take) { return GenerateRowOrder(plan->ids, symbols, id, take); };
  const ToolResult result = Put(file, commands, *plan, generate, kRowOrderFace, row);
  if (result.outcome == ToolOutcome::Done) SetOverviewSetting(IdText(result.start_id), file.settings());
  return result;
}

ToolResult MakeTopicOverview(CardFile& file, CommandStack& commands, const OverviewSymbols& symbols,
                             std::string_view topic1, std::string_view topic2, int row, const KeepGoing& keep_going) {
  const std::string title = TopicTitle(topic1, topic2);
  const RowTest same_title = [&](int /*card*/, std::string_view front) { return IsTopicOverview(front, title); };
  const RowTest has_topics = [&](int card, std::string_view front) {
    const std::string_view back = CardReader(file).Answer(card);
    return HasTopic(front, back, topic1) && (topic2.empty() || HasTopic(front, back, topic2));
  };
  const auto plan = PlanOverview(file, {same_title, has_topics}, keep_going);
  if (!plan) return {ToolOutcome::Cancelled};
  if (plan->ids.rows() == 0 || topic1.empty()) return {ToolOutcome::Nothing};
  const int64_t id = NextId(file, TopicCards(static_cast<int64_t>(plan->ids.rows())));
  if (id == 0) return {ToolOutcome::NoNumberLeft};
  const auto generate = [&](const TakeGenerated& take) {
    return GenerateTopic(plan->ids, topic1, topic2, symbols, id, take);
  };
  return Put(file, commands, *plan, generate, title, row);
}

ToolResult TransferOldTopics(CardFile& file, CommandStack& commands, int row, const KeepGoing& keep_going) {
  const CardReader cards(file);
  const CardColumns& columns = file.columns();
  CardCommand command;
  ToolResult result;
  for (int card = kFirstCardRow; card <= cards.LastCardRow(); ++card) {
    if (!GoesOn(keep_going, card)) return {ToolOutcome::Cancelled};
    if (cards.IsNavigation(card)) continue;
    const std::string name = OldTopicName(file.settings(), file.cards().Peek(columns.topic, card));
    if (name.empty() || HasTopic(cards.Question(card), cards.Answer(card), name)) continue;
    command.Replace(card, {{columns.question, std::string(cards.Question(card)) + TopicTag(name)}});
    ++result.cards;
  }
  if (!commands.Do(EditKind::Topics, std::move(command), row)) return {ToolOutcome::Failed};
  return result;
}

ToolResult MakePictureCards(CardFile& file, CommandStack& commands, const std::vector<std::string>& pictures, int row) {
  const CardReader cards(file);
  if (!cards.IsCardRow(row) || !IsPictureTemplate(cards.Question(row))) return {ToolOutcome::Nothing};
  int64_t id = NextId(file, static_cast<int64_t>(pictures.size()));
  if (id == 0) return {ToolOutcome::NoNumberLeft};
  CardCommand command;
  for (const std::string& picture : pictures) {
    const std::string front = WithPicture(cards.Question(row), picture);
    command.InsertBehind(cards.LastCardRow(), NewCard(file, id++, front, cards.Answer(row)).fields());
  }
  if (!commands.Do(EditKind::Pictures, std::move(command), row)) return {ToolOutcome::Failed};
  ToolResult result;
  result.cards = static_cast<int>(pictures.size());
  return result;
}

}  // namespace tessaro
