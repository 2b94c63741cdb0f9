// The summary of a large plant: 100,000 points, sorted by their values and filtered, of which 10,000 change in each second,
// 500 with each tick of 50 ms. How long the window is blocked at most, also while it is sorted and filtered anew, beside Qt's
// sorting proxy over the same points.

#include "host/summary/summarycentralwidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QSortFilterProxyModel>
#include <QTableView>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>

namespace {

constexpr int pointCount = 100000;
constexpr int changesATick = 500;
constexpr int ticksASecond = 20;
constexpr int seconds = 10;
constexpr int mostSelected = 1000; ///< with which rows still move
constexpr int proxyTicks = 2;      ///< each takes long
constexpr double limitMs = 50;
constexpr qint64 startMs = Q_INT64_C(1772352000000); // 2026-03-01 08:00 UTC

ObjectKey pointOf(int number)
{
    return {Korvane::ScadaObjectType::AnalogPoint, Korvane::firstAnalogPointId + number};
}

/// Of the longest turn; what other programs took of the machine only counts as passed.
struct Longest
{
    template <typename Work>
    void measure(Work&& work)
    {
        QElapsedTimer timer;
        timer.start();
        const std::clock_t before = std::clock();
        work();
        busyMs = std::max(busyMs, 1000.0 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC);
        passedMs = std::max(passedMs, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    double busyMs = 0;
    double passedMs = 0;
};

/// A plant whose values wander.
class Plant
{
public:
    Plant()
    {
        database.setClock([this] { return nowMs; });
        database.reserve(Korvane::ScadaObjectType::Point, pointCount);
        for (int number = 0; number < pointCount; ++number) {
            RuntimeDatabase::Object object;
            object.type = Korvane::ScadaObjectType::AnalogPoint;
            object.id = pointOf(number).id;
            object.name = QStringLiteral("STATION_%1.POINT_%2").arg(number % 1000).arg(number);
            object.station = QStringLiteral("Station %1").arg(number % 1000);
            object.area = QStringLiteral("Area %1").arg(number % 20);
            object.description = QStringLiteral("Level of tank %1").arg(number);
            object.unit = QStringLiteral("m");
            object.decimals = 2;
            object.high = 900;
            if (!database.add(object))
                std::abort();
            sample(number);
        }
    }
    std::vector<ObjectKey> tick()
    {
        nowMs += 1000 / ticksASecond;
        std::vector<ObjectKey> changed;
        for (int change = 0; change < changesATick; ++change) {
            const int number = m_anyPoint(m_random);
            sample(number);
            changed.push_back(pointOf(number));
        }
        return changed;
    }

    RuntimeDatabase database;
    qint64 nowMs = startMs;

private:
    void sample(int number) { database.takeSample({pointOf(number), nowMs, m_anyValue(m_random), 0}); }

    std::mt19937 m_random{7};
    std::uniform_int_distribution<int> m_anyPoint{0, pointCount - 1};
    std::uniform_real_distribution<double> m_anyValue{0, 1000};
};

/// Descriptions with a digit that most numbers have.
constexpr char searched[] = "tank 1";

void settle(SummaryModel& model, Longest& longest)
{
    while (model.isArranging())
        longest.measure([] { QCoreApplication::processEvents(); });
}

void print(const char* what, const Longest& longest, bool isLimited)
{
    const bool isExceeded = isLimited && longest.busyMs > limitMs;
    std::printf("%-44s %7.1f ms (%.1f ms passed)%s\n", what, longest.busyMs, longest.passedMs,
                isExceeded ? "  EXCEEDED" : "");
    std::fflush(stdout);
}

/// Ticks as they come, and each second the rows moved.
Longest longestTurn(Plant& plant, SummaryModel& model)
{
    Longest longest;
    for (int tick = 1; tick <= seconds * ticksASecond; ++tick) {
        longest.measure([&] {
            model.noteChanged(plant.tick());
            if (tick % ticksASecond == 0)
                model.applyChanges();
            QCoreApplication::processEvents();
        });
    }
    return longest;
}

bool measureSummary()
{
    Plant plant;
    SummaryCentralWidget summary(plant.database, QTimeZone::utc());
    auto& view = *summary.findChild<QTableView*>();
    auto& model = static_cast<SummaryModel&>(*view.model());
    summary.resize(1000, 600);
    Longest opening;
    opening.measure([&] { summary.show(); });
    settle(model, opening);
    view.selectRow(5);
    print("opening", opening, true);

    Longest sorting;
    for (const int column : {int(SummaryColumns::Name), int(SummaryColumns::TodayMean), int(SummaryColumns::Value)}) {
        sorting.measure([&] { model.sort(column, Qt::DescendingOrder); });
        settle(model, sorting);
    }
    print("sorting by names, means and values", sorting, true);
    const Longest all = longestTurn(plant, model);
    print("10,000 changes a second", all, true);
    view.selectionModel()->select({model.index(0, 0), model.index(mostSelected - 1, SummaryColumns::ColumnCount - 1)},
                                  QItemSelectionModel::ClearAndSelect);
    const Longest selected = longestTurn(plant, model);
    print("10,000 changes a second, 1,000 rows selected", selected, true);
    view.selectRow(5);

    Longest filtering;
    SummaryFilter filter;
    filter.text = QString::fromLatin1(searched);
    filtering.measure([&] { model.setFilter(filter); });
    settle(model, filtering);
    print("filtering by text", filtering, true);
    filter = SummaryFilter();
    filter.isMarkedOnly = true;
    filtering.measure([&] { model.setFilter(filter); });
    settle(model, filtering);
    const Longest marked = longestTurn(plant, model);
    print("10,000 changes a second, marked ones only", marked, true);
    return std::max({opening.busyMs, sorting.busyMs, all.busyMs, selected.busyMs, filtering.busyMs, marked.busyMs}) <=
           limitMs;
}

/// What a program without the summary would do: Qt's proxy sorts and filters a table of all points.
class PlainTable : public QAbstractTableModel
{
public:
    explicit PlainTable(const Plant& plant) : m_plant(plant) {}
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : pointCount; }
    int columnCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : SummaryColumns::ColumnCount;
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        const ObjectKey point = pointOf(index.row());
        if (role == Qt::DisplayRole)
            return SummaryColumns::text(m_plant.database, point, index.column(), QTimeZone::utc());
        return role == Qt::UserRole ? SummaryColumns::value(m_plant.database, point, index.column()) : QVariant();
    }
    void note(const std::vector<ObjectKey>& changed)
    {
        for (const ObjectKey point : changed) {
            const int row = point.id - Korvane::firstAnalogPointId;
            Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
        }
    }

private:
    const Plant& m_plant;
};

void measureProxy()
{
    Plant plant;
    PlainTable table(plant);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&table);
    proxy.setSortRole(Qt::UserRole);
    proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
    proxy.setFilterKeyColumn(SummaryColumns::Description);
    QTableView view;
    view.setModel(&proxy);
    view.verticalHeader()->hide();
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.resize(1000, 600);
    view.show();
    Longest sorting;
    sorting.measure([&] {
        proxy.sort(SummaryColumns::Value);
        QCoreApplication::processEvents();
    });
    print("a sorting proxy: sorting by values", sorting, false);
    Longest filtering;
    filtering.measure([&] {
        proxy.setFilterFixedString(QString::fromLatin1(searched));
        QCoreApplication::processEvents();
    });
    print("a sorting proxy: filtering by text", filtering, false);
    proxy.setFilterFixedString({});
    Longest changing;
    for (int tick = 0; tick < proxyTicks; ++tick) {
        changing.measure([&] {
            table.note(plant.tick());
            QCoreApplication::processEvents();
        });
    }
    print("a sorting proxy: a tick of 500 changes", changing, false);
}

void ignore(QtMsgType, const QMessageLogContext&, const QString&)
{
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(ignore); // the screen that is none remarks on every window
    const QApplication application(argc, argv);
    std::printf("%d points, the longest turn of the event loop, at most %.0f ms\n", pointCount, limitMs);
    const bool isFree = measureSummary();
    measureProxy();
    return isFree ? 0 : 1;
}
