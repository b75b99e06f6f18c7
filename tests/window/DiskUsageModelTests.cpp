#include "Korvane/window/usage/DiskUsageModel.h"
#include "Korvane/window/usage/TreemapItem.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractItemModelTester>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

namespace korvane {

using State = DiskUsageModel::State;

/// The model over real files, and the treemap over the model.
class DiskUsageModelTests : public QObject {
    Q_OBJECT

  public:
    static void initMain() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
    }

  private slots:
    void init() {
        folder_.emplace();
        folder_->makeFileOfSize("home/big/inner/film.mkv", 400'000);
        folder_->makeFileOfSize("home/big/song.mp3", 100'000);
        folder_->makeFileOfSize("home/small/x", 50'000);
        folder_->makeFileOfSize("home/archive.zip", 200'000);
        folder_->makeFile("home/bad\xff name\n", "");
        const FileURL home = folder_->at("home");
        services_.emplace(UserFolders{home, folder_->at("home/data"), folder_->at("home/config"),
                                      folder_->at("tmp")});
        model_ = std::make_unique<DiskUsageModel>(*services_);
        tester_ = std::make_unique<QAbstractItemModelTester>(
            model_.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }

    void cleanup() {
        tester_.reset();
        model_.reset();
        services_.reset();
        folder_.reset();
    }

    void showsTheEntriesLargestFirst() {
        QCOMPARE(model_->state(), State::Idle);
        model_->openHome();
        QCOMPARE(model_->state(), State::Measuring);
        QCOMPARE(model_->message(), QStringLiteral("Measuring ~…"));
        QCOMPARE(model_->crumbs(), QStringList{QStringLiteral("Home")});
        QTRY_COMPARE(model_->state(), State::Shown);
        QCOMPARE(names(), (QStringList{"big", "archive.zip", "small", "bad\\xFF name\\n"}));
        QCOMPARE(value(0, DiskUsageModel::Bar).toDouble(), 1.0);
        QVERIFY(value(1, DiskUsageModel::Bar).toDouble() < 0.5);
        QCOMPARE(value(3, DiskUsageModel::ShareText).toString(), QStringLiteral("0.0 %"));
        QVERIFY(value(0, DiskUsageModel::Spoken).toString().startsWith("big, folder, "));
        QVERIFY(model_->summary().startsWith("4 entries, "));
        const QVariantList legend = model_->legend();
        QCOMPARE(legend.size(), 2); // what takes nothing is not in it
        QCOMPARE(legend[0].toMap()["title"].toString(), QStringLiteral("Folders"));
        QCOMPARE(legend[1].toMap()["title"].toString(), QStringLiteral("Archives"));
        const QVariantMap big = model_->entry(0);
        QCOMPARE(big["path"].toString(), QStringLiteral("~/big"));
        QVERIFY(big["figures"].toString().endsWith("2 items inside"));
        QVERIFY(model_->entry(4).isEmpty());
        QVERIFY(model_->entry(-1).isEmpty());
    }

    void goesDownAndUpTheCrumbs() {
        openHome();
        model_->enter(1); // a file
        QCOMPARE(model_->state(), State::Shown);
        enter("big");
        enter("inner");
        QCOMPARE(model_->crumbs(), (QStringList{"Home", "big", "inner"}));
        QCOMPARE(names(), QStringList{"film.mkv"});
        model_->goTo(2); // where it is
        QCOMPARE(model_->state(), State::Shown);
        model_->goUp();
        model_->goUp(); // before the first has come
        QTRY_COMPARE(model_->state(), State::Shown);
        QCOMPARE(model_->crumbs(), QStringList{"Home"});
        QCOMPARE(names().front(), QStringLiteral("big"));
        QVERIFY(!model_->canGoUp());
        model_->goUp();
        model_->openFolder(
            QUrl::fromLocalFile(QString::fromStdString(folder_->path()) + "/home/small/"));
        QTRY_COMPARE(names(), QStringList{"x"});
        QCOMPARE(model_->crumbs(), QStringList{"small"});
    }

    void measuresAnewOnlyWhenAsked() {
        openHome();
        enter("small");
        folder_->makeFileOfSize("home/small/y", 900'000);
        model_->goUp();
        QTRY_COMPARE(model_->state(), State::Shown);
        QCOMPARE(names().front(), QStringLiteral("big"));
        enter("small");
        QCOMPARE(names(), QStringList{"x"});
        model_->refresh();
        QTRY_COMPARE(names(), (QStringList{"y", "x"}));
        QCOMPARE(model_->crumbs(), (QStringList{"Home", "small"}));
        model_->goUp();
        QTRY_COMPARE(model_->state(), State::Shown);
        QCOMPARE(names().front(), QStringLiteral("small"));
    }

    void saysWhyThereIsNothingToShow() {
        QSignalSpy notes(model_.get(), &DiskUsageModel::notified);
        model_->openFolder(QUrl("https://example.org/x"));
        QCOMPARE(notes.count(), 1);
        QCOMPARE(model_->state(), State::Idle);
        model_->openFolder(QUrl::fromLocalFile(QString::fromStdString(folder_->at("none").path())));
        QTRY_COMPARE(model_->state(), State::Failed);
        QVERIFY2(model_->message().contains("none"), qPrintable(model_->message()));
        QCOMPARE(model_->crumbs(), QStringList{"none"});
        folder_->makeFile("none/now");
        model_->goTo(0);
        QTRY_COMPARE(names(), QStringList{"now"});
    }

    void theTreemapFollowsTheModel() {
        TreemapItem map;
        map.setSize({600, 400});
        map.setModel(model_.get());
        map.updatePolish();
        QVERIFY(map.area(0).isEmpty());
        map.move(1, 0);
        QCOMPARE(map.current(), -1);
        openHome();
        map.updatePolish();
        double covered = 0;
        for (int row = 0; row < model_->rowCount(); ++row) {
            const QRectF area = map.area(row);
            covered += area.width() * area.height();
            QVERIFY(area.isEmpty() || QRectF(0, 0, 600, 400).contains(area));
            for (int other = 0; other < row; ++other) {
                QVERIFY(!area.intersects(map.area(other)));
            }
        }
        QCOMPARE(covered, 600.0 * 400.0);
        QVERIFY(map.area(3).isEmpty()); // takes nothing
        map.move(1, 0);
        QCOMPARE(map.current(), 0);
        map.move(1, 0); // big is the column at the left
        QCOMPARE(map.current(), 1);
        map.move(-1, 0);
        QCOMPARE(map.current(), 0);
        map.move(-1, 0); // the edge
        QCOMPARE(map.current(), 0);
        map.setHovered(1);
        map.move(0, 1);
        QCOMPARE(map.hovered(), -1);
        map.setHovered(1);
        model_->enter(0);
        QCOMPARE(map.current(), -1);
        QCOMPARE(map.hovered(), -1);
        QVERIFY(map.area(0).isEmpty());
    }

    /// The picture has each entry's colour in its area, and letters that can be read on it.
    void theTreemapPaintsKinds() {
        folder_->makeFileOfSize("home/big/inner/x.zip", 400'000);
        model_->openFolder(
            QUrl::fromLocalFile(QString::fromStdString(folder_->at("home/big/inner").path())));
        QTRY_COMPARE(model_->rowCount(), 2);
        TreemapItem map;
        map.setSize({400, 300});
        map.setModel(model_.get());
        QVariantList colours;
        for (int kind = 0; kind < 9; ++kind) {
            colours.append(QColor(10 + 20 * kind, 60, 60));
        }
        map.setColours(colours);
        map.updatePolish();
        QImage picture(400, 300, QImage::Format_RGB32);
        QPainter painter(&picture);
        map.paint(&painter);
        painter.end();
        for (int row = 0; row < 2; ++row) {
            const QPoint corner = map.area(row).bottomRight().toPoint() - QPoint(12, 12);
            QCOMPARE(picture.pixelColor(corner),
                     colours[value(row, DiskUsageModel::Kind).toInt()].value<QColor>());
        }
        QVERIFY(value(0, DiskUsageModel::Kind) != value(1, DiskUsageModel::Kind));
    }

  private:
    [[nodiscard]] QVariant value(int row, int role) const {
        return model_->data(model_->index(row), role);
    }
    [[nodiscard]] QStringList names() const {
        QStringList all;
        for (int row = 0; row < model_->rowCount(); ++row) {
            all.append(value(row, DiskUsageModel::Name).toString());
        }
        return all;
    }
    void openHome() {
        model_->openHome();
        QTRY_COMPARE(model_->state(), State::Shown);
    }
    void enter(const QString& name) {
        model_->enter(static_cast<int>(names().indexOf(name)));
        QTRY_COMPARE(model_->state(), State::Shown);
        QCOMPARE(model_->crumbs().back(), name);
    }

    std::optional<testing::TemporaryFolder> folder_;
    std::optional<Services> services_;
    std::unique_ptr<DiskUsageModel> model_;
    std::unique_ptr<QAbstractItemModelTester> tester_;
};

} // namespace korvane

QTEST_MAIN(korvane::DiskUsageModelTests)
#include "DiskUsageModelTests.moc"
