#include "Korvane/window/theme/IconProvider.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace korvane {

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const QString name = id.section(u'/', 0, 0);
    const QString colour = id.section(u'/', 1, 1);
    const QSize wanted = requestedSize.isEmpty() ? QSize(24, 24) : requestedSize;
    QImage image(wanted, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (size != nullptr) {
        *size = wanted;
    }
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("there is no icon \"%s\"", qPrintable(name));
        return image;
    }
    QByteArray svg = file.readAll();
    if (!colour.isEmpty()) {
        svg.replace("#000000", "#" + colour.toLatin1());
    }
    QSvgRenderer renderer(svg);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    return image;
}

} // namespace korvane
