#include "Korvane/window/home/DashboardModel.h"
#include "Korvane/window/settings/CustomRulesModel.h"
#include "Korvane/window/settings/SettingsModel.h"
#include "KorvaneCore/audit/AuditLog.h"
#include "KorvaneCore/scanners/LinuxRulePreset.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractItemModelTester>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

namespace korvane {

using testing::TemporaryFolder;

class SettingsModelTests : public QObject {
    Q_OBJECT

    struct Fixture {
        TemporaryFolder folder;
        Services services{UserFolders{.home = folder.makeFolder("home"),
                                      .applicationSupport = folder.at("home/.local/share"),
                                      .configuration = folder.at("home/.config"),
                                      .temporary = folder.at("tmp")}};
        Fixture() {
            // The programs' own settings, too, stay in the folder; and no secret leaves it.
            qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(folder.at("qt").path()));
            qunsetenv("DBUS_SESSION_BUS_ADDRESS");
            QCoreApplication::setOrganizationName(QStringLiteral("Korvane"));
            QCoreApplication::setApplicationName(QStringLiteral("Settings Tests"));
            QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                               QString::fromStdString(folder.at("qt").path()));
        }
    };

  private slots:
    void keepsTheDeletionMode() {
        Fixture fixture;
        SettingsModel model(fixture.services);
        QSignalSpy answered(&model, &SettingsModel::deletionChanged);
        QVERIFY(answered.wait());
        QVERIFY(!model.deletesPermanently());
        QVERIFY(model.deletionConsequence().startsWith(QStringLiteral("They stay on your disk")));
        model.setDeletesPermanently(true);
        QTRY_VERIFY(model.deletesPermanently());
        QCOMPARE(model.deletionConsequence(), QStringLiteral("This cannot be undone."));
        QCOMPARE(DeletionPreference::current(fixture.services.defaults()), DeletionMode::permanent);
        QVERIFY(model.deletionFailure().isEmpty());
    }

    void staysAtTheBinWhenTheChoiceCannotBeKept() {
        Fixture fixture;
        fixture.folder.makeFolder("home/.config/Korvane/defaults.json/in the way");
        SettingsModel model(fixture.services);
        model.setDeletesPermanently(true);
        QTRY_VERIFY(!model.deletionFailure().isEmpty());
        QVERIFY(!model.deletesPermanently());
    }

    void remembersTheWindowsOwnSettings() {
        Fixture fixture;
        {
            SettingsModel model(fixture.services);
            QVERIFY(!model.usesGraphicsCard());
            QVERIFY(model.notifies());
            model.setUsesGraphicsCard(true);
            model.setNotifies(false);
            QVERIFY(model.needsRestart());
        }
        QCOMPARE(QSettings().value(QStringLiteral("window/renderer")), QStringLiteral("gpu"));
        SettingsModel model(fixture.services);
        QVERIFY(model.usesGraphicsCard());
        QVERIFY(!model.needsRestart());
        QVERIFY(!model.notifies());
        model.setUsesGraphicsCard(false);
        QCOMPARE(QSettings().value(QStringLiteral("window/renderer")), QStringLiteral("software"));
    }

    void addsAndRemovesRules() {
        Fixture fixture;
        CustomRulesModel model(fixture.services);
        const QAbstractItemModelTester contract(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QSignalSpy added(&model, &CustomRulesModel::added);
        QTRY_VERIFY(model.isLoaded());
        for (const char* path : {"", "relative", "~/a/../b", "~/a/**"}) {
            model.add({}, QString::fromLatin1(path), 0, {}, 0, false);
            QVERIFY2(!model.problem().isEmpty(), path);
        }
        model.add({}, QStringLiteral(" ~/cache/* "), 2, QStringLiteral("made again"), 30, true);
        QTRY_COMPARE(model.count(), 1);
        QCOMPARE(added.count(), 1);
        QVERIFY(model.problem().isEmpty());
        const std::vector<CustomRule> kept = fixture.services.customRules().load();
        QCOMPARE(kept.size(), 1U);
        QCOMPARE(kept[0].path, std::string("~/cache/*"));
        QCOMPARE(kept[0].note, std::string("made again"));
        QCOMPARE(kept[0].risk, HeuristicRisk::high);
        QCOMPARE(kept[0].minimumAgeDays, 30);
        QVERIFY(kept[0].enumerateChildren);
        QTRY_VERIFY(!model.isBusy());

        model.addPreset();
        const int all = 1 + static_cast<int>(linuxRulePreset().size());
        QTRY_COMPARE(model.count(), all);
        QTRY_VERIFY(!model.isBusy());
        model.addPreset();
        QTRY_VERIFY(!model.isBusy());
        QCOMPARE(model.count(), all);
        model.remove(model.data(model.index(0), CustomRulesModel::RuleID).toString());
        QTRY_COMPARE(model.count(), all - 1);
    }

    void leavesARulesFileThatDoesNotDecodeAlone() {
        Fixture fixture;
        const std::string file = "home/.local/share/Korvane/custom-rules.json";
        fixture.folder.makeFile(file, "[{\"id\":");
        CustomRulesModel model(fixture.services);
        QTRY_VERIFY(model.isLoaded());
        QVERIFY(!model.failure().isEmpty());
        model.add({}, QStringLiteral("~/a"), 0, {}, 0, false);
        QTRY_VERIFY(!model.isBusy());
        QVERIFY(!model.failure().isEmpty());
        QCOMPARE(model.count(), 0);
        QCOMPARE(fixture.folder.content(file), std::string("[{\"id\":"));
    }

    void sumsUpDisksScansAndTheLog() {
        Fixture fixture;
        DashboardModel model(fixture.services);
        QTRY_VERIFY(model.isLoaded());
        QVERIFY(model.isFirstTime());
        QVERIFY(!model.disks().isEmpty());
        QVERIFY(model.usedShare() > 0 && model.usedShare() <= 1);
        QVERIFY(!model.freeText().isEmpty());
        QCOMPARE(model.chain(), DashboardModel::Unattested);
        QCOMPARE(model.chainText(), QStringLiteral("No operations logged yet"));

        fixture.services.auditLog().record("cache-cleaner", {"/a"}, 0, 2'000'000, UUID::random(),
                                           {}, Date::now());
        fixture.services.scanCache().save({.scannerID = "downloads",
                                           .startedAt = Date::now(),
                                           .finishedAt = Date::now(),
                                           .items = {{.url = FileURL("/a"), .sizeBytes = 5}}});
        model.refresh();
        model.refresh(); // while the first one reads
        QTRY_COMPARE(model.operationsText(), QStringLiteral("1"));
        QTRY_COMPARE(model.scans().size(), 1);
        QVERIFY(!model.isFirstTime());
        QCOMPARE(model.chain(), DashboardModel::Sound);
        QCOMPARE(model.chainText(), QStringLiteral("1 operations verified"));
        QVERIFY(model.reclaimedText().startsWith(QStringLiteral("2")));
        const QVariantMap scan = model.scans().constFirst().toMap();
        QCOMPARE(scan[QStringLiteral("toolID")], QStringLiteral("downloads"));
        QCOMPARE(scan[QStringLiteral("name")], QStringLiteral("Downloads"));
        QVERIFY(scan[QStringLiteral("found")].toString().endsWith(QStringLiteral("in 1 item")));
    }
};

} // namespace korvane

QTEST_GUILESS_MAIN(korvane::SettingsModelTests)
#include "SettingsModelTests.moc"
