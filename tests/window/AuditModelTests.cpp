#include "Korvane/window/audit/AuditModel.h"
#include "tests/window/RecordsFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <fstream>
#include <random>

namespace korvane {

using testing::Records;
using testing::texts;

class AuditModelTests : public QObject {
    Q_OBJECT

  private slots:
    void showsAnEmptyLog();
    void listsTheOperationsByDay();
    void searchesAndFilters();
    void keepsItsContractThroughEverything();
    void findsABreakAndHasItAcknowledged();
    void exportsWhatIsShown();
    void putsBackAndReadsAnew();
    void drawsWhatWasReclaimed();
    void holdsALargeLog();

  private:
    /// Reads and waits for the last of it.
    static void load(AuditModel& model) {
        model.refresh();
        QTRY_VERIFY_WITH_TIMEOUT(!model.isVerifying() && model.state() != AuditModel::Loading,
                                 60'000);
    }
    template <typename Change>
    static void search(AuditModel& model, Change change) {
        QSignalSpy shown(&model, &AuditModel::shown);
        change();
        QTRY_VERIFY_WITH_TIMEOUT(!shown.isEmpty(), 60'000);
    }
    static void fill(Records& records) {
        records.record("downloads", {records.inBin("a.iso")}, {}, "2026-03-01T10:00:00Z");
        records.record("cache-cleaner", {}, {"/c/Straße", "/c/two"}, "2026-03-02T10:00:00Z");
        records.record("unknown-tool", {}, {"/d/three\nlines"}, "2026-03-02T12:00:00Z");
    }
};

void AuditModelTests::showsAnEmptyLog() {
    Records records;
    AuditModel model(records.services);
    QCOMPARE(model.state(), AuditModel::Loading);
    QCOMPARE(model.chain()->integrity(), AuditChain::Unknown);
    QVERIFY(!model.canExport());
    load(model);
    QCOMPARE(model.state(), AuditModel::Empty);
    QCOMPARE(model.chain()->integrity(), AuditChain::NothingToVerify);
    QCOMPARE(model.chain()->text(), QStringLiteral("No cleanup operations have been logged yet."));
    QVERIFY(model.chart()->periodIsEmpty());
    QVERIFY(!records.folder.exists("data"));
}

void AuditModelTests::listsTheOperationsByDay() {
    Records records;
    fill(records);
    AuditModel model(records.services);
    load(model);
    QCOMPARE(texts(model, AuditModel::Title),
             (QStringList{"2 March 2026", "unknown-tool", "Cache Cleaner", "1 March 2026",
                          "Downloads"}));
    QCOMPARE(texts(model, AuditModel::Subtitle),
             (QStringList{"", "1 item deleted", "2 items deleted", "", "1 item moved to the Bin"}));
    QCOMPARE(texts(model, AuditModel::CanPutBack),
             (QStringList{"false", "false", "false", "false", "true"}));
    QCOMPARE(model.chain()->integrity(), AuditChain::Verified);
    QVERIFY(model.chain()->text().startsWith(QStringLiteral("3 chained entries verified")));

    model.setOpen(2, true);
    model.setOpen(1, true);
    QCOMPARE(texts(model, AuditModel::Title).mid(0, 6),
             (QStringList{"2 March 2026", "unknown-tool", "three\\nlines", "Cache Cleaner",
                          "Straße", "two"}));
    QCOMPARE(model.index(1, 0).data(AuditModel::FoldText).toString(),
             QStringLiteral("Hide affected paths"));
    // What was opened stays so when the log is read anew.
    search(model, [&] { model.refresh(); });
    QCOMPARE(model.rowCount(), 8);
    model.setOpen(1, false);
    QCOMPARE(model.index(1, 0).data(AuditModel::FoldText).toString(),
             QStringLiteral("Show affected paths"));
    QCOMPARE(model.rowCount(), 7);
}

void AuditModelTests::searchesAndFilters() {
    Records records;
    fill(records);
    AuditModel model(records.services);
    load(model);
    QCOMPARE(model.modules(),
             (QStringList{"All modules", "Cache Cleaner", "Downloads", "unknown-tool"}));
    search(model, [&] { model.setQuery(QStringLiteral(" STRASSE")); });
    QCOMPARE(model.state(), AuditModel::NoMatch);
    QCOMPARE(model.rowCount(), 0);
    search(model, [&] { model.setQuery(QStringLiteral(" stRAße ")); });
    QCOMPARE(texts(model, AuditModel::Title), (QStringList{"2 March 2026", "Cache Cleaner"}));
    QCOMPARE(model.countText(), QStringLiteral("1 of 3 operations"));
    search(model, [&] { model.setModule(2); });
    QCOMPARE(model.state(), AuditModel::NoMatch);
    search(model, [&] { model.setQuery({}); });
    QCOMPARE(texts(model, AuditModel::Title), (QStringList{"1 March 2026", "Downloads"}));
    // The choice outlives a module that comes before it.
    records.record("browser-cache", {}, {"/b"});
    search(model, [&] { model.refresh(); });
    QCOMPARE(model.modules().at(model.module()), QStringLiteral("Downloads"));
    QCOMPARE(model.rowCount(), 2);
    // Of searches in a row only the last is shown.
    model.setModule(0);
    for (const char* text : {"d", "do", "dow", "unkn"}) {
        model.setQuery(QString::fromLatin1(text));
    }
    QTRY_COMPARE(texts(model, AuditModel::Title), (QStringList{"2 March 2026", "unknown-tool"}));
}

void AuditModelTests::keepsItsContractThroughEverything() {
    Records records;
    fill(records);
    AuditModel model(records.services);
    const QAbstractItemModelTester contract(&model,
                                            QAbstractItemModelTester::FailureReportingMode::QtTest);
    load(model);
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same each time
    const QStringList queries{"", "a", "two", "nothing has this", "/c"};
    for (int step = 0; step < 120; ++step) {
        const auto pick = static_cast<int>(random() % 20);
        if (step % 12 == 11) {
            search(model, [&] { model.refresh(); });
        } else if (pick < 12) {
            model.setOpen(pick - 1, random() % 2 == 0);
        } else if (pick < 16) {
            model.setQuery(queries.at(static_cast<int>(random() % 5)));
        } else if (pick < 18) {
            model.setModule(static_cast<int>(random() % 5) - 1);
        } else {
            QTest::qWait(2);
        }
    }
    model.setModule(0);
    model.setQuery({});
    for (int row = model.rowCount() - 1; row >= 0; --row) {
        model.setOpen(row, false);
    }
    QTRY_COMPARE(model.countText(), QStringLiteral("3 operations"));
    for (int row = model.rowCount() - 1; row >= 0; --row) {
        model.setOpen(row, true);
    }
    QCOMPARE(model.rowCount(), 2 + 3 + 4);
}

void AuditModelTests::findsABreakAndHasItAcknowledged() {
    Records records;
    fill(records);
    // Somebody deletes the first line of the second day.
    const std::string name = "data/Korvane/Audit/audit-2026-03-02.jsonl";
    const std::string lines = records.folder.content(name);
    std::ofstream(records.folder.at(name).path()) << lines.substr(lines.find('\n') + 1);

    AuditModel model(records.services);
    connect(&model, &AuditModel::recorded, &model, &AuditModel::refresh);
    load(model);
    QCOMPARE(model.chain()->integrity(), AuditChain::Broken);
    QVERIFY(model.chain()->text().startsWith(QStringLiteral("The hash chain doesn't verify")));
    QSignalSpy recorded(&model, &AuditModel::recorded);
    model.chain()->acknowledge(QStringLiteral("  \n"));
    QTest::qWait(20);
    QCOMPARE(recorded.size(), 0);
    model.chain()->acknowledge(QStringLiteral(" Disk repair ✓ "));
    QTRY_COMPARE(model.chain()->integrity(), AuditChain::Verified);
    QCOMPARE(recorded.size(), 1);
    QVERIFY(model.chain()->text().contains(QStringLiteral("1 acknowledged break")));
    QTRY_VERIFY(texts(model, AuditModel::Subtitle)
                    .contains(QStringLiteral("Acknowledged break: Disk repair ✓")));
    // Now there is nothing to acknowledge.
    model.chain()->acknowledge(QStringLiteral("again"));
    QTest::qWait(20);
    QCOMPARE(recorded.size(), 1);
    QCOMPARE(records.services.auditLog().entries().size(), std::size_t{3});
}

void AuditModelTests::exportsWhatIsShown() {
    Records records;
    fill(records);
    AuditModel model(records.services);
    load(model);
    search(model, [&] { model.setQuery(QStringLiteral("three")); });
    QSignalSpy notified(&model, &AuditModel::notified);
    QSignalSpy asked(&model, &AuditModel::replacementAsked);
    const QUrl folder = QUrl::fromLocalFile(QString::fromStdString(records.folder.path()));
    const QUrl csv = model.proposedFile(folder);
    QCOMPARE(csv.fileName(), QStringLiteral("korvane-audit-log.csv"));
    model.exportTo(csv, false);
    QTRY_COMPARE(notified.size(), 1);
    QCOMPARE(notified.front().front().toString().left(20), QStringLiteral("1 operation written "));
    const std::string written = records.folder.content("korvane-audit-log.csv");
    QCOMPARE(std::count(written.begin(), written.end(), '\n'), std::ptrdiff_t{3});
    QVERIFY(written.find("unknown-tool") != std::string::npos);

    // What is there is replaced only when the user says so.
    const FileURL json = records.folder.makeFile("log.JSON", "mine");
    const QUrl other = QUrl::fromLocalFile(QString::fromStdString(json.path()));
    model.exportTo(other, false);
    QTRY_COMPARE(asked.size(), 1);
    QCOMPARE(records.folder.content("log.JSON"), std::string("mine"));
    QTRY_VERIFY(asked.size() == 1);
    model.exportTo(other, true);
    QTRY_COMPARE(notified.size(), 2);
    QCOMPARE(parseJson(records.folder.content("log.JSON")).size(), std::size_t{1});

    model.exportTo(
        QUrl::fromLocalFile(QString::fromStdString(records.folder.at("missing/log.csv").path())),
        false);
    QTRY_VERIFY(!model.problem().isEmpty());
    model.dismissProblem();
    model.exportTo(QUrl(QStringLiteral("https://example.org/log.csv")), true);
    QVERIFY(!model.problem().isEmpty());
    QCOMPARE(notified.size(), 2);
}

void AuditModelTests::putsBackAndReadsAnew() {
    Records records;
    fill(records);
    AuditModel model(records.services);
    connect(&model, &AuditModel::recorded, &model, &AuditModel::refresh);
    load(model);
    model.putBack(0);
    model.putBack(1);
    QVERIFY(model.run()->message().isEmpty());
    model.putBack(4);
    QTRY_COMPARE(model.run()->message(), QStringLiteral("Put back 1 item."));
    QVERIFY(records.folder.exists("home/a.iso"));
    QTRY_COMPARE(texts(model, AuditModel::Subtitle).at(1), QStringLiteral("1 item put back"));
    QTRY_VERIFY(!texts(model, AuditModel::CanPutBack).contains(QStringLiteral("true")));
    QCOMPARE(model.index(1, 0).data(AuditModel::SizeText).toString(), QString());
}

void AuditModelTests::drawsWhatWasReclaimed() {
    Records records;
    records.record("downloads", {}, {"/a"}, Date::now().iso8601().c_str(), 700);
    records.record("downloads", {}, {"/b"},
                   Date::fromUnixSeconds(Date::now().unixSeconds() - 40 * 86400).iso8601().c_str(),
                   300);
    AuditModel model(records.services);
    load(model);
    QCOMPARE(model.chart()->bars().size(), 30);
    QCOMPARE(model.chart()->periodText(), QStringLiteral("700\u00a0bytes"));
    QCOMPARE(model.chart()->bars().last().toMap().value("share").toDouble(), 700.0 / 800.0);
    QCOMPARE(model.chart()->ticks().size(), 5);
    QCOMPARE(model.chart()->ticks().last().toMap().value("text").toString(),
             QStringLiteral("800\u00a0bytes"));
    QCOMPARE(model.chart()->ticks().last().toMap().value("share").toDouble(), 1.0);
    model.chart()->setPeriod(1);
    QCOMPARE(model.chart()->bars().size(), 12);
    QCOMPARE(model.chart()->periodText(), QStringLiteral("1\u00a0KB"));
    QCOMPARE(model.chart()->lifetimeText(), QStringLiteral("1\u00a0KB"));
}

void AuditModelTests::holdsALargeLog() {
    Records records;
    records.record("downloads", {}, std::vector<std::string>(100'000, "/home/somebody/a/b/c.txt"));
    // Written as a log older than chaining would be.
    AuditEntry entry;
    entry.timestamp = *Date::fromISO8601("2026-02-01T10:00:00Z");
    entry.scannerID = "cache-cleaner";
    entry.paths = {"/c/one", "/c/two", "/c/three"};
    std::ofstream old(records.folder.at("data/Korvane/Audit/audit-2026-02-01.jsonl").path());
    for (int i = 0; i < 20'000; ++i) {
        entry.operationID = UUID::random();
        old << entry.encodeLine() << '\n';
    }
    old.close();
    AuditModel model(records.services);
    load(model);
    QCOMPARE(model.chain()->integrity(), AuditChain::Verified);
    QCOMPARE(model.rowCount(), 20'003);
    model.setOpen(1, true);
    QCOMPARE(model.rowCount(), 120'003);
    QCOMPARE(model.index(100'001, 0).data(AuditModel::Title).toString(), QStringLiteral("c.txt"));
    search(model, [&] { model.setQuery(QStringLiteral("somebody")); });
    QCOMPARE(model.rowCount(), 100'002);
    model.setOpen(1, false);
    QCOMPARE(model.rowCount(), 2);
}

} // namespace korvane

QTEST_GUILESS_MAIN(korvane::AuditModelTests)
#include "AuditModelTests.moc"
