#include "Korvane/window/protection/CatalogueModel.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <QAbstractItemModelTester>
#include <QTest>

namespace korvane {

class CatalogueModelTests : public QObject {
    Q_OBJECT

    static QStringList identifiers(const CatalogueModel& model) {
        QStringList ids;
        for (int row = 0; row < model.count(); ++row) {
            ids.append(model.data(model.index(row), CatalogueModel::RowID).toString());
        }
        return ids;
    }

  private slots:
    void showsEveryColumnOfEveryRow() {
        CatalogueModel model;
        const QAbstractItemModelTester contract(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const auto all = PathHeuristics::all();
        QCOMPARE(model.count(), static_cast<int>(all.size()));
        for (int row = 0; row < model.count(); ++row) {
            const PathHeuristic& place = *all[static_cast<std::size_t>(row)];
            const auto text = [](std::string_view utf8) {
                return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
            };
            const QVariantMap values = model.get(row);
            QCOMPARE(values[QStringLiteral("rowID")], text(place.id));
            QCOMPARE(values[QStringLiteral("name")], text(place.displayName));
            QCOMPARE(values[QStringLiteral("category")], text(place.category));
            QCOMPARE(values[QStringLiteral("pattern")], text(place.pathPattern));
            QCOMPARE(values[QStringLiteral("whySafe")], text(place.whySafe));
            QCOMPARE(values[QStringLiteral("scannerID")], text(place.scannerID));
            QCOMPARE(values[QStringLiteral("riskExplanation")], text(place.riskExplanation()));
            QCOMPARE(values[QStringLiteral("risk")], static_cast<int>(place.risk));
        }
        QVERIFY(model.get(-1).isEmpty());
        QVERIFY(model.get(model.count()).isEmpty());
    }

    void filtersByEveryWordAndToolAndRisk() {
        CatalogueModel model;
        const QAbstractItemModelTester contract(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const int all = model.count();
        model.setQuery(QStringLiteral("  DATA derived "));
        QVERIFY(identifiers(model).contains(QStringLiteral("dev.xcode.derived-data")));
        QVERIFY(model.count() < all);
        model.setQuery(QStringLiteral("derived nowhere-to-be-found"));
        QCOMPARE(model.count(), 0);
        model.clearFilters();
        QCOMPARE(model.count(), all);

        int together = 0;
        for (int tool = 1; tool < model.tools().size(); ++tool) {
            model.setToolIndex(tool);
            QVERIFY(model.count() > 0);
            for (int row = 0; row < model.count(); ++row) {
                QCOMPARE(model.data(model.index(row), CatalogueModel::ToolName).toString(),
                         model.tools().at(tool));
            }
            together += model.count();
        }
        QCOMPARE(together, all);

        model.setToolIndex(0);
        model.setRiskIndex(3);
        QVERIFY(model.count() > 0 && model.count() < all);
        for (int row = 0; row < model.count(); ++row) {
            QCOMPARE(model.data(model.index(row), CatalogueModel::Risk).toInt(),
                     static_cast<int>(HeuristicRisk::high));
        }
        model.setRiskIndex(9);
        QCOMPARE(model.riskIndex(), 3);
    }
};

} // namespace korvane

QTEST_GUILESS_MAIN(korvane::CatalogueModelTests)
#include "CatalogueModelTests.moc"
