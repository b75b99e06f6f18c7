#include "Korvane/window/restore/RestoreModel.h"
#include "tests/window/RecordsFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace korvane {

using testing::Records;
using testing::texts;

class RestoreModelTests : public QObject {
    Q_OBJECT

  private slots:
    void saysThatNothingIsLeft();
    void listsWhatIsStillInTheBinAndUnfolds();
    void putsRealFilesBackAndSaysWhatFailed();
    void putsOneItemBack();

  private:
    static void load(RestoreModel& model) {
        QSignalSpy shown(&model, &RestoreModel::shown);
        model.refresh();
        QTRY_VERIFY(!shown.isEmpty());
    }
    static QString title(const RestoreModel& model, int row) {
        return model.index(row, 0).data(RestoreModel::Title).toString();
    }
};

void RestoreModelTests::saysThatNothingIsLeft() {
    Records records;
    records.record("downloads", {{"/nowhere/a", "/nowhere/b"}});
    RestoreModel model(records.services);
    QCOMPARE(model.state(), RestoreModel::Checking);
    load(model);
    QCOMPARE(model.state(), RestoreModel::Empty);
    QCOMPARE(model.rowCount(), 0);
}

void RestoreModelTests::listsWhatIsStillInTheBinAndUnfolds() {
    Records records;
    records.record("downloads", {records.inBin("a.txt"), {"/x/gone", "/nowhere"}});
    records.record("large-files", {records.inBin("b.iso")}, {}, "2026-03-02T10:00:00Z", 2'000'000);
    RestoreModel model(records.services);
    const QAbstractItemModelTester contract(&model,
                                            QAbstractItemModelTester::FailureReportingMode::QtTest);
    load(model);
    QCOMPARE(texts(model, RestoreModel::Title), (QStringList{"Large Files", "Downloads"}));
    QCOMPARE(texts(model, RestoreModel::CountText),
             (QStringList{"1 can be restored", "1 can be restored"}));
    // What is left of the second is part of a sum only.
    QCOMPARE(texts(model, RestoreModel::SizeText), (QStringList{"2\u00a0MB", ""}));
    QCOMPARE(model.summary(), QStringLiteral("2 can be restored"));

    model.setOpen(1, true);
    model.setOpen(1, true);
    QCOMPARE(texts(model, RestoreModel::Title),
             (QStringList{"Large Files", "Downloads", "a.txt", "gone"}));
    QCOMPARE(texts(model, RestoreModel::Restorable),
             (QStringList{"true", "true", "true", "false"}));
    QCOMPARE(model.index(2, 0).data(RestoreModel::Path).toString(), QStringLiteral("~/a.txt"));
    model.setOpen(0, true);
    load(model);
    QCOMPARE(texts(model, RestoreModel::Title),
             (QStringList{"Large Files", "b.iso", "Downloads", "a.txt", "gone"}));
    model.setOpen(0, false);
    model.setOpen(0, false);
    model.setOpen(1, false);
    model.setOpen(7, true);
    QCOMPARE(model.rowCount(), 2);
}

void RestoreModelTests::putsRealFilesBackAndSaysWhatFailed() {
    Records records;
    const RestorableItem back = records.inBin("Photos/a.txt");
    const RestorableItem gone = records.inBin("Photos/b.txt");
    const RestorableItem stuck = records.inBin("c.txt");
    records.record("downloads", {back, gone, stuck});
    RestoreModel model(records.services);
    const QAbstractItemModelTester contract(&model,
                                            QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QAbstractItemModelTester failures(model.run(),
                                            QAbstractItemModelTester::FailureReportingMode::QtTest);
    connect(&model, &RestoreModel::restored, &model, &RestoreModel::refresh);
    load(model);
    records.files.removeItem(FileURL(gone.trashed));
    records.files.failAt(FileURL(stuck.trashed), EACCES);

    QSignalSpy restored(&model, &RestoreModel::restored);
    QSignalSpy shown(&model, &RestoreModel::shown);
    model.restore(0);
    QVERIFY(model.run()->isRunning());
    QCOMPARE(model.run()->message(), QStringLiteral("Putting back 3 items…"));
    model.restore(0);
    QTRY_COMPARE(restored.size(), 1);
    QTRY_COMPARE(shown.size(), 1);
    QVERIFY(!model.run()->isRunning());
    QVERIFY(records.folder.exists("home/Photos/a.txt"));
    QCOMPARE(model.run()->message(), QStringLiteral("Put back 1 item. 2 could not be restored."));
    QCOMPARE(texts(*model.run(), RestoreRun::Path), (QStringList{"~/Photos/b.txt", "~/c.txt"}));
    const QStringList problems = texts(*model.run(), RestoreRun::Problem);
    QCOMPARE(problems.front(), QStringLiteral("No longer in the Bin"));
    QVERIFY(!problems.back().isEmpty());
    // The stuck one is still there, and the list says so by itself.
    QCOMPARE(texts(model, RestoreModel::CountText), QStringList{"1 can be restored"});
    model.run()->dismiss();
    QVERIFY(model.run()->message().isEmpty());
    QCOMPARE(model.run()->rowCount(), 0);
}

void RestoreModelTests::putsOneItemBack() {
    Records records;
    records.record("downloads", {records.inBin("a.txt"), records.inBin("b.txt")});
    records.folder.makeFile("home/b.txt", "newer");
    RestoreModel model(records.services);
    connect(&model, &RestoreModel::restored, &model, &RestoreModel::refresh);
    load(model);
    model.setOpen(0, true);
    QCOMPARE(title(model, 2), QStringLiteral("b.txt"));
    QSignalSpy shown(&model, &RestoreModel::shown);
    model.restore(2);
    QTRY_COMPARE(shown.size(), 1);
    QCOMPARE(records.folder.content("home/b.txt"), std::string("newer"));
    QVERIFY(records.folder.exists("home/b (restored).txt"));
    QVERIFY(!records.folder.exists("home/a.txt"));
    QCOMPARE(model.run()->message(), QStringLiteral("Put back 1 item."));
    QCOMPARE(texts(model, RestoreModel::Restorable), (QStringList{"true", "true", "false"}));
    const std::vector<AuditEntry> log = records.services.auditLog().entries();
    QCOMPARE(log.size(), std::size_t{2});
    QCOMPARE(log.front().scannerID, std::string("restore"));

    // The rest of it, without a word on what has come back already.
    model.restore(0);
    QTRY_VERIFY(records.folder.exists("home/a.txt"));
    QTRY_COMPARE(model.run()->message(), QStringLiteral("Put back 1 item."));
    QVERIFY(!model.run()->hasFailed());
}

} // namespace korvane

QTEST_GUILESS_MAIN(korvane::RestoreModelTests)
#include "RestoreModelTests.moc"
