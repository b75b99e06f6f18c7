#pragma once

#include "KorvaneCore/foundation/Task.h"

#include <QObject>
#include <functional>
#include <memory>

namespace korvane {

/// Runs one piece of work at a time beside the interface thread, in a `Task`, and brings what it
/// finds back as queued calls. The work never touches a QObject. Everything here but `Post` is for
/// the interface thread.
class Work : public QObject {
    Q_OBJECT

  public:
    /// Runs on the interface thread, later; dropped when the run it belongs to was replaced or the
    /// owner is gone.
    using Step = std::function<void()>;
    /// Hands a step to the interface thread. Any thread, while the work runs.
    using Post = std::function<void(Step)>;

    explicit Work(QObject* parent = nullptr) : QObject(parent) {}
    /// Cancels the work and waits for its end.
    ~Work() override;

    /// Cancels an earlier run and starts `work` when that has ended. What it returns runs on the
    /// interface thread when it is done, also after it was cancelled.
    void start(std::function<Step(const Post& post)> work);

    /// Asks the work to end early; its last step still comes.
    void cancel();

    [[nodiscard]] bool isRunning() const { return isRunning_; }

  signals:
    void runningChanged();

  private:
    void setRunning(bool running);

    std::unique_ptr<Task> task_;
    quint64 run_ = 0;
    bool isRunning_ = false;
};

/// Lets a progress report through at most 40 times a second, which is more than an eye follows. For
/// one piece of work; any of its threads.
class ProgressThrottle {
  public:
    ProgressThrottle();
    [[nodiscard]] bool isDue();

  private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace korvane
