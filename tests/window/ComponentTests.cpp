// The controls and components of the window, tested in QML.

#include "Korvane/window/shell/WindowContext.h"
#include "Korvane/window/theme/IconProvider.h"
#include "tests/support/TemporaryFolder.h"

#include <QQmlEngine>
#include <QQuickStyle>
#include <QSettings>
#include <QtPlugin>
#include <QtQuickTest>
#include <memory>

Q_IMPORT_PLUGIN(Korvane_ThemePlugin)
Q_IMPORT_PLUGIN(Korvane_StylePlugin)
Q_IMPORT_PLUGIN(Korvane_WindowPlugin)

namespace korvane::testing {

class Setup : public QObject {
    Q_OBJECT

  public slots:
    void applicationAvailable() {
        // The look that a test chooses is not the developer's.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(folder_.at("settings").path()));
        QQuickStyle::setStyle(QStringLiteral("Korvane.Style"));
        QQuickStyle::setFallbackStyle(QStringLiteral("Basic"));
    }

    void qmlEngineAvailable(QQmlEngine* engine) {
        services_ = std::make_unique<Services>(UserFolders{folder_.makeFolder("home"),
                                                           folder_.at("data"), folder_.at("config"),
                                                           folder_.makeFolder("tmp")});
        context_ = std::make_unique<WindowContext>(*services_);
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine->addImageProvider(QStringLiteral("icon"), new IconProvider);
    }

  private:
    TemporaryFolder folder_;
    std::unique_ptr<Services> services_;
    std::unique_ptr<WindowContext> context_;
};

} // namespace korvane::testing

QUICK_TEST_MAIN_WITH_SETUP(window, korvane::testing::Setup)

#include "ComponentTests.moc"
