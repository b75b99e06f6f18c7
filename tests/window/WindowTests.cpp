// The whole window over a real home folder, driven by keys and the mouse.

#include "Korvane/command/demo/SampleHome.h"
#include "Korvane/tools/Services.h"
#include "Korvane/window/shell/WindowApplication.h"
#include "Korvane/window/shell/WindowContext.h"
#include "Korvane/window/support/Texts.h"
#include "Korvane/window/theme/Appearance.h"
#include "Korvane/window/update/UpdateModel.h"
#include "KorvaneCore/foundation/Json.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/updater/UpdaterFixture.h"

#include <QAccessible>
#include <QDropEvent>
#include <QMimeData>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QtPlugin>
#include <QtTest>
#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>

Q_IMPORT_PLUGIN(Korvane_ThemePlugin)
Q_IMPORT_PLUGIN(Korvane_StylePlugin)
Q_IMPORT_PLUGIN(Korvane_WindowPlugin)

namespace korvane::testing {
namespace {

constexpr int patience = 30'000; // milliseconds

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

class WindowTests : public QObject {
    Q_OBJECT

  public:
    WindowTests(WindowApplication& application, const TemporaryFolder& folder)
        : application_(application), folder_(folder) {}

  private slots:
    void init() {
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

    void cleanup() {
        application_.closeAll();
        services_.reset();
        QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(u'\n')));
    }

    void removesWhatIsTickedAndPutsItBack() {
        QTRY_VERIFY(item("scanButton") != nullptr && item("scanButton")->hasActiveFocus());
        press(Qt::Key_Return);
        ToolModel* tool = application_.context().tool(QStringLiteral("cache-cleaner"));
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
        QTRY_VERIFY(item("resultList") != nullptr && item("resultList")->hasActiveFocus());
        QVERIFY(tool->results()->selectedCount() > 1);

        // One is unticked by the keyboard.
        press(Qt::Key_Down);
        const int row = item("resultList")->property("currentIndex").toInt();
        const FileURL kept = tool->results()->itemAt(row)->url;
        const int before = tool->results()->selectedCount();
        press(Qt::Key_Space);
        QCOMPARE(tool->results()->selectedCount(), before - 1);
        std::vector<std::string> chosen;
        const ResultModel& results = *tool->results();
        for (int other = 0; other < results.rowCount(); ++other) {
            if (!results.isGroup(other) &&
                results.index(other).data(ResultModel::Ticked).toInt() == Qt::Checked) {
                chosen.push_back(results.itemAt(other)->path());
            }
        }
        QCOMPARE(static_cast<int>(chosen.size()), before - 1);

        press(Qt::Key_Return, Qt::ControlModifier);
        QTRY_VERIFY(item("cancelButton") != nullptr && item("cancelButton")->hasActiveFocus());
        press(Qt::Key_Return); // the first answer is no
        QTRY_VERIFY(item("confirmButton") == nullptr);
        QCOMPARE(tool->phase(), ToolModel::Results);
        press(Qt::Key_Delete);
        QTRY_VERIFY(item("cancelButton") != nullptr && item("cancelButton")->hasActiveFocus());
        press(Qt::Key_Tab);
        for (const std::string& path : chosen) {
            QVERIFY(std::filesystem::exists(path));
        }
        // What is ticked meanwhile is not what was asked about.
        tool->results()->toggle(row);
        press(Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Finished, patience);
        QTRY_VERIFY(item("doneButton") != nullptr && item("doneButton")->hasActiveFocus());
        QVERIFY(std::filesystem::exists(kept.path()));
        for (const std::string& path : chosen) {
            QVERIFY2(!std::filesystem::exists(path), path.c_str());
        }
        const auto entries = services_->auditLog().entries();
        QCOMPARE(entries.size(), std::size_t{1});
        QCOMPARE(entries.front().restorable->size(), chosen.size());

        open("restore");
        QTRY_VERIFY_WITH_TIMEOUT(item("restoreButton") != nullptr, patience);
        click(item("restoreButton"));
        QTRY_COMPARE_WITH_TIMEOUT(services_->auditLog().entries().size(), std::size_t{2}, patience);
        for (const std::string& path : chosen) {
            QVERIFY2(std::filesystem::exists(path), path.c_str());
        }
    }

    void stopsAScanAndNeverShowsALateResult() {
        ToolModel* tool = application_.context().tool(QStringLiteral("smart-scan"));
        open("smart-scan");
        for (int turn = 0; turn < 5; ++turn) {
            tool->scan();
            tool->stop();
            QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
            tool->reset();
            QTest::qWait(20);
            QCOMPARE(tool->phase(), ToolModel::Idle);
        }
    }

    void keepsWhatIsProtectedFromTheResults() {
        ToolModel* tool = application_.context().tool(QStringLiteral("cache-cleaner"));
        tool->scan();
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
        const FileURL place = tool->results()->itemAt(1)->url;
        tool->protect(1);
        QTRY_VERIFY_WITH_TIMEOUT(services_->exclusions().blocks(place), patience);
        QTRY_COMPARE_WITH_TIMEOUT(
            [&] {
                for (int row = 0; row < tool->results()->rowCount(); ++row) {
                    const ScanItem* one = tool->results()->itemAt(row);
                    if (one != nullptr && one->url == place) {
                        return tool->results()->index(row).data(ResultModel::Tickable).toBool();
                    }
                }
                return true;
            }(),
            false, patience);
    }

    void gathersInTheCollectorAndRemovesTogether() {
        std::size_t staged = 0;
        for (const char* id : {"cache-cleaner", "system-files"}) {
            ToolModel* tool = application_.context().tool(QString::fromLatin1(id));
            open(id);
            tool->scan();
            QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
            QTRY_VERIFY(item("collectButton") != nullptr);
            staged += tool->results()->selectedIDs().size();
            click(item("collectButton"));
            QTRY_COMPARE(application_.context().collector()->count(), static_cast<int>(staged));
        }
        QTRY_VERIFY(item("collectorDeleteButton") != nullptr);
        QTest::qWait(300); // the tray opens
        click(item("collectorDeleteButton"));
        QTRY_VERIFY(item("confirmButton") != nullptr);
        click(item("confirmButton"));
        QTRY_COMPARE_WITH_TIMEOUT(application_.context().collector()->count(), 0, patience);
        QTRY_COMPARE_WITH_TIMEOUT(services_->auditLog().entries().size(), std::size_t{1}, patience);
        QCOMPARE(services_->auditLog().entries().front().scannerID, std::string("collector"));
    }

    void asksBeforeItClosesInTheMiddleOfRemoving() {
        for (int number = 0; number < 3000; ++number) {
            folder_.makeFile("home/Library/Caches/many-" + std::to_string(number) + "/x");
        }
        ToolModel* tool = application_.context().tool(QStringLiteral("cache-cleaner"));
        tool->scan();
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
        QVERIFY(!tool->prepare().isEmpty());
        tool->confirm();
        QVERIFY(!window_->close());
        QTRY_VERIFY(item("cancelButton") != nullptr && item("cancelButton")->hasActiveFocus());
        QVERIFY(window_->isVisible());
        press(Qt::Key_Tab);
        press(Qt::Key_Return);
        QTRY_VERIFY(!window_->isVisible());
        application_.closeAll(); // as at the end of the program: waits for the item and the record
        const auto entries = services_->auditLog().entries();
        QCOMPARE(entries.size(), std::size_t{1});
        // Every removal is in the record, and nothing else is said to have gone.
        const AuditEntry& entry = entries.front();
        const auto gone =
            std::count_if(entry.paths.begin(), entry.paths.end(), [](const std::string& text) {
                return !std::filesystem::exists(pathFromText(text));
            });
        QCOMPARE(static_cast<std::int64_t>(gone), entry.succeededCount);
        QCOMPARE(entry.restorable->size(), static_cast<std::size_t>(gone));
        QVERIFY(gone > 0);
    }

    void scansTheApplicationThatIsChosen() {
        folder_.makeFile("home/.local/share/applications/org.example.draw.desktop",
                         "[Desktop Entry]\nType=Application\nName=Draw\nExec=/usr/bin/true\n");
        folder_.makeFile("home/.config/org.example.draw/settings", std::string(9000, 'x'));
        open("uninstaller");
        QTRY_VERIFY(item("applicationList") != nullptr);
        QTRY_VERIFY(!application_.context().applications()->isLoading());
        press(Qt::Key_F, Qt::ControlModifier);
        for (const char letter : std::string("example.draw")) {
            QTest::keyClick(window_, letter);
        }
        QTRY_COMPARE(application_.context().applications()->rowCount(), 1);
        press(Qt::Key_Return);
        const ToolModel* tool = application_.context().tool(QStringLiteral("uninstaller"));
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
        QVERIFY(tool->subject().startsWith(QStringLiteral("Draw, ")));
    }

    void takesWhatIsDroppedOnIt() {
        const FileURL dropped = folder_.makeFolder("home/dropped \xC3\xA9 %41");
        folder_.makeFile("home/dropped \xC3\xA9 %41/copy", std::string(9000, 'd'));
        folder_.makeFile("home/dropped \xC3\xA9 %41/copy 2", std::string(9000, 'd'));

        open("duplicate-finder");
        drop(dropped);
        ToolModel* tool = application_.context().tool(QStringLiteral("duplicate-finder"));
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
        QCOMPARE(tool->results()->totalCount(), 2);

        open("disk-usage");
        drop(dropped);
        QTRY_VERIFY_WITH_TIMEOUT(
            application_.context().usage()->folderPath().endsWith(QStringLiteral("%41")), patience);

        open("protected-paths");
        drop(dropped);
        QTRY_VERIFY(services_->exclusions().blocks(dropped));

        open("cache-cleaner"); // needs no folder
        drop(dropped, false);
    }

    void showsAnUpdateThroughItsPhases() {
        struct World : UpdaterTest {
            void TestBody() override {}
            using UpdaterTest::answer;
            using UpdaterTest::configuration;
            using UpdaterTest::publish;
            using UpdaterTest::release;
            using UpdaterTest::runningProgram;
            using UpdaterTest::server;
            using UpdaterTest::started;
            using UpdaterTest::system;
        };
        const std::unique_ptr<World> world = std::make_unique<World>();
        window_ = application_.open(
            *services_, {},
            std::make_unique<UpdateModel>([&] { return world->configuration(); }, world->system));
        UpdateModel* updates = application_.context().updates();
        const auto look = [&](UpdateModel::Phase phase, const char* name) {
            QTRY_COMPARE_WITH_TIMEOUT(updates->phase(), phase, patience);
            QTRY_VERIFY(item("updateClose") != nullptr && item("updateClose")->hasActiveFocus());
            picture(QStringLiteral("update-%1").arg(QLatin1StringView(name)));
        };
        world->publish("", "1.0");
        updates->check();
        look(UpdateModel::UpToDate, "up-to-date");
        press(Qt::Key_Return);
        QTRY_COMPARE(updates->phase(), UpdateModel::Idle);

        const ReleaseArchive next = world->release("2.0");
        world->publish(tarArchive(next.entries()), "2.0");
        updates->check();
        look(UpdateModel::Available, "available");
        press(Qt::Key_Escape); // later
        QTRY_COMPARE(updates->phase(), UpdateModel::Idle);

        world->answer("/korvane/Korvane.tar.gz", {.isSilent = true});
        updates->check();
        QTRY_COMPARE(updates->phase(), UpdateModel::Available);
        click(item("updateInstall"));
        look(UpdateModel::Downloading, "downloading");
        press(Qt::Key_Escape); // a download can be called off
        QTRY_COMPARE_WITH_TIMEOUT(updates->phase(), UpdateModel::Idle, patience);

        world->publish(tarArchive(next.entries()), "2.0");
        updates->check();
        QTRY_COMPARE(updates->phase(), UpdateModel::Available);
        QSignalSpy quit(updates, &UpdateModel::quitRequested);
        updates->install();
        QTRY_COMPARE_WITH_TIMEOUT(quit.count(), 1, patience);
        QCOMPARE(world->started.size(), std::size_t{1});
        QCOMPARE(world->runningProgram(), next.files.at("Contents/Linux/bin/korvane"));
        application_.closeAll(); // before the world that it works in
    }

    void reachesEveryPartByTab() {
        std::set<QQuickItem*> seen;
        for (int turn = 0; turn < 40; ++turn) {
            press(Qt::Key_Tab);
            for (QQuickItem* one = window_->activeFocusItem(); one != nullptr;
                 one = one->parentItem()) {
                seen.insert(one);
            }
        }
        for (const char* name : {"navigationList", "scanButton", "collectorToggle"}) {
            QVERIFY2(seen.count(item(name)) == 1, name);
        }
        press(Qt::Key_2, Qt::ControlModifier);
        QTRY_COMPARE(page(), QStringLiteral("smart-scan"));
    }

    void showsEveryPage_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QSize>("size");
        QTest::newRow("light") << int(Appearance::Light) << QSize(1180, 760);
        QTest::newRow("dark") << int(Appearance::Dark) << QSize(1180, 760);
        QTest::newRow("small") << int(Appearance::Light) << QSize(960, 640);
    }

    /// Every page paints, has a name for everything that can be used, and has its picture taken.
    void showsEveryPage() {
        QFETCH(int, mode);
        QFETCH(QSize, size);
        auto* appearance = application_.engine().singletonInstance<Appearance*>(
            qmlTypeId("Korvane.Theme", 1, 0, "Appearance"));
        QVERIFY(appearance != nullptr);
        appearance->setMode(static_cast<Appearance::Mode>(mode));
        window_->resize(size);
        // Something is in the Bin, the log and the Collector by then.
        ToolModel* caches = application_.context().tool(QStringLiteral("cache-cleaner"));
        caches->scan();
        QTRY_COMPARE_WITH_TIMEOUT(caches->phase(), ToolModel::Results, patience);
        QVERIFY(!caches->prepare().isEmpty());
        caches->confirm();
        QTRY_COMPARE_WITH_TIMEOUT(caches->phase(), ToolModel::Finished, patience);
        QTest::qWait(100);
        picture(QStringLiteral("finished"));
        caches->reset();
        const NavigationModel* navigation = application_.context().navigation();
        for (int row = 0; row < navigation->rowCount(); ++row) {
            const QString id = navigation->get(row)[QStringLiteral("pageID")].toString();
            open(id.toUtf8().constData());
            // Tools that need nothing show what they find.
            ToolModel* tool = application_.context().tool(id);
            if (tool != nullptr && id != QStringLiteral("uninstaller")) {
                tool->useHomeFolder();
                picture(id + QStringLiteral("-idle"));
                tool->scan();
                QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
            }
            if (QQuickItem* measure = item("measureHomeButton")) {
                click(measure);
            }
            QTest::qWait(300);
            picture(id);
            QStringList nameless;
            collectNameless(QAccessible::queryAccessibleInterface(window_), {}, nameless);
            QVERIFY2(nameless.isEmpty(), qPrintable(id + u'\n' + nameless.join(u'\n')));
        }
    }

  private:
    [[nodiscard]] QQuickItem* item(const char* name) const {
        return findItem(window_->contentItem(), QString::fromLatin1(name));
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::keyClick(window_, key, modifiers);
    }

    void click(QQuickItem* item) const {
        QVERIFY(item != nullptr);
        const QPointF middle = item->mapToScene({item->width() / 2, item->height() / 2});
        QTest::mouseClick(window_, Qt::LeftButton, {}, middle.toPoint());
    }

    /// Drags a file from another program to the middle of the page and lets it go there.
    void drop(const FileURL& file, bool isTaken = true) const {
        QMimeData data;
        data.setUrls({Texts::qtURL(file)});
        const QPoint middle(window_->width() * 6 / 10, window_->height() / 2);
        constexpr Qt::DropActions actions = Qt::CopyAction | Qt::LinkAction;
        QDragEnterEvent enter(middle, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window_, &enter);
        QCOMPARE(enter.isAccepted(), isTaken);
        if (isTaken) {
            QDropEvent let(middle, actions, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(window_, &let);
        }
    }

    void open(const char* id) const {
        QMetaObject::invokeMethod(window_, "open", Q_ARG(QString, QString::fromLatin1(id)));
        QTRY_COMPARE(page(), QString::fromLatin1(id));
    }

    [[nodiscard]] QString page() const {
        return window_->property("tool").toMap()[QStringLiteral("pageID")].toString();
    }

    void picture(const QString& name) const {
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

    static void collectNameless(QAccessibleInterface* one, const QString& path,
                                QStringList& nameless) {
        if (one == nullptr || one->state().invisible) {
            return;
        }
        const QString here = path + u'/' +
                             (one->object() == nullptr
                                  ? QStringLiteral("?")
                                  : QString::fromLatin1(one->object()->metaObject()->className()));
        const bool isUsed = one->state().focusable || one->role() == QAccessible::Button ||
                            one->role() == QAccessible::CheckBox;
        const bool isFrame = one->role() == QAccessible::Window || one->role() == QAccessible::Pane;
        if (isUsed && !isFrame && one->text(QAccessible::Name).isEmpty()) {
            nameless.append(here);
        }
        for (int child = 0; child < one->childCount(); ++child) {
            collectNameless(one->child(child), here, nameless);
        }
    }

    WindowApplication& application_;
    const TemporaryFolder& folder_;
    std::unique_ptr<Services> services_;
    QQuickWindow* window_ = nullptr;
};

} // namespace korvane::testing

int main(int argc, char** argv) {
    const korvane::testing::TemporaryFolder folder;
    qputenv("HOME", folder.at("home").path().c_str());
    qputenv("XDG_DATA_HOME", folder.at("home/.local/share").path().c_str());
    qputenv("XDG_CONFIG_HOME", folder.at("home/.config").path().c_str());
    qputenv("XDG_CACHE_HOME", folder.at("home/.cache").path().c_str());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("KORVANE_REDUCE_MOTION", "1");
    qInstallMessageHandler(korvane::testing::noteWarnings);
    korvane::WindowApplication::prepare();
    korvane::WindowApplication application(argc, argv);
    QAccessible::setActive(true);
    korvane::testing::WindowTests tests(application, folder);
    return QTest::qExec(&tests, argc, argv);
}

#include "WindowTests.moc"
