#include "Korvane/window/support/Texts.h"

#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/ByteDisplay.h"
#include "KorvaneCore/scan/PathDisplay.h"

#include <QCoreApplication>
#include <QLocale>
#include <limits>

namespace korvane::Texts {

QString sentence(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString data(std::string_view bytes) {
    return sentence(displayText(bytes));
}

QString path(std::string_view path, const FileURL& home) {
    // Named in full: of a std::string, "data" alone would be the standard library's.
    return Texts::data(PathDisplay::shorten(path, std::numeric_limits<std::size_t>::max(), home));
}

QString bytes(std::int64_t count) {
    // A figure and its unit belong on one line.
    return sentence(ByteDisplay::format(count)).replace(u' ', QChar(0x00a0));
}

QString count(std::int64_t number) {
    return QLocale().toString(static_cast<qlonglong>(number));
}

QString items(std::int64_t number) {
    return number == 1 ? QCoreApplication::translate("Texts", "1 item")
                       : QCoreApplication::translate("Texts", "%1 items").arg(count(number));
}

QDateTime dateTime(const Date& date) {
    return QDateTime::fromSecsSinceEpoch(date.unixSeconds());
}

QString day(const Date& date) {
    return QLocale().toString(dateTime(date).date(), QStringLiteral("d MMM yyyy"));
}

QString dayAndTime(const Date& date) {
    return QCoreApplication::translate("Texts", "%1, %2").arg(day(date), timeOfDay(date));
}

QString timeOfDay(const Date& date) {
    return QLocale().toString(dateTime(date).time(), QStringLiteral("HH:mm"));
}

FileURL fileURL(const QUrl& url) {
    // The coded form keeps bytes that are no text.
    return FileURL::fromAbsoluteString(url.toEncoded().toStdString()).value_or(FileURL());
}

QUrl qtURL(const FileURL& url) {
    return QUrl(sentence(url.absoluteString()), QUrl::StrictMode);
}

} // namespace korvane::Texts
