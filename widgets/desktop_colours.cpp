#include "widgets/desktop_colours.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

const QString kService = u"org.freedesktop.portal.Desktop"_s;
const QString kPath = u"/org/freedesktop/portal/desktop"_s;
const QString kInterface = u"org.freedesktop.portal.Settings"_s;
const QString kGroup = u"org.freedesktop.appearance"_s;
const QString kKey = u"color-scheme"_s;

void Obey(Theme wish) {
  const bool dark = IsDark(QApplication::palette());
  if (wish != Theme::Desktop && dark != (wish == Theme::Dark)) ApplyTheme(wish);
}

}  // namespace

Theme WishOf(QVariant value) {
  while (value.metaType() == QMetaType::fromType<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  bool is_number = false;
  const uint number = value.toUInt(&is_number);
  if (!is_number) return Theme::Desktop;
  return number == 1 ? Theme::Dark : number == 2 ? Theme::Light : Theme::Desktop;
}

DesktopColours::DesktopColours(QObject* parent) : QObject(parent) {
  // Asking for a bus where none is known of would start one.
  if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  bus.connect(kService, kPath, kInterface, u"SettingChanged"_s, this,
              SLOT(SettingChanged(QString, QString, QDBusVariant)));
  QDBusMessage question = QDBusMessage::createMethodCall(kService, kPath, kInterface, u"Read"_s);
  question << kGroup << kKey;
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [answer] {
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    if (reply.isValid()) Obey(WishOf(QVariant::fromValue(reply.value())));
    answer->deleteLater();
  });
}

void DesktopColours::SettingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group == kGroup && key == kKey) Obey(WishOf(QVariant::fromValue(value)));
}

}  // namespace tessaro
