#pragma once

#include <QString>

namespace korvane {

/// Shows a notice through the desktop's notification service (org.freedesktop.Notifications), where
/// there is one. Does not wait. For the interface thread.
void showDesktopNotification(const QString& title, const QString& text);

} // namespace korvane
