#include "widgets/card_pages.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTextDocumentFragment>
#include <QVBoxLayout>

#include "hypertext/plain_text.h"
#include "hypertext/text_file.h"
#include "platform/disk.h"
#include "widgets/icons.h"
#include "widgets/picture_store.h"
#include "widgets/text.h"
#include "widgets/video_screen.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kLettersInLine = 75;
// The paper is in line with the frames of the buttons below, which keep room for their focus ring.
constexpr int kEdge = 3;
// The hypertext frame has margins of its own; it must only not touch the rounded edge.
constexpr int kFrameMargin = 3;
constexpr int kPaperMargin = 20;
constexpr uint64_t kLargestTextFile = 8 << 20;

QPlainTextEdit* MakeTextView(const QString& name) {
  auto* view = new QPlainTextEdit;
  view->setObjectName(name);
  view->setReadOnly(true);
  view->setFrameShape(QFrame::NoFrame);
  // Without the keyboard focus, so that the keys of the answers are never taken away.
  view->setFocusPolicy(Qt::NoFocus);
  view->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return view;
}

}  // namespace

// The sheet of paper that a page is: the same in a light and a dark desktop.
class PaperPage : public QWidget {
 public:
  PaperPage(QWidget* content, int margin) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kEdge + margin, margin, kEdge + margin, margin);
    layout->addWidget(content);
  }
  void SetPaper(const QColor& paper) {
    paper_ = paper;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    constexpr qreal kRadius = 6;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlphaF(0.25F);
    painter.setPen(edge);
    painter.setBrush(paper_);
    painter.drawRoundedRect(QRectF(rect()).adjusted(kEdge + 0.5, 0.5, -kEdge - 0.5, -0.5), kRadius, kRadius);
  }

 private:
  QColor paper_ = Qt::white;
};

// A picture in the middle of its page, made smaller where it does not fit, never larger.
class PictureView : public QWidget {
 public:
  void SetPicture(const QPixmap& picture) {
    picture_ = picture;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    if (picture_.isNull()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const bool fits = picture_.width() <= width() && picture_.height() <= height();
    QRect place(QPoint(0, 0), fits ? picture_.size() : picture_.size().scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(rect().center());
    painter.drawPixmap(place, picture_);
  }

 private:
  QPixmap picture_;
};

CardPages::CardPages(QWidget* parent)
    : QTabWidget(parent),
      frame_(new TFrameHtml),
      text_(MakeTextView(u"Text"_s)),
      picture_(new PictureView),
      text_file_(MakeTextView(u"TextPlus"_s)),
      video_(new VideoScreen) {
  setDocumentMode(true);
  tabBar()->setFocusPolicy(Qt::TabFocus);
  frame_->setObjectName(u"FrameHtml"_s);
  // A click on the card leaves the focus with the buttons; Tab reaches the links.
  frame_->setFocusPolicy(Qt::TabFocus);
  frame_->setFrameShape(QFrame::NoFrame);
  picture_->setObjectName(u"Grafik"_s);
  AddPage(u"Text"_s, text_);
  AddPage(u"Grafik"_s, picture_);
  AddPage(u"Text +"_s, text_file_);
  AddPage(u"Video"_s, MakeVideoPage());
  AddPage(u"Ton"_s, MakeSoundPage());
  AddPage(u"HTML"_s, frame_);
  ConnectFrame();
}

void CardPages::AddPage(const QString& title, QWidget* content) {
  auto* page = new PaperPage(content, content == frame_ ? kFrameMargin : kPaperMargin);
  pages_[static_cast<size_t>(count())] = page;
  addTab(page, title);
}

QWidget* CardPages::MakeVideoPage() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(MakeButton(u"Abspielen / Anhalten"_s, u"ButtonVideo"_s, [this] { PlayVideo(); }));
  buttons->addWidget(MakeButton(u"In eigenem Fenster"_s, u"ButtonFenster"_s, [this] { EnlargeVideo(video_path_); }));
  buttons->addStretch();
  layout->addWidget(video_, 1);
  layout->addLayout(buttons);
  return page;
}

QWidget* CardPages::MakeSoundPage() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  QPushButton* play = MakeButton(u"Ton abspielen"_s, u"ButtonTon"_s, [this] { Q_EMIT SoundWanted(sound_path_); });
  play->setIcon(Icon("sound"));
  layout->addWidget(play, 0, Qt::AlignCenter);
  return page;
}

QPushButton* CardPages::MakeButton(const QString& text, const QString& name, const std::function<void()>& command) {
  auto* button = new QPushButton(text);
  button->setObjectName(name);
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QPushButton::clicked, this, command);
  return button;
}

void CardPages::PlayVideo() {
  Q_EMIT VideoWanted(video_path_, video_);
}

void CardPages::EnlargeVideo(const QString& path) {
  if (path.isEmpty()) return;
  CloseVideo();
  video_->Clear();
  Q_EMIT VideoWanted(path, nullptr);
}

void CardPages::CloseVideo() {
  frame_->CloseVideoPanel();
}

void CardPages::ConnectFrame() {
  connect(frame_, &TFrameHtml::LinkClicked, this, &CardPages::LinkClicked);
  connect(frame_, &TFrameHtml::SoundWanted, this, &CardPages::SoundWanted);
  connect(frame_, &TFrameHtml::VideoClicked, this, [this](const QString& path) {
    if (path.isEmpty()) return Q_EMIT DrawingFailed();
    Q_EMIT VideoWanted(path, frame_->OpenVideoPanel());
  });
  connect(frame_, &TFrameHtml::VideoDoubleClicked, this, &CardPages::EnlargeVideo);
  connect(frame_, &TFrameHtml::DrawingFailed, this, &CardPages::DrawingFailed);
}

void CardPages::SetMediaFolders(const MediaFolders& folders) {
  folders_ = folders;
  frame_->SetMediaFolders(folders);
}

void CardPages::SetLinkColours(std::function<ColourClass(int64_t card_id)> colours) {
  frame_->SetLinkColours(std::move(colours));
}

void CardPages::ShowSide(std::string_view side, const SideLook& look) {
  Dress(look);
  video_->Clear();
  frame_->ShowSide(side, look);
  text_->setExtraSelections({});
  text_->setPlainText(FromBytes(PlainText(side)));
  setTabVisible(kHypertext, true);
  ShowPages(side);
  if (currentIndex() == kVideo) PlayVideo();
}

void CardPages::ShowTemplate(const QString& text) {
  if (text_->toPlainText() != text) text_->setPlainText(text);
  setTabVisible(kText, true);
  setTabVisible(kHypertext, false);
  setCurrentIndex(kText);
  tabBar()->hide();
}

void CardPages::MarkTemplate(int place, int length) {
  QTextEdit::ExtraSelection mark;
  mark.cursor = QTextCursor(text_->document());
  mark.cursor.setPosition(std::min(place, text_->document()->characterCount() - 1));
  text_->setTextCursor(mark.cursor);
  mark.cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor, length);
  // Of the paper's own colours, so that it is seen on any paper.
  mark.format.setBackground(text_->palette().color(QPalette::Text));
  mark.format.setForeground(text_->palette().color(QPalette::Base));
  text_->setExtraSelections({mark});
  text_->ensureCursorVisible();
}

void CardPages::Dress(const SideLook& look) {
  for (PaperPage* page : pages_) page->SetPaper(look.paper);
  for (QPlainTextEdit* view : {text_, text_file_}) {
    QPalette colours = view->palette();
    colours.setColor(QPalette::Base, look.paper);
    colours.setColor(QPalette::Text, look.text);
    view->setPalette(colours);
    view->setFont(look.font);
  }
}

std::optional<std::filesystem::path> CardPages::NamedFile(std::string_view side, MediaKind kind, bool& first) const {
  const std::optional<MediaDirective> directive = FindDirective(side, kind);
  if (!directive) return std::nullopt;
  first = !directive->text_first;
  return FindMedia(RealDisk(), folders_, directive->name);
}

void CardPages::ShowPages(std::string_view side) {
  Page front = kHypertext;
  bool any = false;
  const auto offer = [&](Page page, bool shown, bool first) {
    setTabVisible(page, shown);
    any = any || shown;
    if (shown && first && front == kHypertext) front = page;
  };
  bool first = false;
  const auto picture = NamedFile(side, MediaKind::Picture, first);
  offer(kPicture, picture && ShowPicture(*picture), first);
  const auto video = NamedFile(side, MediaKind::Video, first);
  video_path_ = video ? FromPath(*video) : QString();
  offer(kVideo, video.has_value(), first);
  const auto sound = NamedFile(side, MediaKind::Sound, first);
  sound_path_ = sound ? FromPath(*sound) : QString();
  offer(kSound, sound.has_value(), false);
  if (sound && first) Q_EMIT SoundWanted(sound_path_);
  const auto text = NamedFile(side, MediaKind::Text, first);
  offer(kTextFile, text && ShowTextFile(*text), first);
  setTabVisible(kText, any);
  setCurrentIndex(front);
  tabBar()->setVisible(any);
  // Qt does not note the change of a tab in a bar that is not on screen, and would leave gaps for hidden ones.
  tabBar()->setElideMode(tabBar()->elideMode());
}

bool CardPages::ShowPicture(const std::filesystem::path& path) {
  const QImage image = ReadPicture(FromPath(path));
  if (image.isNull()) Q_EMIT PictureFailed();
  picture_->SetPicture(QPixmap::fromImage(image));
  return !image.isNull();
}

bool CardPages::ShowTextFile(const std::filesystem::path& path) {
  const std::optional<FileState> state = RealDisk().State(path);
  if (!state || state->size > kLargestTextFile) return false;
  const std::optional<std::string> bytes = ReadFile(RealDisk(), path);
  if (bytes) text_file_->setPlainText(FromUtf8(ReadableText(*bytes)));
  return bytes.has_value();
}

QString CardPages::SelectedText() const {
  const QPlainTextEdit* front = currentIndex() == kText ? text_ : currentIndex() == kTextFile ? text_file_ : nullptr;
  return front == nullptr ? QString() : front->textCursor().selection().toPlainText();
}

void CardPages::ScrollBy(int heights) {
  auto* area = currentWidget() == nullptr ? nullptr : currentWidget()->findChild<QAbstractScrollArea*>();
  if (area == nullptr) return;
  QScrollBar* bar = area->verticalScrollBar();
  bar->setValue(bar->value() + heights * bar->pageStep());
}

int CardPages::PaperWidth(const QFont& font) {
  return QFontMetrics(font).averageCharWidth() * kLettersInLine + 4 * kPaperMargin;
}

}  // namespace tessaro
