#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Text files of other programs.
namespace tessaro {

enum class Encoding { CodePage, Utf8, Utf8WithMark, Utf16Little, Utf16Big };

// The text of a file in the code page of the cards. CR LF has become a line feed, zero bytes are left out.
struct ForeignText {
  // A character that the code page lacks, and what stands in for it: its plain form, else "?".
  struct Replacement {
    char32_t character = 0;
    std::string by;
  };
  static constexpr size_t kMostExamples = 8;

  std::string bytes;
  Encoding encoding = Encoding::CodePage;
  int64_t zeros = 0;                  // that were left out
  int64_t replaced = 0;               // characters that the code page lacks
  std::vector<Replacement> examples;  // the first of them, each once
};

// UTF-8 and UTF-16 are known by their marks, UTF-8 without one by being nothing else; all other text is in the code
// page. Takes any bytes: what is malformed in a marked file is kept byte by byte in UTF-8, and "?" in UTF-16. Works in
// the memory of `raw`.
ForeignText ReadForeignText(std::string raw);
// The same for a text that is known to be in the code page.
ForeignText ReadCodePageText(std::string raw);

}  // namespace tessaro
