#include "Korvane/window/shell/WindowApplication.h"

#include "Korvane/window/components/ThumbnailProvider.h"
#include "Korvane/window/shell/WindowContext.h"
#include "Korvane/window/support/Texts.h"
#include "Korvane/window/theme/IconProvider.h"

#include <QCommandLineParser>
#include <QIcon>
#include <QQuickStyle>
#include <QSettings>
#include <QTimer>
#include <cstdio>
#include <ctime>

namespace korvane {

namespace {

/// What a developer asks of a window that is to end by itself.
struct Inspection {
    QString picture;         ///< a file for a picture of the window
    int delay = 0;           ///< milliseconds before it is taken
    bool firstFrame = false; ///< print what the first frame cost
};

double processorMilliseconds() {
    std::timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

void inspect(QQuickWindow& window, const Inspection& inspection) {
    if (!inspection.picture.isEmpty()) {
        QTimer::singleShot(inspection.delay, &window, [&window, file = inspection.picture] {
            QCoreApplication::exit(window.grabWindow().save(file) ? 0 : 1);
        });
    }
    if (inspection.firstFrame) {
        QObject::connect(
            &window, &QQuickWindow::frameSwapped, &window,
            [] {
                std::printf("first frame: %.0f ms of CPU\n", processorMilliseconds());
                QCoreApplication::quit();
            },
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    }
}

} // namespace

bool WindowApplication::hasDisplay() {
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

void WindowApplication::prepare() {
    setOrganizationName(QStringLiteral("Korvane"));
    setApplicationName(QStringLiteral("Korvane"));
    // Painted by the processor it starts in half the time and a third of the memory, and what there
    // is to draw is quick enough; who has a large screen can choose the graphics card.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") &&
        QSettings().value(QStringLiteral("window/renderer")).toString() != QStringLiteral("gpu")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    QQuickStyle::setStyle(QStringLiteral("Korvane.Style"));
    QQuickStyle::setFallbackStyle(QStringLiteral("Basic"));
}

WindowApplication::WindowApplication(int& argc, char** argv) : QGuiApplication(argc, argv) {
    setDesktopFileName(QStringLiteral("com.ostrel.Korvane"));
    setApplicationDisplayName(QStringLiteral("Korvane"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/korvane.svg")));
}

WindowApplication::~WindowApplication() {
    closeAll();
}

void WindowApplication::closeAll() {
    // The engine first: what it shows belongs to the context.
    engine_.reset();
    context_.reset();
}

QQuickWindow* WindowApplication::open(Services& services, const QVariantMap& properties,
                                      std::unique_ptr<UpdateModel> updates) {
    closeAll();
    context_ = std::make_unique<WindowContext>(services, std::move(updates));
    engine_ = std::make_unique<QQmlApplicationEngine>();
    engine_->addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine_->addImageProvider(QStringLiteral("icon"), new IconProvider);
    engine_->addImageProvider(QStringLiteral("thumbnail"), new ThumbnailProvider);
    engine_->setInitialProperties(properties);
    engine_->load(QUrl(QStringLiteral("qrc:/qt/qml/Korvane/Window/Main.qml")));
    return engine_->rootObjects().isEmpty()
               ? nullptr
               : qobject_cast<QQuickWindow*>(engine_->rootObjects().constFirst());
}

int WindowApplication::run(Services& services) {
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption page(QStringLiteral("page"), tr("Opens a screen."),
                                  QStringLiteral("id"));
    const QCommandLineOption size(QStringLiteral("size"), tr("The size of the window: 1180x760."),
                                  QStringLiteral("WxH"));
    const QCommandLineOption grab(QStringLiteral("grab"),
                                  tr("Saves a picture of the window and ends."),
                                  QStringLiteral("png"));
    const QCommandLineOption after(QStringLiteral("after"),
                                   tr("Milliseconds before the picture is taken."),
                                   QStringLiteral("ms"), QStringLiteral("700"));
    const QCommandLineOption firstFrame(QStringLiteral("first-frame"),
                                        tr("Says what the first frame cost and ends."));
    parser.addOptions({page, size, grab, after, firstFrame});
    parser.process(*this);

    QVariantMap properties;
    if (parser.isSet(page)) {
        if (NavigationModel().rowOf(parser.value(page)) < 0) {
            std::fprintf(stderr, "korvane: there is no screen \"%s\"\n",
                         Texts::data(parser.value(page).toStdString()).toUtf8().constData());
            return 2;
        }
        properties.insert(QStringLiteral("startPage"), parser.value(page));
    }
    const QStringList sides = parser.value(size).split(u'x');
    if (sides.size() == 2) {
        properties.insert(QStringLiteral("startSize"), QSize(sides[0].toInt(), sides[1].toInt()));
    }
    QQuickWindow* window = open(services, properties);
    if (window == nullptr) {
        return 1;
    }
    inspect(*window, {.picture = parser.value(grab),
                      .delay = parser.value(after).toInt(),
                      .firstFrame = parser.isSet(firstFrame)});
    const int status = exec();
    closeAll(); // waits for what is still at work with the stores
    return status;
}

} // namespace korvane
