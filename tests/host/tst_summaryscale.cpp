#include "host/summary/summarymodel.h"
#include "tests/support/summaryplant.h"

#include <QtTest>

#include <algorithm>

using Column = SummaryColumns::Column;

namespace {

/// Counts what is read of statistics.
class CountingDatabase : public RuntimeDatabase
{
public:
    QVariant fieldValue(ObjectKey object, DataCode::DataField field) const override
    {
        ++count;
        return RuntimeDatabase::fieldValue(object, field);
    }
    mutable int count = 0;
};

void settle(const SummaryModel& model)
{
    while (model.isArranging())
        QCoreApplication::processEvents();
}

} // namespace

/// The summary of plants so large that work on all points must be cut up: counted, not timed.
class tst_SummaryScale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTurnReadsASliceOfThePoints()
    {
        CountingDatabase database;
        fill(database, 100000);
        SummaryModel model(database, QTimeZone::utc());
        model.setActive(true);
        model.sort(Column::TodayMean, Qt::DescendingOrder);
        int most = 0;
        int turns = 0;
        for (; model.isArranging(); ++turns) {
            database.count = 0;
            QCoreApplication::processEvents();
            most = std::max(most, database.count);
        }
        QCOMPARE(model.rowCount(), 100000);
        QVERIFY2(turns >= 25, qPrintable(QString::number(turns)));
        QVERIFY2(most > 0 && most <= 4096, qPrintable(QString::number(most)));
        QCOMPARE(model.point(0), SummaryPlant::analog(99999));
        database.count = 0;
        model.index(50000, Column::TodayMean).data();
        QCOMPARE(database.count, 1); // what is not shown costs nothing
    }

    void textsAreSortedInSlicesAndOnce()
    {
        RuntimeDatabase database;
        fill(database, 100000);
        SummaryModel model(database, QTimeZone::utc());
        model.setActive(true);
        model.sort(Column::Name);
        settle(model);
        const qint64 first = model.figures().slices;
        QVERIFY2(first >= 100000 / 65536, qPrintable(QString::number(first)));
        QVERIFY2(model.figures().longestRead <= 65536, qPrintable(QString::number(model.figures().longestRead)));
        for (int row = 1; row < model.rowCount(); ++row)
            QVERIFY(model.index(row - 1, 0).data().toString() < model.index(row, 0).data().toString());
        model.sort(Column::Name, Qt::DescendingOrder); // texts are compared once only
        settle(model);
        QVERIFY2(model.figures().slices - first < first * 2 / 3, qPrintable(QString::number(first)));
    }

    void moreChangesThanCanBeMergedAreTakenInSlices()
    {
        CountingDatabase database;
        fill(database, 40000);
        SummaryModel model(database, QTimeZone::utc());
        model.setActive(true);
        model.sort(Column::TodayMaximum);
        settle(model);
        std::vector<ObjectKey> all = model.points();
        for (const ObjectKey point : all)
            database.takeSample({point, 2000, double(300000 - point.id), 0});
        database.count = 0;
        model.noteChanged(all);
        model.applyChanges();
        QVERIFY(model.isArranging());
        QCOMPARE(database.count, 0);
        settle(model);
        QCOMPARE(model.figures().merges, Q_INT64_C(0));
        QCOMPARE(model.rowCount(), 40000);
        QVERIFY(SummaryColumns::number(database, model.point(0), Column::TodayMaximum) <=
                SummaryColumns::number(database, model.point(39999), Column::TodayMaximum));
        all.resize(1000);
        database.count = 0;
        model.noteChanged(all);
        model.applyChanges();
        QCOMPARE(database.count, 1000); // only what changed
        QCOMPARE(model.figures().merges, Q_INT64_C(1));
    }

private:
    /// Points whose name, value and mean follow their number.
    static void fill(RuntimeDatabase& database, int count)
    {
        database.setClock([] { return Q_INT64_C(3000); });
        database.setTimeZone(QTimeZone::utc());
        for (int number = 0; number < count; ++number) {
            const ObjectKey point = SummaryPlant::analog(number);
            if (!database.add(
                    SummaryPlant::object(point, QStringLiteral("P%1").arg(count - number, 6, 10, QLatin1Char('0')))))
                qFatal("a point was not added");
            database.takeSample({point, 1000, double(number), 0});
        }
    }
};

QTEST_MAIN(tst_SummaryScale)
#include "tst_summaryscale.moc"
