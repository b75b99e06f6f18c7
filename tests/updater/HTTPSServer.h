#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/Task.h"
#include "tests/updater/TestCertificates.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <openssl/ssl.h>

namespace korvane::testing {

/// A real HTTPS server on this computer, which answers one connection after another and misbehaves
/// when asked to.
class HTTPSServer {
  public:
    struct Answer {
        std::string body{};
        int status = 200;
        std::string location{};              ///< where it redirects to
        std::optional<std::size_t> length{}; ///< announced instead of the body's own
        bool isSilent = false;               ///< never answers
    };
    using Handler = std::function<Answer(const std::string& path)>;

    HTTPSServer(const Credential& credential, Handler handler);
    ~HTTPSServer();
    HTTPSServer(const HTTPSServer&) = delete;
    HTTPSServer& operator=(const HTTPSServer&) = delete;

    /// "https://localhost:PORT" and the path.
    [[nodiscard]] std::string url(const std::string& path) const;
    [[nodiscard]] int port() const noexcept { return port_; }
    [[nodiscard]] std::vector<std::string> requests() const;

  private:
    void serve();
    void answer(SSL* connection);
    [[nodiscard]] bool waitFor(int descriptor) const;

    Handler handler_;
    std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> context_;
    FileDescriptor listener_;
    FileDescriptor stopReading_;
    FileDescriptor stopWriting_;
    int port_ = 0;
    mutable std::mutex lock_;
    std::vector<std::string> requests_;
    std::unique_ptr<Task> task_;
};

} // namespace korvane::testing
