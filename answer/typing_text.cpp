#include <algorithm>

#include "answer/typing_training.h"
#include "platform/code_page.h"

namespace tessaro {
namespace {

// What stands for a "<" or ">" at this place, with its length; 0 for a character that stands for itself.
char Entity(std::string_view side, size_t at) {
  const std::string_view four = side.substr(at, 4);
  return four == "&lt;" ? '<' : four == "&gt;" ? '>' : '\0';
}

}  // namespace

std::string TypingText(std::string_view marked_up) {
  constexpr size_t kEntityLength = 4;
  std::string side(marked_up);
  std::erase(side, '\r');
  const size_t last_close = side.rfind('>');
  std::string text;
  for (size_t at = 0; at < side.size();) {
    // A "<" that nothing closes is text.
    if (side[at] == '<' && last_close != std::string::npos && at < last_close) {
      const size_t end = side.find('>', at) + 1;
      const bool line_break = EqualIgnoringCase(std::string_view(side).substr(at, end - at), "<br>");
      at = end;
      if (!line_break) continue;
      text += '\n';
      if (at < side.size() && side[at] == '\n') ++at;
    } else if (const char entity = Entity(side, at); entity != '\0') {
      text += entity;
      at += kEntityLength;
    } else {
      text += side[at++];
    }
  }
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  return text.find_first_not_of(" \n") == std::string::npos ? std::string() : text;
}

}  // namespace tessaro
