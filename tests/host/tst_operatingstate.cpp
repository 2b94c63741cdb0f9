#include "host/control/operatingstate.h"

#include "tests/support/temporaryfiles.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

using Korvane::ScadaObjectType;
using Kind = OperatingState::Kind;

namespace {

constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey pump{ScadaObjectType::DigitalPoint, 100001};
constexpr ObjectKey unit{ScadaObjectType::RtuObject, 7};

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

OperatingState::Entry entry(const QString& value)
{
    return {value, text("ann"), text("because"), QDateTime::fromMSecsSinceEpoch(1600000000123, Qt::UTC)};
}

} // namespace

class tst_OperatingState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatWasSetStands()
    {
        OperatingState state;
        QVERIFY(state.openInMemory());
        QVERIFY(state.objects().isEmpty());
        QVERIFY(!state.find(level, Kind::HighLimit));
        QVERIFY(state.set(level, Kind::HighLimit, entry(text("80"))));
        QVERIFY(state.set(level, Kind::HighLimit, entry(text("90")))); // in place of it
        const auto found = state.find(level, Kind::HighLimit);
        QCOMPARE(found->value, text("90"));
        QCOMPARE(found->user, text("ann"));
        QCOMPARE(found->reason, text("because"));
        QCOMPARE(found->time.toMSecsSinceEpoch(), Q_INT64_C(1600000000123));
        QVERIFY(!state.find(level, Kind::LowLimit));
        QVERIFY(!state.find(pump, Kind::HighLimit));
    }

    void objectsAreFoundByTheirChanges()
    {
        OperatingState state;
        QVERIFY(state.openInMemory());
        QVERIFY(state.set(level, Kind::Substitution, entry(text("5"))));
        QVERIFY(state.set(level, Kind::InformationTag, entry(text("leaks"))));
        QVERIFY(state.set(unit, Kind::ScanInhibited, entry({})));
        QCOMPARE(state.objects(Kind::Substitution), QList<ObjectKey>{level});
        QCOMPARE(state.objects(Kind::ScanInhibited), QList<ObjectKey>{unit});
        QVERIFY(state.objects(Kind::DeadBand).isEmpty());
        QCOMPARE(state.objects().size(), 2);
        QVERIFY(state.remove(level, Kind::Substitution));
        QCOMPARE(state.objects().size(), 2);
        QVERIFY(state.remove(level, Kind::InformationTag));
        QCOMPARE(state.objects(), QList<ObjectKey>{unit});
        QVERIFY(state.remove(level, Kind::InformationTag)); // none there: nothing happens
        QVERIFY(state.remove(pump, Kind::ControlInhibited));
    }

    void kindsAreTakenBackAtOnce()
    {
        TemporaryFiles files;
        const QString name = files.path(text("operating.db"));
        OperatingState state;
        QVERIFY(state.open(name));
        for (const Kind kind :
             {Kind::Substitution, Kind::LowLowLimit, Kind::HighLimit, Kind::DeadBand, Kind::StatisticsReset})
            QVERIFY(state.set(level, kind, entry(text("5"))));
        QVERIFY(state.set(unit, Kind::HighLimit, entry(text("5"))));
        QVERIFY(state.remove(level, Kind::LowLowLimit, Kind::DeadBand));
        const auto check = [](const OperatingState& kept) {
            QVERIFY(kept.find(level, Kind::Substitution).has_value());
            QVERIFY(!kept.find(level, Kind::LowLowLimit));
            QVERIFY(!kept.find(level, Kind::HighLimit));
            QVERIFY(!kept.find(level, Kind::DeadBand));
            QVERIFY(kept.find(level, Kind::StatisticsReset).has_value());
            QVERIFY(kept.find(unit, Kind::HighLimit).has_value());
        };
        check(state);
        state.close();
        QVERIFY(state.open(name));
        check(state);
    }

    void itOutlastsTheProgram()
    {
        TemporaryFiles files;
        const QString name = files.path(text("operating.db"));
        const QString odd = text("it's \"so\"\n") + QChar(0) + QString::fromUtf8("밸브");
        {
            OperatingState state;
            QVERIFY(state.open(name));
            QVERIFY(state.set(level, Kind::InformationTag, entry(odd)));
            QVERIFY(state.set(level, Kind::LowLimit, entry({})));
            QVERIFY(state.set(unit, Kind::ScanInhibited, entry({})));
            QVERIFY(state.set(pump, Kind::ControlInhibited, entry({})));
            QVERIFY(state.remove(pump, Kind::ControlInhibited));
        }
        OperatingState state;
        QVERIFY(state.open(name));
        QCOMPARE(state.objects().size(), 2);
        QCOMPARE(state.find(level, Kind::InformationTag)->value, odd);
        QCOMPARE(state.find(level, Kind::InformationTag)->user, text("ann"));
        QCOMPARE(state.find(level, Kind::InformationTag)->time.toMSecsSinceEpoch(), Q_INT64_C(1600000000123));
        QCOMPARE(state.find(level, Kind::LowLimit)->value, QString()); // a limit that was taken away
        QVERIFY(state.find(unit, Kind::ScanInhibited).has_value());
        QVERIFY(!state.find(pump, Kind::ControlInhibited));
    }

    void theNumbersInTheFileStay()
    {
        TemporaryFiles files;
        const QString name = files.path(text("operating.db"));
        OperatingState state;
        QVERIFY(state.open(name));
        int number = 0;
        const Kind kinds[] = {Kind::ControlInhibited, Kind::ScanInhibited,  Kind::InformationTag, Kind::Substitution,
                              Kind::LowLowLimit,      Kind::LowLimit,       Kind::HighLimit,      Kind::HighHighLimit,
                              Kind::DeadBand,         Kind::StatisticsReset};
        for (const Kind kind : kinds)
            QVERIFY(state.set(level, kind, entry(QString::number(number++))));
        QStringList stored;
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(text("QSQLITE"), text("other"));
            other.setDatabaseName(name);
            QVERIFY(other.open());
            QSqlQuery query(other);
            QVERIFY(query.exec(text("SELECT kind FROM operating_state ORDER BY CAST(value AS INTEGER)")));
            while (query.next())
                stored.append(query.value(0).toString());
        }
        QSqlDatabase::removeDatabase(text("other"));
        QCOMPARE(stored.join(QLatin1Char(' ')), text("0 2 3 4 5 6 7 8 9 10"));
    }

    void whatCantBeWrittenChangesNothing()
    {
        TemporaryFiles files;
        const QString name = files.path(text("operating.db"));
        OperatingState state;
        QVERIFY(state.open(name));
        QVERIFY(state.set(level, Kind::HighLimit, entry(text("80"))));
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(text("QSQLITE"), text("other"));
            other.setDatabaseName(name);
            QVERIFY(other.open());
            for (const char* act : {"INSERT", "DELETE"}) {
                QVERIFY(QSqlQuery(other).exec(
                    text("CREATE TRIGGER full_%1 BEFORE %1 ON operating_state BEGIN SELECT RAISE(ABORT, "
                         "'the disk is full'); END")
                        .arg(text(act))));
            }
        }
        QSqlDatabase::removeDatabase(text("other"));
        const auto set = state.set(level, Kind::HighLimit, entry(text("90")));
        QVERIFY(!set);
        QVERIFY2(set.error().contains(name) && set.error().contains(text("the disk is full")), qPrintable(set.error()));
        QVERIFY(!state.set(pump, Kind::ControlInhibited, entry({})));
        QVERIFY(!state.remove(level, Kind::HighLimit));
        QCOMPARE(state.find(level, Kind::HighLimit)->value, text("80"));
        QVERIFY(!state.find(pump, Kind::ControlInhibited));
    }

    void withoutAFileNothingIsKept()
    {
        OperatingState state;
        QVERIFY(!state.set(level, Kind::HighLimit, entry(text("90"))));
        QVERIFY(!state.find(level, Kind::HighLimit));
        QVERIFY(state.openInMemory());
        QVERIFY(state.set(level, Kind::HighLimit, entry(text("90"))));
        state.close();
        QVERIFY(!state.find(level, Kind::HighLimit));
    }

    void whatIsNoDatabaseIsRefused()
    {
        TemporaryFiles files;
        const QString name = files.write(text("operating.db"), QByteArray(5000, 'x'));
        OperatingState state;
        const auto opened = state.open(name);
        QVERIFY(!opened);
        QVERIFY2(opened.error().contains(name), qPrintable(opened.error()));
        QVERIFY(!state.set(level, Kind::HighLimit, entry(text("90"))));
    }
};

QTEST_GUILESS_MAIN(tst_OperatingState)
#include "tst_operatingstate.moc"
