#include "Korvane/updater/UpdateSentences.h"
#include "Korvane/window/update/UpdateModel.h"
#include "tests/support/TemporaryFolder.h"

#include <QSignalSpy>
#include <QTest>

namespace korvane {

using testing::TemporaryFolder;

class UpdateModelTests : public QObject {
    Q_OBJECT

    /// A feed that nobody serves: the first port of this computer is never listened on.
    static UpdateModel::Configure unreachable(const TemporaryFolder& folder) {
        return [temporary = folder.url()] {
            UpdaterConfiguration configuration;
            configuration.feedURL = "https://127.0.0.1:1/korvane/appcast.json";
            configuration.runningVersion = "1.2.3";
            configuration.temporary = temporary;
            configuration.downloads = temporary;
            return configuration;
        };
    }

  private slots:
    void showsAFailedCheckThatTheUserAskedFor() {
        const TemporaryFolder folder;
        UpdateModel model(unreachable(folder));
        QTRY_COMPARE(model.version(), QStringLiteral("1.2.3"));
        QVERIFY(!model.isShown());
        QCOMPARE(model.phase(), UpdateModel::Idle);

        std::vector<UpdateModel::Phase> phases;
        connect(&model, &UpdateModel::changed, this, [&] {
            if (phases.empty() || phases.back() != model.phase()) {
                phases.push_back(model.phase());
            }
        });
        model.check();
        QTRY_COMPARE(model.phase(), UpdateModel::Failed);
        QCOMPARE(phases, (std::vector{UpdateModel::Checking, UpdateModel::Failed}));
        QVERIFY(model.isShown());
        QVERIFY(!model.isWorking());
        QCOMPARE(model.detail(), QString::fromStdString(UpdateSentences::unreachable("127.0.0.1")));

        QTest::qWait(0);
        model.dismiss();
        QTRY_COMPARE(model.phase(), UpdateModel::Idle);
        QVERIFY(!model.isShown());
        // And once more, from the beginning.
        model.check();
        QTRY_COMPARE(model.phase(), UpdateModel::Failed);
    }

    void isSilentAboutACheckThatNobodyAskedFor() {
        const TemporaryFolder folder;
        UpdateModel model(unreachable(folder));
        bool wasShown = false;
        connect(&model, &UpdateModel::changed, this, [&] { wasShown |= model.isShown(); });
        model.check(false);
        QTRY_COMPARE(model.phase(), UpdateModel::Failed);
        QVERIFY(!wasShown);
        // The same when the user asks afterwards is shown.
        model.check(true);
        QTRY_VERIFY(wasShown && model.phase() == UpdateModel::Failed);
    }

    void endsQuietlyWhenItIsCancelledOrGone() {
        const TemporaryFolder folder;
        UpdateModel model(unreachable(folder));
        const QSignalSpy quit(&model, &UpdateModel::quitRequested);
        QTRY_COMPARE(model.version(), QStringLiteral("1.2.3"));
        bool failureWasShown = false;
        connect(&model, &UpdateModel::changed, this, [&] {
            if (model.phase() == UpdateModel::Checking) {
                model.cancel();
            }
            failureWasShown |= model.phase() == UpdateModel::Failed && model.isShown();
        });
        model.check();
        QTRY_VERIFY(model.phase() == UpdateModel::Idle && !model.isShown());
        QVERIFY(!failureWasShown);
        model.install(); // there is nothing to install
        QCOMPARE(model.phase(), UpdateModel::Idle);
        QCOMPARE(quit.count(), 0);
        model.check(); // under way when the model goes
    }
};

} // namespace korvane

QTEST_GUILESS_MAIN(korvane::UpdateModelTests)
#include "UpdateModelTests.moc"
