#pragma once

#include <QQuickImageProvider>

namespace korvane {

/// `image://icon/<name>/<rrggbb>`: a line icon of the program in the colour asked for, drawn at the
/// size asked for, so that it is sharp at every scale and with every renderer.
class IconProvider : public QQuickImageProvider {
  public:
    IconProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace korvane
