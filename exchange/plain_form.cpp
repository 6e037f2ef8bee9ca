#include "exchange/plain_form.h"

#include <unicode/unorm2.h>

#include <algorithm>
#include <array>

#include "platform/code_page.h"

namespace tessaro {
namespace {

// A run of characters and the plain letter of each; "?" for one that has none.
struct LetterRun {
  char32_t first;
  std::string_view letters;
};
constexpr std::array kLetterRuns = {
    LetterRun{0x0100,
              "AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi??JjKkkLlLlLlL"
              "lLlNnNnNnnNnOoOoOo??RrRrRrSsSsSsSsTtTtTtUuUuUuUuUuUuWwYyYZzZzZzs"},
    LetterRun{0x01CD,
              "AaIiOoUuUuUuUuUu?AaAaAa??GgKkOoOoZzj???Gg??NnAaAaOo"
              "AaAaEeEeIiIiOoOoRrRrUuUuSsTt??Hh??????AaEeOoOoOoOoYy"},
    LetterRun{0x1E00,
              "AaBbBbBbCcDdDdDdDdDdEeEeEeEeEeFfGgHhHhHhHhHhIiIiKkKkKkLlLlLlLlMm"
              "MmMmNnNnNnNnOoOoOoOoPpPpRrRrRrRrSsSsSsSsSsTtTtTtTtUuUuUuUuUuVvVv"
              "WwWwWwWwWwXxXxYyZzZzZzhtwy?s????AaAaAaAaAaAaAaAaAaAaAaAaEeEeEeEe"
              "EeEeEeEeIiIiOoOoOoOoOoOoOoOoOoOoOoOoUuUuUuUuUuUuUuYyYyYyYy??????"},
};

struct Sign {
  char32_t first;
  char32_t last;
  std::string_view plain;
};
constexpr std::array kSigns = {
    Sign{0x02B9, 0x02BC, "'"},  Sign{0x2000, 0x200A, " "},  Sign{0x200B, 0x200F, ""},   Sign{0x2010, 0x2012, "-"},
    Sign{0x2015, 0x2015, "-"},  Sign{0x201B, 0x201B, "'"},  Sign{0x2024, 0x2024, "."},  Sign{0x202F, 0x202F, " "},
    Sign{0x2032, 0x2032, "'"},  Sign{0x2033, 0x2033, "\""}, Sign{0x2060, 0x2060, ""},   Sign{0x2190, 0x2190, "<-"},
    Sign{0x2192, 0x2192, "->"}, Sign{0x2212, 0x2212, "-"},  Sign{0xFB00, 0xFB00, "ff"}, Sign{0xFB01, 0xFB01, "fi"},
    Sign{0xFB02, 0xFB02, "fl"}, Sign{0xFEFF, 0xFEFF, ""},
};

// What an accent makes of letters: the letter at one place of the first becomes that at the same place of the second.
struct Accent {
  char32_t character;
  std::string_view letters;
  std::string_view accented;
};
constexpr std::array kAccents = {
    Accent{0x0300, "AEIOUaeiou", "ÀÈÌÒÙàèìòù"_cp},
    Accent{0x0301, "AEIOUYaeiouy", "ÁÉÍÓÚÝáéíóúý"_cp},
    Accent{0x0302, "AEIOUaeiou", "ÂÊÎÔÛâêîôû"_cp},
    Accent{0x0303, "ANOano", "ÃÑÕãñõ"_cp},
    Accent{0x0308, "AEIOUYaeiouy", "ÄËÏÖÜŸäëïöüÿ"_cp},
    Accent{0x030A, "Aa", "Åå"_cp},
    Accent{0x030C, "SZsz", "ŠŽšž"_cp},
    Accent{0x0327, "Cc", "Çç"_cp},
};

// One character for a letter and the accent behind it; 0 where there is none.
char32_t Composed(char16_t letter, char32_t accent) {
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2* composer = unorm2_getNFCInstance(&error);
  if (error > U_ZERO_ERROR) return 0;
  const UChar32 composed = unorm2_composePair(composer, letter, static_cast<UChar32>(accent));
  return composed < 0 ? 0 : static_cast<char32_t>(composed);
}

}  // namespace

std::optional<std::string_view> PlainForm(char32_t character) {
  for (const LetterRun& run : kLetterRuns) {
    if (character < run.first || character - run.first >= run.letters.size()) continue;
    const std::string_view letter = run.letters.substr(character - run.first, 1);
    return letter == "?" ? std::nullopt : std::optional(letter);
  }
  if (IsAccent(character)) return "";
  const auto* sign = std::find_if(kSigns.begin(), kSigns.end(), [&](const Sign& candidate) {
    return candidate.first <= character && character <= candidate.last;
  });
  return sign == kSigns.end() ? std::nullopt : std::optional(sign->plain);
}

std::optional<char> WithAccent(char letter, char32_t accent, CodePage page) {
  if (!page.western()) {
    const char32_t composed = Composed(page.CharacterOf(letter), accent);
    return composed == 0 ? std::nullopt : page.ByteOf(composed);
  }
  for (const Accent& candidate : kAccents) {
    if (candidate.character != accent) continue;
    const size_t place = candidate.letters.find(letter);
    if (place != std::string_view::npos) return candidate.accented[place];
  }
  return std::nullopt;
}

bool IsAccent(char32_t character) {
  return character >= 0x0300 && character <= 0x036F;
}

}  // namespace tessaro
