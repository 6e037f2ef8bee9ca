#include "edit/card_tools.h"

#include <functional>
#include <utility>

#include "cards/card_reader.h"
#include "edit/landmark_settings.h"
#include "edit/markup_tools.h"
#include "edit/new_card.h"
#include "edit/picture_cards.h"
#include "edit/topics.h"

namespace tessaro {
namespace {

bool Holds(std::string_view text, std::string_view tag) {
  return text.find(tag) != std::string_view::npos;
}

// What an overview is made of: found in one walk over the cards.
struct OverviewPlan {
  std::vector<std::string> ids;
  std::vector<int> removed;
  int last_kept = 1;   // the row behind which cards are added
  int index_card = 0;  // the first card with "<index>" that was not generated
};

using RowTest = std::function<bool(const CardReader& cards, int row)>;

std::optional<OverviewPlan> PlanOverview(const CardFile& file, const RowTest& replaced, const RowTest& is_entry,
                                         const KeepGoing& keep_going) {
  const CardReader cards(file);
  OverviewPlan plan;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    if (!GoesOn(keep_going, row)) return std::nullopt;
    file.cards().Expect(row + CardTable::kAhead);
    if (replaced(cards, row)) {
      plan.removed.push_back(row);
      continue;
    }
    plan.last_kept = row;
    const std::string_view front = cards.Question(row);
    if (plan.index_card == 0 && Holds(front, kIndexTag) && !Holds(front, kAutomapTag)) plan.index_card = row;
    if (!IsNavigation(front) && is_entry(cards, row)) plan.ids.emplace_back(cards.Id(row));
  }
  return plan;
}

CardCommand CommandOf(const CardFile& file, const OverviewPlan& plan, const Overview& overview, std::string_view face) {
  CardCommand command;
  for (const int row : plan.removed) command.Remove(row);
  for (const GeneratedCard& card : overview.cards) {
    command.InsertBehind(plan.last_kept, NewCard(file, card.id, card.question, kBlankSide).fields());
  }
  if (plan.index_card != 0) {
    const int column = file.columns().question;
    const std::string_view front = file.cards().Peek(column, plan.index_card);
    command.Replace(plan.index_card, {{column, WithOverviewLink(front, overview.start, face)}});
  }
  return command;
}

ToolResult ResultOf(const CardFile& file, const OverviewPlan& plan, const Overview& overview) {
  ToolResult result;
  result.cards = static_cast<int>(plan.ids.size());
  result.linked = plan.index_card != 0;
  result.start_row = file.RowOfId(overview.start);
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
  const RowTest generated = [](const CardReader& cards, int card) { return Holds(cards.Question(card), kAutomapTag); };
  const RowTest any = [](const CardReader&, int) { return true; };
  const auto plan = PlanOverview(file, generated, any, keep_going);
  if (!plan) return {ToolOutcome::Cancelled};
  if (plan->ids.empty()) return {ToolOutcome::Nothing};
  const int64_t id = NextId(file, RowOrderCards(static_cast<int64_t>(plan->ids.size())));
  if (id == 0) return {ToolOutcome::NoNumberLeft};
  const Overview overview = RowOrderOverview(plan->ids, symbols, id);
  commands.KeepSettings();
  if (!commands.Do(EditKind::Overview, CommandOf(file, *plan, overview, kRowOrderFace), row)) {
    return {ToolOutcome::Failed};
  }
  SetOverviewSetting(IdText(overview.start), file.settings());
  return ResultOf(file, *plan, overview);
}

ToolResult MakeTopicOverview(CardFile& file, CommandStack& commands, const OverviewSymbols& symbols,
                             std::string_view topic1, std::string_view topic2, int row, const KeepGoing& keep_going) {
  const std::string title = TopicTitle(topic1, topic2);
  const RowTest same_title = [&](const CardReader& cards, int card) {
    return IsTopicOverview(cards.Question(card), title);
  };
  const RowTest has_topics = [&](const CardReader& cards, int card) {
    const std::string_view front = cards.Question(card);
    const std::string_view back = cards.Answer(card);
    return HasTopic(front, back, topic1) && (topic2.empty() || HasTopic(front, back, topic2));
  };
  const auto plan = PlanOverview(file, same_title, has_topics, keep_going);
  if (!plan) return {ToolOutcome::Cancelled};
  if (plan->ids.empty() || topic1.empty()) return {ToolOutcome::Nothing};
  const int64_t id = NextId(file, TopicCards(static_cast<int64_t>(plan->ids.size())));
  if (id == 0) return {ToolOutcome::NoNumberLeft};
  const Overview overview = TopicOverview(plan->ids, topic1, topic2, symbols, id);
  if (!commands.Do(EditKind::Overview, CommandOf(file, *plan, overview, title), row)) return {ToolOutcome::Failed};
  return ResultOf(file, *plan, overview);
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
