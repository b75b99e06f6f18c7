#pragma once

#include "Korvane/updater/WebAddress.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// Fetches from one host over https, and from nowhere else: a redirection is followed only when it
/// stays there. Trusts the system's certificates, or those of a file instead. Blocks; ends early
/// when the surrounding task is cancelled. Any thread.
class HTTPSDownload {
  public:
    enum class Outcome {
        complete,
        timeOut,     ///< no connection, or no answer, or none that goes on, in time
        unreachable, ///< everything else that keeps two machines from talking, bad certificates too
        badStatus,   ///< an answer outside 200 to 299
        elsewhere,   ///< redirected to another host or away from https
        tooLarge,    ///< more bytes than are wanted
        refused,     ///< the sink did not take the bytes
        cancelled,
    };

    struct Limits {
        std::int64_t bytes = 0;
        std::chrono::milliseconds connecting{15'000};
        std::chrono::milliseconds everything{0}; ///< 0: as long as it goes on
        std::chrono::seconds standingStill{30};  ///< less than 1 KiB a second for so long
    };

    /// Takes the next bytes; false ends the transfer.
    using Sink = std::function<bool(std::string_view)>;
    /// Bytes that came, and how many there will be (0: unknown).
    using Progress = std::function<void(std::int64_t, std::int64_t)>;

    HTTPSDownload(WebAddress origin, std::string userAgent, std::optional<FileURL> certificates);

    /// Fetches one address of the origin. Neither function may throw.
    [[nodiscard]] Outcome fetch(const WebAddress& address, const Limits& limits, const Sink& sink,
                                const Progress& progress = {}) const;

  private:
    WebAddress origin_;
    std::string userAgent_;
    std::optional<FileURL> certificates_;
};

} // namespace korvane
