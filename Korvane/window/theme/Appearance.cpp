#include "Korvane/window/theme/Appearance.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QPalette>
#include <QSettings>
#include <algorithm>
#include <array>

namespace korvane {

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceSpace = QStringLiteral("org.freedesktop.appearance");
const QString schemeKey = QStringLiteral("color-scheme");
const QString gnomeSpace = QStringLiteral("org.gnome.desktop.interface");
const QString textScaleKey = QStringLiteral("text-scaling-factor");
const QString animationsKey = QStringLiteral("enable-animations");

const QString modeSetting = QStringLiteral("window/appearance");
const QString lastSchemeSetting = QStringLiteral("window/lastScheme");

} // namespace

Appearance::Appearance(QObject* parent) : QObject(parent) {
    const QSettings settings;
    const QByteArray forced = qgetenv("KORVANE_THEME");
    mode_ = forced == "dark" ? Dark
            : forced == "light"
                ? Light
                : static_cast<Mode>(std::clamp(settings.value(modeSetting, 0).toInt(), 0, 2));
    // What was told last time: a window that opens light and turns dark is a flash in the eyes.
    portalScheme_ = settings.value(lastSchemeSetting, 0).toInt();
    reduceMotion_ = qEnvironmentVariableIsSet("KORVANE_REDUCE_MOTION");
    textScale_ = qEnvironmentVariable("KORVANE_TEXT_SCALE").toDouble();
    qApp->installEventFilter(this);
    ask(appearanceSpace, schemeKey);
    if (textScale_ == 0) {
        ask(gnomeSpace, textScaleKey);
    }
    ask(gnomeSpace, animationsKey);
    // A slot that takes QDBusVariant would be refused without a word.
    QDBusConnection::sessionBus().connect(portalService, portalPath, portalSettings,
                                          QStringLiteral("SettingChanged"), this,
                                          SLOT(portalSettingChanged(QDBusMessage)));
}

void Appearance::ask(const QString& nameSpace, const QString& key) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(portalService, portalPath, portalSettings,
                                                          QStringLiteral("Read"));
    message << nameSpace << key;
    constexpr int milliseconds = 2000;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, milliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, nameSpace, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        watcher->deleteLater();
        if (reply.isValid()) {
            take(nameSpace, key, reply.value().variant());
        }
    });
}

void Appearance::portalSettingChanged(const QDBusMessage& message) {
    const QList<QVariant> arguments = message.arguments();
    if (arguments.size() == 3) {
        take(arguments[0].toString(), arguments[1].toString(),
             arguments[2].value<QDBusVariant>().variant());
    }
}

void Appearance::take(const QString& nameSpace, const QString& key, QVariant value) {
    // "Read" wraps its answer twice.
    if (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    if (nameSpace == appearanceSpace && key == schemeKey) {
        portalScheme_ = value.toInt();
        QSettings().setValue(lastSchemeSetting, portalScheme_);
    } else if (nameSpace == gnomeSpace && key == textScaleKey) {
        textScale_ = value.toDouble();
    } else if (nameSpace == gnomeSpace && key == animationsKey) {
        reduceMotion_ = reduceMotion_ || !value.toBool();
    } else {
        return;
    }
    emit changed();
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange ||
        event->type() == QEvent::ApplicationFontChange) {
        emit changed();
    }
    return QObject::eventFilter(watched, event);
}

bool Appearance::dark() const {
    if (mode_ != System) {
        return mode_ == Dark;
    }
    if (portalScheme_ != 0) {
        return portalScheme_ == 1;
    }
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

void Appearance::setMode(Mode mode) {
    if (mode != mode_) {
        mode_ = mode;
        QSettings().setValue(modeSetting, static_cast<int>(mode));
        emit changed();
    }
}

QString Appearance::family() const {
    // Without a platform theme the answer is whatever "sans-serif" happens to be, on a bare Debian
    // a wide and dated face: a face made for interfaces comes first where there is one.
    const QString system = QFontInfo(QGuiApplication::font()).family();
    if (!system.startsWith(QStringLiteral("DejaVu")) &&
        !system.startsWith(QStringLiteral("Bitstream"))) {
        return system;
    }
    const QStringList installed = QFontDatabase::families();
    for (const char* family :
         {"Inter", "Noto Sans", "Cantarell", "Ubuntu", "Open Sans", "Roboto"}) {
        if (installed.contains(QLatin1String(family))) {
            return QLatin1String(family);
        }
    }
    return system;
}

double Appearance::scale() const {
    const double points = QGuiApplication::font().pointSizeF();
    const double scale = textScale_ > 0 ? textScale_ : points > 0 ? points / 10 : 1;
    return std::clamp(scale, 0.8, 2.0);
}

} // namespace korvane
