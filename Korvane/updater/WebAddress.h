#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// An absolute address on the web ("https://host:8443/path?query").
struct WebAddress {
    std::string text;     ///< as it was given
    std::string scheme;   ///< lower case
    std::string host;     ///< lower case, without the port
    std::string path;     ///< without query; may be empty
    bool hasUser = false; ///< names a user in front of the host

    /// Strict, so that nobody else reads another host out of the text: printable ASCII only, no
    /// backslash, a plain host name or number. Nothing for anything else.
    [[nodiscard]] static std::optional<WebAddress> fromText(std::string_view text);

    /// Whether it may be asked in the name of `origin`: https, and exactly its host.
    [[nodiscard]] bool isWithin(const WebAddress& origin) const;
};

} // namespace korvane
