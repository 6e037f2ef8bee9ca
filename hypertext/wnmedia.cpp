#include "hypertext/wnmedia.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <utility>

#include "hypertext/video_screen.h"
#include "ui_wnmedia.h"

namespace tessaro {

TF_wnmedia::TF_wnmedia(std::unique_ptr<MediaPlayer> player, QWidget* parent)
    : QWidget(parent, Qt::Window),
      ui_(std::make_unique<Ui::TF_wnmedia>()),
      player_(player ? std::move(player) : MakeMediaPlayer()) {
  ui_->setupUi(this);
  connect(player_.get(), &MediaPlayer::Ended, this, &TF_wnmedia::OnEnded);
  connect(player_.get(), &MediaPlayer::Failed, this, &TF_wnmedia::OnFailed);
  connect(ui_->ButtonPause, &QPushButton::clicked, this, &TF_wnmedia::ButtonPauseClick);
  connect(ui_->ButtonAgain, &QPushButton::clicked, this, &TF_wnmedia::ButtonAgainClick);
  connect(ui_->ButtonClose, &QPushButton::clicked, this, &QWidget::close);
}

TF_wnmedia::~TF_wnmedia() = default;

void TF_wnmedia::PlaySound(const QString& path) {
  if (path.isEmpty()) return;
  waiting_sounds_.append(path);
  if (playing_ == Playing::Nothing) PlayNextSound();
}

void TF_wnmedia::PlayVideo(const QString& path) {
  setWindowTitle(path.isEmpty() ? QStringLiteral("Video") : QFileInfo(path).fileName());
  ui_->PanelVideo->Clear();
  show();
  raise();
  activateWindow();
  Start(Playing::Video, path, ui_->PanelVideo);
}

void TF_wnmedia::PlayVideoOn(const QString& path, VideoScreen& screen) {
  hide();
  Start(Playing::Video, path, &screen);
}

void TF_wnmedia::StopAll() {
  Stop();
  hide();
}

void TF_wnmedia::Start(Playing kind, const QString& path, VideoScreen* screen) {
  path_ = path;
  playing_ = kind;
  paused_ = false;
  ShowState(QString(), true);
  player_->Play(path, screen);
}

void TF_wnmedia::Stop() {
  waiting_sounds_.clear();
  playing_ = Playing::Nothing;
  player_->Stop();
}

void TF_wnmedia::PlayNextSound() {
  if (!waiting_sounds_.isEmpty()) Start(Playing::Sound, waiting_sounds_.takeFirst(), nullptr);
}

void TF_wnmedia::OnEnded() {
  const Playing ended = std::exchange(playing_, Playing::Nothing);
  if (ended == Playing::Video) {
    ShowState(QStringLiteral("Ende des Videos"), false);
    Q_EMIT VideoEnded();
  }
  PlayNextSound();
}

void TF_wnmedia::OnFailed() {
  const Playing failed = std::exchange(playing_, Playing::Nothing);
  const QString name = QFileInfo(path_).fileName();
  ShowState(name.isEmpty() ? QStringLiteral("Die Videodatei wurde nicht gefunden.")
                           : QStringLiteral("\"%1\" kann auf diesem Rechner nicht abgespielt werden.").arg(name),
            false);
  Q_EMIT PlayingFailed(path_);
  if (failed == Playing::Video) Q_EMIT VideoEnded();
  PlayNextSound();
}

void TF_wnmedia::ButtonPauseClick() {
  paused_ = !paused_;
  player_->SetPaused(paused_);
  ShowState(paused_ ? QStringLiteral("Angehalten") : QString(), true);
}

void TF_wnmedia::ButtonAgainClick() {
  Start(Playing::Video, path_, ui_->PanelVideo);
}

void TF_wnmedia::ShowState(const QString& text, bool running) {
  ui_->LabelState->setText(text);
  ui_->ButtonPause->setEnabled(running);
  ui_->ButtonPause->setText(paused_ ? QStringLiteral("&Weiter") : QStringLiteral("&Pause"));
  ui_->ButtonAgain->setEnabled(!path_.isEmpty());
}

void TF_wnmedia::closeEvent(QCloseEvent* event) {
  Stop();
  QWidget::closeEvent(event);
}

void TF_wnmedia::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else if (event->key() == Qt::Key_Space && ui_->ButtonPause->isEnabled()) {
    ButtonPauseClick();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace tessaro
