// How the window looks, and how it is reached without a mouse and without seeing it.

#include "Korvane/window/theme/Appearance.h"
#include "Korvane/window/update/UpdateModel.h"
#include "tests/updater/UpdaterFixture.h"
#include "tests/window/WindowFixture.h"

#include <QAccessible>
#include <QSignalSpy>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

namespace korvane::testing {

class WindowPageTests : public WindowFixture {
    Q_OBJECT

  public:
    using WindowFixture::WindowFixture;

  private slots:
    void reachesEveryPartByTab() {
        std::set<QQuickItem*> seen;
        for (int turn = 0; turn < 40; ++turn) {
            press(Qt::Key_Tab);
            for (QQuickItem* one = window()->activeFocusItem(); one != nullptr;
                 one = one->parentItem()) {
                seen.insert(one);
            }
        }
        for (const char* name : {"navigationList", "scanButton", "collectorToggle"}) {
            QVERIFY2(seen.count(item(name)) == 1, name);
        }
        press(Qt::Key_2, Qt::ControlModifier);
        QTRY_COMPARE(page(), QStringLiteral("smart-scan"));

        // A screen reader is told the row that is current, not only that there is a list.
        item("navigationList")->forceActiveFocus();
        press(Qt::Key_Down);
        QTRY_COMPARE(page(), QStringLiteral("cache-cleaner"));
        QAccessibleInterface* row =
            QAccessible::queryAccessibleInterface(window()->activeFocusItem());
        QVERIFY(row != nullptr);
        QCOMPARE(row->text(QAccessible::Name), QStringLiteral("Cache Cleaner"));
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
        auto* appearance = application().engine().singletonInstance<Appearance*>(
            qmlTypeId("Korvane.Theme", 1, 0, "Appearance"));
        QVERIFY(appearance != nullptr);
        appearance->setMode(static_cast<Appearance::Mode>(mode));
        window()->resize(size);
        // Something is in the Bin, the log and the Collector by then.
        ToolModel* caches = tool("cache-cleaner");
        caches->scan();
        QTRY_COMPARE_WITH_TIMEOUT(caches->phase(), ToolModel::Results, patience);
        QVERIFY(!caches->prepare().isEmpty());
        caches->confirm();
        QTRY_COMPARE_WITH_TIMEOUT(caches->phase(), ToolModel::Finished, patience);
        QTest::qWait(100);
        picture(QStringLiteral("finished"));
        caches->reset();
        const NavigationModel* navigation = context().navigation();
        for (int row = 0; row < navigation->rowCount(); ++row) {
            const QString id = navigation->get(row)[QStringLiteral("pageID")].toString();
            open(id.toUtf8().constData());
            // Tools that need nothing show what they find.
            ToolModel* tool = context().tool(id);
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
            collectNameless(QAccessible::queryAccessibleInterface(window()), {}, nameless);
            QVERIFY2(nameless.isEmpty(), qPrintable(id + u'\n' + nameless.join(u'\n')));
        }
    }

    void showsAnUpdateThroughItsPhases() {
        const std::unique_ptr<World> world = openWithUpdates();
        UpdateModel* updates = context().updates();
        world->publish("", "1.0");
        updates->check();
        lookAt(UpdateModel::UpToDate, "up-to-date");
        press(Qt::Key_Return);
        QTRY_COMPARE(updates->phase(), UpdateModel::Idle);

        const ReleaseArchive next = world->release("2.0");
        world->publish(tarArchive(next.entries()), "2.0");
        updates->check();
        lookAt(UpdateModel::Available, "available");
        press(Qt::Key_Escape); // later
        QTRY_COMPARE(updates->phase(), UpdateModel::Idle);

        world->answer("/korvane/Korvane.tar.gz", {.isSilent = true});
        updates->check();
        QTRY_COMPARE(updates->phase(), UpdateModel::Available);
        click(item("updateInstall"));
        lookAt(UpdateModel::Downloading, "downloading");
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
        application().closeAll(); // before the world that it works in
    }

    void showsWhereAnUpdateIsThatMayNotBeInstalled() {
        if (geteuid() == 0) {
            QSKIP("root may install anywhere");
        }
        const std::unique_ptr<World> world = openWithUpdates();
        const ReleaseArchive next = world->release("2.0");
        world->publish(tarArchive(next.entries()), "2.0");
        QCOMPARE(chmod(world->folder.at("apps").path().c_str(), 0555), 0);
        context().updates()->check();
        QTRY_COMPARE_WITH_TIMEOUT(context().updates()->phase(), UpdateModel::Available, patience);
        press(Qt::Key_Tab);
        press(Qt::Key_Return);
        lookAt(UpdateModel::NeedsManualInstall, "by-hand");
        QCOMPARE(chmod(world->folder.at("apps").path().c_str(), 0755), 0);
        application().closeAll();
    }

  private:
    struct World : UpdaterTest {
        void TestBody() override {}
        using UpdaterTest::answer;
        using UpdaterTest::configuration;
        using UpdaterTest::folder;
        using UpdaterTest::publish;
        using UpdaterTest::release;
        using UpdaterTest::runningProgram;
        using UpdaterTest::server;
        using UpdaterTest::started;
        using UpdaterTest::system;
    };

    /// A window that takes its updates from a world of its own, which is closed before that goes.
    std::unique_ptr<World> openWithUpdates() {
        auto world = std::make_unique<World>();
        show(application().open(
            services(), {},
            std::make_unique<UpdateModel>([&there = *world] { return there.configuration(); },
                                          world->system)));
        return world;
    }

    void lookAt(UpdateModel::Phase phase, const char* name) const {
        QTRY_COMPARE_WITH_TIMEOUT(context().updates()->phase(), phase, patience);
        QTRY_VERIFY(item("updateClose") != nullptr && item("updateClose")->hasActiveFocus());
        picture(QStringLiteral("update-%1").arg(QLatin1StringView(name)));
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
};

} // namespace korvane::testing

int main(int argc, char** argv) {
    return korvane::testing::WindowFixture::main<korvane::testing::WindowPageTests>(argc, argv);
}

#include "WindowPageTests.moc"
