#pragma once

#include <QPlainTextEdit>
#include <filesystem>

namespace tessaro {

// A page of plain text, to be read and copied from. However long the text is, it is shown without delay: cut with a
// note, its longest lines broken.
class TextPage : public QPlainTextEdit {
 public:
  static constexpr qsizetype kMostLetters = 1 << 20;

  explicit TextPage(const QString& name);
  // `cut`: it is only the beginning of a longer text.
  void ShowText(const QString& text, bool cut = false);
  // What a person reads in this file; false when it cannot be opened, and then the text stays.
  bool ShowFile(const std::filesystem::path& path);
};

}  // namespace tessaro
