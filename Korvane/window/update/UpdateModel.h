#pragma once

#include "Korvane/updater/AppUpdater.h"
#include "Korvane/window/support/Work.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// Looks for a newer release and installs it, as far as the user asks for it.
class UpdateModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(Phase phase READ phase NOTIFY changed)
    /// Whether the phase is for the user to see.
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(bool isWorking READ isWorking NOTIFY changed)
    Q_PROPERTY(bool canCancel READ canCancel NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(QStringList notes READ notes NOTIFY changed)
    /// Of the download, 0 to 1.
    Q_PROPERTY(double fraction READ fraction NOTIFY changed)
    Q_PROPERTY(QString fractionText READ fractionText NOTIFY changed)
    /// The version that runs; empty until it is known.
    Q_PROPERTY(QString version READ version NOTIFY changed)
    /// The image for an administrator, as a URL.
    Q_PROPERTY(QString location READ location NOTIFY changed)

  public:
    enum Phase {
        Idle,
        Checking,
        UpToDate,
        Available,
        Downloading,
        Verifying,
        Installing,
        Relaunching,
        NeedsManualInstall,
        Failed,
    };
    Q_ENUM(Phase)

    /// Makes the updater's configuration; called on a thread of the model's own.
    using Configure = std::function<UpdaterConfiguration()>;
    /// `system`: what an update does to the computer.
    explicit UpdateModel(Configure configure, AppUpdater::System system = {},
                         QObject* parent = nullptr);
    ~UpdateModel() override;

    /// Asks the feed. What it finds out unasked is shown only when there is a newer release.
    Q_INVOKABLE void check(bool userInitiated = true);
    /// Installs the release that is available.
    Q_INVOKABLE void install();
    /// Ends a check or a download early; nothing is changed then.
    Q_INVOKABLE void cancel();
    /// The user has seen how it ended.
    Q_INVOKABLE void dismiss();

    [[nodiscard]] Phase phase() const;
    [[nodiscard]] bool isShown() const { return isShown_; }
    [[nodiscard]] bool isWorking() const;
    [[nodiscard]] bool canCancel() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString detail() const;
    [[nodiscard]] QStringList notes() const;
    [[nodiscard]] double fraction() const { return phase_.fraction; }
    [[nodiscard]] QString fractionText() const;
    [[nodiscard]] QString version() const { return version_; }
    [[nodiscard]] QString location() const;

  signals:
    void changed();
    /// The new release waits for this program to end.
    void quitRequested();

  private:
    class Driver;

    void run(std::function<void(AppUpdater&)> operation);
    void publish(const UpdatePhase& phase, bool isShown);

    UpdatePhase phase_;
    bool isShown_ = false;
    bool wasCancelled_ = false;
    QString version_;
    std::shared_ptr<Driver> driver_;
    Work work_;
};

} // namespace korvane
