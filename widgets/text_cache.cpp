#include "widgets/text_cache.h"

#include <QFontMetricsF>
#include <QTextOption>
#include <algorithm>
#include <utility>

#include "widgets/text.h"

namespace tessaro {
namespace {

// A cache that holds more starts anew. What a word costs is an estimate: its layout, and the glyphs of each letter.
constexpr size_t kMostBytes = 16 << 20;
constexpr size_t kBytesOfWord = 1024;
constexpr size_t kBytesOfLetter = 32;
constexpr double kLineSpacing = 1.22;  // of the font's own height: lines with air between them read easier

QString VisibleText(std::string_view bytes, CodePage page) {
  QString text = FromBytes(bytes, page);
  for (QChar& letter : text)
    if (letter < QChar(u' ')) letter = QChar(u' ');
  return text;
}

TextCache::Word Shape(std::string_view bytes, const QFont& font, CodePage page, bool from_right) {
  auto letters = std::make_unique<QTextLayout>(VisibleText(bytes, page), font);
  QTextOption option;
  option.setWrapMode(QTextOption::NoWrap);
  option.setFlags(QTextOption::IncludeTrailingSpaces);
  if (page.right_to_left()) option.setTextDirection(from_right ? Qt::RightToLeft : Qt::LeftToRight);
  letters->setTextOption(option);
  letters->setCacheEnabled(true);
  letters->beginLayout();
  QTextLine line = letters->createLine();
  letters->endLayout();
  line.setPosition({0, -line.ascent()});
  return {qRound(line.horizontalAdvance()), std::move(letters)};
}

}  // namespace

void TextCache::SetFont(const QFont& font, double zoom, CodePage page) {
  if (font == base_ && zoom == zoom_ && page == page_) return;
  base_ = font;
  zoom_ = zoom;
  page_ = page;
  fonts_.clear();
  bytes_ = 0;
}

TextExtent TextCache::Measure(std::string_view text, const TextStyle& style) {
  const int width = text.empty() ? 0 : Find(text, style).width;
  const StyledFont& font = FontOf(style);
  return {width, font.height, font.ascent};
}

const TextCache::Word& TextCache::Find(std::string_view text, const TextStyle& style) {
  auto* font = &FontOf(style);
  const auto known = font->words.find(text);
  if (known != font->words.end()) return known->second;
  if (bytes_ >= kMostBytes) {
    fonts_.clear();
    bytes_ = 0;
    font = &FontOf(style);
  }
  bytes_ += kBytesOfWord + text.size() * kBytesOfLetter;
  return font->words.emplace(std::string(text), Shape(text, font->font, page_, style.from_right)).first->second;
}

TextCache::StyledFont& TextCache::FontOf(const TextStyle& style) {
  const uint32_t key = static_cast<uint32_t>(style.points) << 3U | (style.from_right ? 4U : 0U) |
                       (style.bold ? 2U : 0U) | (style.italic ? 1U : 0U);
  const auto [place, is_new] = fonts_.try_emplace(key);
  StyledFont& styled = place->second;
  if (!is_new) return styled;
  styled.font = base_;
  styled.font.setPointSizeF(style.points * zoom_);
  styled.font.setBold(style.bold || base_.bold());
  styled.font.setItalic(style.italic || base_.italic());
  const QFontMetricsF metrics(styled.font);
  const double own_height = metrics.ascent() + metrics.descent();
  styled.height = std::max(1, qRound(own_height * kLineSpacing));
  styled.ascent = qRound((styled.height - own_height) / 2 + metrics.ascent());
  styled.underline = {std::max(1, qRound(metrics.underlinePos())), std::max(1, qRound(metrics.lineWidth()))};
  return styled;
}

}  // namespace tessaro
