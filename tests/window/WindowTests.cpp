// What people do with the window.

#include "Korvane/window/support/Texts.h"
#include "tests/window/WindowFixture.h"

#include <QDropEvent>
#include <QMimeData>
#include <algorithm>
#include <filesystem>

namespace korvane::testing {

class WindowTests : public WindowFixture {
    Q_OBJECT

  public:
    using WindowFixture::WindowFixture;

  private slots:
    void removesWhatIsTickedAndPutsItBack() {
        QTRY_VERIFY(item("scanButton") != nullptr && item("scanButton")->hasActiveFocus());
        press(Qt::Key_Return);
        ToolModel* tool = WindowFixture::tool("cache-cleaner");
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
        const auto entries = services().auditLog().entries();
        QCOMPARE(entries.size(), std::size_t{1});
        QCOMPARE(entries.front().restorable->size(), chosen.size());

        open("restore");
        QTRY_VERIFY_WITH_TIMEOUT(item("restoreButton") != nullptr, patience);
        click(item("restoreButton"));
        QTRY_COMPARE_WITH_TIMEOUT(services().auditLog().entries().size(), std::size_t{2}, patience);
        for (const std::string& path : chosen) {
            QVERIFY2(std::filesystem::exists(path), path.c_str());
        }
    }

    void stopsAScanAndNeverShowsALateResult() {
        ToolModel* tool = WindowFixture::tool("smart-scan");
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
        ToolModel* tool = WindowFixture::tool("cache-cleaner");
        tool->scan();
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
        const FileURL place = tool->results()->itemAt(1)->url;
        tool->protect(1);
        QTRY_VERIFY_WITH_TIMEOUT(services().exclusions().blocks(place), patience);
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
            ToolModel* tool = WindowFixture::tool(id);
            open(id);
            tool->scan();
            QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
            QTRY_VERIFY(item("collectButton") != nullptr);
            staged += tool->results()->selectedIDs().size();
            click(item("collectButton"));
            QTRY_COMPARE(context().collector()->count(), static_cast<int>(staged));
        }
        QTRY_VERIFY(item("collectorDeleteButton") != nullptr);
        QTest::qWait(300); // the tray opens
        click(item("collectorDeleteButton"));
        QTRY_VERIFY(item("confirmButton") != nullptr);
        click(item("confirmButton"));
        QTRY_COMPARE_WITH_TIMEOUT(context().collector()->count(), 0, patience);
        QTRY_COMPARE_WITH_TIMEOUT(services().auditLog().entries().size(), std::size_t{1}, patience);
        QCOMPARE(services().auditLog().entries().front().scannerID, std::string("collector"));
    }

    void asksBeforeItClosesInTheMiddleOfRemoving() {
        for (int number = 0; number < 3000; ++number) {
            folder().makeFile("home/Library/Caches/many-" + std::to_string(number) + "/x");
        }
        ToolModel* tool = WindowFixture::tool("cache-cleaner");
        tool->scan();
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
        QVERIFY(!tool->prepare().isEmpty());
        tool->confirm();
        QVERIFY(!window()->close());
        QTRY_VERIFY(item("cancelButton") != nullptr && item("cancelButton")->hasActiveFocus());
        QVERIFY(window()->isVisible());
        press(Qt::Key_Tab);
        press(Qt::Key_Return);
        QTRY_VERIFY(!window()->isVisible());
        application().closeAll(); // as at the end of the program: waits for the item and the record
        const auto entries = services().auditLog().entries();
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
        folder().makeFile("home/.local/share/applications/org.example.draw.desktop",
                          "[Desktop Entry]\nType=Application\nName=Draw\nExec=/usr/bin/true\n");
        folder().makeFile("home/.config/org.example.draw/settings", std::string(9000, 'x'));
        open("uninstaller");
        QTRY_VERIFY(item("applicationList") != nullptr);
        QTRY_VERIFY(!context().applications()->isLoading());
        press(Qt::Key_F, Qt::ControlModifier);
        for (const char letter : std::string("example.draw")) {
            QTest::keyClick(window(), letter);
        }
        QTRY_COMPARE(context().applications()->rowCount(), 1);
        press(Qt::Key_Return);
        const ToolModel* tool = WindowFixture::tool("uninstaller");
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
        QVERIFY(tool->subject().startsWith(QStringLiteral("Draw, ")));
    }

    void takesWhatIsDroppedOnIt() {
        const FileURL dropped = folder().makeFolder("home/dropped \xC3\xA9 %41");
        folder().makeFile("home/dropped \xC3\xA9 %41/copy", std::string(9000, 'd'));
        folder().makeFile("home/dropped \xC3\xA9 %41/copy 2", std::string(9000, 'd'));

        open("duplicate-finder");
        QTRY_VERIFY(item("chooseFolderButton")->hasActiveFocus());
        drop(dropped);
        ToolModel* tool = WindowFixture::tool("duplicate-finder");
        QTRY_COMPARE_WITH_TIMEOUT(tool->phase(), ToolModel::Results, patience);
        QCOMPARE(tool->results()->totalCount(), 2);

        open("disk-usage");
        drop(dropped);
        QTRY_VERIFY_WITH_TIMEOUT(context().usage()->folderPath().endsWith(QStringLiteral("%41")),
                                 patience);

        open("protected-paths");
        drop(dropped);
        QTRY_VERIFY(services().exclusions().blocks(dropped));

        open("cache-cleaner"); // needs no folder
        drop(dropped, false);
    }

  private:
    /// Drags a file from another program to the middle of the page and lets it go there.
    void drop(const FileURL& file, bool isTaken = true) const {
        QMimeData data;
        data.setUrls({Texts::qtURL(file)});
        const QPoint middle(window()->width() * 6 / 10, window()->height() / 2);
        constexpr Qt::DropActions actions = Qt::CopyAction | Qt::LinkAction;
        QDragEnterEvent enter(middle, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window(), &enter);
        QCOMPARE(enter.isAccepted(), isTaken);
        if (isTaken) {
            QDropEvent let(middle, actions, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(window(), &let);
        }
    }
};

} // namespace korvane::testing

int main(int argc, char** argv) {
    return korvane::testing::WindowFixture::main<korvane::testing::WindowTests>(argc, argv);
}

#include "WindowTests.moc"
