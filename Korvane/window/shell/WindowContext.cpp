#include "Korvane/window/shell/WindowContext.h"

#include "Korvane/tools/ToolCatalogue.h"
#include "Korvane/window/support/DesktopNotification.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/platform/DesktopActions.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSettings>
#include <algorithm>

namespace korvane {

namespace {

WindowContext* current = nullptr;

/// Who has turned to something else meanwhile is told that a long scan has ended.
void notifyOfScan(const QString& title, const ToolModel& tool) {
    constexpr double longScan = 10; // seconds
    if (tool.scanSeconds() >= longScan && QGuiApplication::focusWindow() == nullptr &&
        QSettings().value(QStringLiteral("window/notify"), true).toBool()) {
        showDesktopNotification(
            WindowContext::tr("%1 has finished").arg(title),
            tool.phase() == ToolModel::Failed
                ? tool.failure()
                : WindowContext::tr("%1 found. Nothing is removed until you "
                                    "have seen the list.")
                      .arg(tool.found().isEmpty() ? Texts::bytes(0) : tool.found()));
    }
}

} // namespace

WindowContext::WindowContext(Services& services, std::unique_ptr<UpdateModel> updates,
                             QObject* parent)
    : QObject(parent), services_(services), updates_(std::move(updates)) {
    current = this;
}

WindowContext::~WindowContext() {
    if (current == this) {
        current = nullptr;
    }
}

WindowContext* WindowContext::create(QQmlEngine* /*engine*/, QJSEngine* /*scripts*/) {
    if (current == nullptr) {
        fatalError("the window's QML was loaded before there was a context");
    }
    QQmlEngine::setObjectOwnership(current, QQmlEngine::CppOwnership);
    return current;
}

CollectorModel* WindowContext::collector() {
    if (!collector_) {
        collector_ = std::make_unique<CollectorModel>(collectorStore_, services_);
        connect(collector_.get(), &CollectorModel::deletingChanged, this,
                &WindowContext::cleaningChanged);
        connect(collector_.get(), &CollectorModel::finished, this, &WindowContext::recordsChanged);
    }
    return collector_.get();
}

DashboardModel* WindowContext::dashboard() {
    if (!dashboard_) {
        dashboard_ = std::make_unique<DashboardModel>(services_);
        connect(this, &WindowContext::recordsChanged, dashboard_.get(), &DashboardModel::refresh);
    }
    return dashboard_.get();
}

ProtectedPathsModel* WindowContext::protection() {
    if (!protection_) {
        protection_ = std::make_unique<ProtectedPathsModel>(services_);
        connect(this, &WindowContext::protectionChanged, protection_.get(),
                &ProtectedPathsModel::refresh);
        connect(protection_.get(), &ProtectedPathsModel::changed, this,
                &WindowContext::protectionChanged);
    }
    return protection_.get();
}

CatalogueModel* WindowContext::catalogue() {
    if (!catalogue_) {
        catalogue_ = std::make_unique<CatalogueModel>();
    }
    return catalogue_.get();
}

SettingsModel* WindowContext::settings() {
    if (!settings_) {
        settings_ = std::make_unique<SettingsModel>(services_);
        // What a button will do is what it says, also where it was on show before.
        connect(settings_.get(), &SettingsModel::deletionChanged, this, [this] {
            collector()->refreshMode();
            for (const auto& [id, tool] : tools_) {
                tool->refreshMode();
            }
        });
    }
    return settings_.get();
}

CustomRulesModel* WindowContext::customRules() {
    if (!customRules_) {
        customRules_ = std::make_unique<CustomRulesModel>(services_);
    }
    return customRules_.get();
}

UpdateModel* WindowContext::updates() {
    if (!updates_) {
        updates_ = std::make_unique<UpdateModel>(
            [folders = services_.folders()] { return UpdaterConfiguration::standard(folders); });
    }
    return updates_.get();
}

DiskUsageModel* WindowContext::usage() {
    if (!usage_) {
        usage_ = std::make_unique<DiskUsageModel>(services_);
        connect(usage_.get(), &DiskUsageModel::notified, this, &WindowContext::notified);
    }
    return usage_.get();
}

BinModel* WindowContext::bins() {
    if (!bins_) {
        bins_ = std::make_unique<BinModel>(services_);
        connect(this, &WindowContext::recordsChanged, bins_.get(), &BinModel::refresh);
        connect(bins_.get(), &BinModel::emptied, this, &WindowContext::recordsChanged);
        connect(bins_.get(), &BinModel::changed, this, &WindowContext::cleaningChanged);
    }
    return bins_.get();
}

ApplicationsModel* WindowContext::applications() {
    if (!applications_) {
        applications_ = std::make_unique<ApplicationsModel>(services_);
    }
    return applications_.get();
}

AuditModel* WindowContext::audit() {
    if (!audit_) {
        audit_ = std::make_unique<AuditModel>(services_);
        connect(audit_.get(), &AuditModel::recorded, this, &WindowContext::recordsChanged);
        connect(audit_.get(), &AuditModel::notified, this, &WindowContext::notified);
        connect(this, &WindowContext::recordsChanged, audit_.get(), &AuditModel::refresh);
    }
    return audit_.get();
}

RestoreModel* WindowContext::restore() {
    if (!restore_) {
        restore_ = std::make_unique<RestoreModel>(services_);
        connect(restore_.get(), &RestoreModel::restored, this, &WindowContext::recordsChanged);
        connect(this, &WindowContext::recordsChanged, restore_.get(), &RestoreModel::refresh);
    }
    return restore_.get();
}

PrivilegedModel* WindowContext::privileged() {
    if (!privileged_) {
        privileged_ = std::make_unique<PrivilegedModel>(services_);
        connect(privileged_.get(), &PrivilegedModel::changed, this,
                &WindowContext::cleaningChanged);
        connect(privileged_.get(), &PrivilegedModel::finished, this,
                &WindowContext::recordsChanged);
    }
    return privileged_.get();
}

bool WindowContext::isCleaning() const {
    return (privileged_ && privileged_->isRemoving()) || (collector_ && collector_->isDeleting()) ||
           (bins_ && bins_->isEmptying()) ||
           std::any_of(tools_.begin(), tools_.end(), [](const auto& tool) {
               return tool.second->phase() == ToolModel::Cleaning;
           });
}

ToolModel* WindowContext::tool(const QString& id) {
    const std::string key = id.toStdString();
    const Tool* tool = ToolCatalogue::tool(key);
    if (tool == nullptr) {
        return nullptr;
    }
    std::unique_ptr<ToolModel>& model = tools_[key];
    if (!model) {
        model = std::make_unique<ToolModel>(*tool, services_, collectorStore_);
        QQmlEngine::setObjectOwnership(model.get(), QQmlEngine::CppOwnership);
        connect(model.get(), &ToolModel::phaseChanged, this, &WindowContext::cleaningChanged);
        connect(model.get(), &ToolModel::cleaned, this, &WindowContext::recordsChanged);
        connect(model.get(), &ToolModel::protectionChanged, this,
                &WindowContext::protectionChanged);
        connect(this, &WindowContext::protectionChanged, model.get(), &ToolModel::judgeAgain);
        connect(model.get(), &ToolModel::notified, this, &WindowContext::notified);
        connect(model.get(), &ToolModel::scanFinished, this,
                [title = Texts::sentence(tool->displayName), raw = model.get()] {
                    notifyOfScan(title, *raw);
                });
        connect(model.get(), &ToolModel::foundChanged, &navigation_,
                [this, id, raw = model.get()] { navigation_.setBadge(id, raw->found()); });
    }
    return model.get();
}

void WindowContext::reveal(const QString& absoluteURL) {
    if (const auto url = FileURL::fromAbsoluteString(absoluteURL.toStdString())) {
        revealInFileManager(*url);
    }
}

void WindowContext::copyText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

} // namespace korvane
