#include "Korvane/window/protection/ProtectedPathsModel.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

namespace korvane {

using testing::TemporaryFolder;

/// The list over a real store in a throw-away home.
class ProtectedPathsModelTests : public QObject {
    Q_OBJECT

    struct Fixture {
        TemporaryFolder folder;
        Services services{UserFolders{.home = folder.makeFolder("home"),
                                      .applicationSupport = folder.at("home/.local/share"),
                                      .configuration = folder.at("home/.config"),
                                      .temporary = folder.at("tmp")}};
    };

    static QVariant value(const ProtectedPathsModel& model, int row, int role) {
        return model.data(model.index(row), role);
    }
    static void settle(const ProtectedPathsModel& model) {
        QTRY_VERIFY(model.isLoaded() && !model.isBusy());
    }

  private slots:
    void addsMarksRemovesAndUndoes() {
        Fixture fixture;
        fixture.folder.makeFolder("home/Pictures");
        ProtectedPathsModel model(fixture.services);
        const QAbstractItemModelTester contract(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QSignalSpy changed(&model, &ProtectedPathsModel::changed);
        settle(model);
        QCOMPARE(model.count(), 0);

        model.add(QStringLiteral(" ~/Pictures "), QStringLiteral("mine"));
        settle(model);
        const QString odd = QString::fromStdString(fixture.folder.at("home/gone\n").path());
        model.addURLs({QUrl::fromLocalFile(odd)}, {});
        settle(model);
        QCOMPARE(model.count(), 2);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(value(model, 0, ProtectedPathsModel::PathText), QStringLiteral("~/Pictures"));
        QCOMPARE(value(model, 0, ProtectedPathsModel::Note), QStringLiteral("mine"));
        QCOMPARE(value(model, 0, ProtectedPathsModel::IsMissing), false);
        QCOMPARE(value(model, 0, ProtectedPathsModel::IconName), QStringLiteral("folder"));
        QCOMPARE(value(model, 1, ProtectedPathsModel::PathText).toString(),
                 QStringLiteral("~/gone\\n"));
        QCOMPARE(value(model, 1, ProtectedPathsModel::IsMissing), true);
        const FileURL inside = fixture.folder.at("home/Pictures/a/b");
        QVERIFY(fixture.services.exclusions().isExcluded(inside));

        const QVariant id = value(model, 0, ProtectedPathsModel::ExclusionID);
        model.remove(0);
        settle(model);
        QCOMPARE(model.count(), 1);
        QVERIFY(model.removal().contains(QStringLiteral("~/Pictures")));
        QVERIFY(!fixture.services.exclusions().isExcluded(inside));
        model.add(QStringLiteral("a slip"), {}); // takes the way back from nobody
        settle(model);
        QVERIFY(!model.problem().isEmpty());
        model.undoRemoval();
        settle(model);
        QVERIFY(model.removal().isEmpty());
        QCOMPARE(value(model, 1, ProtectedPathsModel::ExclusionID), id);
        QCOMPARE(value(model, 1, ProtectedPathsModel::Note), QStringLiteral("mine"));
        QVERIFY(fixture.services.exclusions().isExcluded(inside));
        QCOMPARE(changed.count(), 4);
    }

    void refusesWhatWouldProtectNothing() {
        Fixture fixture;
        ProtectedPathsModel model(fixture.services);
        const QSignalSpy added(&model, &ProtectedPathsModel::added);
        settle(model);
        for (const char* path : {"", "Pictures", "~someone", "/", "/usr/..", "//"}) {
            model.add(QString::fromLatin1(path), {});
            settle(model);
            QVERIFY2(!model.problem().isEmpty(), path);
            QVERIFY(model.failure().isEmpty());
        }
        model.addURLs({QUrl(QStringLiteral("https://example.org/a"))}, {});
        settle(model);
        QVERIFY(!model.problem().isEmpty());
        QCOMPARE(model.count(), 0);
        QCOMPARE(added.count(), 0);

        model.add(QStringLiteral("~/a"), {});
        settle(model);
        QVERIFY(model.problem().isEmpty());
        model.add(QStringLiteral("~/A/../a"), {});
        settle(model);
        QVERIFY(!model.problem().isEmpty());
        QCOMPARE(model.count(), 1);
        QCOMPARE(added.count(), 1);
    }

    void showsAFailureAndTheUnchangedList() {
        Fixture fixture;
        ProtectedPathsModel model(fixture.services);
        settle(model);
        model.add(QStringLiteral("~/kept"), {});
        settle(model);
        QCOMPARE(model.count(), 1);
        const std::string file = fixture.services.exclusions().fileURL().path();
        QVERIFY(QFile::remove(QString::fromStdString(file)));
        fixture.folder.makeFolder("home/.local/share/Korvane/exclusions.json/in the way");

        const QSignalSpy changed(&model, &ProtectedPathsModel::changed);
        model.add(QStringLiteral("~/new"), {});
        settle(model);
        QVERIFY(!model.failure().isEmpty());
        QCOMPARE(model.failureTitle(), QStringLiteral("Couldn't update your protected paths"));
        QCOMPARE(model.count(), 1);
        model.dismissAnswer();
        QVERIFY(model.failure().isEmpty());
        model.remove(0);
        settle(model);
        QVERIFY(!model.failure().isEmpty());
        QVERIFY(model.removal().isEmpty());
        QCOMPARE(model.count(), 1);
        QCOMPARE(value(model, 0, ProtectedPathsModel::PathText), QStringLiteral("~/kept"));
        QCOMPARE(changed.count(), 0);
    }

    void seesWhatOthersChange() {
        Fixture fixture;
        ProtectedPathsModel model(fixture.services);
        settle(model);
        fixture.services.exclusions().add({.path = "/elsewhere", .note = {}});
        model.refresh();
        model.refresh(); // while the first one reads
        QTRY_COMPARE(model.count(), 1);
        QCOMPARE(value(model, 0, ProtectedPathsModel::PathText), QStringLiteral("/elsewhere"));
    }
};

} // namespace korvane

QTEST_GUILESS_MAIN(korvane::ProtectedPathsModelTests)
#include "ProtectedPathsModelTests.moc"
