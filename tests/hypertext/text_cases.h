#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessaro {

// Texts, and what is read in each of them.
using TextCases = std::vector<std::pair<std::string, std::string>>;

template <typename Read>
void CheckTexts(Read read, const TextCases& cases) {
  for (const auto& [text, expected] : cases) EXPECT_EQ(read(text), expected) << text;
}

}  // namespace tessaro
