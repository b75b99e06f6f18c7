#pragma once

#include "Korvane/collector/CollectorStore.h"
#include "Korvane/tools/Services.h"
#include "Korvane/window/audit/AuditModel.h"
#include "Korvane/window/bin/BinModel.h"
#include "Korvane/window/collector/CollectorModel.h"
#include "Korvane/window/home/DashboardModel.h"
#include "Korvane/window/protection/CatalogueModel.h"
#include "Korvane/window/protection/ProtectedPathsModel.h"
#include "Korvane/window/restore/RestoreModel.h"
#include "Korvane/window/settings/CustomRulesModel.h"
#include "Korvane/window/settings/SettingsModel.h"
#include "Korvane/window/shell/NavigationModel.h"
#include "Korvane/window/tool/PrivilegedModel.h"
#include "Korvane/window/tool/ToolModel.h"
#include "Korvane/window/uninstaller/ApplicationsModel.h"
#include "Korvane/window/update/UpdateModel.h"
#include "Korvane/window/usage/DiskUsageModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <memory>
#include <unordered_map>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// Everything the screens show, made when it is first asked for. One a program (or a test); its
/// owner sets it as `current` before QML is loaded.
class WindowContext : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(korvane::NavigationModel* navigation READ navigation CONSTANT)
    Q_PROPERTY(korvane::CollectorModel* collector READ collector CONSTANT)
    Q_PROPERTY(korvane::PrivilegedModel* privileged READ privileged CONSTANT)
    Q_PROPERTY(korvane::DashboardModel* dashboard READ dashboard CONSTANT)
    Q_PROPERTY(korvane::ProtectedPathsModel* protection READ protection CONSTANT)
    Q_PROPERTY(korvane::CatalogueModel* catalogue READ catalogue CONSTANT)
    Q_PROPERTY(korvane::SettingsModel* settings READ settings CONSTANT)
    Q_PROPERTY(korvane::CustomRulesModel* customRules READ customRules CONSTANT)
    Q_PROPERTY(korvane::UpdateModel* updates READ updates CONSTANT)
    Q_PROPERTY(korvane::DiskUsageModel* usage READ usage CONSTANT)
    Q_PROPERTY(korvane::BinModel* bins READ bins CONSTANT)
    Q_PROPERTY(korvane::ApplicationsModel* applications READ applications CONSTANT)
    Q_PROPERTY(korvane::AuditModel* audit READ audit CONSTANT)
    Q_PROPERTY(korvane::RestoreModel* restore READ restore CONSTANT)
    /// Some tool or the Collector is removing items at the moment.
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY cleaningChanged)

  public:
    /// Without `updates` the updater of this installation.
    explicit WindowContext(Services& services, std::unique_ptr<UpdateModel> updates = nullptr,
                           QObject* parent = nullptr);
    ~WindowContext() override;

    static WindowContext* create(QQmlEngine* engine, QJSEngine* scripts);

    [[nodiscard]] Services& services() { return services_; }
    [[nodiscard]] NavigationModel* navigation() { return &navigation_; }
    [[nodiscard]] CollectorModel* collector();
    [[nodiscard]] PrivilegedModel* privileged();
    [[nodiscard]] DashboardModel* dashboard();
    [[nodiscard]] ProtectedPathsModel* protection();
    [[nodiscard]] CatalogueModel* catalogue();
    [[nodiscard]] SettingsModel* settings();
    [[nodiscard]] CustomRulesModel* customRules();
    [[nodiscard]] UpdateModel* updates();
    [[nodiscard]] DiskUsageModel* usage();
    [[nodiscard]] BinModel* bins();
    [[nodiscard]] ApplicationsModel* applications();
    [[nodiscard]] AuditModel* audit();
    [[nodiscard]] RestoreModel* restore();
    [[nodiscard]] bool isCleaning() const;

    /// The model of a tool of the catalogue; the same one each time. Null for another id.
    [[nodiscard]] Q_INVOKABLE korvane::ToolModel* tool(const QString& id);

    /// Shows a file or folder in the desktop's file manager.
    Q_INVOKABLE void reveal(const QString& absoluteURL);
    Q_INVOKABLE void copyText(const QString& text);

  signals:
    void cleaningChanged();
    /// Something went to the Bin, came back, or the log grew: what shows it reads again.
    void recordsChanged();
    /// The protected paths changed.
    void protectionChanged();
    /// A screen to open; `id` as in the navigation.
    void pageRequested(const QString& id);
    /// The user asked for the update sheet.
    void updateRequested();
    /// A sentence that appears and goes by itself.
    void notified(const QString& sentence);

  private:
    Services& services_;
    NavigationModel navigation_;
    CollectorStore collectorStore_;
    std::unordered_map<std::string, std::unique_ptr<ToolModel>> tools_;
    std::unique_ptr<CollectorModel> collector_;
    std::unique_ptr<PrivilegedModel> privileged_;
    std::unique_ptr<AuditModel> audit_;
    std::unique_ptr<RestoreModel> restore_;
    std::unique_ptr<DiskUsageModel> usage_;
    std::unique_ptr<BinModel> bins_;
    std::unique_ptr<ApplicationsModel> applications_;
    std::unique_ptr<DashboardModel> dashboard_;
    std::unique_ptr<ProtectedPathsModel> protection_;
    std::unique_ptr<CatalogueModel> catalogue_;
    std::unique_ptr<SettingsModel> settings_;
    std::unique_ptr<CustomRulesModel> customRules_;
    std::unique_ptr<UpdateModel> updates_;
};

} // namespace korvane
