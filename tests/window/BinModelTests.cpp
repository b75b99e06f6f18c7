#include "Korvane/window/bin/BinModel.h"
#include "Korvane/window/tool/ToolModel.h"
#include "Korvane/window/uninstaller/ApplicationsModel.h"
#include "tests/support/FakeSoftwareInventory.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

namespace korvane {

using State = BinModel::State;

/// Both Bins of a home folder, with real files. What mounted disks have is not looked at.
class BinModelTests : public QObject {
    Q_OBJECT

  private slots:
    void init() {
        folder_.emplace();
        services_.emplace(UserFolders{folder_->at("home"), folder_->at("home/data"),
                                      folder_->at("home/config"), folder_->at("tmp")});
        model_ = std::make_unique<BinModel>(*services_);
        tester_ = std::make_unique<QAbstractItemModelTester>(
            model_.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }

    void cleanup() {
        tester_.reset();
        model_.reset();
        services_.reset();
        folder_.reset();
    }

    void listsWhatHoldsAnything() {
        folder_->makeFolder(trash_);
        read();
        QCOMPARE(ours().size(), 0U);
        folder_->makeFile(trash_ + "/nothing", ""); // has no size, and could be emptied
        folder_->makeFileOfSize("home/.Trash/letter", 30'000);
        read();
        QCOMPARE(ours().size(), 2U);
        QCOMPARE(value(ours()[0], BinModel::Path), QStringLiteral("~/.Trash"));
        QCOMPARE(value(ours()[0], BinModel::Title), QStringLiteral("Home folder"));
        QCOMPARE(value(ours()[1], BinModel::CountText), QStringLiteral("1 item"));
        QCOMPARE(value(ours()[1], BinModel::Note), QString());
    }

    void emptiesOneAndKeepsWhatIsProtected() {
        folder_->makeFileOfSize(trash_ + "/kept/deep/x", 50'000);
        folder_->makeFileOfSize(trash_ + "/goes", 90'000);
        folder_->makeFileOfSize("home/.Trash/other", 10'000);
        services_->exclusions().add(
            {UUID::random(), folder_->at(trash_ + "/kept/deep/x").path(), ""});
        read();
        const int row = rowOf("~/data/Trash/files");
        QVERIFY(value(row, BinModel::Note).contains("stays"));
        const QVariantMap question = model_->prepare(row);
        QVERIFY(question["title"].toString().contains("home folder"));
        QVERIFY(question["text"].toString().startsWith(
            "~/data/Trash/files, 2 items. What is in this Bin will be deleted permanently ("));
        QVERIFY(question["text"].toString().endsWith("This cannot be undone."));
        QVERIFY(!question["kept"].toString().isEmpty());
        QSignalSpy emptied(model_.get(), &BinModel::emptied);
        empty();
        QCOMPARE(emptied.count(), 1);
        QVERIFY(folder_->exists(trash_ + "/kept/deep/x"));
        QVERIFY(!folder_->exists(trash_ + "/goes"));
        QVERIFY(folder_->exists("home/.Trash/other"));
        QVERIFY2(model_->outcomeText().startsWith("Freed "), qPrintable(model_->outcomeText()));
        QVERIFY(model_->outcomeText() != "Freed nothing.");
        QCOMPARE(model_->outcome()->rowCount(), 0);
        QCOMPARE(model_->auditFailure(), QString());
        QCOMPARE(value(rowOf("~/data/Trash/files"), BinModel::CountText), QStringLiteral("1 item"));
        QCOMPARE(services_->auditLog().entries().size(), 1U);
        model_->dismissOutcome();
        QVERIFY(!model_->hasOutcome());
    }

    void leavesABinIntoWhichSomethingCameUnseen() {
        folder_->makeFileOfSize(trash_ + "/seen", 20'000);
        folder_->makeFileOfSize("home/.Trash/letter", 10'000);
        read();
        QVERIFY(!model_->prepare(rowOf("~/data/Trash/files")).isEmpty());
        folder_->makeFileOfSize(trash_ + "/unseen", 20'000);
        empty();
        QVERIFY(folder_->exists(trash_ + "/seen"));
        QVERIFY(folder_->exists(trash_ + "/unseen"));
        QCOMPARE(model_->outcomeText(), QStringLiteral("Freed nothing."));
        QCOMPARE(model_->outcome()->rowCount(), 1);
        // What went meanwhile is no reason to stop, and is nothing that was freed.
        QVERIFY(!model_->prepare(rowOf("~/data/Trash/files")).isEmpty());
        QFile::remove(QString::fromStdString(folder_->at(trash_ + "/unseen").path()));
        const std::int64_t there = binItem(folder_->at(trash_), *services_).sizeBytes;
        empty();
        QVERIFY(!folder_->exists(trash_ + "/seen"));
        QCOMPARE(totalBytes(model_->outcome()->result().succeeded), there);
        QVERIFY(folder_->exists("home/.Trash/letter"));
    }

    /// Wherever the stop comes: what is said to be freed and what is left are what there was.
    void tellsWhatAStoppedEmptyingFreed() {
        for (int file = 0; file < 3000; ++file) {
            folder_->makeFileOfSize(trash_ + "/" + std::to_string(file), 4096);
        }
        read();
        QDir bin(QString::fromStdString(folder_->at(trash_).path()));
        const auto left = [&] { return binItem(folder_->at(trash_), *services_).sizeBytes; };
        const std::int64_t before = left();
        QVERIFY(!model_->prepare(rowOf("~/data/Trash/files")).isEmpty());
        QSignalSpy emptied(model_.get(), &BinModel::emptied);
        model_->confirm();
        while (bin.count() > 2900) {
            QThread::yieldCurrentThread();
            bin.refresh();
        }
        model_->stop();
        QTRY_COMPARE(emptied.count(), 1);
        QVERIFY(model_->outcomeText().startsWith("Stopped. Freed "));
        QCOMPARE(totalBytes(model_->outcome()->result().succeeded) + left(), before);
    }

    void doesNothingUnasked() {
        folder_->makeFileOfSize(trash_ + "/seen", 20'000);
        read();
        model_->confirm();
        QVERIFY(model_->prepare(model_->rowCount()).isEmpty());
        QVERIFY(model_->prepare(-1).isEmpty());
        model_->confirm();
        QCOMPARE(model_->state(), State::Ready);
        QVERIFY(folder_->exists(trash_ + "/seen"));
    }

    void applicationsAreListedByNameAndFound() {
        const FileURL apps = folder_->makeFolder("home/Applications");
        folder_->makeFolder("home/Applications/zebra.app/Contents");
        auto copy = testing::bundle(apps, "org.example.zebra2", "zebra");
        const auto inventory = testing::FakeSoftwareInventory::of(
            {testing::bundle(apps, "org.example.zebra", "zebra"),
             copy,
             {.identifier = "org.example.inkwell", .name = "Inkwell"}},
            false);
        ApplicationsModel model(*services_, inventory);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.refresh();
        QVERIFY(model.isLoading());
        QTRY_VERIFY(!model.isLoading());
        QVERIFY(!model.isComplete());
        QCOMPARE(model.rowCount(), 2); // the copy at the same place is the same to the tool
        const CollectorStore staged;
        ToolModel tool(*ToolCatalogue::tool("uninstaller"), *services_, staged);
        QVERIFY(model.choose(0, &tool));
        QCOMPARE(tool.subject(), QStringLiteral("Inkwell"));
        QVERIFY(model.choose(1, &tool));
        QCOMPARE(tool.subject(), QStringLiteral("zebra, ~/Applications/zebra.app"));
        QVERIFY(tool.canScan());
        QCOMPARE(model.data(model.index(0), ApplicationsModel::Note).toString(),
                 QStringLiteral("Data only"));
        QCOMPARE(model.data(model.index(1), ApplicationsModel::Note).toString(), QString());
        QVERIFY(!model.choose(2, &tool));
        model.setFilter(QStringLiteral("EXAMPLE.Z"));
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.data(model.index(0), ApplicationsModel::Place).toString(),
                 QStringLiteral("~/Applications/zebra.app"));
        QCOMPARE(model.countText(), QStringLiteral("1 of 2 applications"));
        model.setFilter({});
        QCOMPARE(model.countText(), QStringLiteral("2 applications"));
    }

  private:
    void read() {
        model_->refresh();
        QTRY_COMPARE(model_->state(), State::Ready);
    }
    void empty() {
        QSignalSpy emptied(model_.get(), &BinModel::emptied);
        model_->confirm();
        QVERIFY(model_->isEmptying());
        QTRY_COMPARE(emptied.count(), 1);
        QTRY_COMPARE(model_->state(), State::Ready);
    }
    [[nodiscard]] QString value(int row, int role) const {
        return model_->data(model_->index(row), role).toString();
    }
    [[nodiscard]] int rowOf(const QString& path) const {
        for (int row = 0; row < model_->rowCount(); ++row) {
            if (value(row, BinModel::Path) == path) {
                return row;
            }
        }
        return -1;
    }
    /// The rows of the home folder's Bins.
    [[nodiscard]] std::vector<int> ours() const {
        std::vector<int> rows;
        for (int row = 0; row < model_->rowCount(); ++row) {
            if (value(row, BinModel::Path).startsWith("~/")) {
                rows.push_back(row);
            }
        }
        return rows;
    }

    const std::string trash_ = "home/data/Trash/files";
    std::optional<testing::TemporaryFolder> folder_;
    std::optional<Services> services_;
    std::unique_ptr<BinModel> model_;
    std::unique_ptr<QAbstractItemModelTester> tester_;
};

} // namespace korvane

QTEST_GUILESS_MAIN(korvane::BinModelTests)
#include "BinModelTests.moc"
