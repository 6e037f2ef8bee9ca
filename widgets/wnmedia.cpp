#include "widgets/wnmedia.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <utility>

#include "ui_wnmedia.h"
#include "widgets/video_screen.h"

namespace tessaro {

TF_wnmedia::TF_wnmedia(std::unique_ptr<MediaPlayer> player, QWidget* parent)
    : QWidget(parent, Qt::Window),
      ui_(std::make_unique<Ui::TF_wnmedia>()),
      player_(player ? std::move(player) : MakeMediaPlayer()) {
  ui_->setupUi(this);
  connect(player_.get(), &MediaPlayer::Ended, this, &TF_wnmedia::OnEnded);
  connect(player_.get(), &MediaPlayer::Failed, this, &TF_wnmedia::OnFailed);
  connect(ui_->ButtonPause, &QPushButton::clicked, this, &TF_wnmedia::TogglePause);
  connect(ui_->ButtonAgain, &QPushButton::clicked, this, &TF_wnmedia::ButtonAgainClick);
  connect(ui_->ButtonClose, &QPushButton::clicked, this, &QWidget::close);
}

TF_wnmedia::~TF_wnmedia() = default;

void TF_wnmedia::PlaySound(const QString& path) {
  if (path.isEmpty() || waiting_sounds_.contains(path)) return;
  waiting_sounds_.append(path);
  if (playing_ == Playing::Nothing) PlayNextSound();
}

void TF_wnmedia::PlayVideo(const QString& path) {
  setWindowTitle(QFileInfo(path).fileName());
  show();
  raise();
  activateWindow();
  StartVideo(path, *ui_->PanelVideo);
}

void TF_wnmedia::PlayVideoOn(const QString& path, VideoScreen& screen) {
  if (playing_ == Playing::Video && screen_ == &screen && video_path_ == path) return TogglePause();
  hide();
  StartVideo(path, screen);
}

void TF_wnmedia::StopAll() {
  Stop();
  hide();
}

void TF_wnmedia::StartVideo(const QString& path, VideoScreen& screen) {
  video_path_ = path;
  screen_ = &screen;
  playing_ = Playing::Video;
  paused_ = false;
  screen.Clear();
  ShowState(QString(), true);
  player_->Play(path, &screen);
}

void TF_wnmedia::Stop() {
  waiting_sounds_.clear();
  playing_ = Playing::Nothing;
  player_->Stop();
}

void TF_wnmedia::PlayNextSound() {
  if (waiting_sounds_.isEmpty()) return;
  playing_ = Playing::Sound;
  sound_path_ = waiting_sounds_.takeFirst();
  player_->Play(sound_path_, nullptr);
}

void TF_wnmedia::OnEnded() {
  End(QStringLiteral("Ende des Videos"), true);
}

void TF_wnmedia::OnFailed() {
  if (playing_ == Playing::Sound) Q_EMIT SoundFailed(sound_path_);
  const QString name = QFileInfo(video_path_).fileName();
  End(QStringLiteral("\"%1\" kann auf diesem Rechner nicht abgespielt werden.").arg(name), false);
}

void TF_wnmedia::End(const QString& video_state, bool played) {
  const Playing ended = std::exchange(playing_, Playing::Nothing);
  if (ended == Playing::Video) ShowState(video_state, false);
  PlayNextSound();
  if (ended == Playing::Video && !isVisible()) Q_EMIT VideoEnded(played);
}

void TF_wnmedia::TogglePause() {
  paused_ = !paused_;
  player_->SetPaused(paused_);
  ShowState(paused_ ? QStringLiteral("Angehalten") : QString(), true);
}

void TF_wnmedia::ButtonAgainClick() {
  StartVideo(video_path_, *ui_->PanelVideo);
}

void TF_wnmedia::ShowState(const QString& text, bool running) {
  ui_->LabelState->setText(text);
  ui_->ButtonPause->setEnabled(running);
  ui_->ButtonPause->setText(paused_ ? QStringLiteral("&Weiter") : QStringLiteral("&Pause"));
}

void TF_wnmedia::closeEvent(QCloseEvent* event) {
  Stop();
  QWidget::closeEvent(event);
}

void TF_wnmedia::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else if (event->key() == Qt::Key_Space && ui_->ButtonPause->isEnabled()) {
    TogglePause();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace tessaro
