#include "edit/markup_tools.h"

#include <algorithm>

#include "hypertext/markup.h"
#include "hypertext/media.h"
#include "platform/code_page.h"

namespace tessaro {
namespace {

SideRange Within(std::string_view side, SideRange selection) {
  selection.begin = std::min(selection.begin, side.size());
  selection.length = std::min(selection.length, side.size() - selection.begin);
  return selection;
}

MediaKind KindOf(Attachment kind) {
  if (kind == Attachment::Text) return MediaKind::Text;
  return kind == Attachment::Picture ? MediaKind::Picture : MediaKind::Video;
}

bool IsPlain(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
}

}  // namespace

std::string ApplyEdit(std::string_view side, const SideEdit& edit) {
  const SideRange removed = Within(side, edit.removed);
  return std::string(side).replace(removed.begin, removed.length, edit.inserted);
}

SideEdit InsertTag(std::string_view side, SideRange selection, std::string_view tag) {
  const SideRange removed = Within(side, selection);
  return {removed, std::string(tag), {removed.begin + tag.size(), 0}};
}

SideEdit EncloseInTags(std::string_view side, SideRange selection, std::string_view open, std::string_view close) {
  const SideRange enclosed = Within(side, selection);
  return {enclosed,
          Joined({open, side.substr(enclosed.begin, enclosed.length), close}),
          {enclosed.begin + open.size(), enclosed.length}};
}

SideEdit InsertAtStart(std::string_view front, SideRange selection, std::string_view tag) {
  const SideRange kept = Within(front, selection);
  return {{0, 0}, std::string(tag), {kept.begin + tag.size(), kept.length}};
}

std::string Joined(std::initializer_list<std::string_view> parts) {
  size_t size = 0;
  for (const std::string_view part : parts) size += part.size();
  std::string joined;
  joined.reserve(size);
  for (const std::string_view part : parts) joined += part;
  return joined;
}

std::string FontSizeTag(int points) {
  return Joined({"<font size=\"", std::to_string(points), "\">"});
}

std::string PictureTag(std::string_view file) {
  return Joined({"<img src=\"", file, "\" border=\"0\">"});
}

std::string EmbedTag(std::string_view file) {
  return Joined({"<embed src=\"", file, "\" width=\"353\" height=\"289\">"});
}

std::string TopicTag(std::string_view topic) {
  return Joined({"<topic=\"", topic, "\">"});
}

std::string AttachmentTag(Attachment kind, std::string_view file) {
  switch (kind) {
    case Attachment::Text:
      return Joined({"<#TEXT:", file, " (.rtf! Ausrufezeichen anfügen = Text zuerst anzeigen)>"_cp});
    case Attachment::Picture:
      return Joined({"<#SHOW:", file, "+ (Pluszeichen löschen = Grafik zuerst anzeigen)>"_cp});
    case Attachment::Video:
      break;
  }
  return Joined({"<#PLAY:", file, "+ (Pluszeichen löschen = Video zuerst anzeigen)>"_cp});
}

bool FitsInTag(std::string_view file) {
  for (const std::string& tag : {PictureTag(file), EmbedTag(file)}) {
    MarkupItem item;
    MarkupReader reader(tag);
    if (!reader.Next(item) || item.text != file || reader.Next(item)) return false;
  }
  return !file.empty();
}

bool FitsInAttachment(Attachment kind, std::string_view file) {
  const auto directive = FindDirective(AttachmentTag(kind, file), KindOf(kind));
  return directive && directive->name == file;
}

std::string PlainFileName(std::string_view file) {
  const size_t point = file.rfind('.');
  std::string name;
  for (const char c : file.substr(0, point)) name += IsPlain(c) ? c : '_';
  if (name.empty()) name = "_";
  if (point == std::string_view::npos) return name;
  name += '.';
  for (const char c : file.substr(point + 1)) {
    if (IsPlain(c)) name += c;
  }
  return name;
}

std::string WithoutReturns(std::string_view side) {
  std::string text(side);
  std::erase(text, '\r');
  return text;
}

std::string TransferLineBreaks(std::string_view side) {
  std::string broken;
  bool added = false;
  for (size_t at = 0; at < side.size(); ++at) {
    if (side[at] == '\r' && side.substr(at + 1, 1) == "\n") continue;
    if (side[at] == '\n' && !std::string_view(broken).ends_with(kLineBreakTag)) {
      broken += kLineBreakTag;
      added = true;
    }
    broken += side[at];
  }
  return added ? broken : std::string(side);
}

}  // namespace tessaro
