#include "store/file/ini_file.h"

#include <algorithm>
#include <memory>

#include "platform/code_page.h"
#include "platform/disk.h"
#include "store/file/safe_save.h"
#include "store/table/card_columns.h"

// The text is kept as it was read; every question scans it and every change is a splice. So whatever stands in the file
// beside our keys stays byte for byte, and odd input costs no more memory than itself.
namespace tessaro {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool IsQuoted(std::string_view value) {
  return value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.front() == value.back();
}

// One line of the text, without its end.
struct Line {
  size_t begin = 0;
  size_t end = 0;   // past the last byte of the content
  size_t next = 0;  // where the next line begins
};

Line LineAt(std::string_view text, size_t begin) {
  const size_t feed = std::min(text.find('\n', begin), text.size());
  const size_t end = feed > begin && text[feed - 1] == '\r' ? feed - 1 : feed;
  return {begin, end, std::min(feed + 1, text.size())};
}

std::string_view Content(std::string_view text, const Line& line) {
  std::string_view content = text.substr(line.begin, line.end - line.begin);
  if (line.begin == 0 && content.starts_with(kByteOrderMark)) content.remove_prefix(kByteOrderMark.size());
  return Trimmed(content);
}

bool IsSectionLine(std::string_view content) {
  return content.starts_with('[') && content.find(']') != std::string_view::npos;
}

std::string_view SectionName(std::string_view content) {
  return Trimmed(content.substr(1, content.find(']') - 1));
}

bool IsKeyLine(std::string_view content, std::string_view key) {
  const size_t equals = content.find('=');
  return equals != std::string_view::npos && !content.starts_with(';') &&
         EqualIgnoringCase(Trimmed(content.substr(0, equals)), key);
}

std::string Written(std::string_view value) {
  const bool needs_quotes = IsQuoted(value) || Trimmed(value).size() != value.size();
  return needs_quotes ? '"' + std::string(value) + '"' : std::string(value);
}

bool IsOneLine(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

// Whether a line can hold this name so that it is found again.
bool IsName(std::string_view name, std::string_view forbidden) {
  return !name.empty() && IsOneLine(name) && Trimmed(name).size() == name.size() &&
         name.find_first_of(forbidden) == std::string_view::npos;
}

// What a walk over the text found for one section and key.
struct Found {
  Line key_line;
  bool has_key = false;
  bool has_section = false;
  size_t section_end = 0;  // past the last line of the first such section that is not blank
};

Found Find(std::string_view text, std::string_view section, std::string_view key) {
  Found found;
  bool inside = false;
  bool first_section = false;
  for (size_t at = 0; at < text.size();) {
    const Line line = LineAt(text, at);
    at = line.next;
    const std::string_view content = Content(text, line);
    if (IsSectionLine(content)) {
      inside = EqualIgnoringCase(SectionName(content), section);
      first_section = inside && !found.has_section;
      found.has_section = found.has_section || inside;
    } else if (inside && IsKeyLine(content, key)) {
      found.key_line = line;
      found.has_key = true;
      return found;
    }
    if (first_section && !content.empty()) found.section_end = line.next;
  }
  return found;
}

// The part of a key line after the "=" and the blanks that follow it.
Line ValueOf(std::string_view text, const Line& line) {
  Line value = line;
  value.begin = text.find('=', line.begin) + 1;
  while (value.begin < value.end && IsBlank(text[value.begin])) ++value.begin;
  return value;
}

std::string_view LineEnding(std::string_view text) {
  const size_t feed = text.find('\n');
  return feed != std::string_view::npos && feed > 0 && text[feed - 1] == '\r' ? "\r\n" : "\n";
}

}  // namespace

void IniFile::Parse(std::string_view text) {
  text_ = text;
  touched_.clear();
}

bool IniFile::Load(Disk& disk, const std::filesystem::path& path) {
  std::optional<std::string> text = ReadFile(disk, path);
  if (!text && disk.Exists(path)) return false;
  text_ = std::move(text).value_or(std::string());
  touched_.clear();
  return true;
}

bool IniFile::Save(Disk& disk, const std::filesystem::path& path) const {
  return ReplaceFile(disk, path, [this](WritableFile& file) { return file.Write(text_); });
}

bool IniFile::Has(std::string_view section, std::string_view key) const {
  return Find(text_, section, key).has_key;
}

std::string IniFile::GetString(std::string_view section, std::string_view key, std::string_view fallback) const {
  const Found found = Find(text_, section, key);
  if (!found.has_key) return std::string(fallback);
  const Line line = ValueOf(text_, found.key_line);
  std::string_view value = Trimmed(std::string_view(text_).substr(line.begin, line.end - line.begin));
  if (IsQuoted(value)) value = value.substr(1, value.size() - 2);
  return std::string(value);
}

int64_t IniFile::GetInt(std::string_view section, std::string_view key, int64_t fallback) const {
  const std::string value = GetString(section, key);
  return HasDigits(value) ? LeadingNumber(value) : fallback;
}

bool IniFile::SetString(std::string_view section, std::string_view key, std::string_view value) {
  if (!IsName(section, "]") || !IsName(key, "=") || key.front() == '[' || key.front() == ';' || !IsOneLine(value)) {
    return false;
  }
  const Found found = Find(text_, section, key);
  if (found.has_key) {
    const Line line = ValueOf(text_, found.key_line);
    if (GetString(section, key) == value) return true;
    text_.replace(line.begin, line.end - line.begin, Written(value));
    Touch(section, key);
    return true;
  }
  Touch(section, key);
  const std::string ending(LineEnding(text_));
  const std::string new_line = std::string(key) + '=' + Written(value) + ending;
  size_t place = found.section_end;
  std::string added = new_line;
  if (!found.has_section) {
    place = text_.size();
    added = (text_.empty() ? "" : ending) + '[' + std::string(section) + ']' + ending + new_line;
  }
  // A text that was cut within a line ending gets the rest of it.
  if (place > 0 && text_[place - 1] != '\n') added.insert(0, text_[place - 1] == '\r' ? "\n" : ending);
  text_.insert(place, added);
  return true;
}

bool IniFile::SetInt(std::string_view section, std::string_view key, int64_t value) {
  return SetString(section, key, std::to_string(value));
}

void IniFile::RemoveSection(std::string_view section) {
  for (const std::string& key : KeysOf(section)) Touch(section, key);
  std::string kept;
  bool inside = false;
  for (size_t at = 0; at < text_.size();) {
    const Line line = LineAt(text_, at);
    at = line.next;
    const std::string_view content = Content(text_, line);
    if (IsSectionLine(content)) inside = EqualIgnoringCase(SectionName(content), section);
    if (!inside) kept.append(text_, line.begin, line.next - line.begin);
  }
  text_ = std::move(kept);
}

void IniFile::Remove(std::string_view section, std::string_view key) {
  if (!Has(section, key)) return;
  Touch(section, key);
  std::string kept;
  bool inside = false;
  for (size_t at = 0; at < text_.size();) {
    const Line line = LineAt(text_, at);
    at = line.next;
    const std::string_view content = Content(text_, line);
    const bool heads_section = IsSectionLine(content);
    if (heads_section) inside = EqualIgnoringCase(SectionName(content), section);
    if (heads_section || !inside || !IsKeyLine(content, key)) kept.append(text_, line.begin, line.next - line.begin);
  }
  text_ = std::move(kept);
}

void IniFile::Touch(std::string_view section, std::string_view key) {
  const auto is_it = [&](const Name& name) {
    return EqualIgnoringCase(name.section, section) && EqualIgnoringCase(name.key, key);
  };
  if (std::none_of(touched_.begin(), touched_.end(), is_it))
    touched_.push_back({std::string(section), std::string(key)});
}

std::vector<std::string> IniFile::KeysOf(std::string_view section) const {
  std::vector<std::string> keys;
  bool inside = false;
  for (size_t at = 0; at < text_.size();) {
    const Line line = LineAt(text_, at);
    at = line.next;
    const std::string_view content = Content(text_, line);
    if (IsSectionLine(content)) {
      inside = EqualIgnoringCase(SectionName(content), section);
    } else if (inside && !content.starts_with(';') && content.find('=') != std::string_view::npos) {
      keys.emplace_back(Trimmed(content.substr(0, content.find('='))));
    }
  }
  return keys;
}

void IniFile::RepeatIn(IniFile& other, std::span<const std::string_view> lists) const {
  std::vector<Name> names = touched_;
  for (const std::string_view list : lists) {
    const auto is_in = [&](const Name& name) { return EqualIgnoringCase(name.section, list); };
    if (std::none_of(touched_.begin(), touched_.end(), is_in)) continue;
    for (const IniFile* file : {this, static_cast<const IniFile*>(&other)}) {
      for (std::string& key : file->KeysOf(list)) names.push_back({std::string(list), std::move(key)});
    }
  }
  for (const auto& [section, key] : names) {
    if (Has(section, key)) {
      other.SetString(section, key, GetString(section, key));
    } else {
      other.Remove(section, key);
    }
  }
}

}  // namespace tessaro
