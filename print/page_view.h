#pragma once

#include <QWidget>
#include <memory>

#include "print/printed_pages.h"

namespace tessaro {

// One page of what is to be printed, as it will lie on the table. Draws nothing without pages.
class PageView : public QWidget {
  Q_OBJECT

 public:
  explicit PageView(QWidget* parent = nullptr);

  // Shows the first of other pages; null: none. The pages must live until others are shown.
  void ShowPages(PrintedPages* pages);
  void ShowPage(int page);
  int page() const { return page_; }
  // As wide as the room that it is given and scrolled, else as a whole.
  void SetWide(bool wide);

  bool hasHeightForWidth() const override { return wide_; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  PixelSize Paper() const;
  void FitHeight();

  PrintedPages* pages_ = nullptr;
  int page_ = 0;
  bool wide_ = false;
};

}  // namespace tessaro
