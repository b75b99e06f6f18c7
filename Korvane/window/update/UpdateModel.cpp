#include "Korvane/window/update/UpdateModel.h"

#include "Korvane/updater/UpdateSentences.h"
#include "Korvane/window/support/Texts.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace korvane {

using Kind = UpdatePhase::Kind;

/// The updater, made when it is first needed. While the work runs it belongs to that thread.
class UpdateModel::Driver {
  public:
    Driver(Configure configure, AppUpdater::System system)
        : configure_(std::move(configure)), system_(std::move(system)) {}

    AppUpdater& updater() {
        if (!updater_) {
            UpdaterConfiguration configuration = configure_();
            version_ = configuration.runningVersion;
            updater_.emplace(std::move(configuration), system_, [this](const UpdatePhase& phase) {
                if (onChange) {
                    onChange(phase, updater_->isShown());
                }
            });
        }
        return *updater_;
    }

    [[nodiscard]] const std::string& version() {
        updater();
        return version_;
    }

    std::function<void(const UpdatePhase& phase, bool isShown)> onChange;

  private:
    Configure configure_;
    AppUpdater::System system_;
    std::string version_;
    std::optional<AppUpdater> updater_;
};

UpdateModel::UpdateModel(Configure configure, AppUpdater::System system, QObject* parent)
    : QObject(parent), driver_(std::make_shared<Driver>(std::move(configure), std::move(system))) {
    run([](AppUpdater& /*updater*/) {}); // finds out which version runs
}

UpdateModel::~UpdateModel() = default;

void UpdateModel::run(std::function<void(AppUpdater&)> operation) {
    wasCancelled_ = false;
    work_.start([this, operation = std::move(operation),
                 driver = driver_](const Work::Post& post) -> Work::Step {
        driver->onChange = [this, post](const UpdatePhase& phase, bool isShown) {
            post([this, phase, isShown] { publish(phase, isShown); });
        };
        operation(driver->updater());
        driver->onChange = nullptr;
        return [this, version = driver->version()] {
            version_ = Texts::data(version);
            // Too late for what is done already.
            if (wasCancelled_ && phase_.kind != Kind::relaunching &&
                phase_.kind != Kind::needsManualInstall) {
                dismiss();
            }
            emit changed();
        };
    });
}

void UpdateModel::check(bool userInitiated) {
    if (!isWorking() && phase_.kind != Kind::relaunching) {
        run([userInitiated](AppUpdater& updater) { updater.check(userInitiated); });
    }
}

void UpdateModel::install() {
    if (phase_.kind == Kind::available && phase_.release) {
        run([release = *phase_.release](AppUpdater& updater) { updater.install(release); });
    }
}

void UpdateModel::cancel() {
    if (canCancel()) {
        wasCancelled_ = true;
        work_.cancel();
    }
}

void UpdateModel::dismiss() {
    if (!work_.isRunning()) {
        driver_->updater().dismiss();
        publish({}, false);
    }
}

void UpdateModel::publish(const UpdatePhase& phase, bool isShown) {
    phase_ = phase;
    // What was cancelled is no failure to tell of.
    isShown_ = isShown && !(wasCancelled_ && phase.kind == Kind::failed);
    emit changed();
    if (phase.kind == Kind::relaunching) {
        emit quitRequested();
    }
}

UpdateModel::Phase UpdateModel::phase() const {
    switch (phase_.kind) {
    case Kind::idle:
        return Idle;
    case Kind::checking:
        return Checking;
    case Kind::upToDate:
        return UpToDate;
    case Kind::available:
        return Available;
    case Kind::downloading:
        return Downloading;
    case Kind::verifying:
        return Verifying;
    case Kind::installing:
        return Installing;
    case Kind::relaunching:
        return Relaunching;
    case Kind::needsManualInstall:
        return NeedsManualInstall;
    case Kind::failed:
        break;
    }
    return Failed;
}

bool UpdateModel::isWorking() const {
    return canCancel() || phase_.kind == Kind::installing;
}

bool UpdateModel::canCancel() const {
    return phase_.kind == Kind::checking || phase_.kind == Kind::downloading ||
           phase_.kind == Kind::verifying;
}

QString UpdateModel::title() const {
    switch (phase_.kind) {
    case Kind::checking:
        return Texts::sentence(UpdateSentences::checking);
    case Kind::upToDate:
        return Texts::sentence(UpdateSentences::upToDateTitle(version_.toStdString()));
    case Kind::available:
        return tr("Korvane %1 is available").arg(Texts::data(phase_.release->version));
    case Kind::downloading:
        return Texts::sentence(UpdateSentences::downloading);
    case Kind::verifying:
        return tr("Checking the download");
    case Kind::installing:
        return Texts::sentence(UpdateSentences::installing);
    case Kind::relaunching:
        return Texts::sentence(UpdateSentences::relaunching);
    case Kind::needsManualInstall:
        return tr("Korvane %1 is downloaded").arg(Texts::data(phase_.release->version));
    case Kind::failed:
        return tr("No update this time");
    case Kind::idle:
        break;
    }
    return {};
}

QString UpdateModel::detail() const {
    switch (phase_.kind) {
    case Kind::upToDate:
        return Texts::sentence(UpdateSentences::upToDateDetail(version_.toStdString()));
    case Kind::available:
        return tr("You have %1.").arg(version_);
    case Kind::verifying:
        return Texts::sentence(UpdateSentences::verifying);
    case Kind::needsManualInstall:
    case Kind::failed:
        return Texts::data(phase_.message);
    default:
        return {};
    }
}

QStringList UpdateModel::notes() const {
    QStringList lines;
    if (phase_.release && phase_.kind == Kind::available) {
        std::transform(phase_.release->notes.begin(), phase_.release->notes.end(),
                       std::back_inserter(lines),
                       [](const std::string& line) { return Texts::data(line); });
    }
    return lines;
}

QString UpdateModel::fractionText() const {
    return tr("%1 %").arg(static_cast<int>(phase_.fraction * 100));
}

QString UpdateModel::location() const {
    return phase_.location.path().empty() ? QString()
                                          : Texts::sentence(phase_.location.absoluteString());
}

} // namespace korvane
