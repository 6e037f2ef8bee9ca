#include "widgets/card_pages.h"

#include <QAction>
#include <QClipboard>
#include <QEvent>
#include <QFontInfo>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTextDocumentFragment>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "hypertext/plain_text.h"
#include "platform/disk.h"
#include "settings/keys.h"
#include "widgets/icons.h"
#include "widgets/paper_page.h"
#include "widgets/picture_store.h"
#include "widgets/side_look.h"
#include "widgets/text.h"
#include "widgets/text_page.h"
#include "widgets/theme.h"
#include "widgets/video_screen.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kLettersInLine = 75;
// The hypertext frame has margins of its own; it must only not touch the rounded edge.
constexpr int kFrameMargin = 3;
constexpr int kPaperMargin = 20;
constexpr int kZoomStep = 10;  // percent

}  // namespace

CardPages::CardPages(QWidget* parent)
    : QTabWidget(parent),
      frame_(new TFrameHtml),
      text_(new TextPage(u"Text"_s)),
      picture_(new PictureView),
      text_file_(new TextPage(u"TextPlus"_s)),
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
  AddCommands();
  connect(this, &QTabWidget::currentChanged, this, &CardPages::FillText);
}

void CardPages::AddCommands() {
  AddCommand(u"Kopieren"_s, u"KopierenCard"_s, {}, [this] { QGuiApplication::clipboard()->setText(SelectedText()); });
  AddCommand(u"Alles markieren"_s, u"AllesMarkieren"_s, {}, [this] { frame_->MarkAll(); });
  sound_again_ = AddCommand(u"Ton noch einmal abspielen"_s, u"TonNochEinmal"_s, {QKeySequence(Qt::Key_R)},
                            [this] { PlaySoundsAgain(); });
  AddCommand(u"Schrift größer"_s, u"ZoomIn"_s, {QKeySequence(u"Ctrl++"_s), QKeySequence(u"Ctrl+="_s)},
             [this] { SetZoom(zoom_ + kZoomStep); });
  AddCommand(u"Schrift kleiner"_s, u"ZoomOut"_s, {QKeySequence(u"Ctrl+-"_s)}, [this] { SetZoom(zoom_ - kZoomStep); });
  AddCommand(u"Schrift in eigener Größe"_s, u"ZoomNormal"_s, {QKeySequence(u"Ctrl+0"_s)}, [this] { SetZoom(100); });
  stays_white_ = AddCommand(u"Papier bleibt hell"_s, u"PapierHell"_s, {}, [this] {
    white_paper_ = stays_white_->isChecked();
    if (settings_ != nullptr) keys::kWhitePaper.Write(white_paper_, *settings_);
    ChangeLook();
  });
  stays_white_->setCheckable(true);
  frame_->setContextMenuPolicy(Qt::ActionsContextMenu);
  frame_->addActions(actions());
  speaker_ = new QToolButton(pages_[kHypertext]);
  speaker_->setObjectName(u"ButtonLautsprecher"_s);
  speaker_->setIcon(Icon("sound"));
  speaker_->setAccessibleName(sound_again_->text());
  speaker_->setToolTip(u"Ton noch einmal abspielen (R)"_s);
  speaker_->setFocusPolicy(Qt::TabFocus);
  connect(speaker_, &QToolButton::clicked, this, &CardPages::PlaySoundsAgain);
  ShowSpeaker();
}

QAction* CardPages::AddCommand(const QString& text, const QString& name, const QList<QKeySequence>& keys,
                               const std::function<void()>& command) {
  auto* action = new QAction(text, this);
  action->setObjectName(name);
  action->setShortcuts(keys);
  connect(action, &QAction::triggered, this, command);
  addAction(action);
  return action;
}

void CardPages::KeepViewIn(IniFile& settings) {
  settings_ = &settings;
  white_paper_ = keys::kWhitePaper.Read(settings);
  stays_white_->setChecked(white_paper_);
  SetZoom(static_cast<int>(keys::kCardPercent.Read(settings)));
}

void CardPages::SetZoom(int percent) {
  percent = std::clamp(percent, static_cast<int>(keys::kCardPercent.least), static_cast<int>(keys::kCardPercent.most));
  if (percent == zoom_) return;
  zoom_ = percent;
  if (settings_ != nullptr) keys::kCardPercent.Write(zoom_, *settings_);
  frame_->SetZoom(zoom_ / 100.0);
  Dress(LookNow());
}

SideLook CardPages::LookNow() const {
  return !white_paper_ && IsDark(palette()) ? OnDarkPaper(look_) : look_;
}

void CardPages::ChangeLook() {
  Dress(LookNow());
  frame_->ChangeLook(LookNow());
}

void CardPages::AddSound(const QString& path) {
  sounds_ += path;
  Q_EMIT SoundWanted(path);
  ShowSpeaker();
}

void CardPages::PlaySoundsAgain() {
  for (const QString& path : sounds_) Q_EMIT SoundWanted(path);
  if (!sound_path_.isEmpty() && !sounds_.contains(sound_path_)) Q_EMIT SoundWanted(sound_path_);
}

// In the corner that no text reaches.
void CardPages::ShowSpeaker() {
  const bool any = !sounds_.isEmpty() || !sound_path_.isEmpty();
  sound_again_->setEnabled(any);
  speaker_->setVisible(any);
  constexpr int kInset = 4;
  const QSize size = speaker_->sizeHint();
  speaker_->setGeometry(QRect(QPoint(pages_[kHypertext]->width() - size.width() - kPaperEdge - kInset, kInset), size));
  speaker_->raise();
}

// Laid out only when it is to be seen.
void CardPages::FillText() {
  if (currentIndex() != kText || std::exchange(text_filled_, true)) return;
  text_->ShowText(FromBytes(PlainText(side_), look_.page));
}

void CardPages::changeEvent(QEvent* event) {
  QTabWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ChangeLook();
}

void CardPages::resizeEvent(QResizeEvent* event) {
  QTabWidget::resizeEvent(event);
  ShowSpeaker();
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
  connect(frame_, &TFrameHtml::SoundWanted, this, &CardPages::AddSound);
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
  look_ = look;
  side_ = side.substr(0, TextPage::kMostLetters);
  text_filled_ = false;
  sounds_.clear();
  sound_path_.clear();
  loader_.Forget();
  video_->Clear();
  frame_->ShowSide(side, LookNow());
  Dress(LookNow());
  text_->setExtraSelections({});
  setTabVisible(kHypertext, true);
  ShowPages(side);
  FillText();
  ShowSpeaker();
  if (currentIndex() == kVideo) PlayVideo();
}

void CardPages::ShowTemplate(const QString& text) {
  text_filled_ = true;
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
  for (TextPage* view : {text_, text_file_}) {
    QPalette colours = view->palette();
    colours.setColor(QPalette::Base, look.paper);
    colours.setColor(QPalette::Text, look.text);
    view->setPalette(colours);
    QFont font = look.font;
    font.setPointSizeF(QFontInfo(font).pointSizeF() * zoom_ / 100);
    view->setFont(font);
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
  if (sound && first) AddSound(sound_path_);
  const auto text = NamedFile(side, MediaKind::Text, first);
  offer(kTextFile, text && text_file_->ShowFile(*text), first);
  setTabVisible(kText, any);
  setCurrentIndex(front);
  tabBar()->setVisible(any);
  // Tab would stop at a bar that is not on screen.
  setFocusPolicy(any ? Qt::TabFocus : Qt::NoFocus);
  // Qt does not note the change of a tab in a bar that is not on screen, and would leave gaps for hidden ones.
  tabBar()->setElideMode(tabBar()->elideMode());
}

bool CardPages::ShowPicture(const std::filesystem::path& path) {
  const QString name = FromPath(path);
  const MeasuredPicture picture = MeasurePicture(name);
  const auto take = [this](const QImage& image) {
    picture_->SetPicture(QPixmap::fromImage(image));
    if (image.isNull()) Q_EMIT PictureFailed();
    return !image.isNull();
  };
  if (picture.file.state != PictureFile::State::Good || !IsSlowToRead(picture.cost)) return take(ReadPicture(name));
  picture_->SetPicture({});
  loader_.Begin([name] { return ReadPicture(name); },
                [this, take](const QImage& image) {
                  if (!take(image)) setTabVisible(kPicture, false);
                });
  return true;
}

QString CardPages::SelectedText() const {
  if (currentIndex() == kHypertext) return frame_->MarkedText();
  const TextPage* front = currentIndex() == kText ? text_ : currentIndex() == kTextFile ? text_file_ : nullptr;
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
