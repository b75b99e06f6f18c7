#include "Korvane/window/support/DesktopNotification.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

namespace korvane {

void showDesktopNotification(const QString& title, const QString& text) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    constexpr uint replacesNone = 0;
    constexpr int milliseconds = -1; // as long as the desktop likes
    // The service may take the text for markup.
    message << QStringLiteral("Korvane") << replacesNone << QStringLiteral("com.ostrel.Korvane")
            << title << text.toHtmlEscaped() << QStringList() << QVariantMap() << milliseconds;
    bus.asyncCall(message);
}

} // namespace korvane
