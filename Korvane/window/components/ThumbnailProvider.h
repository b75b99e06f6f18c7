#pragma once

#include "KorvaneCore/foundation/Task.h"

#include <QImage>
#include <QQuickAsyncImageProvider>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

namespace korvane {

/// `image://thumbnail/<percent-coded file URL>`: a small picture of a picture file. Decoded one at
/// a time beside the interface, newest request first: what has scrolled away can wait.
class ThumbnailProvider : public QQuickAsyncImageProvider {
    Q_OBJECT

  public:
    ThumbnailProvider();
    ~ThumbnailProvider() override;

    QQuickImageResponse* requestImageResponse(const QString& id,
                                              const QSize& requestedSize) override;

  private:
    class Response;
    struct Queue;

    std::shared_ptr<Queue> queue_;
    std::unique_ptr<Task> task_;
};

} // namespace korvane
