#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariant>

#include "widgets/theme.h"

namespace tessaro {

// Follows the wish for dark or light windows that a desktop tells by its portal (GNOME tells it in no other way). Asks
// without waiting; where there is no portal nothing happens.
class DesktopColours : public QObject {
  Q_OBJECT

 public:
  explicit DesktopColours(QObject* parent = nullptr);

 private Q_SLOTS:
  void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
};

// What a value of the portal's "color-scheme" asks for: 1 is dark, 2 is light, anything else no wish (Desktop). The
// number may be wrapped any number of times.
Theme WishOf(QVariant value);

}  // namespace tessaro
