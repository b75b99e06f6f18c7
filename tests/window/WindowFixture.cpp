#include "tests/window/WindowFixture.h"

#include "Korvane/command/demo/SampleHome.h"

#include <QDir>
#include <QtPlugin>
#include <cstdio>
#include <filesystem>
#include <set>

Q_IMPORT_PLUGIN(Korvane_ThemePlugin)
Q_IMPORT_PLUGIN(Korvane_StylePlugin)
Q_IMPORT_PLUGIN(Korvane_WindowPlugin)

namespace korvane::testing {

namespace {

QStringList warnings;

void noteWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
    const bool isOfTheMachine = message.contains(QStringLiteral("propagateSizeHints")) ||
                                message.contains(QStringLiteral("XDG_RUNTIME_DIR")) ||
                                message.contains(QStringLiteral("requestActivate"));
    if ((type == QtWarningMsg || type == QtCriticalMsg) && !isOfTheMachine) {
        warnings.append(message);
    }
}

/// Delegates are nobody's children but their views': the tree of items is what has them.
QQuickItem* findItem(QQuickItem* root, const QString& name) {
    if (root->objectName() == name && root->isVisible()) {
        return root;
    }
    for (QQuickItem* child : root->childItems()) {
        if (QQuickItem* found = findItem(child, name)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

void WindowFixture::prepare(const TemporaryFolder& folder) {
    qputenv("HOME", folder.at("home").path().c_str());
    qputenv("XDG_DATA_HOME", folder.at("home/.local/share").path().c_str());
    qputenv("XDG_CONFIG_HOME", folder.at("home/.config").path().c_str());
    qputenv("XDG_CACHE_HOME", folder.at("home/.cache").path().c_str());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("KORVANE_REDUCE_MOTION", "1");
    qInstallMessageHandler(noteWarnings);
    WindowApplication::prepare();
}

void WindowFixture::init() {
    warnings.clear();
    std::filesystem::remove_all(folder_.at("home").path());
    layOutSampleHome(folder_.makeFolder("home"));
    services_ = std::make_unique<Services>(UserFolders::current());
    window_ = application_.open(*services_, {{QStringLiteral("startPage"), "cache-cleaner"},
                                             {QStringLiteral("startSize"), QSize(1180, 760)}});
    QVERIFY(window_ != nullptr);
    QVERIFY(QTest::qWaitForWindowExposed(window_));
    window_->requestActivate(); // there may be no window manager to do it
    QVERIFY(QTest::qWaitForWindowActive(window_));
}

void WindowFixture::cleanup() {
    application_.closeAll();
    services_.reset();
    QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(u'\n')));
}

QQuickItem* WindowFixture::item(const char* name) const {
    return findItem(window_->contentItem(), QString::fromLatin1(name));
}

void WindowFixture::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    QTest::keyClick(window_, key, modifiers);
}

void WindowFixture::click(QQuickItem* item) const {
    QVERIFY(item != nullptr);
    const QPointF middle = item->mapToScene({item->width() / 2, item->height() / 2});
    QTest::mouseClick(window_, Qt::LeftButton, {}, middle.toPoint());
}

void WindowFixture::open(const char* id) const {
    QMetaObject::invokeMethod(window_, "open", Q_ARG(QString, QString::fromLatin1(id)));
    QTRY_COMPARE(page(), QString::fromLatin1(id));
}

QString WindowFixture::page() const {
    return window_->property("tool").toMap()[QStringLiteral("pageID")].toString();
}

ToolModel* WindowFixture::tool(const char* id) const {
    return context().tool(QString::fromLatin1(id));
}

void WindowFixture::picture(const QString& name) const {
    const QImage image = window_->grabWindow();
    QVERIFY(!image.isNull());
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); y += 5) {
        for (int x = image.width() / 4; x < image.width() - 60; x += 5) {
            colours.insert(image.pixel(x, y));
        }
    }
    QVERIFY2(colours.size() > 4, qPrintable(name + QStringLiteral(" is an empty page")));
    const QString folder = qEnvironmentVariable("KORVANE_PICTURES");
    if (!folder.isEmpty()) {
        QDir().mkpath(folder);
        const QString tag = QString::fromLatin1(QTest::currentDataTag());
        QVERIFY(image.save(
            QStringLiteral("%1/%2%3.png").arg(folder, tag.isEmpty() ? tag : tag + u'-', name)));
    }
}

} // namespace korvane::testing
