#pragma once

#include "KorvaneCore/foundation/Date.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <QDateTime>
#include <QString>
#include <QUrl>
#include <cstdint>
#include <string_view>

/// What the screens show of the core's values. QML formats nothing.
namespace korvane::Texts {

/// The system's own sentences and titles: UTF-8 as it is.
[[nodiscard]] QString sentence(std::string_view utf8);
/// Bytes that came from a disk: control and direction-changing characters made visible.
[[nodiscard]] QString data(std::string_view bytes);
/// A path for people: data, with the home folder as "~".
[[nodiscard]] QString path(std::string_view path, const FileURL& home);

[[nodiscard]] QString bytes(std::int64_t count);
/// "12,345".
[[nodiscard]] QString count(std::int64_t number);
/// "1 item", "12,345 items".
[[nodiscard]] QString items(std::int64_t number);

[[nodiscard]] QDateTime dateTime(const Date& date);
[[nodiscard]] QString day(const Date& date);        ///< "5 Mar 2026"
[[nodiscard]] QString dayAndTime(const Date& date); ///< "5 Mar 2026, 14:02"
[[nodiscard]] QString timeOfDay(const Date& date);  ///< "14:02"

/// The bytes of a path that a dialog or a drop handed over; empty when it is no local file.
[[nodiscard]] FileURL fileURL(const QUrl& url);
[[nodiscard]] QUrl qtURL(const FileURL& url);

} // namespace korvane::Texts
