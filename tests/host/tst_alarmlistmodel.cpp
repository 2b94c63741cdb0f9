#include "host/alarmview/alarmlistmodel.h"
#include "tests/support/alarmplant.h"

#include <QAbstractItemModelTester>
#include <QBrush>
#include <QFont>
#include <QGuiApplication>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTextDocument>
#include <QtTest>

#include <algorithm>

using Column = AlarmListOrder::Column;
using State = ScadaAlarm::State;

namespace {

QList<quint64> idsOf(const AlarmListModel& model)
{
    QList<quint64> ids;
    for (int row = 0; row < model.rowCount(); ++row)
        ids.append(model.index(row, 0).data(AlarmListModel::IdRole).toULongLong());
    return ids;
}

QVariant cell(const AlarmListModel& model, int row, int column, int role = Qt::DisplayRole)
{
    return model.index(row, column).data(role);
}

AlarmFilter::States allStates()
{
    return AlarmFilter::States().set();
}

bool beforeByDefault(const ScadaAlarm& a, const ScadaAlarm& b)
{
    const auto rank = [](const ScadaAlarm& alarm) {
        return std::make_tuple(alarm.isUnacknowledged() ? 0 : 1, -alarm.severity, -alarm.raised.toMSecsSinceEpoch(),
                               -static_cast<qint64>(alarm.id));
    };
    return rank(a) < rank(b);
}

/// How the plain list sorts: what an alarm has in a column as text that compares like it.
QString sortText(AlarmManager& manager, const ScadaAlarm& alarm, int column)
{
    const auto number = [](qint64 value) { return QStringLiteral("%1").arg(value, 20, 10, QLatin1Char('0')); };
    const auto time = [&](const QDateTime& at) { return at.isValid() ? number(at.toMSecsSinceEpoch()) : QString(); };
    switch (column) {
    case Column::Severity:
        return number(alarm.severity);
    case Column::Raised:
        return time(alarm.raised);
    case Column::State:
        return number(static_cast<int>(alarm.state));
    case Column::Area:
        return alarm.area;
    case Column::Tag:
        return alarm.tag;
    case Column::Message:
        return alarm.message;
    case Column::Value:
        return number(alarm.value.toInt());
    case Column::Cause:
        return number(static_cast<int>(alarm.cause));
    case Column::Returned:
        return time(alarm.returned);
    case Column::Acknowledged:
        return time(alarm.acknowledged);
    case Column::AcknowledgedBy:
        return alarm.acknowledgedBy;
    case Column::ShelvedUntil:
        return time(manager.shelf(alarm.id).until);
    case Column::ShelvedBy:
        return manager.shelf(alarm.id).user;
    default:
        return {};
    }
}

/// What the list must show, worked out anew.
QList<quint64> plainList(AlarmManager& manager, const AlarmFilter& filter, const QStringList& areas, int column,
                         Qt::SortOrder order)
{
    QList<ScadaAlarm> shown;
    for (const ScadaAlarm& alarm : manager.activeAlarms()) {
        const bool isText = (alarm.tag + QLatin1Char('\n') + alarm.message).toLower().contains(filter.text.toLower());
        const bool isArea = filter.areas.isEmpty() || filter.areas.contains(areas.indexOf(alarm.area) + 1);
        const bool isSeverity = filter.severities.isEmpty() || filter.severities.contains(alarm.severity);
        if (isText && isArea && isSeverity && filter.states.test(static_cast<std::size_t>(alarm.state)))
            shown.append(alarm);
    }
    std::sort(shown.begin(), shown.end(), [&](const ScadaAlarm& a, const ScadaAlarm& b) {
        const QString left = sortText(manager, a, column);
        const QString right = sortText(manager, b, column);
        if (left != right)
            return (left < right) == (order == Qt::AscendingOrder);
        return beforeByDefault(a, b);
    });
    QList<quint64> ids;
    for (const ScadaAlarm& alarm : qAsConst(shown))
        ids.append(alarm.id);
    return ids;
}

/// Somebody who does anything to any alarm.
class Chance
{
public:
    Chance(AlarmPlant& plant, quint32 seed) : m_plant(plant), m_random(seed) {}

    int below(int end) { return static_cast<int>(m_random.bounded(end)); }
    bool is(int percent) { return below(100) < percent; }
    quint64 anyId()
    {
        const QList<ScadaAlarm> alarms = m_plant.manager().activeAlarms();
        return alarms.isEmpty() ? 0 : alarms[below(alarms.size())].id;
    }
    void act()
    {
        AlarmManager& manager = m_plant.manager();
        const quint64 id = anyId();
        const QString user = is(50) ? QStringLiteral("kim") : QStringLiteral("lee");
        m_plant.passSeconds(below(3));
        switch (below(9)) {
        case 0:
        case 1:
        case 2:
            raise();
            break;
        case 3:
            manager.returnAlarm(id, m_plant.now);
            break;
        case 4:
            manager.acknowledge(id, user);
            break;
        case 5:
            manager.shelve(id, m_plant.now.addSecs(1 + below(40)), user, QStringLiteral("why"));
            break;
        case 6:
            manager.unshelve(id, user);
            break;
        case 7:
            manager.setSuppressed(m_plant.objectOf(id), is(50), QStringLiteral("stands"));
            break;
        default:
            manager.setOutOfService(m_plant.objectOf(id), is(50), user, QStringLiteral("rebuilt"));
        }
        manager.advance(m_plant.now);
    }

private:
    /// One of a few points and causes, so that alarms come again.
    void raise()
    {
        static const QStringList areas{QString(), QStringLiteral("North"), QStringLiteral("South"),
                                       QStringLiteral("West")};
        ScadaAlarm alarm;
        alarm.objectType = Korvane::ScadaObjectType::AnalogPoint;
        alarm.objectId = Korvane::firstAnalogPointId + below(40);
        alarm.cause = static_cast<ScadaAlarm::Cause>(below(8));
        alarm.tag = QStringLiteral("p%1").arg(alarm.objectId);
        alarm.area = areas[below(areas.size())];
        alarm.severity = below(10);
        alarm.message = QStringLiteral("message %1").arg(below(20), 2, 10, QLatin1Char('0'));
        alarm.value = below(30);
        alarm.raised = m_plant.now;
        m_plant.manager().raiseAlarm(alarm);
    }

    AlarmPlant& m_plant;
    QRandomGenerator m_random;
};

AlarmFilter anyFilter(Chance& chance)
{
    AlarmFilter filter;
    filter.states = chance.is(50) ? allStates() : AlarmFilter::standing();
    for (int severity = 0; severity < 10 && chance.is(70); ++severity)
        filter.severities.append(chance.below(10));
    for (int area = 0; area < 4 && chance.is(40); ++area)
        filter.areas.append(chance.below(5));
    if (chance.is(30))
        filter.text = QStringLiteral("GE 1");
    return filter;
}

} // namespace

class tst_AlarmListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsShownIsWhatAPlainListShows_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 8; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void whatIsShownIsWhatAPlainListShows()
    {
        QFETCH(quint32, seed);
        AlarmPlant plant;
        Chance chance(plant, seed);
        for (int before = 0; before < 30; ++before)
            chance.act();
        AlarmListModel model(plant.manager());
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        int column = -1;
        Qt::SortOrder order = Qt::AscendingOrder;
        for (int round = 0; round < 120; ++round) {
            std::vector<std::pair<QPersistentModelIndex, quint64>> held;
            const QList<quint64> ids = idsOf(model);
            for (int row = 0; row < ids.size(); row += 3)
                held.emplace_back(model.index(row, row % model.columnCount()), ids[row]);
            // What leaves by a change and comes back by another filter is a new row.
            const bool isOtherFilter = chance.is(15);
            for (int acts = isOtherFilter ? 0 : chance.below(25); acts > 0; --acts)
                chance.act();
            if (chance.is(15)) {
                column = chance.below(Column::ColumnCount + 1) - 1;
                if (column == Column::Limit)
                    column = -1; // none has one here
                order = chance.is(50) ? Qt::AscendingOrder : Qt::DescendingOrder;
                model.sort(column, order);
            }
            if (isOtherFilter)
                model.setFilter(anyFilter(chance));
            model.applyChanges();
            const QList<quint64> expected =
                plainList(plant.manager(), model.filter(), model.areas().names(), column, order);
            QCOMPARE(idsOf(model), expected);
            for (const auto& [index, id] : held)
                QCOMPARE(index.isValid() ? index.row() : -1, expected.indexOf(id));
            checkCounts(plant.manager(), model);
        }
    }

    void changesAreShownTogether()
    {
        AlarmPlant plant;
        AlarmListModel model(plant.manager());
        QSignalSpy changed(&model, &AlarmListModel::changed);
        QSignalSpy inserted(&model, &AlarmListModel::rowsInserted);
        for (int i = 0; i < 1000; ++i)
            plant.raise(i % 10, QStringLiteral("full"));
        QCOMPARE(model.rowCount(), 0);
        QTRY_COMPARE(model.rowCount(), 1000);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(inserted.size(), 1);
    }

    void noSoonerThanTheTime()
    {
        AlarmPlant plant;
        AlarmListModel model(plant.manager());
        QSignalSpy changed(&model, &AlarmListModel::changed);
        plant.raise(1, QStringLiteral("full"));
        QElapsedTimer timer;
        timer.start();
        QVERIFY(changed.wait());
        QVERIFY2(timer.elapsed() >= AlarmListModel::gatheringMs / 2, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(model.rowCount(), 1);
    }

    void alarmsWithoutAnEndAreShownToo()
    {
        AlarmPlant plant;
        AlarmListModel model(plant.manager());
        // Asked about every 50 ms, sooner than changes are shown.
        QTRY_VERIFY_WITH_TIMEOUT(plant.raise(1, QStringLiteral("full")) != 0 && model.rowCount() > 0, 2000);
    }

    void aRowThatStaysIsToldOfAsChanged()
    {
        AlarmPlant plant;
        plant.raise(1, QStringLiteral("a"));
        const quint64 id = plant.raise(1, QStringLiteral("b"));
        AlarmListModel model(plant.manager());
        model.sort(Column::Message, Qt::AscendingOrder);
        QSignalSpy told(&model, &AlarmListModel::dataChanged);
        int moved = 0;
        connect(&model, &AlarmListModel::layoutChanged, &model, [&moved] { ++moved; });
        plant.manager().acknowledge(id, {});
        model.applyChanges();
        QCOMPARE(told.size(), 1);
        QCOMPARE(told[0][0].toModelIndex(), model.index(1, 0));
        QCOMPARE(told[0][1].toModelIndex(), model.index(1, 13));
        QCOMPARE(moved, 0);
    }

    void anAlarmThatCameAndWentIsNotShown()
    {
        AlarmPlant plant;
        AlarmListModel model(plant.manager());
        const quint64 id = plant.raise(1, QStringLiteral("full"));
        plant.manager().returnAlarm(id, plant.now);
        plant.manager().acknowledge(id, {});
        QSignalSpy inserted(&model, &AlarmListModel::rowsInserted);
        model.applyChanges();
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(inserted.size(), 0);
    }

    void theUsualOrderIsUrgency()
    {
        AlarmPlant plant;
        const quint64 old = plant.raise(5, QStringLiteral("a"));
        const quint64 handled = plant.raise(9, QStringLiteral("b"));
        plant.passSeconds(1);
        const quint64 low = plant.raise(1, QStringLiteral("c"));
        const quint64 fresh = plant.raise(5, QStringLiteral("d"));
        plant.manager().acknowledge(handled, {});
        const AlarmListModel model(plant.manager());
        QCOMPARE(idsOf(model), QList<quint64>({fresh, old, low, handled}));
    }

    void valuesSortAsNumbersBeforeTexts()
    {
        AlarmPlant plant;
        QList<quint64> ids;
        for (const QVariant& value : {QVariant(QStringLiteral("open")), QVariant(10), QVariant(), QVariant(9.5),
                                      QVariant(qQNaN()), QVariant(QStringLiteral("8"))}) {
            ScadaAlarm alarm = plant.alarmOf(1, QStringLiteral("a"));
            alarm.value = value;
            ids.append(plant.manager().raiseAlarm(alarm));
        }
        AlarmListModel model(plant.manager());
        model.sort(Column::Value, Qt::AscendingOrder);
        QCOMPARE(idsOf(model), QList<quint64>({ids[2], ids[5], ids[3], ids[1], ids[4], ids[0]}));
    }

    void textsSortInWhateverCase()
    {
        AlarmPlant plant;
        const quint64 second = plant.raise(1, QStringLiteral("b"));
        const quint64 third = plant.raise(1, QStringLiteral("C"));
        const quint64 first = plant.raise(1, QStringLiteral("A"));
        AlarmListModel model(plant.manager());
        model.sort(Column::Message, Qt::AscendingOrder);
        QCOMPARE(idsOf(model), QList<quint64>({first, second, third}));
    }

    void columnsKeepTheirNumbers()
    {
        AlarmPlant plant;
        const AlarmListModel model(plant.manager());
        const char* titles[] = {"Severity",     "Raised",          "State",         "Area",      "Tag",
                                "Message",      "Value",           "Limit",         "Cause",     "Returned",
                                "Acknowledged", "Acknowledged by", "Shelved until", "Shelved by"};
        QCOMPARE(model.columnCount(), 14);
        for (int column = 0; column < 14; ++column)
            QCOMPARE(model.headerData(column, Qt::Horizontal).toString(), QString::fromLatin1(titles[column]));
    }

    void cellsSayWhatIsKnown()
    {
        AlarmPlant plant;
        ScadaAlarm alarm = plant.alarmOf(7, QStringLiteral("tank\nfull"), QStringLiteral("North"));
        alarm.value = 0.1 + 0.2;
        alarm.limit = 90;
        alarm.raised = plant.now.addMSecs(7);
        const quint64 id = plant.manager().raiseAlarm(alarm);
        plant.passSeconds(1);
        plant.manager().acknowledge(id, QStringLiteral("lee"));
        plant.manager().shelve(id, plant.now.addSecs(60), QStringLiteral("kim"), QStringLiteral("cleaned"));
        AlarmListModel model(plant.manager());
        AlarmFilter filter;
        filter.states = allStates();
        model.setFilter(filter);
        const QStringList expected{QStringLiteral("7"),
                                   QStringLiteral("2026-03-01 17:00:00.007"), // nine hours ahead
                                   QStringLiteral("shelved"),
                                   QStringLiteral("North"),
                                   QStringLiteral("P1"),
                                   QStringLiteral("tank full"),
                                   QStringLiteral("0.3"),
                                   QStringLiteral("90"),
                                   QStringLiteral("high"),
                                   QString(),
                                   QStringLiteral("2026-03-01 17:00:01.000"),
                                   QStringLiteral("lee"),
                                   QStringLiteral("2026-03-01 17:01:01.000"),
                                   QStringLiteral("kim")};
        for (int column = 0; column < expected.size(); ++column)
            QCOMPARE(cell(model, 0, column).toString(), expected[column]);
        QCOMPARE(cell(model, 0, Column::Message, AlarmListModel::ValueRole).toString(), QStringLiteral("tank\nfull"));
        QCOMPARE(cell(model, 0, Column::Raised, AlarmListModel::ValueRole).toDateTime(), plant.now.addMSecs(-993));
        QVERIFY(!cell(model, 0, Column::Returned, AlarmListModel::ValueRole).isValid());
    }

    void waitingAlarmsStandOut()
    {
        AlarmPlant plant;
        const quint64 waiting = plant.raise(7, QStringLiteral("a"));
        const quint64 handled = plant.raise(6, QStringLiteral("b"));
        plant.manager().acknowledge(handled, {});
        AlarmDataInfo presentation;
        presentation.setTextColor(7, Qt::red);
        AlarmListModel model(plant.manager());
        QSignalSpy told(&model, &AlarmListModel::dataChanged);
        model.setPresentation(presentation);
        QCOMPARE(told.size(), 1);
        QCOMPARE(idsOf(model), QList<quint64>({waiting, handled}));
        QCOMPARE(cell(model, 0, 1, Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));
        QVERIFY(cell(model, 0, 1, Qt::BackgroundRole).value<QColor>().isValid());
        QVERIFY(cell(model, 0, 1, Qt::FontRole).value<QFont>().bold());
        QVERIFY(!cell(model, 1, 1, Qt::ForegroundRole).isValid());
        QVERIFY(!cell(model, 1, 1, Qt::BackgroundRole).isValid());
        QVERIFY(!cell(model, 1, 1, Qt::FontRole).isValid());
        QCOMPARE(cell(model, 0, Column::Severity, Qt::TextAlignmentRole).toInt(),
                 int(Qt::AlignRight | Qt::AlignVCenter));
        QCOMPARE(cell(model, 0, Column::Tag, Qt::TextAlignmentRole).toInt(), int(Qt::AlignLeft | Qt::AlignVCenter));
    }

    void aToolTipIsNoMarkupAndSaysWhy()
    {
        AlarmPlant plant;
        const quint64 id = plant.raise(7, QStringLiteral("<b>full</b>"));
        plant.manager().shelve(id, plant.now.addSecs(60), {}, QStringLiteral("<i>cleaned</i>"));
        plant.manager().setSuppressed(plant.objectOf(id), true, QStringLiteral("stands"));
        plant.manager().setOutOfService(plant.objectOf(id), true, {}, QStringLiteral("rebuilt"));
        AlarmListModel model(plant.manager());
        AlarmFilter filter;
        filter.states = allStates();
        model.setFilter(filter);
        QTextDocument shown;
        shown.setHtml(cell(model, 0, 0, Qt::ToolTipRole).toString());
        QCOMPARE(shown.toPlainText(), QStringLiteral("<b>full</b>\nShelved: <i>cleaned</i>\nSuppressed: stands\n"
                                                     "Out of service: rebuilt"));
    }

    void theUsersAreasLimitTheList()
    {
        AlarmPlant plant;
        const quint64 north = plant.raise(3, QStringLiteral("a"), QStringLiteral("North"));
        plant.raise(3, QStringLiteral("b"), QStringLiteral("South"));
        const quint64 nowhere = plant.raise(2, QStringLiteral("c")); // everybody's
        AlarmListModel model(plant.manager());
        AlarmFilter filter;
        filter.userAreas = QStringList{QStringLiteral("North")};
        model.setFilter(filter);
        QCOMPARE(idsOf(model), QList<quint64>({north, nowhere}));
        filter.userAreas = QStringList();
        model.setFilter(filter);
        QCOMPARE(idsOf(model), QList<quint64>({nowhere}));
    }

    void areasHaveTheNumbersThatTheProjectStates()
    {
        AlarmPlant plant;
        const quint64 other = plant.raise(3, QStringLiteral("a"), QStringLiteral("West"));
        const quint64 stated = plant.raise(3, QStringLiteral("b"), QStringLiteral("South"));
        const quint64 none = plant.raise(3, QStringLiteral("c"));
        AlarmListModel model(plant.manager(), AlarmAreas({QStringLiteral("North"), QStringLiteral("South")}));
        const QList<quint64> byNumber{none, 0, stated, other};
        for (const int number : {0, 2, 3}) {
            AlarmFilter filter;
            filter.areas = {number};
            model.setFilter(filter);
            QCOMPARE(idsOf(model), QList<quint64>({byNumber[number]}));
        }
    }

    void whatWasRestoredIsReadAnew()
    {
        AlarmPlant plant;
        AlarmListModel model(plant.manager());
        ScadaAlarm alarm = plant.alarmOf(3, QStringLiteral("a"));
        alarm.id = 77;
        plant.manager().restore(alarm, {});
        QCOMPARE(model.rowCount(), 0);
        model.reload();
        QCOMPARE(idsOf(model), QList<quint64>({77}));
        QCOMPARE(model.count(State::Unacknowledged), 1);
    }

private:
    static void checkCounts(AlarmManager& manager, const AlarmListModel& model)
    {
        AlarmFilter filter = model.filter();
        for (int state = 1; state < 7; ++state) {
            filter.states.reset().set(static_cast<std::size_t>(state));
            QCOMPARE(model.count(static_cast<State>(state)),
                     plainList(manager, filter, model.areas().names(), -1, Qt::AscendingOrder).size());
        }
    }
};

int main(int argc, char** argv)
{
    qputenv("TZ", "KST-9"); // nine hours ahead, without summer time
    QTEST_SET_MAIN_SOURCE_PATH
    QGuiApplication application(argc, argv);
    tst_AlarmListModel test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_alarmlistmodel.moc"
