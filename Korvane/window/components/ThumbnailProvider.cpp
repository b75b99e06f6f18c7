#include "Korvane/window/components/ThumbnailProvider.h"

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/ImageDecoder.h"

#include <QQuickTextureFactory>
#include <QUrl>
#include <algorithm>
#include <atomic>

namespace korvane {

namespace {

QImage decode(const FileURL& url, int side) {
    const auto picture = ImageDecoder::shared().thumbnail(url, side);
    if (!picture) {
        return {};
    }
    // The image refers to the bytes, so it is copied before they go.
    return QImage(picture->rgba.data(), picture->size.width, picture->size.height,
                  picture->size.width * 4, QImage::Format_RGBA8888)
        .copy();
}

} // namespace

/// One picture that somebody waits for. Belongs to the engine; `job` is what the decoding task
/// knows of it.
class ThumbnailProvider::Response : public QQuickImageResponse {
  public:
    struct Job {
        FileURL url;
        int side = 0;
        std::mutex lock;
        Response* response = nullptr; ///< null once nobody waits
        QImage image;

        void finish(QImage decoded) {
            const std::lock_guard guard(lock);
            image = std::move(decoded);
            if (response != nullptr) {
                emit response->finished();
            }
        }
    };

    explicit Response(std::shared_ptr<Job> job) : job_(std::move(job)) { job_->response = this; }
    ~Response() override {
        const std::lock_guard guard(job_->lock);
        job_->response = nullptr;
    }

    [[nodiscard]] QQuickTextureFactory* textureFactory() const override {
        return QQuickTextureFactory::textureFactoryForImage(job_->image);
    }
    [[nodiscard]] QString errorString() const override {
        return job_->image.isNull() ? QStringLiteral("no picture") : QString();
    }

  private:
    std::shared_ptr<Job> job_;
};

struct ThumbnailProvider::Queue {
    std::mutex lock;
    std::condition_variable changed;
    std::deque<std::shared_ptr<Response::Job>> jobs;
    bool isClosed = false;

    /// The newest job; null when the queue was closed.
    std::shared_ptr<Response::Job> take() {
        std::unique_lock guard(lock);
        changed.wait(guard, [this] { return isClosed || !jobs.empty(); });
        if (isClosed) {
            return nullptr;
        }
        auto job = jobs.back();
        jobs.pop_back();
        return job;
    }
};

ThumbnailProvider::ThumbnailProvider() : queue_(std::make_shared<Queue>()) {}

ThumbnailProvider::~ThumbnailProvider() {
    {
        const std::lock_guard guard(queue_->lock);
        queue_->isClosed = true;
    }
    queue_->changed.notify_all();
    task_.reset(); // waits
    for (const auto& job : queue_->jobs) {
        job->finish({});
    }
}

QQuickImageResponse* ThumbnailProvider::requestImageResponse(const QString& id,
                                                             const QSize& requestedSize) {
    auto job = std::make_shared<Response::Job>();
    const QByteArray text = QUrl::fromPercentEncoding(id.toUtf8()).toUtf8();
    job->url = FileURL::fromAbsoluteString(
                   std::string_view(text.data(), static_cast<std::size_t>(text.size())))
                   .value_or(FileURL());
    constexpr int smallest = 16;
    job->side = std::max({requestedSize.width(), requestedSize.height(), smallest});
    auto* response = new Response(job);
    const std::lock_guard guard(queue_->lock);
    queue_->jobs.push_back(std::move(job));
    if (!task_) {
        task_ = std::make_unique<Task>([queue = queue_] {
            while (const auto next = queue->take()) {
                next->finish(decode(next->url, next->side));
            }
        });
    }
    queue_->changed.notify_one();
    return response;
}

} // namespace korvane
