// What alarms cost: samples of points with alarms, of which few cross their limits, beside the same samples unwatched;
// and a burst of alarms, from the sample to the committed line of the log.

#include "bench/support/ratioreport.h"
#include "host/alarms/alarmlog.h"
#include "host/alarms/alarmmanager.h"
#include "host/alarms/korvanescadaalarmprocessor.h"
#include "host/runtime/runtimedatabase.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <vector>

namespace {

constexpr qint64 start = Q_INT64_C(1714557600000);
constexpr int pointCount = 10000;
constexpr int roundCount = 100; // a million samples
constexpr int crossingEvery = 100;

ObjectKey keyOf(int index)
{
    return {Korvane::ScadaObjectType::AnalogPoint, 200001 + index};
}

/// Points with an alarm above 80, and all that hears of it.
struct Plant
{
    Plant()
    {
        database.setTimeZone(QTimeZone::utc());
        database.reserve(Korvane::ScadaObjectType::Point, pointCount);
        for (int i = 0; i < pointCount; ++i) {
            RuntimeDatabase::Object object{keyOf(i).type, keyOf(i).id, QStringLiteral("P%1").arg(i)};
            object.high = 80;
            object.hysteresis = 1;
            object.area = QStringLiteral("Area %1").arg(i % 10);
            object.alarm.severities[AlarmSetting::placeOf(ScadaAlarm::Cause::High)] = static_cast<qint8>(i % 10);
            if (!database.add(object))
                qFatal("a point was refused");
        }
    }

    qint64 now = start;
    RuntimeDatabase database;
    AlarmManager manager{[this] { return QDateTime::fromMSecsSinceEpoch(now, Qt::UTC); }};
    KorvaneScadaAlarmProcessor processor{database, manager};
};

/// A million samples; each hundredth point crosses its limit back and forth.
void takeRounds(Plant& plant)
{
    for (int round = 0; round < roundCount; ++round) {
        plant.now += 1000;
        for (int i = 0; i < pointCount; ++i) {
            const bool isBeyond = i % crossingEvery == 0 && round % 2 == 0;
            const double value = isBeyond ? 95.0 : 50.0 + (i + round) % 7;
            benchmark::DoNotOptimize(plant.database.takeSample({keyOf(i), plant.now, value, 0}));
        }
        plant.processor.advance(plant.now);
    }
}

void takeSamples(benchmark::State& state, bool isWatched)
{
    Plant plant;
    if (isWatched)
        plant.processor.watchAll();
    takeRounds(plant); // statistics are made with the first sample
    for (auto _ : state)
        takeRounds(plant);
    if (isWatched && plant.manager.count() != pointCount / crossingEvery)
        qFatal("%zu alarms stand", plant.manager.count());
    korvaneItems(state, std::size_t(pointCount) * roundCount);
    if (isWatched)
        korvaneRatioLimit(state, 1.5);
}

void raiseBurst(benchmark::State& state)
{
    const QTemporaryDir folder;
    int files = 0;
    for (auto _ : state) {
        state.PauseTiming();
        Plant plant;
        plant.processor.watchAll();
        AlarmLog log;
        if (!log.open(folder.filePath(QStringLiteral("log%1.db").arg(++files))))
            qFatal("no log");
        QObject::connect(&plant.manager, &AlarmManager::transitioned, &plant.manager,
                         [&](const AlarmTransition& transition) { log.append(transition); });
        state.ResumeTiming();
        for (int i = 0; i < pointCount; ++i)
            plant.database.takeSample({keyOf(i), start, 95, 0});
        if (log.waiting() != std::size_t(pointCount) || !log.commit())
            qFatal("not committed");
        state.PauseTiming();
        log.close();
        state.ResumeTiming();
    }
    korvaneItems(state, std::size_t(pointCount));
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv); // Qt's database drivers are plugins
    const auto add = [](const char* name, auto function) { return benchmark::RegisterBenchmark(name, function); };
    add("take a sample of an alarmed point", [](benchmark::State& state) { takeSamples(state, true); });
    add("take a sample of an alarmed point (plain)", [](benchmark::State& state) { takeSamples(state, false); });
    add("raise, log and commit an alarm", raiseBurst);
    return korvaneBenchmarkMain(argc, argv);
}
