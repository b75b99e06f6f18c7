#include "Korvane/tools/Services.h"
#include "Korvane/tools/ToolCatalogue.h"
#include "Korvane/window/collector/CollectorModel.h"
#include "Korvane/window/support/Texts.h"
#include "Korvane/window/tool/ToolModel.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

namespace korvane::testing {

using Tester = QAbstractItemModelTester;

/// A tool, its results and the Collector, over a home folder of the test's own.
class ToolModelTests : public QObject {
    Q_OBJECT

  private slots:
    void init() {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("XDG_RUNTIME_DIR");
        world_ = std::make_unique<World>();
        for (const char* name : {"Ann/a", "Ann/b", "Bob/c", "Bob/sub\n/d"}) {
            world_->folder.makeFileOfSize(std::string("home/Library/Caches/") + name, 50'000);
        }
        world_->folder.makeFileOfSize("home/Library/Caches/Bob/big", 900'000);
        world_->folder.makeFileOfSize("home/Library/Logs/app.log", 70'000);
    }
    void cleanup() { world_.reset(); }

    void keepsTheContractOfModels() {
        ToolModel tool = make("cache-cleaner");
        ResultModel& results = *tool.results();
        const Tester tester(&results, Tester::FailureReportingMode::QtTest);
        const Tester outcomeTester(tool.outcome(), Tester::FailureReportingMode::QtTest);
        scan(tool);
        QVERIFY(results.rowCount() > 3);
        for (int turn = 0; turn < 2; ++turn) {
            for (int row = results.rowCount() - 1; row >= 0; --row) {
                results.toggleOpen(row);
                results.toggle(row);
            }
        }
        results.setFilter(QStringLiteral("ann"));
        QCOMPARE(results.foundCount(), 1);
        results.sortBy(ResultModel::ByName);
        results.sortBy(ResultModel::ByName);
        results.setGroupOrder(1);
        results.setFilter(QStringLiteral("nothing like it"));
        QCOMPARE(results.rowCount(), 0);
        results.setFilter({});
        tool.scan();
        QCOMPARE(results.rowCount(), 0);
        QTRY_COMPARE(tool.phase(), ToolModel::Results);
    }

    void tellsTheRowsThatChangedAndNoOthers() {
        ToolModel tool = make("cache-cleaner");
        scan(tool);
        ResultModel& results = *tool.results();
        QSignalSpy changes(&results, &QAbstractItemModel::dataChanged);
        QSignalSpy resets(&results, &QAbstractItemModel::modelReset);
        const int row = rowOf(results, "Bob");
        const int before = results.selectedCount();
        results.toggle(row);
        QCOMPARE(results.selectedCount(), before - 1);
        QCOMPARE(results.index(results.groupRow(row)).data(ResultModel::Ticked).toInt(),
                 int(Qt::PartiallyChecked));
        QCOMPARE(resets.count(), 0); // a reset would lose the place on screen
        QVERIFY(changes.count() > 0);
        // A group's tick reaches the rows on show only.
        results.selectNone();
        results.setFilter(QStringLiteral("Ann"));
        results.toggle(0);
        QCOMPARE(results.selectedCount(), 1);
        results.setFilter(QStringLiteral("Bob"));
        QCOMPARE(results.selectionWarning(), 1); // something is ticked that is not shown
        QVERIFY(results.selectionDetail().contains(QStringLiteral("not shown")));
    }

    void removesWhatWasConfirmedAndNotWhatIsTickedThen() {
        ToolModel tool = make("cache-cleaner");
        scan(tool);
        ResultModel& results = *tool.results();
        results.selectNone();
        QVERIFY(tool.prepare().isEmpty());
        tool.confirm(); // nothing was asked
        QCOMPARE(tool.phase(), ToolModel::Results);
        results.toggle(rowOf(results, "Ann"));
        const QVariantMap question = tool.prepare();
        QCOMPARE(question[QStringLiteral("question")].toString(),
                 QStringLiteral("Move 1 item to the Bin?"));
        QCOMPARE(question[QStringLiteral("permanent")].toBool(), false);
        results.selectSafe();
        results.sortBy(ResultModel::ByName);
        QSignalSpy cleaned(&tool, &ToolModel::cleaned);
        tool.confirm();
        tool.confirm(); // once
        QTRY_COMPARE(tool.phase(), ToolModel::Finished);
        QCOMPARE(cleaned.count(), 1);
        QVERIFY(!world_->folder.exists("home/Library/Caches/Ann"));
        QVERIFY(world_->folder.exists("home/Library/Caches/Bob/big"));
        QCOMPARE(tool.outcome()->succeededText(), QStringLiteral("1"));
        QVERIFY(tool.outcome()->canRestore());
    }

    void offersAnEarlierResultWhereThereIsOne() {
        ToolModel first = make("cache-cleaner");
        QSignalSpy looked(&first, &ToolModel::previousFound);
        first.lookForPrevious();
        QVERIFY(looked.wait());
        QVERIFY(!first.hasPrevious());
        scan(first);
        ToolModel second = make("cache-cleaner");
        second.lookForPrevious();
        QTRY_VERIFY(second.hasPrevious());
        second.showPrevious();
        QTRY_COMPARE(second.phase(), ToolModel::Results);
        QCOMPARE(second.results()->totalCount(), first.results()->totalCount());
    }

    void asksDifferentlyForWhatCannotBeUndone() {
        DeletionPreference::setCurrent(world_->services.defaults(), DeletionMode::permanent);
        ToolModel tool = make("cache-cleaner");
        scan(tool);
        const QVariantMap question = tool.prepare();
        QCOMPARE(question[QStringLiteral("permanent")].toBool(), true);
        // What was asked about is how it is done, whatever the setting is by then.
        DeletionPreference::setCurrent(world_->services.defaults(), DeletionMode::trash);
        tool.confirm();
        QTRY_COMPARE(tool.phase(), ToolModel::Finished);
        QVERIFY(!tool.outcome()->canRestore());
        QVERIFY(!world_->folder.exists("trash/Ann"));
    }

    void saysWhatFailedAndTriesThatAgain() {
        ToolModel tool = make("cache-cleaner");
        scan(tool);
        QVERIFY(!tool.prepare().isEmpty());
        Exclusion exclusion;
        exclusion.path = world_->folder.at("home/Library/Caches/Bob").path();
        world_->services.exclusions().add(exclusion);
        tool.confirm();
        QTRY_COMPARE(tool.phase(), ToolModel::Finished);
        QCOMPARE(tool.outcome()->failedCount(), 1);
        QVERIFY(!tool.outcome()->index(0).data(OutcomeModel::Sentence).toString().isEmpty());
        QVERIFY(!tool.outcome()->index(0).data(OutcomeModel::Guidance).toString().isEmpty());
        world_->services.exclusions().remove(exclusion.id);
        QCOMPARE(tool.prepareRetry()[QStringLiteral("count")].toString(), QStringLiteral("1"));
        tool.confirm();
        QTRY_COMPARE(tool.phase(), ToolModel::Finished);
        QTRY_VERIFY(!world_->folder.exists("home/Library/Caches/Bob"));
    }

    void wantsToKnowWhatToLookAt() {
        ToolModel duplicates = make("duplicate-finder");
        QSignalSpy sentences(&duplicates, &ToolModel::notified);
        QVERIFY(!duplicates.canScan());
        duplicates.scan();
        QCOMPARE(duplicates.phase(), ToolModel::Idle);
        duplicates.setFolder(QUrl(QStringLiteral("https://example.org/x")));
        QCOMPARE(sentences.count(), 2);
        duplicates.setFolder(Texts::qtURL(world_->folder.at("no such\n folder %41")));
        QVERIFY(duplicates.canScan());
        duplicates.scan();
        QTRY_COMPARE(duplicates.phase(), ToolModel::Failed);
        QVERIFY(duplicates.failure().contains(QStringLiteral("no such\\n folder %41")));

        ToolModel smart = make("smart-scan");
        QCOMPARE(smart.scopes().size(), 5); // nobody develops here
        for (const QVariant& scope : smart.scopes()) {
            smart.setScope(scope.toMap()[QStringLiteral("id")].toString(), false);
        }
        smart.scan();
        QCOMPARE(smart.phase(), ToolModel::Idle);
    }

    void keepsACopyAndChangesWhichOne() {
        const std::string content(9000, 'c');
        for (const char* name : {"home/x/one", "home/x/two", "home/y/three"}) {
            world_->folder.makeFile(name, content);
        }
        ToolModel tool = make("duplicate-finder");
        tool.setFolder(Texts::qtURL(world_->folder.at("home")));
        scan(tool);
        ResultModel& results = *tool.results();
        QSignalSpy refusals(&tool, &ToolModel::notified);
        results.selectShown();
        QCOMPARE(results.selectedCount(), results.totalCount() - groups(results));
        results.keep(rowOf(results, "three"));
        const int kept = rowOf(results, "three");
        QCOMPARE(results.index(kept).data(ResultModel::Mark).toString(), QStringLiteral("Stays"));
        // Copies of one name are told apart by ear too.
        const QString spoken = results.index(kept).data(ResultModel::Spoken).toString();
        QVERIFY2(spoken.contains(results.index(kept).data(ResultModel::Subtitle).toString()) &&
                     spoken.endsWith(QStringLiteral("Stays")),
                 qUtf8Printable(spoken));
        results.toggle(kept);
        QCOMPARE(refusals.count(), 1);
        QVERIFY(!tool.prepare().isEmpty());
        tool.confirm();
        QTRY_COMPARE(tool.phase(), ToolModel::Finished);
        QVERIFY(world_->folder.exists("home/y/three"));
        QVERIFY(!world_->folder.exists("home/x/one") && !world_->folder.exists("home/x/two"));
    }

    void neverLosesTheLastCopyToToolAndCollectorTogether() {
        const std::string content(9000, 'c');
        for (const char* name : {"home/x/one", "home/x/two", "home/x/three"}) {
            world_->folder.makeFile(name, content);
        }
        ToolModel tool = make("duplicate-finder");
        tool.setFolder(Texts::qtURL(world_->folder.at("home/x")));
        scan(tool);
        ResultModel& results = *tool.results();
        CollectorModel collector(world_->staged, world_->services);
        QSignalSpy sentences(&tool, &ToolModel::notified);
        collector.stageSelection(&tool);
        QCOMPARE(collector.count(), 2);
        // Neither another keeper nor the row of the one that stays gets the third in too.
        results.keep(rowOf(results, world_->staged.items().front().path() ==
                                            world_->folder.at("home/x/one").path()
                                        ? "one"
                                        : "two"));
        collector.stageSelection(&tool);
        for (int row = 0; row < results.rowCount(); ++row) {
            collector.stageRow(&tool, row);
        }
        QCOMPARE(collector.count(), 2);
        QVERIFY(sentences.count() > 0);
        // Nor does the tool remove what the Collector leaves.
        results.selectShown();
        QVERIFY(!tool.prepare().isEmpty());
        tool.confirm();
        QTRY_COMPARE(tool.phase(), ToolModel::Finished);
        QVERIFY(!collector.prepare().isEmpty());
        collector.confirm();
        QTRY_COMPARE(collector.count(), 0);
        QCOMPARE(world_->folder.listing("home/x").size(), std::size_t{1});
    }

    void keepsTicksWhenAPathIsProtected() {
        ToolModel tool = make("cache-cleaner");
        connect(&tool, &ToolModel::protectionChanged, &tool, &ToolModel::judgeAgain);
        scan(tool);
        ResultModel& results = *tool.results();
        results.toggle(rowOf(results, "Ann")); // was ticked
        const int before = results.selectedCount();
        results.setFilter(QStringLiteral("caches"));
        tool.protect(rowOf(results, "Bob"));
        QTRY_COMPARE(results.index(rowOf(results, "Bob")).data(ResultModel::Tickable).toBool(),
                     false);
        QCOMPARE(results.selectedCount(), before - 1);
        QCOMPARE(results.index(rowOf(results, "Ann")).data(ResultModel::Ticked).toInt(),
                 int(Qt::Unchecked));
        QCOMPARE(results.filter(), QStringLiteral("caches"));
    }

    void takesFoldersWhoseNamesAreNoText() {
        const FileURL folder = world_->folder.makeFolder("home/odd \xFF%41\n");
        QCOMPARE(Texts::fileURL(Texts::qtURL(folder)), folder);
        QCOMPARE(Texts::fileURL(QUrl(QStringLiteral("file://elsewhere/x"))), FileURL());
    }

    void collectsOnceAndRemovesOnlyWhatWasAskedAbout() {
        CollectorModel collector(world_->staged, world_->services);
        const Tester tester(&collector, Tester::FailureReportingMode::QtTest);
        ToolModel tool = make("cache-cleaner");
        scan(tool);
        collector.stageSelection(&tool);
        const int staged = collector.count();
        QVERIFY(staged > 1);
        collector.stageRow(&tool, 1);
        QCOMPARE(collector.count(), staged);
        QVERIFY(!collector.prepare().isEmpty());
        const int ann = [&] {
            for (int row = 0; row < collector.count(); ++row) {
                if (collector.index(row).data(CollectorModel::Title) == QStringLiteral("Ann")) {
                    return row;
                }
            }
            return -1;
        }();
        collector.removeRow(ann); // what was asked about is no longer what is there
        collector.confirm();
        QVERIFY(!collector.isDeleting());
        QVERIFY(!collector.prepare().isEmpty());
        QSignalSpy finished(&collector, &CollectorModel::finished);
        collector.confirm();
        collector.clear(); // not now
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(collector.count(), 0);
        QVERIFY(world_->folder.exists("home/Library/Caches/Ann"));
        QVERIFY(!world_->folder.exists("home/Library/Caches/Bob"));
    }

    void endsQuietlyInTheMiddleOfWork() {
        for (int turn = 0; turn < 20; ++turn) {
            ToolModel tool = make("smart-scan");
            tool.scan();
            if (turn % 2 == 0) {
                QTest::qWait(1);
            }
        }
        QCoreApplication::processEvents(); // nothing of them comes after them
    }

  private:
    struct World {
        TemporaryFolder folder;
        FakeFileManager files{folder.at("trash")};
        CollectorStore staged;
        Services services{{folder.makeFolder("home"), folder.at("data"), folder.at("config"),
                           folder.makeFolder("tmp")},
                          files};
    };

    [[nodiscard]] ToolModel make(const char* id) const {
        return ToolModel(*ToolCatalogue::tool(id), world_->services, world_->staged);
    }

    static void scan(ToolModel& tool) {
        tool.scan();
        QTRY_COMPARE(tool.phase(), ToolModel::Results);
    }

    static int rowOf(const ResultModel& results, const char* title) {
        for (int row = 0; row < results.rowCount(); ++row) {
            if (!results.isGroup(row) &&
                results.index(row).data(ResultModel::Title) == QLatin1String(title)) {
                return row;
            }
        }
        return -1;
    }

    static int groups(const ResultModel& results) {
        int count = 0;
        for (int row = 0; row < results.rowCount(); ++row) {
            count += results.isGroup(row) ? 1 : 0;
        }
        return count;
    }

    std::unique_ptr<World> world_;
};

} // namespace korvane::testing

QTEST_GUILESS_MAIN(korvane::testing::ToolModelTests)

#include "ToolModelTests.moc"
