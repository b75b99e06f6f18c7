#include "Korvane/window/shell/WindowState.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>

namespace korvane {

namespace {

const QString geometryKey = QStringLiteral("window/geometry");
const QString maximizedKey = QStringLiteral("window/maximized");
const QString pageKey = QStringLiteral("window/page");

} // namespace

QString WindowState::lastPage() const {
    return QSettings().value(pageKey, QStringLiteral("home")).toString();
}

void WindowState::save() const {
    QSettings settings;
    settings.setValue(pageKey, page_);
    if (window_ != nullptr && fixedSize_.isEmpty()) {
        const bool maximized = window_->visibility() == QWindow::Maximized;
        settings.setValue(maximizedKey, maximized);
        if (!maximized) {
            settings.setValue(geometryKey, window_->geometry());
        }
    }
}

void WindowState::restore() const {
    if (window_ == nullptr) {
        return;
    }
    if (!fixedSize_.isEmpty()) {
        window_->resize(fixedSize_.toSize());
        return;
    }
    const QSettings settings;
    const QRect geometry = settings.value(geometryKey).toRect();
    // A screen that is no longer there must not swallow the window.
    const QScreen* screen = QGuiApplication::screenAt(geometry.center());
    if (geometry.isValid() && screen != nullptr) {
        window_->setGeometry(geometry.intersected(screen->availableGeometry()));
    }
    if (settings.value(maximizedKey).toBool()) {
        window_->setVisibility(QWindow::Maximized);
    }
}

} // namespace korvane
