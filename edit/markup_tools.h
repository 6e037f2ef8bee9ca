#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

// What the tools of the card editor do to a card side. A side is bytes in code page 1252, with line feeds.
namespace tessaro {

enum class EditSide { Front, Back };

// A run of bytes of a side; `length` 0 is a caret. Both are kept within the side by those who take one.
struct SideRange {
  size_t begin = 0;
  size_t length = 0;
  bool operator==(const SideRange&) const = default;
};

// A change of a side: the bytes `removed` become `inserted`, and then `selection` is what is marked.
struct SideEdit {
  SideRange removed;
  std::string inserted;
  SideRange selection;
};
// The side after the change.
std::string ApplyEdit(std::string_view side, const SideEdit& edit);

// Puts a tag in the place of the selection, the caret behind it.
SideEdit InsertTag(std::string_view side, SideRange selection, std::string_view tag);
// Puts a pair of tags around the selection, which stays selected; an empty selection leaves the caret between them.
SideEdit EncloseInTags(std::string_view side, SideRange selection, std::string_view open, std::string_view close);
// Puts a tag that marks the whole card at the start of its front. `selection` stays on the bytes it was on.
SideEdit InsertAtStart(std::string_view front, SideRange selection, std::string_view tag);

// What stands on each side of a card on which nothing is written yet.
inline constexpr std::string_view kBlankSide = "-";

inline constexpr std::string_view kLineBreakTag = "<br>";
inline constexpr std::string_view kNavigationTag = "<navigation>";
inline constexpr std::string_view kHomeTags = "<navigation><home><br>";

inline constexpr int kSmallestFontSize = 6;  // of the size box's first entry
inline constexpr int kLargestFontSize = 72;
// Texts one behind the other.
std::string Joined(std::initializer_list<std::string_view> parts);

// Opens letters of a size.
std::string FontSizeTag(int points);
// Show a picture in the text, and a sound or video; the name must fit, see FitsInTag.
std::string PictureTag(std::string_view file);
std::string EmbedTag(std::string_view file);
// Gives the card a topic, which holds no quote and no ">".
std::string TopicTag(std::string_view topic);

// A file shown beside the card: its directive with the hint for the author that belongs to it.
enum class Attachment { Text, Picture, Video };
// The name must fit, see FitsInAttachment.
std::string AttachmentTag(Attachment kind, std::string_view file);

// Whether a tag, or a directive, can hold a file's name: the name must come back from it as it went in.
bool FitsInTag(std::string_view file);
bool FitsInAttachment(Attachment kind, std::string_view file);
// A name close to this one that fits in both: letters, digits, "-" and "_", and the ending.
std::string PlainFileName(std::string_view file);

// Puts "<br>" before every line feed that is not already directly behind one, so that the card breaks where the text
// does. Carriage returns before line feeds go. A side to which nothing is added stays as it is, to the byte.
std::string TransferLineBreaks(std::string_view side);

// A side as the editor holds it: without carriage returns, which mean nothing on a card.
std::string WithoutReturns(std::string_view side);

}  // namespace tessaro
