#include "Korvane/updater/HTTPSDownload.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/Libcurl.h"

#include <memory>

// The library is loaded, so its functions are called through pointers; the macros of the same names
// would hide them.
#undef curl_easy_setopt
#undef curl_easy_getinfo

namespace korvane {

namespace {

constexpr int mostRedirections = 5;
constexpr long slowestBytesPerSecond = 1024;

/// One request of one address.
class Transfer {
  public:
    Transfer(const Libcurl& curl, const HTTPSDownload::Limits& limits,
             const HTTPSDownload::Sink& sink, const HTTPSDownload::Progress& progress)
        : curl_(curl), limits_(limits), sink_(sink), progress_(progress),
          handle_(curl.easyInit(), curl.easyCleanup) {}

    [[nodiscard]] bool isReady() const { return handle_ != nullptr; }

    template <typename Value>
    void set(CURLoption option, Value value) {
        curl_.easySetopt(handle_.get(), option, value);
    }

    HTTPSDownload::Outcome run();
    [[nodiscard]] std::string redirection() const;

  private:
    static std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* self);
    static int report(void* self, curl_off_t total, curl_off_t now, curl_off_t, curl_off_t);
    [[nodiscard]] long status() const;
    [[nodiscard]] bool isAnswer() const;
    std::size_t take(std::string_view bytes);
    [[nodiscard]] HTTPSDownload::Outcome outcomeOf(CURLcode code) const;

    const Libcurl& curl_;
    const HTTPSDownload::Limits& limits_;
    const HTTPSDownload::Sink& sink_;
    const HTTPSDownload::Progress& progress_;
    std::unique_ptr<CURL, void (*)(CURL*)> handle_;
    std::int64_t received_ = 0;
    bool isTooLarge_ = false;
};

HTTPSDownload::Outcome Transfer::run() {
    set(CURLOPT_WRITEFUNCTION, &Transfer::receive);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    set(CURLOPT_XFERINFOFUNCTION, &Transfer::report);
    set(CURLOPT_XFERINFODATA, static_cast<void*>(this));
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_PROTOCOLS_STR, "https");
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limits_.bytes));
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits_.connecting.count()));
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(limits_.everything.count()));
    set(CURLOPT_LOW_SPEED_LIMIT, slowestBytesPerSecond);
    set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(limits_.standingStill.count()));
    return outcomeOf(curl_.easyPerform(handle_.get()));
}

std::string Transfer::redirection() const {
    const char* target = nullptr;
    const long answer = status();
    curl_.easyGetinfo(handle_.get(), CURLINFO_REDIRECT_URL, &target);
    return answer >= 300 && answer <= 399 && target != nullptr ? target : "";
}

std::size_t Transfer::receive(char* bytes, std::size_t size, std::size_t count, void* self) {
    return static_cast<Transfer*>(self)->take(std::string_view(bytes, size * count));
}

int Transfer::report(void* self, curl_off_t total, curl_off_t now, curl_off_t, curl_off_t) {
    const auto* transfer = static_cast<Transfer*>(self);
    if (transfer->progress_ && transfer->isAnswer()) {
        transfer->progress_(now, total);
    }
    return Task::isCancelled() ? 1 : 0;
}

long Transfer::status() const {
    long answer = 0;
    curl_.easyGetinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &answer);
    return answer;
}

bool Transfer::isAnswer() const {
    const long answer = status();
    return answer >= 200 && answer <= 299;
}

std::size_t Transfer::take(std::string_view bytes) {
    received_ += static_cast<std::int64_t>(bytes.size());
    isTooLarge_ = received_ > limits_.bytes;
    // The text of a redirection or an error page is nobody's.
    const bool isTaken = !isTooLarge_ && (!isAnswer() || sink_(bytes));
    return isTaken ? bytes.size() : 0;
}

HTTPSDownload::Outcome Transfer::outcomeOf(CURLcode code) const {
    using Outcome = HTTPSDownload::Outcome;
    switch (code) {
    case CURLE_OK:
        return isAnswer() ? Outcome::complete : Outcome::badStatus;
    case CURLE_OPERATION_TIMEDOUT:
        return Outcome::timeOut;
    case CURLE_ABORTED_BY_CALLBACK:
        return Outcome::cancelled;
    case CURLE_FILESIZE_EXCEEDED:
        return Outcome::tooLarge;
    case CURLE_WRITE_ERROR:
        return isTooLarge_ ? Outcome::tooLarge : Outcome::refused;
    default:
        return Outcome::unreachable;
    }
}

} // namespace

HTTPSDownload::HTTPSDownload(WebAddress origin, std::string userAgent,
                             std::optional<FileURL> certificates)
    : origin_(std::move(origin)), userAgent_(std::move(userAgent)),
      certificates_(std::move(certificates)) {}

HTTPSDownload::Outcome HTTPSDownload::fetch(const WebAddress& address, const Limits& limits,
                                            const Sink& sink, const Progress& progress) const {
    const Libcurl* curl = Libcurl::shared();
    if (curl == nullptr) {
        return Outcome::unreachable;
    }
    WebAddress next = address;
    for (int hop = 0; hop <= mostRedirections; ++hop) {
        if (!next.isWithin(origin_)) {
            return Outcome::elsewhere;
        }
        Transfer transfer(*curl, limits, sink, progress);
        if (!transfer.isReady()) {
            return Outcome::unreachable;
        }
        transfer.set(CURLOPT_URL, next.text.c_str());
        transfer.set(CURLOPT_USERAGENT, userAgent_.c_str());
        if (certificates_) {
            transfer.set(CURLOPT_CAINFO, certificates_->path().c_str());
            transfer.set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
        }
        const Outcome outcome = transfer.run();
        const std::string target = transfer.redirection();
        if (outcome != Outcome::badStatus || target.empty()) {
            return outcome;
        }
        const auto redirected = WebAddress::fromText(target);
        if (!redirected) {
            return Outcome::elsewhere;
        }
        next = *redirected;
    }
    return Outcome::badStatus;
}

} // namespace korvane
