#include "app/single_instance.h"

#include <unistd.h>

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLocalSocket>
#include <QStandardPaths>
#include <algorithm>
#include <string>

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

// The answer to what was said.
constexpr char kHeard = 'k';

int Left(const QElapsedTimer& timer, int patience) {
  return std::max(0, patience - static_cast<int>(timer.elapsed()));
}

}  // namespace

QString SingleInstance::NameFor(const std::filesystem::path& settings) {
  constexpr qsizetype kMostLetters = 100;  // of the path of a socket
  QByteArray who = QByteArray::number(getuid());
  for (const char* display : {"WAYLAND_DISPLAY", "DISPLAY"}) who += '|' + qgetenv(display);
  who += '|' + QGuiApplication::platformName().toUtf8() + '|' + QByteArray::fromStdString(settings.string());
  const QByteArray sign = QCryptographicHash::hash(who, QCryptographicHash::Sha1).toHex().left(20);
  const QString name = u"tessaro-"_s + QString::fromLatin1(sign);
  // In a folder that only this user can write to, where there is one.
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  const QString path = folder + u'/' + name;
  return folder.isEmpty() || path.size() > kMostLetters ? name : path;
}

bool SingleInstance::HandOver(const QString& name, const StartWish& wish, int patience) {
  QElapsedTimer timer;
  timer.start();
  QLocalSocket socket;
  socket.connectToServer(name);
  if (!socket.waitForConnected(patience)) return false;
  socket.write(QByteArray::fromStdString(ToBytes(wish)));
  while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(Left(timer, patience))) continue;
  return socket.waitForReadyRead(Left(timer, patience)) && socket.read(1) == QByteArray(1, kHeard);
}

SingleInstance::SingleInstance(const QString& name) {
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    while (QLocalSocket* caller = server_.nextPendingConnection()) {
      connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
      connect(caller, &QLocalSocket::readyRead, this, [this, caller] { Answer(*caller); });
      Answer(*caller);
    }
  });
  // Listening would take the name from a program that only keeps us waiting. One that was killed leaves it behind.
  QLocalSocket probe;
  probe.connectToServer(name);
  if (probe.waitForConnected(kPatience)) return;
  QLocalServer::removeServer(name);
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  server_.listen(name);
}

void SingleInstance::Answer(QLocalSocket& caller) {
  if (!caller.peek(caller.bytesAvailable()).contains('\0')) return;
  const std::optional<StartWish> wish = ToStartWish(caller.readAll().toStdString());
  if (!wish) return;
  caller.write(QByteArray(1, kHeard));
  caller.flush();
  Q_EMIT OtherStart(*wish);
}

}  // namespace tessaro
