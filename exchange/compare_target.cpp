#include "exchange/compare_target.h"

#include <array>
#include <utility>

#include "cards/card_edit.h"

namespace tessaro {
namespace {

std::vector<FieldView> FieldsOf(const std::map<int, std::string>& texts) {
  std::vector<FieldView> fields;
  fields.reserve(texts.size());
  for (const auto& [column, text] : texts) fields.push_back({column, text});
  return fields;
}

}  // namespace

int EndOfCards(const CardTable& cards) {
  const int id = cards.ColumnIndex(kId);
  int row = kFirstCardRow;
  while (row <= cards.RowCount() && !cards.Peek(id, row).starts_with('#')) ++row;
  return row;
}

CompareTarget::CompareTarget(CardFile& file)
    : file_(file), end_(EndOfCards(file.cards())), grows_(end_ == FirstAppended()) {}

CardSides CompareTarget::Sides(int row) const {
  if (row >= FirstAppended() && !appended_.empty()) {
    const CardTexts& texts = appended_[static_cast<size_t>(row - FirstAppended())];
    return {texts[kQuestionAt], texts[kAnswerAt]};
  }
  const CardColumns& columns = file_.columns();
  const std::array<int, 2> wanted = {columns.question, columns.answer};
  std::array<std::string_view, 2> sides;
  file_.cards().PeekAll(row, wanted, sides);
  const auto replaced = replaced_.empty() ? replaced_.end() : replaced_.find(row);
  if (replaced != replaced_.end()) {
    for (size_t i = 0; i < sides.size(); ++i) {
      const auto text = replaced->second.find(wanted[i]);
      if (text != replaced->second.end()) sides[i] = text->second;
    }
  }
  return {sides[0], sides[1]};
}

void CompareTarget::SetSides(int row, std::string_view front, std::string_view back) {
  std::string new_front(front);
  std::string new_back(back);
  if (row >= FirstAppended()) {
    CardTexts& texts = appended_[static_cast<size_t>(row - FirstAppended())];
    texts[kQuestionAt] = std::move(new_front);
    texts[kAnswerAt] = std::move(new_back);
    return;
  }
  Fields& fields = replaced_[row];
  fields[file_.columns().question] = std::move(new_front);
  fields[file_.columns().answer] = std::move(new_back);
}

void CompareTarget::SetStatistics(int row, const CardTexts& texts) {
  const auto set = [&](int column, size_t at) {
    if (row >= FirstAppended()) {
      appended_[static_cast<size_t>(row - FirstAppended())][at] = texts[at];
    } else {
      replaced_[row][column] = texts[at];
    }
  };
  const CardColumns& columns = file_.columns();
  set(columns.topic, kTopicAt);
  set(columns.score, kScoreAt);
  set(columns.time_learned, kTimeLearnedAt);
  set(columns.yes_no_row, kYesNoRowAt);
  set(columns.time_row, kTimeRowAt);
}

int CompareTarget::Append(CardTexts texts) {
  if (file_.highest_id() >= kMostCardNumber) return 0;
  texts[kIdAt] = file_.IssueId();
  appended_.push_back(std::move(texts));
  if (grows_) ++end_;
  return FirstAppended() + static_cast<int>(appended_.size()) - 1;
}

bool CompareTarget::Commit() {
  if (replaced_.empty() && appended_.empty()) return true;
  CardCommand command;
  for (const auto& [row, texts] : replaced_) command.Replace(row, FieldsOf(texts));
  for (const CardTexts& texts : appended_) {
    command.InsertBehind(FirstAppended() - 1, FieldsIn(file_.columns(), texts));
  }
  const bool done = CardEdit(file_).Apply(std::move(command)).has_value();
  if (!done && grows_) end_ -= static_cast<int>(appended_.size());
  replaced_.clear();
  appended_.clear();
  return done;
}

}  // namespace tessaro
