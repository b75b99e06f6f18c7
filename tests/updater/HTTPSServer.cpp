#include "tests/updater/HTTPSServer.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <arpa/inet.h>
#include <netinet/in.h>

namespace korvane::testing {

HTTPSServer::HTTPSServer(const Credential& credential, Handler handler)
    : handler_(std::move(handler)), context_(SSL_CTX_new(TLS_server_method()), SSL_CTX_free),
      listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    // A client that goes away in the middle is what some tests are about.
    std::signal(SIGPIPE, SIG_IGN);
    SSL_CTX_use_certificate(context_.get(), credential.certificate.get());
    SSL_CTX_use_PrivateKey(context_.get(), credential.key.get());
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* raw = reinterpret_cast<sockaddr*>(&address);
    std::array<int, 2> stop{};
    if (bind(listener_.get(), raw, length) != 0 || listen(listener_.get(), 16) != 0 ||
        getsockname(listener_.get(), raw, &length) != 0 || pipe2(stop.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "no server");
    }
    port_ = ntohs(address.sin_port);
    stopReading_ = FileDescriptor(stop[0]);
    stopWriting_ = FileDescriptor(stop[1]);
    task_ = std::make_unique<Task>([this] { serve(); });
}

HTTPSServer::~HTTPSServer() {
    stopWriting_.reset();
    task_.reset();
}

std::string HTTPSServer::url(const std::string& path) const {
    return "https://localhost:" + std::to_string(port_) + path;
}

std::vector<std::string> HTTPSServer::requests() const {
    const std::lock_guard guard(lock_);
    return requests_;
}

/// False once the server is to stop.
bool HTTPSServer::waitFor(int descriptor) const {
    std::array<pollfd, 2> watched{{{descriptor, POLLIN, 0}, {stopReading_.get(), POLLIN, 0}}};
    while (poll(watched.data(), watched.size(), -1) < 0 && errno == EINTR) {
    }
    return watched[1].revents == 0;
}

void HTTPSServer::serve() {
    while (waitFor(listener_.get())) {
        const FileDescriptor client(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
        const timeval patience{20, 0};
        setsockopt(client.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        SSL* connection = SSL_new(context_.get());
        SSL_set_fd(connection, client.get());
        if (SSL_accept(connection) == 1) {
            answer(connection);
            SSL_shutdown(connection);
        }
        SSL_free(connection);
    }
}

void HTTPSServer::answer(SSL* connection) {
    std::string request;
    std::array<char, 4096> buffer{};
    while (request.find("\r\n\r\n") == std::string::npos) {
        const int count = SSL_read(connection, buffer.data(), static_cast<int>(buffer.size()));
        if (count <= 0) {
            return;
        }
        request.append(buffer.data(), static_cast<std::size_t>(count));
    }
    const std::size_t start = request.find(' ') + 1;
    const std::string path = request.substr(start, request.find(' ', start) - start);
    {
        const std::lock_guard guard(lock_);
        requests_.push_back(path);
    }
    const Answer given = handler_(path);
    if (given.isSilent) {
        (void)waitFor(SSL_get_fd(connection));
        return;
    }
    std::string text = "HTTP/1.1 " + std::to_string(given.status) + " Said\r\nContent-Length: " +
                       std::to_string(given.length.value_or(given.body.size())) +
                       "\r\nConnection: close\r\n";
    if (!given.location.empty()) {
        text += "Location: " + given.location + "\r\n";
    }
    text += "\r\n" + given.body;
    for (std::string_view rest = text; !rest.empty();) {
        const int count = SSL_write(connection, rest.data(), static_cast<int>(rest.size()));
        if (count <= 0) {
            return;
        }
        rest.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace korvane::testing
